// The start-up sequence: paths and state, the shared settings document and
// the preferences, the main settings document and the active schemes, then
// the notifications and menus. A failure to obtain a settings document stops
// it with a message and leaves the plug-in without menus for the session.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"

namespace voka {

inline constexpr const char* kCompileDate = "03/02/2008";
inline constexpr const char* kVersion = "1.01";
inline constexpr int kShippedDebugLevel = 3;

// True when start-up completed and the menus are in place.
bool runStartup(Host& host, PluginState& state);

}  // namespace voka
