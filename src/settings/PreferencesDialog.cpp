#include "settings/PreferencesDialog.h"

#include "frame/Alerts.h"
#include "settings/MainSettings.h"
#include "settings/MainSettingsChoice.h"
#include "settings/Preferences.h"

namespace voka {

namespace {

constexpr const char* kLocalCopyError =
    "A critical error occurred opening the local copy of your main settings document. This operation will abort. "
    "Make sure that the file is in your Brindel folder and that it is not corrupt. Please contact Brindel for "
    "further assistance.";

// A pop-up beside an edit box puts the entry chosen into the box, which is what the preference is read from.
struct PopupBox {
    int popup;
    int box;
};
constexpr PopupBox kPopupBoxes[] = {
    {kPrefsCategoryListItem, kPrefsCategoryTextItem}, {kPrefsValidationListItem, 14}, {kPrefsColoringListItem, 34},
    {kPrefsPartyListItem, 39}};

void copyChoice(Host& host, Handle dialog, const PopupBox& pair) {
    const Handle popup = host.dialogItem(dialog, pair.popup);
    const std::vector<std::string> labels = host.itemLabels(dialog, popup);
    const int chosen = host.itemState(dialog, popup);
    if (chosen >= 0 && chosen < static_cast<int>(labels.size()))
        host.setItemText(dialog, host.dialogItem(dialog, pair.box), labels[static_cast<std::size_t>(chosen)]);
}

}  // namespace

int OpenPreferencesDialog(Host& host, PluginState& state) {
    if (state.mainSettingsDoc == kNoObject && openLocalCopy(host, state) == kNoObject) {
        showMessage(host, kLocalCopyError);
        return 0;
    }
    if (state.sharedSettingsDoc == kNoObject && openSharedSettings(host, state) == kNoObject) {
        showPreferencesOpenError(host);
        closeHeldMainSettings(host, state);
        return 0;
    }
    const Handle dialog = host.openDialogResource("vkp_Dialog_LocalSettings");
    if (dialog == kNoObject) {
        showDialogError(host);
        cancelPreferences(host, state);
        return 0;
    }
    state.dialogs.preferences = dialog;
    state.dialogs.accepted = false;
    readPreferences(host, state, state.sharedSettingsDoc, dialog, true, false);
    refreshPreferencesDialog(host, state, dialog);
    host.modalDialog(kPreferencesDialogNumber, dialog);
    // A dialog closed without OK or Cancel (its close box) is a Cancel.
    if (state.dialogs.preferences != kNoObject) cancelPreferences(host, state);
    host.close(dialog, 0);
    state.dialogs.preferences = kNoObject;
    return state.dialogs.accepted ? 1 : 0;
}

void preferencesDialogEvent(Host& host, PluginState& state, int item, int) {
    const Handle dialog = state.dialogs.preferences;
    if (dialog == kNoObject) return;
    for (const PopupBox& pair : kPopupBoxes)
        if (item == pair.popup) copyChoice(host, dialog, pair);
    if (item == kPrefsCategoryListItem) {
        refreshPreferencesDialog(host, state, dialog);
        host.returnValue(kReturnDialogStayUp);
        return;
    }
    if (item == kPrefsBrowseItem) {
        chooseMainSettingsFile(host, state, dialog);
        host.returnValue(kReturnDialogStayUp);
        return;
    }
    if (item == kPrefsOkItem) {
        acceptPreferences(host, state, dialog);
        state.dialogs.accepted = true;
        state.dialogs.preferences = kNoObject;  // done: nothing left to cancel
        return;
    }
    if (item == kPrefsCancelItem || item == kDialogEventClose) {
        cancelPreferences(host, state);
        state.dialogs.preferences = kNoObject;
    }
}

}  // namespace voka
