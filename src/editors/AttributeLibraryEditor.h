// The attribute library editor: the modal dialog that maintains the
// attribute names and their valid values in the main settings' `AttributeList`,
// editing the open main settings directly and saving only on Save.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"

namespace voka {

inline constexpr int kAttributeLibraryDialogNumber = 1228;

// Items of "vkp_Dialog_AttributeList".
inline constexpr int kLibAttributes = 2, kLibAttributeAdd = 3, kLibAttributeEdit = 4, kLibAttributeDelete = 5,
                     kLibAttributeUp = 6, kLibAttributeDown = 7;
inline constexpr int kLibValues = 9, kLibValueAdd = 10, kLibValueEdit = 11, kLibValueDelete = 12, kLibValueUp = 13,
                     kLibValueDown = 14;
inline constexpr int kLibSave = 15, kLibCancel = 16;

// The Attribute Library... command. 1 when the library was saved, 0 otherwise.
int OpenAttributeLibrary(Host& host, PluginState& state);

// Events of the dialog (its number is kAttributeLibraryDialogNumber).
void attributeLibraryEvent(Host& host, PluginState& state, int item, int modifiers);

}  // namespace voka
