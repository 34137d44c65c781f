// Documents assembled by XInclude opened as books: when the root element's
// children include XInclude elements, the components are the files they
// include, in document order. docs/file-formats.md ("Books from XInclude")
// says what counts.
#pragma once

#include "host/headless/Model.h"

#include <string>
#include <vector>

namespace voka::headless {

// True when `doc`, just read in content form from `path`, is such a book;
// `book` then holds the included files. Looks only at the root's children,
// and at nothing when no element is named `include`.
bool gatherXIncludeBook(const Document& doc, const std::string& path, Book& book, std::vector<std::string>& warnings);

}  // namespace voka::headless
