// The open documents of a book's components, found by path: a book run looks
// each component up once instead of walking the open documents each time.
#pragma once

#include "host/Host.h"

#include <string>
#include <unordered_map>

namespace voka {

using OpenDocuments = std::unordered_map<std::string, Handle>;  // full path -> document

OpenDocuments openDocumentsByPath(Host& host);

// The open document of the component, or 0 when it is not open.
Handle componentDocument(Host& host, const OpenDocuments& open, Handle book, Handle component);

bool allComponentsOpen(Host& host, Handle book);

}  // namespace voka
