// The text commands' handlers, one per command word, for the command table.
// Each is given the message's items, command word first, already counted and
// completed with their defaults.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"

#include <string>
#include <vector>

namespace voka {

using CallItems = std::vector<std::string>;

int setSchemeCall(Host& host, PluginState& state, const CallItems& items);
int setParameterCall(Host& host, PluginState& state, const CallItems& items);
int colorElementCall(Host& host, PluginState& state, const CallItems& items);
int colorFileCall(Host& host, PluginState& state, const CallItems& items);
int filterCheckElementCall(Host& host, PluginState& state, const CallItems& items);
int filterFileCall(Host& host, PluginState& state, const CallItems& items);
int restoreFileCall(Host& host, PluginState& state, const CallItems& items);
int validateElementCall(Host& host, PluginState& state, const CallItems& items);

}  // namespace voka
