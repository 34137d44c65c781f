// Routing of dialog events to the dialog that owns them: the generic
// dialogs first (they claim only the numbers of the dialogs they have open),
// then the plug-in's own dialogs by number.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"

namespace voka {

void dispatchDialogEvent(Host& host, PluginState& state, int dialogNumber, int item, int modifiers);

}  // namespace voka
