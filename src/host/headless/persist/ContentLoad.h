// Builds a document from a content-form file (any XML instance): element
// and attribute definitions from the DTD or from what the instance uses,
// element kinds from the tag table, the character data as the main flow's
// text, comments and instructions kept for the save, and the `voka-`
// instructions applied.
#pragma once

#include "host/headless/Model.h"
#include "host/headless/persist/Persist.h"
#include "host/headless/persist/XmlParse.h"

#include <memory>

namespace voka::headless {

std::unique_ptr<ParseHandler> makeContentLoader(Document& doc, const ElementKindTable& kinds);

}  // namespace voka::headless
