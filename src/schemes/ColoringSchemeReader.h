// Loading the active colouring scheme from the held main settings document
// into the plug-in state: its four options and its rules in priority order.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"

#include <string>

namespace voka {

enum SchemeLoadResult : int {
    kSchemeLoaded = 1,
    kSchemeNotFound = 2,  // the active colouring scheme became "<none>"
    kSchemeNothingToLoad = 3,
};

// Reads the scheme `scheme` of `category` from state.mainSettingsDoc into
// state.coloring. When it is not found the rule table is left empty and, when
// interactive, the user is told.
int ReadColoringScheme(Host& host, PluginState& state, const std::string& category, const std::string& scheme,
                       int interactive);

}  // namespace voka
