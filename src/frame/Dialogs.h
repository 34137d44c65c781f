// The generic dialogs shared with the maker's other plug-ins: the status
// (progress) dialog with its Esc poll, the drop-down dialogs with a check box,
// the strings list editor, and the list operations the editors call from their
// dialog events. "*" given for a text leaves that item as it is; 666 given for
// a check-box state does the same.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"

#include <string>
#include <vector>

namespace voka {

inline constexpr const char* kKeep = "*";
inline constexpr int kKeepState = 666;

// Dialog numbers handed to the host with each generic dialog.
inline constexpr int kStatusDialogNumber = 1224;
inline constexpr int kListEditorDialogNumber = 1223;
inline constexpr int kOneChoiceDialogNumber = 1225;
inline constexpr int kTwoChoiceDialogNumber = 1226;
inline constexpr int kFilterDialogNumber = 1227;

// Buttons of the drop-down dialogs (items after the documented ones).
inline constexpr int kOneChoiceOk = 6, kOneChoiceCancel = 7;
inline constexpr int kTwoChoiceOk = 9, kTwoChoiceCancel = 10;
inline constexpr int kTwoChoiceCategoryItem = 3;  // "category changed" in dialog 1226
inline constexpr int kDropDownOk = 4, kDropDownCancel = 5;
// The strings list editor: item 2 is the list, then its buttons.
inline constexpr int kListItem = 2;
inline constexpr int kListAdd = 3, kListRename = 4, kListUp = 5, kListDown = 6, kListDelete = 7;
inline constexpr int kListOk = 8, kListCancel = 9;
// Codes of listMove.
inline constexpr int kMoveUp = 1, kMoveDown = 2, kMoveDelete = 5;

// Status dialog.
void openStatus(Host& host, PluginState& state, const std::string& title);
void setStatusLines(Host& host, PluginState& state, const std::string& line1, const std::string& line2,
                    const std::string& line3, const std::string& line4);
void closeStatus(Host& host, PluginState& state);
// Polls Esc; on a confirmed cancel sets the settings error 210 and returns 1.
// The caller stops its pass (and sets state.cancel when its walk needs it).
int pollCancel(Host& host, PluginState& state);

// Drop-down dialog with a check box; items 1 label, 2 text, 3 pop-up,
// 4 check box, 5 label. Mode 1 opens and runs it (dialog 1225); any other mode
// only updates the open dialog. Returns 1, or 0 when the resource is missing.
struct OneChoiceDialog {
    std::string title = kKeep, label1 = kKeep, text2 = kKeep;
    std::vector<std::string> choices3 = {kKeep};
    int checkState4 = kKeepState;
    std::string checkLabel4 = kKeep, label5 = kKeep;
};
int showOneChoiceDialog(Host& host, PluginState& state, int mode, const OneChoiceDialog& dialog);

// The same with two drop-downs: 1 label, 2 text, 3 pop-up, 4 label, 5 text,
// 6 pop-up, 7 check box, 8 label (dialog 1226).
struct TwoChoiceDialog {
    std::string title = kKeep, label1 = kKeep, text2 = kKeep;
    std::vector<std::string> choices3 = {kKeep};
    std::string label4 = kKeep, text5 = kKeep;
    std::vector<std::string> choices6 = {kKeep};
    int select3 = kKeepState, select6 = kKeepState;  // the entry chosen in each pop-up
    int checkState7 = kKeepState;
    std::string checkLabel7 = kKeep, label8 = kKeep;
};
int showTwoChoiceDialog(Host& host, PluginState& state, int mode, const TwoChoiceDialog& dialog);

// The open drop-down dialog (the handle the last show opened), for event
// handlers and for callers reading the result after the modal run.
Handle openChoiceDialog(const PluginState& state);

// Drop-down dialog ("br_Dialog_DDown", or the wide one for width mode 3),
// run modally under the caller's number; the chosen index is item 3 of
// openChoiceDialog(state), and state.dialogs.accepted tells OK.
int showDropDownDialog(Host& host, PluginState& state, int dialogNumber, const std::string& title,
                       const std::string& label, const std::string& text,
                       const std::vector<std::string>& choices, int widthMode);
// Strings list editor (item 2 is the list), and its wide form, run modally
// under the caller's number. On OK the generic handler sets
// state.dialogs.listAccepted and leaves the list in state.dialogs.editedList.
// `addPrompt` and `renamePrompt` are what its Add and Rename buttons ask.
int showStringsListEditor(Host& host, PluginState& state, int dialogNumber, const std::string& title,
                          const std::vector<std::string>& list, bool wide, const std::string& addPrompt = "New item:",
                          const std::string& renamePrompt = "Rename item:");
// Edits the choices of a list item in the list editor (dialog 1223).
int editItemList(Host& host, PluginState& state, Handle dialog, int item);

// List operations on the strings list editor's list (item 2 of `dialog`).
// Each returns the index of the entry it worked on (for a move, where the
// entry now stands), or -1 when it did nothing.
int listAdd(Host& host, Handle dialog, const std::string& prompt, bool allowDuplicates);
int listMove(Host& host, Handle dialog, int code);  // 1 up, 2 down, 5 delete; -1 when refused
int listRename(Host& host, Handle dialog, const std::string& prompt, bool allowDuplicates);

// List operations on any list item of a dialog.
int listEditEntry(Host& host, Handle dialog, int item, int index, const std::string& text, bool replace,
                  bool warn);
int listRemoveEntry(Host& host, Handle dialog, int item, int index, const std::string& text);
// Returns the entry's index in the target list, or -1.
int listMoveBetween(Host& host, Handle dialog, int fromItem, int toItem, bool sort);

// Events of the generic dialogs (1223 to 1226, and the drop-down and list
// editor opened under a caller's number): OK and Cancel results, and the
// list editor's buttons. Returns false when the event is not theirs.
bool handleGenericDialogEvent(Host& host, PluginState& state, int dialogNumber, int item);

}  // namespace voka
