#include "filtering/BookTransport.h"

#include "frame/BookComponents.h"
#include "frame/Dialogs.h"
#include "frame/Paths.h"
#include "frame/Strings.h"

#include <vector>

namespace voka {

namespace {

bool cancelled(Host& host, PluginState& state) {
    if (!pollCancel(host, state)) return false;
    state.settingsError = kTransportCancelled;
    return true;
}

// Re-points the document's cross-references from the old names to the new
// ones; a reference into a chapter left out points into the folder, where
// no such file will be.
void repointCrossReferences(Host& host, Handle doc, const std::vector<std::string>& oldNames,
                            const std::vector<std::string>& newNames, const std::string& folder) {
    for (Handle xref = host.firstXRef(doc); xref != kNoObject; xref = host.nextXRef(doc, xref)) {
        const std::string source = host.xrefSourceFile(doc, xref);
        if (source.empty()) continue;
        for (std::size_t i = 0; i < oldNames.size(); ++i) {
            if (!equalsIgnoreCase(oldNames[i], source)) continue;
            host.setXRefSourceFile(doc, xref,
                                   newNames[i] == kRemovedChapter ? folder + fileNameOf(oldNames[i]) : newNames[i]);
            break;
        }
    }
}

}  // namespace

Handle TransportBook(Host& host, PluginState& state, Handle book, const std::string& folder, std::string& failed,
                     int removeMarked) {
    state.settingsError = 0;
    if (book == kNoObject) {
        state.settingsError = kTransportNoBook;
        return kNoObject;
    }
    if (!host.isDirectory(folder)) {
        state.settingsError = kTransportBadFolder;
        return kNoObject;
    }

    std::vector<std::string> oldNames, newNames;
    OpenDocuments open = openDocumentsByPath(host);
    for (Handle component = host.firstComponent(book); component != kNoObject;
         component = host.nextComponent(book, component)) {
        if (cancelled(host, state)) return kNoObject;
        const std::string path = host.componentPath(book, component);
        oldNames.push_back(path);
        if (host.stringProperty(book, component, kPropUserString) == kRemovedChapter) {
            newNames.push_back(kRemovedChapter);
            continue;
        }
        Handle doc = componentDocument(host, open, book, component);
        if (doc == kNoObject) doc = host.open(path, OpenParams{true, false});
        if (doc == kNoObject) {
            failed = path;
            state.settingsError = kTransportChapterUnopened;
            return kNoObject;
        }
        newNames.push_back(folder + fileNameOf(host.path(doc)));
    }

    const std::string oldBookPath = host.path(book);
    const std::string newBookPath = folder + fileNameOf(oldBookPath);
    const Handle newBook = host.simpleSave(book, newBookPath, false);
    if (newBook == kNoObject || !equalsIgnoreCase(host.path(newBook), newBookPath) ||
        equalsIgnoreCase(newBookPath, oldBookPath)) {
        failed = newBookPath;
        state.settingsError = kTransportBookNotSaved;
        return kNoObject;
    }
    const Handle original = host.open(oldBookPath, OpenParams{true, false});
    if (original == kNoObject) {
        failed = oldBookPath;
        state.settingsError = kTransportBookNotSaved;
        return kNoObject;
    }

    open = openDocumentsByPath(host);
    std::size_t i = 0;
    for (Handle component = host.firstComponent(original), moved = host.firstComponent(newBook);
         component != kNoObject && moved != kNoObject && i < newNames.size();
         component = host.nextComponent(original, component), moved = host.nextComponent(newBook, moved), ++i) {
        if (cancelled(host, state)) return kNoObject;
        const Handle doc = componentDocument(host, open, original, component);
        if (doc == kNoObject) {
            state.settingsError = kTransportChapterNotOpen;
            return kNoObject;
        }
        setStatusLines(host, state, kKeep, "  Processing...  " + fileNameOf(host.path(doc)), kKeep, kKeep);
        if (newNames[i] == kRemovedChapter) {
            host.setStringProperty(newBook, moved, kPropUserString, kRemovedChapter);
            host.close(doc, kCloseModified);
            continue;
        }
        repointCrossReferences(host, doc, oldNames, newNames, folder);
        if (host.simpleSave(doc, newNames[i], false) == kNoObject) {
            failed = newNames[i];
            state.settingsError = kTransportChapterNotSaved;
            return original;  // the original book, not the new one: callers rely on it
        }
        host.setComponentPath(newBook, moved, newNames[i]);
    }

    if (original != newBook) host.close(original, 0);
    if (!removeMarked) return newBook;
    for (Handle component = host.firstComponent(newBook); component != kNoObject;) {
        const Handle next = host.nextComponent(newBook, component);
        if (host.stringProperty(newBook, component, kPropUserString) == kRemovedChapter)
            host.deleteObject(newBook, component);
        component = next;
    }
    return newBook;
}

}  // namespace voka
