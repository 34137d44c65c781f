// Equality of headless-host documents and books as a user sees them:
// definitions, catalogues, each flow's text, element tree, attribute values,
// runs of formats and conditions, markers and cross-references, compared by
// name and structure rather than by the indexes the vectors happen to use.
// A canonical dump makes a failing comparison readable.
#pragma once

#include "host/headless/Model.h"

#include <string>

namespace voka::test {

// One line per fact, in a fixed order; equal documents give equal dumps.
std::string canonicalDump(const headless::Document& doc);
std::string canonicalDump(const headless::Book& book);

// Empty when equal, else the first line that differs, from both sides.
std::string firstDifference(const headless::Document& a, const headless::Document& b);
std::string firstDifference(const headless::Book& a, const headless::Book& b);

}  // namespace voka::test
