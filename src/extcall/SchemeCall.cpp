// SetScheme: loads a colouring, validation or filter scheme from the main
// settings and makes it and its category the active ones.
#include "extcall/CallHandlers.h"
#include "extcall/MessageSplit.h"
#include "extcall/TextCommands.h"
#include "filtering/FilterScheme.h"
#include "schemes/ColoringSchemeReader.h"
#include "settings/MainSettings.h"
#include "validation/ValidationScheme.h"

namespace voka {

namespace {

using SchemeLoader = int (*)(Host&, PluginState&, const std::string& category, const std::string& scheme, int report);

struct SchemeType {
    char letter;  // the type's first letter, upper case
    SchemeLoader load;
    std::string ActiveNames::*active;
};

constexpr SchemeType kSchemeTypes[] = {
    {'C', ReadColoringScheme, &ActiveNames::coloringScheme},
    {'V', LoadValidationScheme, &ActiveNames::validationScheme},
    {'F', LoadFilterScheme, &ActiveNames::filterScheme},
};

const SchemeType* schemeType(const std::string& type) {
    const char letter = firstLetter(type);
    for (const SchemeType& entry : kSchemeTypes) {
        if (entry.letter == letter) return &entry;
    }
    return nullptr;
}

// Results 2 and 3 of every loader mean nothing was loaded.
bool loaded(int result) { return result != 2 && result != 3; }

}  // namespace

int setSchemeCall(Host& host, PluginState& state, const CallItems& items) {
    const std::string& category = items[2];
    const std::string& scheme = items[3];
    if (state.mainSettingsDoc == kNoObject && openLocalCopy(host, state) == kNoObject) return kCallNoMainSettings;
    const SchemeType* type = schemeType(items[1]);
    // The settings are closed even when the caller held them: a call leaves nothing open behind it.
    if (type == nullptr) {
        closeHeldMainSettings(host, state);
        return kCallBadSchemeType;
    }
    const int result = type->load(host, state, category, scheme, 0);
    if (loaded(result)) {
        state.active.category = category;
        state.active.*(type->active) = scheme;
    }
    closeHeldMainSettings(host, state);
    return loaded(result) ? result : kCallNoScheme;
}

}  // namespace voka
