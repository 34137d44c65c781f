#include "filtering/FilterRun.h"

#include "filtering/BookTransport.h"
#include "filtering/FilterVerdict.h"
#include "filtering/SourceFilter.h"
#include "frame/Alerts.h"
#include "frame/BookComponents.h"
#include "frame/Dialogs.h"
#include "frame/Paths.h"
#include "frame/Strings.h"

#include <string>

namespace voka {

namespace {

constexpr const char* kBookNotSaved =
    "A critical error occurred while saving the original book. This is likely due to a software bug. Please "
    "contact Brindel. The filter will abort";
constexpr const char* kChapterNotSaved =
    "A critical error occurred while saving a book chapter file. This may be due to a software bug. The filter "
    "will abort. Please contact Brindel.\n\nBy the way, if you pressed Esc while the files were saving, this may "
    "have caused the problem. The Esc button may cause errors while FrameMaker is saving files.";
constexpr const char* kSameFolder =
    "The path specified to receive the duplicated book is the same as the original book. The filter must abort, "
    "because the filter would otherwise overwrite your original files with the filtered files.";
constexpr const char* kTransportCancelledMessage =
    "You have chosen to cancel the book filter during the process of transporting the book to the filtered "
    "folder. You won't go to hell for it, but you should at least repent by closing all files that are currently "
    "open, WITHOUT saving any changes. The transport process may make changes to files that should not be saved, "
    "the state of which is currently unknown due to the cancellation.";
constexpr const char* kTransportFailed =
    "A critical, unknown error occurred while transporting the book to the filtered folder.  Perhaps the folder was "
    "not valid, or you are experiencing network problems. In any case, you should probably close all files WITHOUT "
    "SAVING CHANGES and contact Brindel. The problem is likely a software bug.";
constexpr const char* kRemovedFromBook =
    "NOTE:  Due to attributes at the highest-level  element(s), the following file(s) were removed from the new, "
    "filtered book:\n\n%s\n\n  If this seems incorrect, check your attribute settings on the HLE(s).";
constexpr const char* kHiddenInBook =
    "NOTE:  Due to attributes at the highest-level  element(s), the content from the following file(s) was "
    "completely hidden:\n\n%s\n\n  Because you performed a \"source file\" filter, the files were not removed "
    "from the book.  Therefore, you will have blank pages left over.\n\n  If this seems incorrect, check your "
    "attribute settings on the HLE(s).";
constexpr const char* kNewBookOpen =
    "Note that the book currently open is the new, filtered book. Your original,  unaltered book and its files "
    "have been closed. The new files have not been saved.";
constexpr const char* kBookFilterCancelled =
    "The book filter was cancelled or aborted for some reason. It is highly recommended that you close all files "
    "without saving changes and reopen them before proceeding, particularly if you were doing a \"duplicate "
    "file\" filter.";
constexpr const char* kWholeFlowGoes =
    "According to the attributes at the highest-level element of the main flow, the entire contents of the flow "
    "would be deleted or hidden. Do you want to continue the filter anyway?";
constexpr const char* kUnsavedChanges =
    "There are unsaved changes in the document to be filtered. A \"duplicate file\" filter creates the duplicate "
    "from the file on disk. Therefore, any unsaved changes will not be reflected in the filtered duplicate. Would "
    "you like to save the document first?";
constexpr const char* kDuplicateFailed =
    "Something went critically wrong while attempting to duplicate the document for filtering. If this problem "
    "persists, please contact technical support.\n\nNote that a file cannot be duplicated if it is not saved "
    "anywhere on disk. If you just tried to refilter a filtered duplicate, that may be the reason you have "
    "received this error.";

bool saveFirst(const PluginState& state) { return state.filteringOptions[kFilterSaveFirstOption] == 1; }

void tell(Host& host, int interactive, const std::string& text) {
    if (interactive) showMessage(host, text);
}

// The duplicate's window is moved off the original's, so both show.
void offsetWindow(Host& host, Handle from, Handle to) {
    host.setIntProperty(to, to, kPropScreenX, host.intProperty(from, from, kPropScreenX) + 5);
    host.setIntProperty(to, to, kPropScreenY, host.intProperty(from, from, kPropScreenY) + 5);
    host.setIntProperty(to, to, kPropScreenWidth, host.intProperty(from, from, kPropScreenWidth) + 5);
    host.setIntProperty(to, to, kPropScreenHeight, host.intProperty(from, from, kPropScreenHeight) - 5);
}

int filterDocument(Host& host, PluginState& state, int interactive) {
    Handle doc = state.filterRun.target;
    if (TopElementCheck(host, state, doc) == kFilterRemove && interactive && !askQuestion(host, kWholeFlowGoes)) {
        closeStatus(host, state);
        return kFilterRunStopped;
    }
    if (saveFirst(state)) host.simpleSave(doc, host.path(doc), false);
    const bool duplicate = state.prefs.filterType == kFilterDuplicateFile;
    if (duplicate) {
        if (host.isModified(doc) && interactive && askQuestion(host, kUnsavedChanges)) host.simpleSave(doc, host.path(doc), false);
        const std::string title = fileNameOf(host.path(doc)) + " (Filtered duplicate, UNSAVED)";
        const Handle copy = host.path(doc).empty() ? kNoObject : host.openAsNewDocument(host.path(doc));
        if (copy == kNoObject) {
            tell(host, interactive, kDuplicateFailed);
            state.cancel = 1;
            closeStatus(host, state);
            return kFilterRunCopyFailed;
        }
        host.setStringProperty(copy, copy, kPropLabel, title);
        offsetWindow(host, doc, copy);
        doc = copy;
    }
    state.filterRun.target = doc;
    int result = static_cast<int>(doc);
    FilterPass(host, state, doc, kFilterScopeDocument, 1);
    if (state.cancel == 1) {
        result = kFilterRunStopped;
        if (!duplicate) RestoreDocument(host, state, doc, state.restoreDocOption);
    }
    closeStatus(host, state);
    tell(host, interactive, kFilterComplete);
    return result;
}

int filterBook(Host& host, PluginState& state, int interactive) {
    Handle book = state.filterRun.target;
    const bool duplicate = state.prefs.filterType == kFilterDuplicateFile;
    std::string removed;
    const Handle saved = host.simpleSave(book, host.path(book), false);
    if (saved == kNoObject && interactive) {
        showMessage(host, kBookNotSaved);
        closeStatus(host, state);
        state.cancel = 1;
        return kFilterRunStopped;
    }
    if (saved != kNoObject) book = saved;
    setStatusLines(host, state, kKeep, saveFirst(state) ? "Saving and preprocessing files..." : "Preprocessing files...",
                   kKeep, kKeep);
    const OpenDocuments open = openDocumentsByPath(host);
    for (Handle component = host.firstComponent(book); component != kNoObject;
         component = host.nextComponent(book, component)) {
        if (pollCancel(host, state)) {
            tell(host, interactive, "Operation cancelled");
            closeStatus(host, state);
            return kFilterRunStopped;
        }
        Handle doc = componentDocument(host, open, book, component);
        if (doc != kNoObject) setStatusLines(host, state, kKeep, "  Processing:  " + fileNameOf(host.path(doc)), kKeep, kKeep);
        if (doc != kNoObject && saveFirst(state)) doc = host.simpleSave(doc, host.path(doc), false);
        if (doc == kNoObject) {
            tell(host, interactive, kChapterNotSaved);
            closeStatus(host, state);
            return kFilterRunStopped;
        }
        const bool goesWhole = TopElementCheck(host, state, doc) == kFilterRemove;
        if (goesWhole) removed += "  - " + fileNameOf(host.path(doc)) + "\n";
        host.setStringProperty(book, component, kPropUserString, goesWhole && duplicate ? kRemovedChapter : "");
    }

    int result = kFilterRunStopped;
    if (duplicate) {
        state.filterRun.originalBookPath = host.path(book);
        const std::string& folder = state.filterRun.bookFolder;
        setStatusLines(host, state, kKeep, "Transporting book to...", folder, kKeep);
        if (equalsIgnoreCase(folderOf(host.path(book)), folder)) {
            tell(host, interactive, kSameFolder);
            state.cancel = 1;
            result = kFilterRunSameFolder;
        } else {
            std::string failed;
            const Handle moved = TransportBook(host, state, book, folder, failed, 1);
            if (state.settingsError == kTransportCancelled) {
                tell(host, interactive, kTransportCancelledMessage);
                state.cancel = 1;
            } else if (moved != kNoObject) {
                result = static_cast<int>(moved);
                state.filterRun.target = moved;
                FilterNewBook(host, state, moved);
            } else {
                tell(host, interactive, kTransportFailed);
                state.cancel = 1;
                result = kFilterRunCopyFailed;
            }
        }
    } else {
        result = static_cast<int>(book);
        FilterNewBook(host, state, book);
    }

    if (state.cancel == 1) {
        tell(host, interactive, kBookFilterCancelled);
        closeStatus(host, state);
        return result;
    }
    if (!removed.empty()) tell(host, interactive, withTexts(duplicate ? kRemovedFromBook : kHiddenInBook, {removed}));
    if (duplicate) tell(host, interactive, kNewBookOpen);
    closeStatus(host, state);
    tell(host, interactive, kFilterComplete);
    return result;
}

}  // namespace

void FilterNewBook(Host& host, PluginState& state, Handle book) {
    state.cancel = 0;
    const OpenDocuments open = openDocumentsByPath(host);
    for (Handle component = host.firstComponent(book); component != kNoObject;
         component = host.nextComponent(book, component)) {
        // The pass goes as far as the first chapter that is not open, which it does not open.
        const Handle doc = componentDocument(host, open, book, component);
        if (doc == kNoObject) break;
        FilterPass(host, state, doc, kFilterScopeBook, 1);
        if (state.cancel == 1) return;
    }
    setStatusLines(host, state, "Updating the new book...", "Please wait...", kKeep, kKeep);
    host.updateBook(book);
}

int FilterRun(Host& host, PluginState& state, int showProgress, int interactive) {
    state.cancel = 0;
    const int scope = state.filterRun.scope;
    if (showProgress) {
        openStatus(host, state, scope == kFilterScopeBook ? "Filtering Book" : "Filtering Document");
        setStatusLines(host, state, "Please wait.", "", "", "Press Esc to cancel");
    }
    if (scope == kFilterScopeBook) return filterBook(host, state, interactive);
    if (scope == kFilterScopeDocument) return filterDocument(host, state, interactive);
    closeStatus(host, state);
    tell(host, interactive, kFilterComplete);
    return kFilterRunStopped;
}

}  // namespace voka
