#include "filtering/FilterScheme.h"

#include "frame/Alerts.h"
#include "schemes/NameLists.h"
#include "schemes/SchemeSchema.h"
#include "settings/SettingsDocument.h"

namespace voka {

namespace {


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
    loaded.options = readSchemeOptions(host, state, doc, schemeElement);
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
