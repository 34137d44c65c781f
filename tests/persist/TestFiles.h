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
    std::string listing() const;  // the files' names, sorted, one a line

private:
    std::string path_;
};

std::string readFile(const std::string& path);

// Saves the document to `name` in the folder and returns what was written.
std::string savedText(const ScratchFolder& folder, const Document& doc, const std::string& name = "saved.xml");

// An element to build: its text, then each child followed by its tail text.
struct ElementNode {
    std::string tag;
    std::vector<std::pair<std::string, std::vector<std::string>>> attributes;
    std::string text;
    std::vector<ElementNode> children;
    std::string tail;
};

// Appends the tree to the flow, defining tags and attributes as it goes.
Index buildTree(Document& doc, std::uint16_t flow, const ElementNode& node, Index parent = kNil);

// The element reached by following child positions from a flow's root.
Index elementAt(const Document& doc, std::uint16_t flow, std::vector<int> path);

// A document that uses every feature the model has: typed definitions with
// choices and defaults, multi-valued and empty attribute values, two flows,
// format and condition runs, row conditions, condition formats shown and
// hidden, show-all off, markers, cross-references, an added colour, table
// title position and begin-adjust, and text that needs escaping.
std::unique_ptr<Document> richDocument();

}  // namespace voka::test
