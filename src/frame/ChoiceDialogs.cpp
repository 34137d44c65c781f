// The drop-down dialogs: one and two pop-ups with a check box, and the plain
// drop-down. "*" (and 666 for a check state) leaves an item as it is, so the
// same call fills a dialog the first time and updates it later.
#include "frame/Alerts.h"
#include "frame/Dialogs.h"

namespace voka {

namespace {

void setLabel(Host& host, Handle dialog, int item, const std::string& label) {
    if (label != kKeep) host.setItemLabel(dialog, host.dialogItem(dialog, item), label);
}

void setText(Host& host, Handle dialog, int item, const std::string& text) {
    if (text != kKeep) host.setItemText(dialog, host.dialogItem(dialog, item), text);
}

void setChoices(Host& host, Handle dialog, int item, const std::vector<std::string>& choices) {
    if (!choices.empty() && choices.front() == kKeep) return;
    host.setItemLabels(dialog, host.dialogItem(dialog, item), choices);
}

void setCheck(Host& host, Handle dialog, int item, int checkState) {
    if (checkState != kKeepState) host.setItemState(dialog, host.dialogItem(dialog, item), checkState);
}

// Opens a drop-down resource as the current choice dialog, closing the one
// a previous show left open for its caller to read.
Handle openChoice(Host& host, PluginState& state, const char* resource) {
    Handle dialog = host.openDialogResource(resource);
    if (dialog == kNoObject) {
        showPlainWarning(host, "Dialog box error.");
        return kNoObject;
    }
    if (state.dialogs.choice != kNoObject && state.dialogs.choice != dialog) host.close(state.dialogs.choice, 0);
    state.dialogs.choice = dialog;
    state.dialogs.accepted = false;
    state.dialogs.dropDownNumber = 0;
    return dialog;
}

Handle dialogForMode(Host& host, PluginState& state, int mode, const char* resource) {
    if (mode == 1) return openChoice(host, state, resource);
    return state.dialogs.choice;
}

}  // namespace

int showOneChoiceDialog(Host& host, PluginState& state, int mode, const OneChoiceDialog& d) {
    Handle dialog = dialogForMode(host, state, mode, "br_Dialog_1DDown_wChkBox");
    if (dialog == kNoObject) return 0;
    if (d.title != kKeep) host.setDialogTitle(dialog, d.title);
    setLabel(host, dialog, 1, d.label1);
    setText(host, dialog, 2, d.text2);
    setChoices(host, dialog, 3, d.choices3);
    setCheck(host, dialog, 4, d.checkState4);
    setLabel(host, dialog, 4, d.checkLabel4);
    setLabel(host, dialog, 5, d.label5);
    if (mode == 1) host.modalDialog(kOneChoiceDialogNumber, dialog);
    return 1;
}

int showTwoChoiceDialog(Host& host, PluginState& state, int mode, const TwoChoiceDialog& d) {
    Handle dialog = dialogForMode(host, state, mode, "br_Dialog_2DDown_wChkBox");
    if (dialog == kNoObject) return 0;
    if (d.title != kKeep) host.setDialogTitle(dialog, d.title);
    setLabel(host, dialog, 1, d.label1);
    setText(host, dialog, 2, d.text2);
    setChoices(host, dialog, 3, d.choices3);
    setLabel(host, dialog, 4, d.label4);
    setText(host, dialog, 5, d.text5);
    setChoices(host, dialog, 6, d.choices6);
    setCheck(host, dialog, 3, d.select3);  // a pop-up's state is its chosen entry
    setCheck(host, dialog, 6, d.select6);
    setCheck(host, dialog, 7, d.checkState7);
    setLabel(host, dialog, 7, d.checkLabel7);
    setLabel(host, dialog, 8, d.label8);
    if (mode == 1) host.modalDialog(kTwoChoiceDialogNumber, dialog);
    return 1;
}

Handle openChoiceDialog(const PluginState& state) { return state.dialogs.choice; }

int showDropDownDialog(Host& host, PluginState& state, int dialogNumber, const std::string& title,
                       const std::string& label, const std::string& text, const std::vector<std::string>& choices,
                       int widthMode) {
    Handle dialog = openChoice(host, state, widthMode == 3 ? "br_Dialog_DDown_WIDE" : "br_Dialog_DDown");
    if (dialog == kNoObject) return 0;
    if (title != kKeep) host.setDialogTitle(dialog, title);
    setLabel(host, dialog, 1, label);
    setText(host, dialog, 2, text);
    setChoices(host, dialog, 3, choices);
    state.dialogs.dropDownNumber = dialogNumber;
    host.modalDialog(dialogNumber, dialog);
    return 1;
}

}  // namespace voka
