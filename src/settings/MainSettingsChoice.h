// Choosing another main settings file from the preferences dialog, and
// showing the held main settings document's categories and schemes in that
// dialog. The choice only becomes the master path when the dialog is
// accepted (acceptPreferences).
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"

namespace voka {

// Items of the preferences dialog filled from the main settings document.
inline constexpr int kPrefsCategoryTextItem = 7;
inline constexpr int kPrefsCategoryListItem = 8;
inline constexpr int kPrefsValidationListItem = 15;
inline constexpr int kPrefsColoringListItem = 35;
inline constexpr int kPrefsPartyListItem = 40;  // the "Politics" tab's fixed choices
inline constexpr std::size_t kShownPathLength = 30;

// Asks for a file, checks it is a main settings file and holds it as the
// pending main settings document. 1 when taken, 0 otherwise (with a message
// when the file could not be used).
int chooseMainSettingsFile(Host& host, PluginState& state, Handle dialog);
// Fills the path, category and scheme items of `dialog` from the held
// document, and the fixed choices of the "Politics" tab.
bool refreshPreferencesDialog(Host& host, PluginState& state, Handle dialog);
// The path as the dialog shows it: its last characters when it is too long.
std::string shortenedPath(const std::string& path);

}  // namespace voka
