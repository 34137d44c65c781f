#include "coloring/RuleColors.h"

#include "schemes/SchemeSchema.h"

namespace voka {

int ResolveRuleColors(Host& host, PluginState& state, Handle doc, std::string& missing) {
    missing.clear();
    int result = 1;
    for (ColorRule& rule : state.coloring.rules) {
        if (rule.colorName == kRefreshEddName) {
            rule.colorId = kRefreshEddColor;
        } else if (rule.colorName == kSkipName) {
            rule.colorId = kSkipColor;
        } else {
            rule.colorId = host.namedObject(doc, kColorObject, rule.colorName);
        }
        if (rule.colorId == kNoObject) {
            missing += "\n" + rule.colorName;
            result = 0;
        }
    }
    return result;
}

int RemoveColoring(Host& host, PluginState& state, Handle doc) {
    return host.importElementDefinitions(doc, doc, kImportRemoveOverrides | kImportNoNotify) == 0 ? 1 : 0;
}

}  // namespace voka
