// Reading and writing the headless host's documents and books as XML files.
//
// A file is told apart by its root element: `voka-document` is the host's
// full form, `voka-book` a book, a DITA map a book of the topics it refers
// to, anything else a content-form instance (any XML vocabulary, with or
// without a DTD), unless its root's children include XInclude elements: then
// it is a book of the files they include. A document is saved back in the
// form it was read in; a book only as a voka book. docs/file-formats.md
// describes the forms.
//
// Input is untrusted: nothing is fetched over the network, external entities
// load only through XML catalogs, libxml2's entity limits stay on, and
// malformed input yields an error naming the file, line and column, never a
// partial document. Saves are atomic: a failed save leaves the old file as
// it was.
#pragma once

#include "host/headless/Model.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace voka::headless {

struct LoadResult {
    std::unique_ptr<Document> document;  // set for a document
    std::unique_ptr<Book> book;          // set for a book; for an XInclude book, beside the document it is read from
    std::string error;                   // set when neither is
    std::vector<std::string> warnings;
};

// Element kinds of content-form tags (kElementTable, kElementTableCell ...);
// a tag not listed is a container.
using ElementKindTable = std::map<std::string, int, std::less<>>;
const ElementKindTable& defaultElementKinds();

struct LoadOptions {
    const ElementKindTable* elementKinds = nullptr;  // null: defaultElementKinds()
    const ValueSeparators* valueSeparators = nullptr;  // over what each vocabulary says
};

// Content form, full form or a book, as the root element tells (and, for an
// XInclude book, the root's children).
LoadResult loadFile(const std::string& systemPath);
LoadResult loadFile(const std::string& systemPath, const LoadOptions& options);

struct SaveResult {
    bool ok = false;
    std::string error;
};

enum class SaveForm { AsRead, Full };

// Writes the document in the form it was read in (Document::contentForm), or
// in the full form whatever it was read in.
SaveResult saveDocument(const Document& doc, const std::string& systemPath, SaveForm form = SaveForm::AsRead);
SaveResult saveBook(const Book& book, const std::string& systemPath);

}  // namespace voka::headless
