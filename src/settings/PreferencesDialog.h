// The preferences dialog ("vkp_Dialog_LocalSettings", dialog number 4): the
// local preferences and the choice of the master main settings file, kept
// only when the user accepts it.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"

namespace voka {

inline constexpr int kPrefsBrowseItem = 5, kPrefsOkItem = 42, kPrefsCancelItem = 43;

// The Local Preferences... command. 1 when the user accepted the dialog.
int OpenPreferencesDialog(Host& host, PluginState& state);

// Events of the dialog.
void preferencesDialogEvent(Host& host, PluginState& state, int item, int modifiers);

}  // namespace voka
