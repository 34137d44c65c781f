// The Filter Document and Filter Book commands: they check what is to be
// filtered, let the user choose the category, the filter scheme, the filter
// type and its options (and for a duplicate book the destination folder) in
// the filter dialog, and start the run.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"

namespace voka {

// The items of the filter dialog (resources/dialogs/vkp_Dialog_Filter.xml).
enum FilterItem : int {
    kFileText = 3,
    kCategoryText = 5,
    kCategoryPopup = 6,
    kSchemeText = 8,
    kSchemePopup = 9,
    kFolderLabel = 10,
    kFolderNote = 11,
    kFolderText = 12,
    kBrowseButton = 13,
    kSourceRadio = 17,
    kDuplicateRadio = 18,
    kRemoveColoringBox = 19,
    kSaveFirstBox = 20,
    kWorldPeaceBox = 21,
    kOkButton = 22,
    kCancelButton = 23,
};

// Scope 3 filters the active document, 4 the active book. Returns the run's
// result: the filtered document or book, 0 when nothing was filtered, 106 or
// 107 as the run tells.
int FilterCommand(Host& host, PluginState& state, int scope);

// Events of the filter dialog (dialog number kFilterDialogNumber).
void filterDialogEvent(Host& host, PluginState& state, int item);

}  // namespace voka
