// Writes a document in the host's full form (root `voka-document`), which
// keeps everything the model holds: definitions, catalogues, every flow
// with its element tree, text, format and condition runs, markers and
// cross-references.
#pragma once

#include "host/headless/Model.h"
#include "host/headless/persist/XmlOut.h"

namespace voka::headless {

void writeFullForm(XmlOut& out, const Document& doc);

}  // namespace voka::headless
