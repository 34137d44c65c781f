// The documents, books and elements a message names. A client names a
// document or book by its id as a decimal number or by its path or file
// name; an element only by its id. The id's top 8 bits carry the host's
// object type code, which is all that is checked of an element id.
#pragma once

#include "host/Host.h"

#include <string>

namespace voka {

// The document (or, when books are allowed, the book) the text names, or 0.
// A document id is taken as it stands, open or not; a book id only when that
// book is open. Otherwise the first open document, then book, whose full path
// or file name equals the text (any '/' read as '\'), ignoring case.
Handle findFileArgument(Host& host, const std::string& text, bool booksAllowed);

// True when the book is among the open books.
bool isOpenBook(Host& host, Handle book);

// The element id the text holds, or 0 when it is not an element's.
Handle elementArgument(const std::string& text);

}  // namespace voka
