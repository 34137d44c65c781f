#include "validation/PluginReport.h"

#include "frame/Alerts.h"
#include "schemes/SchemeSchema.h"

#include <array>

namespace voka {

namespace {

constexpr const char* kOpenError =
    "An error occurred while generating the plugin report. Make sure that the template is in your Brindel "
    "subfolder and that it isn't corrupt.";
constexpr const char* kTemplateError =
    "There is an error in the report template. It has either been changed manually, or it is corrupt. The plugin "
    "report cannot be generated. Please replace the template file with a non-corrupt original.";
constexpr const char* kPrintError =
    "A critical error occurred while printing to the error report. The template may have been altered or it may be "
    "corrupt. Please contact Brindel.";

constexpr const char* kRuleMessages[4] = {
    "The value \"%s\" is specified for the %s attribute of a%s %s element, but is not included in the validation "
    "scheme. It may be misspelled or invalid. Check the syntax.",
    "The %s attribute on a%s %s element contains the value \"%s\", but the nearest ancestor element with that "
    "attribute does not have that value, nor is unconditional. Check the conditional hierarchy.",
    "A%s %s element has no values for its %s attribute, but at least one ancestor element does. This essentially "
    "represents an \"unconditional\" element under a conditional one, which may represent a hierarchical mismatch.",
    "The %s attribute on a%s %s element contains no value, but the validation scheme does not specify that the "
    "attribute may be empty.",
};

constexpr const char* kThreeTexts = "%s%s%s";

struct EntryKind {
    const char* tag;
    const char* text;  // nullptr: no text; a rule message is made by reportRuleMessage
    bool ruleMessage = false;
};

constexpr EntryKind kSingleLine{"SingleLine", nullptr};

// By code, from 1; codes outside the table are single lines.
constexpr std::array<EntryKind, 18> kEntries = {{
    kSingleLine,
    {"Heading2", "Rule 1 (Invalid syntax):"},
    {"NormalMessage", nullptr, true},
    {"Heading2", "Rule 2 (Child/ancestor condition mismatch):"},
    {"NormalMessage", nullptr, true},
    {"Heading2", "Rule 3 (Unconditional child / conditional ancestor):"},
    {"NormalMessage", nullptr, true},
    {"Heading2", "Rule 4 (Invalid empty attribute):"},
    {"NormalMessage", nullptr, true},
    {"HyperlinkMessage", " >> Click here."},
    {"Heading1", kThreeTexts},
    {"Heading1Hyperlink", kThreeTexts},
    {"Heading2", kThreeTexts},
    {"Heading2Hyperlink", kThreeTexts},
    {"NormalMessage", kThreeTexts},
    {"HyperlinkMessage", kThreeTexts},
    {"ShortDate", nullptr},
    {"LongDate", nullptr},
}};

const EntryKind& entryKind(int code) {
    if (code < 1 || code > static_cast<int>(kEntries.size())) return kSingleLine;
    return kEntries[static_cast<std::size_t>(code - 1)];
}

std::string linkText(Host& host, Handle doc, Handle element) {
    if (element == kNoObject) return "openlink " + host.path(doc) + ":firstpage";
    return "openObjectId " + host.path(doc) + ":5 " + std::to_string(host.intProperty(doc, element, kPropUnique));
}

void insertLink(Host& host, Handle report, Handle entry, const std::string& text) {
    const Handle marker = host.newMarker(report, TextLocation{entry, 0});
    if (marker == kNoObject) return;
    host.setMarkerType(report, marker, host.namedObject(report, kMarkerTypeObject, "Hypertext"));
    host.setMarkerText(report, marker, text);
}

}  // namespace

std::string articleFor(const std::string& tag) {
    if (tag.empty()) return "";
    switch (tag.front()) {
        case 'a': case 'e': case 'i': case 'o': case 'u':
        case 'A': case 'E': case 'I': case 'O': case 'U':
            return "n";
        default:
            return "";
    }
}

std::string reportRuleMessage(Host& host, int code, Handle doc, Handle element, const std::string& attribute,
                              const std::string& value) {
    if (code < ruleMessageEntry(1) || code > ruleMessageEntry(4) || code % 2 == 0) return "";
    const std::string tag = elementTag(host, doc, element);
    const std::string article = articleFor(tag);
    const char* pattern = kRuleMessages[(code - ruleMessageEntry(1)) / 2];
    switch (code) {
        case ruleMessageEntry(1): return withTexts(pattern, {value, attribute, article, tag});
        case ruleMessageEntry(2): return withTexts(pattern, {attribute, article, tag, value});
        case ruleMessageEntry(3): return withTexts(pattern, {article, tag, attribute});
        default: return withTexts(pattern, {attribute, article, tag});
    }
}

bool OpenPluginReport(Host& host, PluginState& state) {
    state.report = kNoObject;
    const Handle opened = host.open(state.paths.reportTemplate, OpenParams{true, false});
    if (opened == kNoObject) {
        showMessage(host, kOpenError);
        return false;
    }
    // Shown, without borders, rulers, text symbols or element boundaries: the
    // report reads as a plain list of messages.
    host.setIntProperty(opened, opened, kPropIsOnScreen, 1);
    for (int property : {kPropViewBorders, kPropViewRulers, kPropViewTextSymbols, kPropElementBoundaryDisplay})
        host.setIntProperty(opened, opened, property, 0);
    const Handle saved = host.simpleSave(opened, state.paths.report, false);
    if (saved == kNoObject) {
        // Most often the report of an earlier run is still open under that name.
        host.close(opened, kCloseModified);
        showMessage(host, kOpenError);
        return false;
    }
    state.report = saved;
    return true;
}

void WriteReportEntry(Host& host, PluginState& state, int code, Handle doc, Handle element, int link,
                      const std::string& text1, const std::string& text2, const std::string& text3) {
    const Handle report = state.report;
    if (report == kNoObject) return;
    host.setIntProperty(report, report, kPropIsInFront, 1);
    const Handle root = host.highestLevelElement(report, host.mainFlow(report));
    if (root == kNoObject) {
        showMessage(host, kTemplateError);
        state.report = kNoObject;
        return;
    }
    const EntryKind& kind = entryKind(code);
    const Handle definition = host.namedObject(report, kElementDefinitionObject, kind.tag);
    const Handle entry =
        definition == kNoObject ? kNoObject : host.newElement(report, definition, ElementLocation{root, kNoObject, 0});
    if (entry == kNoObject) {
        showMessage(host, kPrintError);
        return;
    }
    if (link == 1) insertLink(host, report, entry, linkText(host, doc, element));

    std::string text;
    if (kind.ruleMessage) text = reportRuleMessage(host, code, doc, element, text1, text2);
    else if (kind.text != nullptr) text = withTexts(kind.text, {text1, text2, text3});
    // At the entry's end, which is after the marker.
    if (!text.empty()) host.addText(report, TextLocation{entry, kEndOfObject}, text);
}

void ClosePluginReport(Host& host, PluginState& state) {
    if (state.report != kNoObject) host.close(state.report, kCloseModified);
    state.report = kNoObject;
}

}  // namespace voka
