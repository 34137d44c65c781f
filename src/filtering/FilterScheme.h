// Loading the active filter scheme from the held main settings document into
// the plug-in state: its four options and its conditions in scheme order.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"

#include <string>

namespace voka {

enum FilterLoadResult : int {
    kFilterNoSettings = 0,  // no main settings document is open
    kFilterLoaded = 1,
    kFilterNotLoaded = 3,   // a name is "<none>", or the scheme is missing
};

// Reads the scheme `scheme` of `category` into state.filter. A scheme that is
// missing leaves the previous one loaded and, with `report`, tells the user.
int LoadFilterScheme(Host& host, PluginState& state, const std::string& category, const std::string& scheme,
                     int report);

}  // namespace voka
