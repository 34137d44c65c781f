// Element and text selections, the host's Clear, and the clipboard.
//
// An element range (parent, child, offset) selects whole elements when its
// begin and end share a parent and name different children: the children
// from the begin's up to (not including) the end's, or to the last child when
// the end names none. Any other range is an insertion point or text.
#include "host/headless/Editing.h"
#include "host/headless/Handles.h"
#include "host/headless/HeadlessHost.h"

namespace voka::headless {

namespace {

bool elementRangeValid(const Document& doc, const ElementRange& range) {
    for (Handle h : {range.begin.parent, range.begin.child, range.end.parent, range.end.child}) {
        if (h == kNoObject) continue;
        const Index i = handleIndex(h, kElementObject);
        if (i == kNil || i >= doc.elements.size() || !doc.elements[i].alive) return false;
    }
    return true;
}

Handle handleOrNone(Index index) { return index == kNil ? kNoObject : elementHandle(index); }

// The location in `holder` just before its first child that starts at or
// after `offset`, counted from that child's segment start.
ElementLocation pointIn(const Document& doc, Index holder, std::uint32_t offset) {
    const Element& h = doc.elements[holder];
    std::uint32_t segment = h.begin;
    for (Index c = h.firstChild; c != kNil; c = doc.elements[c].nextSibling) {
        const Element& child = doc.elements[c];
        if (child.begin >= offset) return ElementLocation{elementHandle(holder), elementHandle(c), static_cast<int>(offset - segment)};
        segment = child.end;
    }
    const int rest = h.firstChild == kNil ? static_cast<int>(offset - h.begin) : 0;
    return ElementLocation{elementHandle(holder), kNoObject, rest};
}

}  // namespace

bool HeadlessHost::selectedElements(const Document& doc, const ElementRange& range, Index& first, Index& last) {
    if (range.begin.child == kNoObject || range.begin.child == range.end.child) return false;
    if (range.begin.parent != range.end.parent && range.end.parent != kNoObject) return false;
    if (!elementRangeValid(doc, range)) return false;
    first = handleId(range.begin.child) - 1;
    const Index parentIndex = range.begin.parent == kNoObject ? kNil : handleId(range.begin.parent) - 1;
    if (doc.elements[first].parent != parentIndex) return false;
    const Index stop = range.end.child == kNoObject ? kNil : handleId(range.end.child) - 1;
    if (stop != kNil && doc.elements[stop].parent != parentIndex) return false;
    // The end must follow the begin among the siblings.
    last = first;
    for (Index s = doc.elements[first].nextSibling; s != stop; s = doc.elements[s].nextSibling) {
        if (s == kNil) return false;
        last = s;
    }
    return true;
}

ElementRange HeadlessHost::deriveElementRange(const Document& doc, const TextRange& text) {
    Position b, e;
    if (!resolveRange(doc, text, b, e)) return {};
    Index holder = kNil;
    for (Index root = doc.flows[b.flow].root; root != kNil; root = doc.elements[root].nextSibling) {
        const Element& r = doc.elements[root];
        if (r.begin <= b.offset && e.offset <= r.end) holder = root;
    }
    if (holder == kNil) return {};
    for (bool deeper = true; deeper;) {
        deeper = false;
        for (Index c = doc.elements[holder].firstChild; c != kNil; c = doc.elements[c].nextSibling) {
            const Element& child = doc.elements[c];
            const bool holds = b.offset == e.offset ? child.begin < b.offset && b.offset < child.end
                                                    : child.begin <= b.offset && e.offset <= child.end &&
                                                          !(child.begin == b.offset && child.end == e.offset);
            if (holds) {
                holder = c;
                deeper = true;
                break;
            }
        }
    }
    if (b.offset == e.offset) {
        const ElementLocation point = pointIn(doc, holder, b.offset);
        return ElementRange{point, point};
    }
    Index firstSelected = kNil, lastSelected = kNil;
    for (Index c = doc.elements[holder].firstChild; c != kNil; c = doc.elements[c].nextSibling) {
        const Element& child = doc.elements[c];
        const bool overlaps = child.begin < e.offset && child.end > b.offset;
        const bool whole = child.begin == child.end && b.offset <= child.begin && child.end <= e.offset;
        if (!overlaps && !whole) continue;
        if (firstSelected == kNil) firstSelected = c;
        lastSelected = c;
    }
    if (firstSelected == kNil) return ElementRange{pointIn(doc, holder, b.offset), pointIn(doc, holder, e.offset)};
    const Handle holderHandle = elementHandle(holder);
    return ElementRange{{holderHandle, elementHandle(firstSelected), 0},
                        {holderHandle, handleOrNone(doc.elements[lastSelected].nextSibling), 0}};
}

ElementRange HeadlessHost::elementSelection(Handle doc) {
    // A book window here shows its components, not an element structure, so
    // nothing in it is selected: an empty range, as any window with no
    // selection reports, and no failure.
    if (objectType(doc) == kBookObject && openBookSlot(doc)) return {};
    OpenDocument* slot = openDocumentSlot(doc);
    Document* d = settledDocument(doc);
    if (!slot || !d) return {};
    Selection& selection = slot->selection;
    if (selection.hasElementRange) {
        if (elementRangeValid(*d, selection.elements)) return selection.elements;
        selection.hasElementRange = false;
    }
    if (selection.text.begin.object == kNoObject) return {};
    const int saved = error_;
    const ElementRange derived = deriveElementRange(*d, selection.text);
    error_ = saved;  // a selection whose text went away is no selection, not a failure
    return derived;
}

bool HeadlessHost::setElementSelection(Handle doc, const ElementRange& range) {
    OpenDocument* slot = openDocumentSlot(doc);
    Document* d = settledDocument(doc);
    if (!slot || !d) return false;
    if (range == ElementRange{}) {
        slot->selection = Selection{};
        return true;
    }
    TextRange text;
    Index first, last;
    if (selectedElements(*d, range, first, last)) {
        const Index holder = d->elements[first].parent;
        const std::uint32_t b = d->elements[first].begin, e = d->elements[last].end;
        if (holder == kNil) {
            const Handle flow = indexHandle(kFlowObject, d->elements[first].flow);
            text = TextRange{{flow, static_cast<int>(b)}, {flow, static_cast<int>(e)}};
        } else {
            text = TextRange{relativeTo(*d, holder, b), relativeTo(*d, holder, e)};
        }
    } else {
        Position b, e;
        if (!locate(*d, range.begin, b) || !locate(*d, range.end, e)) return false;
        if (b.flow != e.flow || b.offset > e.offset || b.anchor == kNil || e.anchor == kNil) return fail(false);
        text = TextRange{relativeTo(*d, b.anchor, b.offset), relativeTo(*d, e.anchor, e.offset)};
    }
    slot->selection = Selection{true, range, text};
    return true;
}

TextRange HeadlessHost::textSelection(Handle doc) {
    OpenDocument* slot = openDocumentSlot(doc);
    Document* d = settledDocument(doc);
    if (!slot || !d) return {};
    Selection& selection = slot->selection;
    if (selection.text.begin.object == kNoObject) return {};
    Position b, e;
    const int saved = error_;
    if (!resolveRange(*d, selection.text, b, e)) {
        error_ = saved;
        selection = Selection{};
        return {};
    }
    return selection.text;
}

bool HeadlessHost::setTextSelection(Handle doc, const TextRange& range) {
    OpenDocument* slot = openDocumentSlot(doc);
    Document* d = settledDocument(doc);
    if (!slot || !d) return false;
    if (range == TextRange{}) {
        slot->selection = Selection{};
        return true;
    }
    Position b, e;
    if (!resolveRange(*d, range, b, e)) return false;
    slot->selection = Selection{false, {}, range};
    return true;
}

bool HeadlessHost::clearSelection(Handle doc) {
    OpenDocument* slot = openDocumentSlot(doc);
    Document* d = settledDocument(doc);
    if (!slot || !d) return false;
    const ElementRange range = elementSelection(doc);
    Index first, last;
    if (selectedElements(*d, range, first, last)) {
        std::vector<Index> selected;
        for (Index e = first;; e = d->elements[e].nextSibling) {
            selected.push_back(e);
            if (e == last) break;
        }
        for (Index e : selected) {
            const Index def = d->elements[e].definition;
            const int type = def < d->definitions.size() ? d->definitions[def].type : kElementUnspecified;
            if (type == kElementTableCell || type == kElementTableBody) return fail(false);
        }
        if (!mutationAllowed()) return false;
        for (Index e : selected) cutElement(*d, e);
    } else {
        Position b, e;
        if (slot->selection.text.begin.object == kNoObject || !resolveRange(*d, slot->selection.text, b, e))
            return fail(false);
        if (!mutationAllowed()) return false;
        cutText(*d, b.flow, b.offset, e.offset);
    }
    slot->selection = Selection{};
    touch(*d);
    return true;
}

bool HeadlessHost::copySelection(Handle doc) {
    Document* d = settledDocument(doc);
    if (!d) return false;
    Index first, last;
    if (!selectedElements(*d, elementSelection(doc), first, last)) return fail(false);
    auto clip = std::make_unique<Document>();
    Flow flow;
    flow.name = "Clipboard";
    flow.main = true;
    clip->flows.push_back(std::move(flow));
    const Index holder = clip->appendElement(clip->definitionFor("#clipboard"), kNil, 0);
    copyElements(*d, first, last, *clip, holder, kNil, 0);
    clipboard_ = std::move(clip);
    return true;
}

bool HeadlessHost::paste(Handle doc) {
    OpenDocument* slot = openDocumentSlot(doc);
    Document* d = settledDocument(doc);
    if (!slot || !d) return false;
    if (!clipboard_ || clipboard_->flows.empty() || clipboard_->flows[0].root == kNil) return fail(false);
    const Element& holder = clipboard_->elements[clipboard_->flows[0].root];
    if (holder.firstChild == kNil) return fail(false);

    const ElementRange range = elementSelection(doc);
    Index first, last, parentIndex, before;
    std::uint32_t offset;
    if (selectedElements(*d, range, first, last)) {
        // The pasted elements take the place of the selected ones.
        parentIndex = d->elements[first].parent;
        if (parentIndex == kNil) return fail(false);
        if (!mutationAllowed()) return false;
        before = d->elements[last].nextSibling;
        offset = d->elements[first].begin;
        std::vector<Index> selected;
        for (Index e = first;; e = d->elements[e].nextSibling) {
            selected.push_back(e);
            if (e == last) break;
        }
        for (Index e : selected) cutElement(*d, e);
        d->applyCuts();
    } else {
        if (range.begin.parent == kNoObject) return fail(false);
        Position position;
        if (!locate(*d, range.begin, position) || position.anchor == kNil) return false;
        if (!mutationAllowed()) return false;
        parentIndex = position.anchor;
        before = range.begin.child == kNoObject ? kNil : handleId(range.begin.child) - 1;
        offset = position.offset;
    }
    copyElements(*clipboard_, holder.firstChild, holder.lastChild, *d, parentIndex, before, offset);
    slot->selection = Selection{};
    touch(*d);
    return true;
}

}  // namespace voka::headless
