// The commands the frame answers itself: the test command, the about box,
// the format-override question of the uncolour commands, and the client-call
// probe, a developer utility that no command reaches.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"

#include <string>

namespace voka {

void runTestCommand(Host& host, PluginState& state);
void showAboutBox(Host& host, PluginState& state);
std::string aboutText(const PluginState& state);
// True when the command may go on; asks until the user answers Yes once.
bool confirmOverrideWarning(Host& host, PluginState& state);
// Prompts for a client and a message, calls the client and optionally shows
// its answer. 1 when the call was made, 0 when a prompt was cancelled.
int probeClientCall(Host& host, PluginState& state, const std::string& defaultClient,
                    const std::string& defaultMessage, bool showResult, bool remember);

}  // namespace voka
