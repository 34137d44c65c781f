// The element a command or a notification works on when the user has
// selected something in a document: one routine, so that the test command,
// automatic validation and Color Selection agree on what is selected.
#pragma once

#include "host/Host.h"

namespace voka {

// The element holding an insertion point or a selection inside one element,
// else the first selected element; 0 when there is none.
Handle selectedElement(Host& host, Handle doc);

// The element range that selects `element` whole: from just before it to
// just before its next sibling, among its parent's children.
ElementRange wholeElement(Host& host, Handle doc, Handle element);

// Selects the element whole and brings its text into view.
void showElement(Host& host, Handle doc, Handle element);

}  // namespace voka
