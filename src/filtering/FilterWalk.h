// The walk that removes from a subtree every element the filter scheme
// rejects: in a source file by giving its content the condition "Hidden", in
// a duplicate by deleting it (tables by the rules of tables). The children of
// a removed element are never tested: they go with it.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"

namespace voka {

// Walks from `start` through its descendants and removes as state.prefs.filterType
// says (another type tests and changes nothing). Scope (3 document, 4 book)
// is the caller's. Sets state.cancel on Esc or on a deletion the host refuses.
void FilterSubtree(Host& host, PluginState& state, Handle doc, Handle start, int scope, int interactive);

// Deletes an element from a duplicate by its kind; true when the host
// reported no error. A table cell is left in place (settings error 221).
bool DeleteFromDuplicate(Host& host, PluginState& state, Handle doc, Handle element);

}  // namespace voka
