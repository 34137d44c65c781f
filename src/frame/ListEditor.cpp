// The strings list editor: a modal dialog whose item 2 is a list the user
// edits with its buttons; the result is left in the dialog state.
#include "frame/Alerts.h"
#include "frame/Dialogs.h"

namespace voka {

int showStringsListEditor(Host& host, PluginState& state, int dialogNumber, const std::string& title,
                          const std::vector<std::string>& list, bool wide, const std::string& addPrompt,
                          const std::string& renamePrompt) {
    Handle dialog =
        host.openDialogResource(wide ? "br_DialogStringsListEditor_Wide" : "br_DialogStringsListEditor");
    if (dialog == kNoObject) {
        showPlainWarning(host, "Dialog box error.");
        return 0;
    }
    if (title != kKeep) host.setDialogTitle(dialog, title);
    host.setItemLabels(dialog, host.dialogItem(dialog, kListItem), list);
    host.setItemState(dialog, host.dialogItem(dialog, kListItem), list.empty() ? -1 : 0);

    // A list editor may be opened from another dialog's event; remember the
    // outer one so its events still find their dialog afterwards.
    const Handle outer = state.dialogs.listEditor;
    const int outerNumber = state.dialogs.listEditorNumber;
    const std::string outerAdd = state.dialogs.listAddPrompt, outerRename = state.dialogs.listRenamePrompt;
    state.dialogs.listEditor = dialog;
    state.dialogs.listEditorNumber = dialogNumber;
    state.dialogs.listAddPrompt = addPrompt;
    state.dialogs.listRenamePrompt = renamePrompt;
    state.dialogs.listAccepted = false;
    state.dialogs.editedList.clear();
    host.modalDialog(dialogNumber, dialog);
    host.close(dialog, 0);
    state.dialogs.listEditor = outer;
    state.dialogs.listEditorNumber = outerNumber;
    state.dialogs.listAddPrompt = outerAdd;
    state.dialogs.listRenamePrompt = outerRename;
    return 1;
}

int editItemList(Host& host, PluginState& state, Handle dialog, int item) {
    Handle listItem = host.dialogItem(dialog, item);
    if (listItem == kNoObject) return 0;
    if (!showStringsListEditor(host, state, kListEditorDialogNumber, "List Editor",
                               host.itemLabels(dialog, listItem), false)) {
        return 0;
    }
    if (state.dialogs.listAccepted) host.setItemLabels(dialog, listItem, state.dialogs.editedList);
    return 1;
}

}  // namespace voka
