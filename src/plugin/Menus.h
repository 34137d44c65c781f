// The plug-in's menus: its own menus and submenus, the commands of the
// command table and the separators, placed into the host's document, book
// and context menus from one placement table.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"

namespace voka {

// Asks the host for the notifications the plug-in answers (53, 57, 55, 59,
// 63, 11, 40, 13, in that order).
void requestNotifications(Host& host);
// Defines the menus, commands and separators and fills the menus. The Test
// command enters the two main menus only at debug level 5.
void defineMenus(Host& host, const PluginState& state);

}  // namespace voka
