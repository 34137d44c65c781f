// Documents built through the model's own API for the persistence tests.
#pragma once

#include "host/headless/Model.h"

#include <memory>

namespace voka::test {

// An element to build: its text, then each child followed by its tail text.
struct ElementSpec {
    std::string tag;
    std::vector<std::pair<std::string, std::vector<std::string>>> attributes;
    std::string text;
    std::vector<ElementSpec> children;
    std::string tail;
};

// Appends the tree to the flow, defining tags and attributes as it goes;
// returns the root's index.
headless::Index buildTree(headless::Document& doc, std::uint16_t flow, const ElementSpec& spec,
                          headless::Index parent = headless::kNil);

// The element reached by following child positions from a flow's root.
headless::Index elementAt(const headless::Document& doc, std::uint16_t flow, std::vector<int> path);

// A document that uses every feature the model has: typed definitions with
// choices and defaults, multi-valued and empty attribute values, two flows,
// format and condition runs, row conditions, condition formats shown and
// hidden, show-all off, markers, cross-references, an added colour, table
// title position and begin-adjust, and text that needs escaping.
std::unique_ptr<headless::Document> richDocument();

}  // namespace voka::test
