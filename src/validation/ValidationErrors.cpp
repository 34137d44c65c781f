#include "validation/ValidationErrors.h"

#include "frame/Alerts.h"
#include "validation/PluginReport.h"

namespace voka {

namespace {

constexpr const char* kAlerts[4] = {
    "The \"%s\" value for the %s attribute is invalid, according to the active validation scheme.  (Active "
    "scheme: %s)",
    "The \"%s\" value for the %s attribute is not shared by the nearest ancestor element with that attribute. This "
    "is invalid, because it represents a hierarchical condition mismatch.  (Active scheme: %s)",
    "The \"%s\" attribute for the current element is not specified, denoting it as \"unconditional.\" However, the "
    "nearest ancestor with the attibute is specified, making it conditional. This is invalid, because it "
    "represents a hierarchical condition mismatch.  (Active scheme: %s)",
    "The \"%s\" attribute for the current element is not specified, but the validation scheme does not allow for "
    "this attribute to be empty. The validation scheme must contain the item \"<no value>\" for this attribute to "
    "be valid as unspecified.  (Active scheme: %s)",
};

bool namesValue(int rule) { return rule == 1 || rule == 2; }

}  // namespace

void ReportValidationError(Host& host, PluginState& state, int rule, Handle doc, Handle element,
                           const std::string& attribute, const std::string& value, int mode) {
    if (rule < 1 || rule > 4) return;
    const std::string& scheme = state.active.validationScheme;
    if (mode == kValidateElement) {
        const char* pattern = kAlerts[rule - 1];
        showMessage(host, namesValue(rule) ? withTexts(pattern, {value, attribute, scheme})
                                           : withTexts(pattern, {attribute, scheme}));
        return;
    }
    const std::string shownValue = namesValue(rule) ? value : std::string();
    WriteReportEntry(host, state, ruleHeadingEntry(rule), doc, element, 0);
    WriteReportEntry(host, state, ruleMessageEntry(rule), doc, element, 0, attribute, shownValue);
    WriteReportEntry(host, state, kEntryClickHere, doc, element, 1);
    state.validationFindings.push_back(ValidationFinding{
        rule, doc, element, attribute, shownValue,
        reportRuleMessage(host, ruleMessageEntry(rule), doc, element, attribute, shownValue)});
}

}  // namespace voka
