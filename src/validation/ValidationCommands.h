// The validation commands: Validate Selection, Document and Book from the
// menus (codes 21, 22, 23, written into the plugin report) and the check of
// one element while authoring (code 20, told in alerts). They take the active
// document or book, may show the active scheme dialog first, and leave the
// errors written to the report in state.validationFindings.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"
#include "validation/ValidationModes.h"

namespace voka {

// Validates by `code` with or without the progress dialog. `element` is the
// element for codes 20 and 21 (none: the selected one); `doc` its document
// (none: the active one). Codes 21 to 23 start state.validationFindings
// afresh; code 20 leaves it alone. Returns 1 when the validation ran to its
// end, whatever it found, and 0 when it stopped early: nothing to validate,
// the dialog cancelled, no active scheme, or Esc.
int Validate(Host& host, PluginState& state, int code, int progress, Handle element, Handle doc = kNoObject);

// Writes the document's header into the report and checks every flow the
// scheme asks for (code 22 on its own, 23 within a book). Returns the last
// rule found, or -1.
int ValidateDocument(Host& host, PluginState& state, Handle doc, int code);

// Validates every open document of the book in book order; closed ones are
// named in the report and never opened. Returns the last rule found, or -1.
int ValidateBook(Host& host, PluginState& state, Handle book);

}  // namespace voka
