#include "schemes/ElementWalker.h"

namespace voka {

namespace {

bool isTagged(Host& host, Handle doc, Handle element, MatchContext* context) {
    // The path has just read the element it follows the walk to.
    const bool onPath = context != nullptr && context->path.last() == element;
    const Handle definition = onPath ? context->path.lastDefinition() : host.elementDefinition(doc, element);
    if (definition == kNoObject) return false;
    if (context != nullptr) return context->path.tagged(host, definition);
    return !host.definitionTag(doc, definition).empty();
}

// One step, with the context's path following it while it ends at `element`
// (else the next match finds its way from the root).
Handle step(Host& host, WalkState& walk, Handle doc, Handle element, ValuePath* path) {
    if (path != nullptr && path->last() != element) path = nullptr;
    if (walk.direction != WalkDirection::Up) {
        Handle child = host.firstChild(doc, element);
        if (child != kNoObject) {
            walk.direction = WalkDirection::Down;
            if (path != nullptr) path->enter(host, child);
            return child;
        }
    }
    Handle next = host.nextSibling(doc, element);
    if (next == kNoObject) {
        walk.direction = WalkDirection::Up;
        if (path != nullptr) path->leave();
        return host.parent(doc, element);
    }
    walk.direction = WalkDirection::Across;
    if (path != nullptr) path->moveAcross(host, next);
    return next;
}

}  // namespace

Handle nextTaggedElement(Host& host, PluginState& state, Handle doc, Handle element, MatchContext* context) {
    if (state.walk.enabled == 0) return element;
    Handle at = element;
    do {
        at = step(host, state.walk, doc, at, context != nullptr ? &context->path : nullptr);
    } while (at != kNoObject && !isTagged(host, doc, at, context));
    return at;
}

}  // namespace voka
