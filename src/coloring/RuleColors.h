// The colours of the loaded scheme in one document, and the removal of all
// colouring from a document.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"

#include <string>

namespace voka {

// Fills every rule's colour id for `doc` (666 for "<refresh EDD>", 667 for
// "<skip>", 0 for a colour the document lacks). Returns 1 when none is
// missing, else 0 with the missing names in `missing`, each after a line break.
int ResolveRuleColors(Host& host, PluginState& state, Handle doc, std::string& missing);

// Removes every format override of the document, the colouring's and any
// the user made, by importing the document's own element definitions.
// Returns 1 when the host did it.
int RemoveColoring(Host& host, PluginState& state, Handle doc);

}  // namespace voka
