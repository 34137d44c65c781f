#include "filtering/FilterDialog.h"

#include "filtering/FilterRun.h"
#include "filtering/FilterScheme.h"
#include "filtering/SourceFilter.h"
#include "frame/Alerts.h"
#include "frame/BookComponents.h"
#include "frame/Dialogs.h"
#include "frame/Paths.h"
#include "frame/Strings.h"
#include "schemes/NameLists.h"
#include "schemes/SchemeSchema.h"
#include "settings/MainSettings.h"

#include <string>
#include <vector>

namespace voka {

namespace {

constexpr const char* kDialogName = "vkp_Dialog_Filter";


constexpr const char* kNoBook = "No active book. Cannot continue.";
constexpr const char* kChaptersNotOpen =
    "All files of the book must be open before filtering. Please open all chapter files and try again.";
constexpr const char* kDialogError = "Dialog box error.  Action will abort... please contact Brindel.";
constexpr const char* kSameFolderChosen =
    "You've chosen the same folder that the book currently resides in, which is not allowed. This would cause the "
    "filtered version to overwrite your original files. Please choose another folder.";
constexpr const char* kWorldPeace = "You never know.  It just might work.";
constexpr const char* kNoFolder =
    "You are attempting to perform a \"duplicate file\" book filter, but have not specified an output folder. A "
    "valid output folder is required.";
constexpr const char* kBadEntries =
    "Something went wrong trying to process your category and scheme entries from the dialog box. Make sure you "
    "didn't accidentally type something in manually that was invalid.\n\nIf this problem persists, please seek "
    "some technical support.";

Handle item(Host& host, PluginState& state, int number) { return host.dialogItem(state.filterRun.dialog, number); }

std::string textOf(Host& host, PluginState& state, int number) {
    return host.itemText(state.filterRun.dialog, item(host, state, number));
}

void setText(Host& host, PluginState& state, int number, const std::string& text) {
    host.setItemText(state.filterRun.dialog, item(host, state, number), text);
}

int stateOf(Host& host, PluginState& state, int number) {
    return host.itemState(state.filterRun.dialog, item(host, state, number));
}

void setState(Host& host, PluginState& state, int number, int value) {
    host.setItemState(state.filterRun.dialog, item(host, state, number), value);
}

std::string targetPath(Host& host, PluginState& state) { return host.path(state.filterRun.target); }

// The pop-up's chosen entry goes into its text box, which is what the plug-in reads.
void copyChoice(Host& host, PluginState& state, int popup, int text) {
    const Handle dialog = state.filterRun.dialog;
    const std::vector<std::string> labels = host.itemLabels(dialog, item(host, state, popup));
    const int chosen = stateOf(host, state, popup);
    if (chosen >= 0 && chosen < static_cast<int>(labels.size()))
        setText(host, state, text, labels[static_cast<std::size_t>(chosen)]);
}

void fillSchemes(Host& host, PluginState& state) {
    std::vector<std::string> schemes =
        schemeNames(host, state, state.mainSettingsDoc, textOf(host, state, kCategoryText), SchemeKind::Filter);
    host.setItemLabels(state.filterRun.dialog, item(host, state, kSchemePopup), schemes);
    const int current = findInList(schemes, textOf(host, state, kSchemeText), true);
    if (current < 0) setText(host, state, kSchemeText, schemes.empty() ? std::string(kNone) : schemes.front());
    setState(host, state, kSchemePopup, current < 0 ? 0 : current);
}

// The folder row matters only to a duplicate book filter.
void fillFolder(Host& host, PluginState& state) {
    setText(host, state, kFolderText, lastCharactersShown(state.filterRun.bookFolder, 30));
    const bool used = state.filterRun.scope == kFilterScopeBook && stateOf(host, state, kSourceRadio) == 0;
    for (int number : {kFolderLabel, kFolderNote, kFolderText, kBrowseButton})
        host.setItemSensitive(state.filterRun.dialog, item(host, state, number), used);
}

void fill(Host& host, PluginState& state) {
    const Handle dialog = state.filterRun.dialog;
    host.setDialogTitle(dialog, state.filterRun.scope == kFilterScopeBook ? "Filter Book" : "Filter Document");
    setText(host, state, kFileText, lastCharactersShown(targetPath(host, state), 33));
    setText(host, state, kSchemeText, state.active.filterScheme);
    std::vector<std::string> categories;
    categoryNames(host, state, state.mainSettingsDoc, categories);
    host.setItemLabels(dialog, item(host, state, kCategoryPopup), categories);
    int current = findInList(categories, state.active.category, true);
    if (current < 0 && !categories.empty()) {
        state.active.category = categories.front();
        current = 0;
    }
    setState(host, state, kCategoryPopup, current < 0 ? 0 : current);
    setText(host, state, kCategoryText, state.active.category);
    const bool source = state.prefs.filterType == kFilterSourceFile;
    setState(host, state, kSourceRadio, source ? 1 : 0);
    setState(host, state, kDuplicateRadio, source ? 0 : 1);
    setState(host, state, kRemoveColoringBox, state.filteringOptions[kFilterRemoveColoringOption]);
    setState(host, state, kSaveFirstBox, state.filteringOptions[kFilterSaveFirstOption]);
    setState(host, state, kWorldPeaceBox, state.filteringOptions[kFilterWorldPeaceOption]);
    fillSchemes(host, state);
    fillFolder(host, state);
}

void browse(Host& host, PluginState& state) {
    const std::string bookPath = targetPath(host, state);
    const std::string start = isNoneName(state.filterRun.bookFolder) ? bookPath : state.filterRun.bookFolder;
    std::string chosen;
    if (host.chooseFile("Select the folder for the filtered book", start, "", kChooseOpenDirectory, chosen) != 0 ||
        chosen.empty())
        return;
    if (chosen.back() != '\\') chosen += '\\';
    // Compared exactly here; the run itself refuses the same folder in any case.
    if (chosen == folderOf(bookPath)) {
        showMessage(host, kSameFolderChosen);
        return;
    }
    state.filterRun.bookFolder = chosen;
    fillFolder(host, state);
}

bool accept(Host& host, PluginState& state) {
    state.prefs.filterType = stateOf(host, state, kSourceRadio) == 1 ? kFilterSourceFile : kFilterDuplicateFile;
    if (isNoneName(state.filterRun.bookFolder) && state.filterRun.scope == kFilterScopeBook &&
        state.prefs.filterType == kFilterDuplicateFile) {
        showMessage(host, kNoFolder);
        return false;
    }
    const std::string category = textOf(host, state, kCategoryText);
    const std::string scheme = textOf(host, state, kSchemeText);
    if (LoadFilterScheme(host, state, category, scheme, 1) != kFilterLoaded) {
        showMessage(host, kBadEntries);
        return false;
    }
    state.active.filterScheme = scheme;
    state.active.category = category;
    state.filteringOptions[kFilterRemoveColoringOption] = stateOf(host, state, kRemoveColoringBox);
    state.filteringOptions[kFilterSaveFirstOption] = stateOf(host, state, kSaveFirstBox);
    state.filteringOptions[kFilterWorldPeaceOption] = stateOf(host, state, kWorldPeaceBox);
    closeHeldMainSettings(host, state);
    return true;
}

}  // namespace

void filterDialogEvent(Host& host, PluginState& state, int number) {
    if (state.filterRun.dialog == kNoObject) return;
    switch (number) {
        case kCategoryPopup:
            copyChoice(host, state, kCategoryPopup, kCategoryText);
            fillSchemes(host, state);
            fillFolder(host, state);
            break;
        case kSchemePopup:
            copyChoice(host, state, kSchemePopup, kSchemeText);
            break;
        case kSourceRadio:
        case kDuplicateRadio:
            // One of the two is on.
            setState(host, state, number == kSourceRadio ? kDuplicateRadio : kSourceRadio,
                     stateOf(host, state, number) == 1 ? 0 : 1);
            fillSchemes(host, state);
            fillFolder(host, state);
            break;
        case kBrowseButton:
            browse(host, state);
            break;
        case kWorldPeaceBox:
            if (state.filteringOptions[kFilterWorldPeaceOption] == 0) {
                state.filteringOptions[kFilterWorldPeaceOption] = 1;
                showMessage(host, kWorldPeace);
            }
            break;
        case kOkButton:
            state.filterRun.runRequested = true;
            if (accept(host, state)) return;
            break;
        case kCancelButton:
        case kDialogEventClose:
            state.filterRun.runRequested = false;
            closeHeldMainSettings(host, state);
            return;
        default:
            return;
    }
    host.returnValue(kReturnDialogStayUp);
}

int FilterCommand(Host& host, PluginState& state, int scope) {
    state.filterRun.scope = scope;
    state.filteringOptions[kFilterWorldPeaceOption] = 0;
    if (scope == kFilterScopeBook) {
        const Handle book = host.activeBook();
        if (book == kNoObject) {
            showMessage(host, kNoBook);
            return kFilterRunStopped;
        }
        if (!allComponentsOpen(host, book)) {
            showMessage(host, kChaptersNotOpen);
            return kFilterRunStopped;
        }
        state.filterRun.target = book;
    } else {
        const Handle doc = host.activeDocument();
        if (doc == kNoObject) {
            showMessage(host, kNoActiveDocumentToFilter);
            return kFilterRunStopped;
        }
        state.filterRun.target = doc;
    }
    if (openLocalCopy(host, state) == kNoObject) {
        showMainSettingsReadError(host, "filter scheme information");
        return kFilterRunStopped;
    }
    const Handle dialog = host.openDialogResource(kDialogName);
    if (dialog == kNoObject) {
        showMessage(host, kDialogError);
        closeHeldMainSettings(host, state);
        return kFilterRunStopped;
    }
    state.filterRun.dialog = dialog;
    state.filterRun.runRequested = false;
    fill(host, state);
    host.modalDialog(kFilterDialogNumber, dialog);
    state.filterRun.dialog = kNoObject;
    // The dialog may have been closed by the host without an event.
    if (state.mainSettingsDoc != kNoObject) closeHeldMainSettings(host, state);
    int result = kFilterRunStopped;
    if (state.filterRun.runRequested) result = FilterRun(host, state, 1, 1);
    closeStatus(host, state);
    return result;
}

}  // namespace voka
