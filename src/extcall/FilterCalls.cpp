// FilterCheckElement, FilterFile and RestoreFile: the verdict on one element,
// a whole filter run on a document or book with the active filter scheme and
// the options SetParm left, and the restore of a source-filtered file.
#include "extcall/CallHandlers.h"
#include "extcall/FileArguments.h"
#include "extcall/MessageSplit.h"
#include "extcall/TextCommands.h"
#include "filtering/FilterRun.h"
#include "filtering/FilterVerdict.h"
#include "filtering/SourceFilter.h"
#include "frame/BookComponents.h"
#include "schemes/NameLists.h"

namespace voka {

namespace {

// A failed transport may leave the book half moved: the original is read
// again from its file.
void reopenBook(Host& host, Handle book, const std::string& path) {
    if (objectType(book) == kBookObject && isOpenBook(host, book)) host.close(book, kCloseModified);
    host.open(path, OpenParams{});
}

int runResult(const PluginState& state, int run) {
    if (run == kFilterRunCopyFailed) return kCallFilterCopyFailed;
    if (run == kFilterRunSameFolder) return kCallFilterSameFolder;
    if (state.cancel == 1) return kCallFilterCancelled;
    return run;
}

}  // namespace

int filterCheckElementCall(Host& host, PluginState& state, const CallItems& items) {
    if (isNoneName(state.active.filterScheme)) return kCallNoScheme;
    const Handle doc = findFileArgument(host, items[1], false);
    if (doc == kNoObject) return kCallFileNotFound;
    const Handle element = elementArgument(items[2]);
    if (element == kNoObject) return kCallNotAnElement;
    return FilterElementVerdict(host, state, doc, element);
}

int filterFileCall(Host& host, PluginState& state, const CallItems& items) {
    if (isNoneName(state.active.filterScheme)) return kCallNoScheme;
    const Handle target = findFileArgument(host, items[1], true);
    if (target == kNoObject) return kCallFileNotFound;
    state.filterRun.target = target;
    const bool book = objectType(target) != kDocumentObject;
    const bool duplicate = state.prefs.filterType == kFilterDuplicateFile;
    // Only a book needs its path again; a document's is never read.
    std::string bookPath = "yo";
    if (book) {
        state.filterRun.scope = kFilterScopeBook;
        bookPath = host.path(target);
        if (!allComponentsOpen(host, target)) return kCallBookNotAllOpen;
        if (duplicate && !host.isDirectory(state.filterRun.bookFolder)) return kCallNoFilterFolder;
    } else {
        state.filterRun.scope = kFilterScopeDocument;
    }
    const int result = runResult(state, FilterRun(host, state, 1, flagArgument(items[2]) ? 1 : 0));
    if (book && duplicate && result == kCallFilterCopyFailed) reopenBook(host, state.filterRun.target, bookPath);
    return result;
}

int restoreFileCall(Host& host, PluginState& state, const CallItems& items) {
    const Handle target = findFileArgument(host, items[1], true);
    if (target == kNoObject) return kCallFileNotFound;
    if (objectType(target) == kBookObject) RestoreBook(host, state, target, 0);
    else RestoreDocument(host, state, target, 0);
    return kCallDone;
}

}  // namespace voka
