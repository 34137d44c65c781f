// Books (root `voka-book`): the list of component files, each path relative
// to the book's folder or absolute.
#pragma once

#include "host/headless/Model.h"
#include "host/headless/persist/XmlOut.h"
#include "host/headless/persist/XmlParse.h"

#include <memory>
#include <string>

namespace voka::headless {

// Component paths come out joined to the folder of `bookPath`.
std::unique_ptr<ParseHandler> makeBookLoader(Book& book, const std::string& bookPath);
// Components inside the folder of `bookPath` are written relative to it.
void writeBook(XmlOut& out, const Book& book, const std::string& bookPath);

}  // namespace voka::headless
