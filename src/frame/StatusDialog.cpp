// The status (progress) dialog and the Esc poll of long passes.
#include "frame/Alerts.h"
#include "frame/Dialogs.h"

namespace voka {

void openStatus(Host& host, PluginState& state, const std::string& title) {
    // One status dialog at a time: a second open replaces the first.
    closeStatus(host, state);
    Handle dialog = host.openDialogResource("br_Dialog_Status");
    if (dialog == kNoObject) {
        showPlainWarning(host, "Dialog box error.");
        return;
    }
    if (title != kKeep) host.setDialogTitle(dialog, title);
    host.modelessDialog(kStatusDialogNumber, dialog);
    state.dialogs.status = dialog;
}

void setStatusLines(Host& host, PluginState& state, const std::string& line1, const std::string& line2,
                    const std::string& line3, const std::string& line4) {
    Handle dialog = state.dialogs.status;
    if (dialog == kNoObject) return;
    const std::string* lines[4] = {&line1, &line2, &line3, &line4};
    for (int i = 0; i < 4; ++i) {
        if (*lines[i] == kKeep) continue;
        host.setItemText(dialog, host.dialogItem(dialog, i + 1), *lines[i]);
    }
}

void closeStatus(Host& host, PluginState& state) {
    if (state.dialogs.status == kNoObject) return;
    host.close(state.dialogs.status, 0);
    state.dialogs.status = kNoObject;
}

int pollCancel(Host& host, PluginState& state) {
    if (!host.userCancelled()) return 0;
    if (!askQuestion(host, "Are you sure you want to cancel this operation?")) return 0;
    state.settingsError = 210;
    return 1;
}

}  // namespace voka
