// Writes a document in the content form: the prolog it was read with, the
// main flow's element tree in its own vocabulary with the text between the
// tags, the comments and instructions where they stood, and after the root
// the `voka-` instructions for what plain XML cannot carry.
#pragma once

#include "host/headless/Model.h"
#include "host/headless/persist/XmlOut.h"

#include <string>

namespace voka::headless {

// False with a reason when the document has nothing a content file can hold.
bool writeContentForm(XmlOut& out, const Document& doc, std::string& problem);

}  // namespace voka::headless
