#include "plugin/DialogDispatch.h"

#include "editors/ActiveSchemeDialog.h"
#include "editors/AttributeLibraryEditor.h"
#include "filtering/FilterDialog.h"
#include "frame/Dialogs.h"
#include "settings/Preferences.h"
#include "settings/PreferencesDialog.h"

namespace voka {

namespace {

using DialogHandler = void (*)(Host&, PluginState&, int item, int modifiers);

void filterEvent(Host& host, PluginState& state, int item, int) { filterDialogEvent(host, state, item); }

struct DialogOwner {
    int dialogNumber;
    DialogHandler handler;
};

// The plug-in's own dialogs (preferences 4, filter, scheme editor, ...) are
// attached here as their subsystems land.
constexpr DialogOwner kOwners[] = {
    {kFilterDialogNumber, filterEvent},
    {kAttributeLibraryDialogNumber, attributeLibraryEvent},
    {kPreferencesDialogNumber, preferencesDialogEvent},
};

}  // namespace

void dispatchDialogEvent(Host& host, PluginState& state, int dialogNumber, int item, int modifiers) {
    if (dialogNumber == kTwoChoiceDialogNumber && item == kTwoChoiceCategoryItem) {
        // The two-choice dialog is the active scheme dialog: a new category
        // needs its scheme list.
        activeSchemeCategoryChanged(host, state);
        return;
    }
    if (handleGenericDialogEvent(host, state, dialogNumber, item)) return;
    for (const DialogOwner& owner : kOwners) {
        if (owner.dialogNumber == dialogNumber && owner.handler != nullptr) {
            owner.handler(host, state, item, modifiers);
            return;
        }
    }
}

}  // namespace voka
