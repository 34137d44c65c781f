// The Filter Document and Filter Book commands: they check what is to be
// filtered, let the user choose the category, the filter scheme, the filter
// type and its options (and for a duplicate book the destination folder) in
// the filter dialog, and start the run.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"

namespace voka {

// Scope 3 filters the active document, 4 the active book. Returns the run's
// result: the filtered document or book, 0 when nothing was filtered, 106 or
// 107 as the run tells.
int FilterCommand(Host& host, PluginState& state, int scope);

// Events of the filter dialog (dialog number kFilterDialogNumber).
void filterDialogEvent(Host& host, PluginState& state, int item);

}  // namespace voka
