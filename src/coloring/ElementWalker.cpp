#include "coloring/ElementWalker.h"

namespace voka {

namespace {

bool isTagged(Host& host, Handle doc, Handle element, MatchContext* context) {
    Handle definition = host.elementDefinition(doc, element);
    if (definition == kNoObject) return false;
    if (context != nullptr) return definitionInfo(host, *context, definition).tagged == 1;
    return !host.definitionTag(doc, definition).empty();
}

Handle step(Host& host, WalkState& walk, Handle doc, Handle element) {
    if (walk.direction != WalkDirection::Up) {
        Handle child = host.firstChild(doc, element);
        if (child != kNoObject) {
            walk.direction = WalkDirection::Down;
            return child;
        }
    }
    Handle next = host.nextSibling(doc, element);
    if (next == kNoObject) {
        walk.direction = WalkDirection::Up;
        return host.parent(doc, element);
    }
    walk.direction = WalkDirection::Across;
    return next;
}

}  // namespace

Handle nextTaggedElement(Host& host, PluginState& state, Handle doc, Handle element, MatchContext* context) {
    Handle at = element;
    do {
        at = step(host, state.walk, doc, at);
    } while (at != kNoObject && !isTagged(host, doc, at, context));
    return at;
}

}  // namespace voka
