// Obtaining the main settings document: the master named by the
// preferences, the local copy in the per-user folder, and the one document
// held open while a command works on it.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"

namespace voka {

// Opens the master invisibly (mode 1: checked open) and holds it; 0 on failure.
Handle openMaster(Host& host, PluginState& state, int mode);
// Opens the local copy invisibly and holds it; 0 on failure.
Handle openLocalCopy(Host& host, PluginState& state);
// Closes the held main settings document, discarding changes.
void closeHeldMainSettings(Host& host, PluginState& state);
// Start-up retrieval: master, saved as the local copy, or the local copy with
// its messages. Returns the open document or 0.
Handle retrieveMainSettings(Host& host, PluginState& state);
// True when the document has the skeleton of a main settings file.
bool hasMainSettingsSkeleton(Host& host, PluginState& state, Handle doc);

}  // namespace voka
