// Dialog events of the generic dialogs: their OK and Cancel results, and the
// buttons of the list editor, which work on its list through the list
// operations.
#include "frame/Dialogs.h"

namespace voka {

namespace {

void choiceResult(PluginState& state, int item, int ok, int cancel) {
    if (item == ok) state.dialogs.accepted = true;
    if (item == cancel || item == kDialogEventClose) state.dialogs.accepted = false;
}

void listEditorEvent(Host& host, PluginState& state, int item) {
    Handle dialog = state.dialogs.listEditor;
    if (dialog == kNoObject) return;
    struct Button {
        int item;
        int moveCode;
    };
    static constexpr Button kMoves[] = {{kListUp, kMoveUp}, {kListDown, kMoveDown}, {kListDelete, kMoveDelete}};
    for (const Button& b : kMoves) {
        if (b.item == item) {
            listMove(host, dialog, b.moveCode);
            return;
        }
    }
    if (item == kListAdd) listAdd(host, dialog, state.dialogs.listAddPrompt, false);
    if (item == kListRename) listRename(host, dialog, state.dialogs.listRenamePrompt, false);
    if (item == kListOk) {
        state.dialogs.listAccepted = true;
        state.dialogs.editedList = host.itemLabels(dialog, host.dialogItem(dialog, kListItem));
    }
    if (item == kListCancel || item == kDialogEventClose) state.dialogs.listAccepted = false;
}

}  // namespace

bool handleGenericDialogEvent(Host& host, PluginState& state, int dialogNumber, int item) {
    // The list editor and drop-down run under their caller's number; the
    // numbers of the dialogs now open are checked first.
    if (state.dialogs.listEditor != kNoObject && dialogNumber == state.dialogs.listEditorNumber) {
        listEditorEvent(host, state, item);
        return true;
    }
    if (dialogNumber == kOneChoiceDialogNumber) {
        choiceResult(state, item, kOneChoiceOk, kOneChoiceCancel);
        return true;
    }
    if (dialogNumber == kTwoChoiceDialogNumber) {
        choiceResult(state, item, kTwoChoiceOk, kTwoChoiceCancel);
        return true;
    }
    if (dialogNumber == kStatusDialogNumber) return true;
    if (state.dialogs.choice != kNoObject && dialogNumber == state.dialogs.dropDownNumber) {
        choiceResult(state, item, kDropDownOk, kDropDownCancel);
        return true;
    }
    return false;
}

}  // namespace voka
