// The active scheme dialog: choosing the active scheme category and the
// active colouring or validation scheme, from the "Set Active Scheme..."
// commands or just before a colouring or validation action when the user
// asked to see it then. It runs on the generic two-drop-down dialog (1226).
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"

namespace voka {

// Dialog codes: 13 Color Document, 14 Color Book, 17 Set Active Coloring
// Scheme; 22 Validate Document, 23 Validate Book, 24 Set Active Validation
// Scheme. Returns 0 when cancelled or when no main settings document could
// be had or its categories read; after OK the result of loading the chosen
// scheme (1 loaded, 2 not found, 3 no scheme chosen).
int showActiveSchemeDialog(Host& host, PluginState& state, int code);

// Event of item 3 (the category pop-up) of dialog 1226: lists the schemes of
// the newly chosen category.
void activeSchemeCategoryChanged(Host& host, PluginState& state);

// Lets colouring and validation show this dialog first (state.calls).
void installActiveSchemeDialog(PluginState& state);

}  // namespace voka
