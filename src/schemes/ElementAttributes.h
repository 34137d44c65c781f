// An element's attribute values as a scheme sees them: the host's list,
// with the EDD's declared defaults standing in for values the element lacks
// (when the scheme asks for it), and with values split at blanks (when the
// scheme takes blank-separated words as separate values). Shared by the
// colouring, filter and validation schemes.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"

namespace voka {

// Gives each attribute without values the defaults of the definition at the
// same position. The two lists are paired by position, not by name.
void applyDefaultsByPosition(Attributes& attributes, const AttributeDefinitions& definitions);

// Replaces each attribute's values by the words of all its values, split at
// blanks; runs of blanks count as one, and a value of blanks alone gives none.
void splitValuesAtBlanks(Attributes& attributes);

Attributes GetElementAttributes(Host& host, PluginState& state, Handle doc, Handle element,
                                int includeEDDDefaults, int spaceDelimited);

}  // namespace voka
