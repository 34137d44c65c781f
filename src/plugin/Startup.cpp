#include "plugin/Startup.h"

#include "editors/ActiveSchemeDialog.h"
#include "frame/Alerts.h"
#include "frame/Dialogs.h"
#include "frame/Paths.h"
#include "plugin/Menus.h"
#include "schemes/ColoringSchemeReader.h"
#include "settings/MainSettings.h"
#include "settings/Preferences.h"
#include "settings/SharedSettingsMerge.h"
#include "validation/ValidationScheme.h"

namespace voka {

namespace {

void showStep(Host& host, PluginState& state, const char* step) { setStatusLines(host, state, "", step, "Please wait...", ""); }

bool stop(Host& host, PluginState& state) {
    closeStatus(host, state);
    return false;
}

}  // namespace

bool runStartup(Host& host, PluginState& state) {
    state.compileDate = kCompileDate;
    state.version = kVersion;
    state.itemHidingSwitch = 0;
    state.filterPassFlag = 0;
    state.debugLevel = kShippedDebugLevel;
    installActiveSchemeDialog(state);
    installValidationSchemeReader(state);

    openStatus(host, state, "Initializing the VOKA plugin...");
    showStep(host, state, "Initializing variables");
    initializePathsAndState(host, state);

    showStep(host, state, "Retreiving local settings");
    const Handle shared =
        mergeSharedSettings(host, state, state.paths.sharedSettings, state.paths.tempSharedSettings, "VOKA");
    if (shared == kNoObject) {
        showMessage(host, "A critical error occurred while attempting to open your local settings document. Make "
                          "sure that the file exists, is named correctly, and is not corrupt.\n\nVOKA is unable to "
                          "initialize.");
        return stop(host, state);
    }
    state.sharedSettingsDoc = shared;
    readPreferences(host, state, shared, kNoObject, false, true);
    host.close(shared, kCloseModified);
    state.sharedSettingsDoc = kNoObject;

    showStep(host, state, "Retrieving main settings file");
    if (retrieveMainSettings(host, state) == kNoObject) return stop(host, state);

    ReadColoringScheme(host, state, state.active.category, state.active.coloringScheme, 0);
    if (state.calls.readValidationScheme != nullptr) {
        state.calls.readValidationScheme(host, state, state.active.category, state.active.validationScheme, 0);
    }
    closeHeldMainSettings(host, state);

    showStep(host, state, "Creating menu paths");
    requestNotifications(host);
    defineMenus(host, state);
    closeStatus(host, state);
    return true;
}

}  // namespace voka
