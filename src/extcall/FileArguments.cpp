#include "extcall/FileArguments.h"

#include "frame/Paths.h"
#include "frame/Strings.h"

#include <algorithm>

namespace voka {

namespace {

Handle idArgument(const std::string& text) { return static_cast<Handle>(leadingInteger(text)); }

bool namesFile(Host& host, Handle docOrBook, const std::string& name) {
    const std::string path = host.path(docOrBook);
    return equalsIgnoreCase(path, name) || equalsIgnoreCase(fileNameOf(path), name);
}

Handle findByName(Host& host, const std::string& text, bool booksAllowed) {
    std::string name = text;
    std::ranges::replace(name, '/', '\\');
    for (Handle doc = host.firstOpenDocument(); doc != kNoObject; doc = host.nextOpenDocument(doc)) {
        if (namesFile(host, doc, name)) return doc;
    }
    if (!booksAllowed) return kNoObject;
    for (Handle book = host.firstOpenBook(); book != kNoObject; book = host.nextOpenBook(book)) {
        if (namesFile(host, book, name)) return book;
    }
    return kNoObject;
}

}  // namespace

bool isOpenBook(Host& host, Handle book) {
    for (Handle open = host.firstOpenBook(); open != kNoObject; open = host.nextOpenBook(open)) {
        if (open == book) return true;
    }
    return false;
}

Handle findFileArgument(Host& host, const std::string& text, bool booksAllowed) {
    const Handle id = idArgument(text);
    if (id != kNoObject) {
        // A document id is trusted as given; the command's own host calls fail on a closed one.
        if (objectType(id) == kDocumentObject) return id;
        if (objectType(id) == kBookObject && booksAllowed && isOpenBook(host, id)) return id;
    }
    return findByName(host, text, booksAllowed);
}

Handle elementArgument(const std::string& text) {
    const Handle id = idArgument(text);
    return objectType(id) == kElementObject ? id : kNoObject;
}

}  // namespace voka
