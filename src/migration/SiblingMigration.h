// Migrate Quorvane Settings: copies the schemes of the sibling plug-in's
// master settings document (the active document) into a new category of the
// main settings, and optionally merges its master attribute list into the
// attribute library. The source document is never changed.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"

namespace voka {

struct MigrationCounts {
    unsigned filter = 0;
    unsigned coloring = 0;
    unsigned validation = 0;
    unsigned attributes = 0;
};

// The command: its three questions, the checks, the copy, both saves and
// the closing message. 1 when the main settings were migrated and saved, 0
// when a question was answered No or a check stopped it, -1 when a save failed.
int MigrateSiblingSettings(Host& host, PluginState& state, MigrationCounts& counts);

}  // namespace voka
