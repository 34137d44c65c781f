// Builds a document from the host's full form (root `voka-document`).
#pragma once

#include "host/headless/Model.h"
#include "host/headless/persist/XmlParse.h"

#include <memory>

namespace voka::headless {

std::unique_ptr<ParseHandler> makeFullLoader(Document& doc);

}  // namespace voka::headless
