// The colouring entries of the menus: each menu command number with the
// action and flags it runs.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"

namespace voka {

// Commands 5 (Color Selection), 6 (Color Document), 7 (Color Book), 20
// (Uncolor Document) and 21 (Uncolor Book); the override warning of 20 and
// 21 is asked before this is called. Returns the colouring result, 0 for any
// other command number.
int colorCommandForMenu(Host& host, PluginState& state, int commandNumber);

}  // namespace voka
