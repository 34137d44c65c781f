#include "filtering/FilterScheme.h"

#include "frame/Alerts.h"
#include "schemes/NameLists.h"
#include "schemes/SchemeSchema.h"
#include "settings/SettingsDocument.h"

namespace voka {

namespace {

int readOption(Host& host, PluginState& state, Handle doc, Handle scheme, const char* name) {
    std::string word;
    readString(host, state, doc, scheme, name, word);
    return optionIsOn(word);
}

}  // namespace

int LoadFilterScheme(Host& host, PluginState& state, const std::string& category, const std::string& scheme,
                     int report) {
    const Handle doc = state.mainSettingsDoc;
    if (doc == kNoObject) return kFilterNoSettings;
    if (isNoneName(scheme) || isNoneName(category)) return kFilterNotLoaded;

    const Handle schemeElement = findScheme(host, state, doc, category, SchemeKind::Filter, scheme);
    if (schemeElement == kNoObject) {
        if (report) showMainSettingsReadError(host, "filter scheme parameters");
        return kFilterNotLoaded;
    }

    FilterScheme& loaded = state.filter;
    loaded = FilterScheme{};
    loaded.options.includeEddDefaults = readOption(host, state, doc, schemeElement, kAttrIncludeEddDefaults);
    loaded.options.spaceDelimited = readOption(host, state, doc, schemeElement, kAttrSpaceDelimited);
    loaded.options.ignoreCase = readOption(host, state, doc, schemeElement, kAttrIgnoreCase);
    loaded.options.processAllFlows = readOption(host, state, doc, schemeElement, kAttrProcessAllFlows);
    // Every child is a condition, whatever its tag.
    for (Handle child = host.firstChild(doc, schemeElement); child != kNoObject; child = host.nextSibling(doc, child)) {
        FilterRule rule;
        readString(host, state, doc, child, kAttrName, rule.attribute);
        rule.values = readList(host, doc, child, kAttrValues, false);
        loaded.rules.push_back(std::move(rule));
    }
    return kFilterLoaded;
}

}  // namespace voka
