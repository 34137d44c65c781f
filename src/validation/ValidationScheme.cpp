#include "validation/ValidationScheme.h"

#include "frame/Alerts.h"
#include "schemes/NameLists.h"
#include "schemes/SchemeSchema.h"
#include "settings/MainSettings.h"
#include "settings/SettingsDocument.h"

namespace voka {

namespace {

constexpr const char* kReadError =
    "An error occurred while attempting to read validation scheme parameters. Check the specified category and "
    "scheme. If you were recently working in the scheme editor, you may have renamed or deleted the active "
    "category or scheme.\n\nIf you feel you have received this message in error, please contact Brindel.";



}  // namespace

int LoadValidationScheme(Host& host, PluginState& state, const std::string& category, const std::string& scheme,
                         int showErrors) {
    const Handle doc = state.mainSettingsDoc;
    if (doc == kNoObject) return kValidationNoSettings;
    if (namesNoScheme(category) || namesNoScheme(scheme)) return kValidationNothingToLoad;

    const Handle schemeElement = findScheme(host, state, doc, category, SchemeKind::Validation, scheme);
    if (schemeElement == kNoObject) {
        if (showErrors) showMessage(host, kReadError);
        state.active.validationScheme = kNone;
        return kValidationNotFound;
    }

    ValidationScheme loaded;
    loaded.options = readSchemeOptions(host, state, doc, schemeElement);
    // Every tagged child lists one attribute, whatever its tag.
    for (Handle child = host.firstChild(doc, schemeElement); child != kNoObject; child = host.nextSibling(doc, child)) {
        if (elementTag(host, doc, child).empty()) continue;
        ValidationRule rule;
        readString(host, state, doc, child, kAttrName, rule.attribute);
        rule.values = readList(host, doc, child, kAttrValues, false);
        loaded.rules.push_back(std::move(rule));
    }
    state.validation = std::move(loaded);
    return kValidationLoaded;
}

int ReadValidationScheme(Host& host, PluginState& state, const std::string& category, const std::string& scheme,
                         int interactive) {
    if (state.mainSettingsDoc != kNoObject) return LoadValidationScheme(host, state, category, scheme, interactive);
    if (namesNoScheme(category) || namesNoScheme(scheme)) return kValidationNothingToLoad;
    if (openLocalCopy(host, state) == kNoObject) return kValidationNoSettings;
    const int result = LoadValidationScheme(host, state, category, scheme, interactive);
    closeHeldMainSettings(host, state);
    return result;
}

void installValidationSchemeReader(PluginState& state) { state.calls.readValidationScheme = &ReadValidationScheme; }

}  // namespace voka
