#include "frame/Selection.h"

namespace voka {

Handle selectedElement(Host& host, Handle doc) {
    if (doc == kNoObject) return kNoObject;
    const ElementRange selection = host.elementSelection(doc);
    // An insertion point just before a child names that child too: it is the
    // parent that holds the point.
    if (selection.begin.child == selection.end.child && selection.begin.parent == selection.end.parent) {
        return selection.begin.parent;
    }
    if (selection.begin.child != selection.end.child) return selection.begin.child;
    return kNoObject;
}

ElementRange wholeElement(Host& host, Handle doc, Handle element) {
    const Handle parent = host.parent(doc, element);
    return ElementRange{{parent, element, 0}, {parent, host.nextSibling(doc, element), 0}};
}

void showElement(Host& host, Handle doc, Handle element) {
    host.setElementSelection(doc, wholeElement(host, doc, element));
    host.scrollTo(doc, host.elementTextRange(doc, element));
}

}  // namespace voka
