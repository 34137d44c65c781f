// The colouring engine: walks an element subtree, finds for each element the
// first rule of the active scheme that matches it, and writes that rule's
// colour and style onto the element's text. Parents are coloured before
// their children, so a child's own rule wins over its part of the parent's
// colour, unless the parent's rule is an override, which keeps the walk out
// of the parent's descendants.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"

namespace voka {

enum ColoringResult : int {
    kColoringNothingDone = 0,
    kColoringDone = 1,
    kColoringNoTarget = 102,
    kColoringNoElement = 103,
    kColoringNoScheme = 104,
    kColoringNoStructure = 105,
    kColoringCancelled = 108,
};

// Esc is polled once every this many elements.
inline constexpr int kElementsPerCancelPoll = 102;

// Colours `start` and, with walkOn 1, its descendants. Context code 10
// (selection) first checks the scheme's colours against the document and
// keeps the text selection. Returns 1, 104 (no active scheme) or 108 (the
// user declined missing colours or cancelled with Esc).
int ColorElementTree(Host& host, PluginState& state, Handle doc, Handle start, int contextCode, int walkOn,
                     int interactive);

}  // namespace voka
