#include "frame/BookComponents.h"

namespace voka {

OpenDocuments openDocumentsByPath(Host& host) {
    OpenDocuments open;
    for (Handle doc = host.firstOpenDocument(); doc != kNoObject; doc = host.nextOpenDocument(doc))
        open.emplace(host.path(doc), doc);
    return open;
}

Handle componentDocument(Host& host, const OpenDocuments& open, Handle book, Handle component) {
    auto found = open.find(host.componentPath(book, component));
    return found == open.end() ? kNoObject : found->second;
}

bool allComponentsOpen(Host& host, Handle book) {
    const OpenDocuments open = openDocumentsByPath(host);
    for (Handle component = host.firstComponent(book); component != kNoObject;
         component = host.nextComponent(book, component)) {
        if (componentDocument(host, open, book, component) == kNoObject) return false;
    }
    return true;
}

}  // namespace voka
