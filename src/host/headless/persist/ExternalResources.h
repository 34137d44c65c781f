// Where an XML file may read its DTD and external entities from: local
// regular files inside the document's own folder tree, or files an XML
// catalog names; never the network, devices, FIFOs or other special files.
//
// libxml2 speaks URIs; the loaders hand it file URIs with every byte outside
// the unreserved set escaped, so that folders with blanks, non-ASCII letters
// or `#` resolve relative references as the file system does.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace voka::headless {

// "file:///home/ann/my%20docs/a%23b.xml" for "/home/ann/my docs/a#b.xml".
std::string fileUri(std::string_view absolutePath);
// The scheme of an absolute URI ("http"); empty for a path, a relative reference or "C:".
std::string_view uriScheme(std::string_view uri);
// %XX escapes decoded; a '%' not followed by two hex digits stays as it is.
std::string percentDecoded(std::string_view text);
// The path a file URI (or a plain path) names; false for any other scheme.
bool pathOfUri(std::string_view uri, std::string& path);
// What people read: the path of a file URI, anything else as it is.
std::string displayLocation(std::string_view uriOrPath);
// A system identifier as a URI reference libxml2 can resolve: characters a
// URI may not hold (blanks, non-ASCII ...) escaped, the rest as written.
std::string escapedReference(std::string_view systemId);

struct ExternalFile {
    std::string bytes;    // the whole file, when it may be read
    std::string path;     // where it was read from
    std::string refusal;  // why it may not; empty when it may
    bool missing = false; // allowed, but there is no such file
};

// Reads the resource `uri` (public identifier `publicId`, either may be null)
// for a document whose folder, with links resolved, is `documentFolder`.
// An XML catalog is asked first; what it names may lie anywhere local.
// At most `maxBytes` are read; a larger file is refused.
ExternalFile readExternal(const std::string& documentFolder, const char* uri, const char* publicId,
                          std::size_t maxBytes);

}  // namespace voka::headless
