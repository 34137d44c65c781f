// Writing one rule's colour and text style onto an element's text as
// character format overrides, which is all a colouring leaves behind.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"

namespace voka {

// Range modes: rangeMode 1 with objectText 0 covers the element's content,
// rangeMode 1 with objectText 1 the paragraphs of its formatting object (a
// footnote's own text), anything else the element's text range as the host
// reports it. A "<refresh EDD>" rule reformats the element from its
// definition instead of setting a colour; the style is applied in every case.
void ApplyRuleToElement(Host& host, PluginState& state, Handle doc, Handle element, int ruleIndex, int rangeMode,
                        int objectText);

}  // namespace voka
