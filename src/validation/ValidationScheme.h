// Loading the active validation scheme from the main settings document into
// state.validation: its four options and, for each attribute it checks, the
// valid values in scheme order. Start-up and the active scheme dialog reach
// the loader through state.calls, which installValidationSchemeReader sets.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"

#include <string>

namespace voka {

enum ValidationLoadResult : int {
    kValidationNoSettings = 0,    // no main settings document is open
    kValidationLoaded = 1,
    kValidationNotFound = 2,      // the active validation scheme became "<none>"
    kValidationNothingToLoad = 3,  // a name is empty, "<none>" or the missing-value sentinel
};

// Reads the scheme from the held state.mainSettingsDoc. A scheme that is not
// found leaves the previous table, makes the active scheme "<none>" and, with
// `showErrors`, tells the user.
int LoadValidationScheme(Host& host, PluginState& state, const std::string& category, const std::string& scheme,
                         int showErrors);

// The same, holding the local copy of the main settings for the length of
// the load when no main settings document is held (0 when it cannot be had).
int ReadValidationScheme(Host& host, PluginState& state, const std::string& category, const std::string& scheme,
                         int interactive);

// Sets state.calls.readValidationScheme.
void installValidationSchemeReader(PluginState& state);

}  // namespace voka
