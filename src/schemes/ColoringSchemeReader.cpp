#include "schemes/ColoringSchemeReader.h"

#include "frame/Alerts.h"
#include "schemes/NameLists.h"
#include "schemes/SchemeSchema.h"
#include "settings/SettingsDocument.h"

namespace voka {

namespace {

constexpr const char* kReadError =
    "An error occurred while attempting to read coloring scheme parameters. Check the specified category and "
    "scheme. If you were recently working in the scheme editor, you may have renamed or deleted the active "
    "category or scheme.\n\nIf you feel you have received this message in error, please contact Brindel.";



ColorRule readRule(Host& host, PluginState& state, Handle doc, Handle ruleElement) {
    ColorRule rule;
    readString(host, state, doc, ruleElement, kAttrName, rule.colorName);
    dropFirstCharacters(rule.colorName, 3);  // the position prefix
    rule.style = readNumber(host, state, doc, ruleElement, kAttrStyle);
    rule.matchAll = readNumber(host, state, doc, ruleElement, kAttrMatchAll);
    rule.override = readNumber(host, state, doc, ruleElement, kAttrOverride);
    for (Handle child = host.firstChild(doc, ruleElement); child != kNoObject;
         child = host.nextSibling(doc, child)) {
        Attribute condition;
        readString(host, state, doc, child, kAttrName, condition.name);
        condition.values = readList(host, doc, child, kAttrValues, false);
        rule.conditions.push_back(std::move(condition));
    }
    return rule;
}

}  // namespace

int ReadColoringScheme(Host& host, PluginState& state, const std::string& category, const std::string& scheme,
                       int interactive) {
    if (namesNoScheme(scheme) || namesNoScheme(category)) return kSchemeNothingToLoad;

    ColoringScheme& loaded = state.coloring;
    loaded.rules.clear();
    loaded.loaded = false;

    Handle doc = state.mainSettingsDoc;
    Handle schemeElement = findScheme(host, state, doc, category, SchemeKind::Coloring, scheme);
    if (schemeElement == kNoObject) {
        if (interactive) showMessage(host, kReadError);
        state.active.coloringScheme = kNone;
        return kSchemeNotFound;
    }

    loaded.options = readSchemeOptions(host, state, doc, schemeElement);

    // Every child is a rule, whatever its tag; an empty scheme stays "not loaded".
    for (Handle child = host.firstChild(doc, schemeElement); child != kNoObject;
         child = host.nextSibling(doc, child)) {
        loaded.rules.push_back(readRule(host, state, doc, child));
        loaded.loaded = true;
    }
    return kSchemeLoaded;
}

}  // namespace voka
