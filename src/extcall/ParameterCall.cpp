// SetParm: sets one filtering or validation option by its key.
#include "extcall/CallHandlers.h"
#include "extcall/MessageSplit.h"
#include "extcall/TextCommands.h"
#include "frame/Strings.h"

#include <algorithm>

namespace voka {

namespace {

int setFilterType(PluginState& state, const std::string& value) {
    const char letter = firstLetter(value);
    if (letter != 'D' && letter != 'S') return kCallBadFilterType;
    state.prefs.filterType = letter == 'D' ? kFilterDuplicateFile : kFilterSourceFile;
    return kCallDone;
}

int setFilterPath(PluginState& state, const std::string& value) {
    std::string folder = value;
    std::ranges::replace(folder, '/', '\\');
    state.filterRun.bookFolder = folder;
    return kCallDone;
}

template <int Option>
int setFilterOption(PluginState& state, const std::string& value) {
    state.filteringOptions[Option] = flagArgument(value) ? 1 : 0;
    return kCallDone;
}

template <int Rule>
int setRuleActive(PluginState& state, const std::string& value) {
    state.prefs.validationRuleActive[Rule] = flagArgument(value) ? 1 : 0;
    return kCallDone;
}

int setStrikethrough(PluginState& state, const std::string& value) {
    state.prefs.applyStrikethrough = flagArgument(value) ? 1 : 0;
    return kCallDone;
}

struct Parameter {
    const char* key;
    int (*set)(PluginState&, const std::string& value);
};

constexpr Parameter kParameters[] = {
    {"Filter_Type", setFilterType},
    {"Filter_SaveFirst", setFilterOption<kFilterSaveFirstOption>},
    {"Filter_RemoveOverrides", setFilterOption<kFilterRemoveColoringOption>},
    {"Filter_Path", setFilterPath},
    {"Val_Rule1Active", setRuleActive<0>},
    {"Val_Rule2Active", setRuleActive<1>},
    {"Val_Rule3Active", setRuleActive<2>},
    {"Val_Rule4Active", setRuleActive<3>},
    {"Val_ApplyStrikethrough", setStrikethrough},
};

}  // namespace

int setParameterCall(Host&, PluginState& state, const CallItems& items) {
    for (const Parameter& parameter : kParameters) {
        if (equalsIgnoreCase(parameter.key, items[1])) return parameter.set(state, items[2]);
    }
    return kCallUnknownParameter;
}

}  // namespace voka
