// Scratch folders, file helpers and sample documents for the persistence tests.
#pragma once

#include "host/headless/Model.h"
#include "host/headless/persist/Persist.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace voka::test {

using namespace voka::headless;
using testing::HasSubstr;
using testing::Not;

// A fresh folder under the system's temporary directory, removed with
// everything in it when the object goes.
class ScratchFolder {
public:
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    const std::string& path() const { return path_; }
    std::string file(const std::string& name) const { return path_ + "/" + name; }
    std::string write(const std::string& name, const std::string& content) const;  // returns the path

private:
    std::string path_;
};

std::string readFile(const std::string& path);

// Saves the document to `name` in the folder and returns what was written.
std::string savedText(const ScratchFolder& folder, const Document& doc, const std::string& name = "saved.xml");

// The element reached by following child positions from a flow's root.
Index elementAt(const Document& doc, std::uint16_t flow, std::vector<int> path);

// A document that uses every feature the model has: typed definitions with
// choices and defaults, multi-valued and empty attribute values, two flows,
// format and condition runs, row conditions, condition formats shown and
// hidden, show-all off, markers, cross-references, an added colour, table
// title position and begin-adjust, and text that needs escaping.
std::unique_ptr<Document> richDocument();

// Adds a colour, condition formats, show-all off, a marker type, and format,
// condition, marker and cross-reference runs to the first flow's first 20 characters.
void addFormatting(Document& doc);

// A content-form chapter with a DTD, comments and processing instructions.
inline constexpr const char* kChapter =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!-- chapter one -->\n"
    "<!DOCTYPE chapter [\n"
    "  <!ELEMENT chapter ANY>\n"
    "  <!ATTLIST chapter audience CDATA #IMPLIED product CDATA 'home' id ID #IMPLIED kind (a|b) 'a'\n"
    "                    xmlns:ditaarch CDATA #FIXED 'urn:arch'>\n"
    "]>\n"
    "<chapter id=\"c1\" audience=\"novice\">\n"
    "  <title>Pairing <ph product=\"pro fleet\">sensors</ph></title><!-- keep me -->\n"
    "  <p audience=\"\">Hold the button.<?editor mark?></p>\n"
    "  <table><caption>Sizes</caption><tr><td>small</td></tr><tr><td>large</td></tr></table>\n"
    "</chapter>\n"
    "<!-- the end -->\n";

}  // namespace voka::test
