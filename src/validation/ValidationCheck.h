// Checking elements against the loaded validation scheme: every attribute of
// an element that the scheme lists goes through the rules switched on in the
// preferences, and each error is told at once (see ValidationErrors.h). With
// the strikethrough preference on, a failing element's text is struck
// through; a check that finds nothing takes strikethrough off again.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"
#include "validation/ValidationModes.h"

namespace voka {

// Checks one element. Returns the rule of the last error found, or -1 when
// there was none (or the element has no attributes, in which case its text
// is left as it is).
int CheckElement(Host& host, PluginState& state, Handle doc, Handle element, int mode);

// Checks the element and its descendants in pre-order, polling Esc every 102
// steps; a confirmed cancel sets state.cancel and stops. Returns the last
// result of CheckElement that was not -1, else -1.
int CheckSubtree(Host& host, PluginState& state, Handle doc, Handle element, int mode);

}  // namespace voka
