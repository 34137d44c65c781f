// The pre-order walk over an element tree that colouring, filtering and
// validation share: down to the first child, else across to the next
// sibling, else up to the parent. The direction of the last step lives in
// state.walk; "up" also asks the walker not to descend into the element.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"
#include "schemes/RuleMatching.h"

namespace voka {

// The next element of the walk whose definition has a tag, or 0; the element
// itself while state.walk.enabled is 0. Passing the
// walk's MatchContext lets definitions be looked at once per walk and keeps
// its path of values in step with the walk.
Handle nextTaggedElement(Host& host, PluginState& state, Handle doc, Handle element,
                         MatchContext* context = nullptr);

}  // namespace voka
