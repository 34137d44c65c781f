// The local preferences: attributes of the "SettingsGroupE" element of the
// shared settings document, read into the session state at start-up, into
// the preferences dialog when it opens, and written back when the user
// accepts it. Some keys update the state on every read, others only at
// start-up, so that a new default scheme takes effect at the next start
// while a new rule switch applies at once.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"

namespace voka {

inline constexpr const char* kSettingsGroupTag = "SettingsGroupE";
inline constexpr int kPreferencesDialogNumber = 4;

// Items of the preferences dialog ("vkp_Dialog_LocalSettings") that show a key.
inline constexpr int kPrefsMasterPathItem = 4;
inline constexpr int kPrefsFilterTypeSourceItem = 25;
inline constexpr int kPrefsFilterTypeDuplicateItem = 28;

// Opens the shared settings document invisibly and holds it in the state.
Handle openSharedSettings(Host& host, PluginState& state);

// Reads every key from `doc`. With fillDialog, each value goes into its item
// of `dialog`; with setGlobals, the start-up-only keys update the state too.
// Shows the message and returns false when the document has no settings group.
bool readPreferences(Host& host, PluginState& state, Handle doc, Handle dialog, bool fillDialog, bool setGlobals);
// Writes every key from the items of `dialog` (the master path from the
// state) into `doc`; keys the document does not declare are skipped.
bool writePreferences(Host& host, PluginState& state, Handle doc, Handle dialog);

// The OK of the preferences dialog: the pending master path becomes the
// master path, the held main settings document becomes the local copy, the
// keys are written, read back and the shared settings document saved.
void acceptPreferences(Host& host, PluginState& state, Handle dialog);
// The Cancel: both held documents are closed unsaved.
void cancelPreferences(Host& host, PluginState& state);

}  // namespace voka
