#include "host/headless/Editing.h"

#include <algorithm>
#include <unordered_map>

namespace voka::headless {

namespace {

void shiftSubtree(Document& doc, Index top, std::uint32_t delta) {
    // Iterative pre-order walk bounded by the subtree.
    Index e = top;
    while (e != kNil) {
        Element& el = doc.elements[e];
        el.begin += delta;
        el.end += delta;
        if (el.firstChild != kNil) {
            e = el.firstChild;
            continue;
        }
        while (e != top && doc.elements[e].nextSibling == kNil) e = doc.elements[e].parent;
        if (e == top) break;
        e = doc.elements[e].nextSibling;
    }
}

void markSubtreeDead(Document& doc, Index top) {
    Index e = top;
    while (e != kNil) {
        Element& el = doc.elements[e];
        el.alive = 0;
        doc.rowConditions.erase(e);
        if (el.firstChild != kNil) {
            e = el.firstChild;
            continue;
        }
        while (e != top && doc.elements[e].nextSibling == kNil) e = doc.elements[e].parent;
        if (e == top) break;
        e = doc.elements[e].nextSibling;
    }
}

void unlink(Document& doc, Index e) {
    Element& el = doc.elements[e];
    if (el.previousSibling != kNil) doc.elements[el.previousSibling].nextSibling = el.nextSibling;
    else if (el.parent != kNil) doc.elements[el.parent].firstChild = el.nextSibling;
    if (el.nextSibling != kNil) doc.elements[el.nextSibling].previousSibling = el.previousSibling;
    else if (el.parent != kNil) doc.elements[el.parent].lastChild = el.previousSibling;
    if (el.parent == kNil && el.flow < doc.flows.size() && doc.flows[el.flow].root == e)
        doc.flows[el.flow].root = el.nextSibling;
    el.previousSibling = el.nextSibling = kNil;
}

void linkBefore(Document& doc, Index e, Index parent, Index before) {
    Element& el = doc.elements[e];
    el.parent = parent;
    Element& p = doc.elements[parent];
    if (before == kNil) {
        el.previousSibling = p.lastChild;
        el.nextSibling = kNil;
        if (p.lastChild != kNil) doc.elements[p.lastChild].nextSibling = e;
        else p.firstChild = e;
        p.lastChild = e;
        return;
    }
    Element& b = doc.elements[before];
    el.previousSibling = b.previousSibling;
    el.nextSibling = before;
    if (b.previousSibling != kNil) doc.elements[b.previousSibling].nextSibling = e;
    else p.firstChild = e;
    b.previousSibling = e;
}

bool strictlyInside(const Element& e, std::uint32_t offset) { return e.begin < offset && offset < e.end; }

}  // namespace

bool isAncestorOrSelf(const Document& doc, Index ancestor, Index element) {
    for (Index e = element; e != kNil; e = doc.elements[e].parent)
        if (e == ancestor) return true;
    return false;
}

Index anchorAt(const Document& doc, Index element, std::uint32_t offset) {
    Index at = element;
    for (;;) {
        Index next = kNil;
        for (Index c = doc.elements[at].firstChild; c != kNil; c = doc.elements[c].nextSibling) {
            const Element& child = doc.elements[c];
            if (child.begin >= offset) break;
            if (strictlyInside(child, offset)) {
                next = c;
                break;
            }
        }
        if (next == kNil) return at;
        at = next;
    }
}

Index flowAnchorAt(const Document& doc, std::uint16_t flow, std::uint32_t offset) {
    for (Index root = doc.flows[flow].root; root != kNil; root = doc.elements[root].nextSibling) {
        const Element& r = doc.elements[root];
        if (r.begin <= offset && offset <= r.end) return anchorAt(doc, root, offset);
    }
    return kNil;
}

namespace {

constexpr Index kByOffset = kNil - 1;

// `firstMoved`: the child of the anchor from which children move on with the
// new text; kByOffset decides by their offsets.
void insertTextBefore(Document& doc, std::uint16_t flow, std::uint32_t offset, Index anchor, Index firstMoved,
                      std::string_view text) {
    if (text.empty()) return;
    Flow& f = doc.flows[flow];
    const auto length = static_cast<std::uint32_t>(text.size());
    f.text.insert(offset, text);
    // Text added at the end of an element goes before a marker there, which
    // belongs to what follows; anywhere else the marker stays before the text.
    const bool atEnd = anchor != kNil && offset == doc.elements[anchor].end && doc.elements[anchor].begin < offset;
    const std::uint32_t firstMovedMarker = atEnd ? offset : offset + 1;

    if (anchor != kNil) {
        if (firstMoved == kByOffset) {
            // Children that start after the insertion point move on; an empty
            // child at the point stays before the new text.
            for (Index c = doc.elements[anchor].lastChild; c != kNil;) {
                const Element& child = doc.elements[c];
                if (!(child.begin > offset || (child.begin == offset && child.end > offset))) break;
                const Index previous = child.previousSibling;
                shiftSubtree(doc, c, length);
                c = previous;
            }
        } else {
            for (Index c = firstMoved; c != kNil; c = doc.elements[c].nextSibling) shiftSubtree(doc, c, length);
        }
        for (Index a = anchor; a != kNil; a = doc.elements[a].parent) {
            doc.elements[a].end += length;
            for (Index s = doc.elements[a].nextSibling; s != kNil; s = doc.elements[s].nextSibling)
                shiftSubtree(doc, s, length);
        }
    } else {
        for (Index root = f.root; root != kNil; root = doc.elements[root].nextSibling)
            if (doc.elements[root].begin >= offset) shiftSubtree(doc, root, length);
    }

    f.formats.shift(offset, length);
    f.formats.assign(offset, offset + length, CharFormat{});
    f.conditions.shift(offset, length);
    f.conditions.assign(offset, offset + length, 0);
    if (doc.markersInOrder) {
        // Those at or after the point move on, dead ones too, so the order holds.
        auto first = std::partition_point(doc.markers.begin(), doc.markers.end(), [&](const Marker& m) {
            return m.flow != flow ? m.flow < flow : m.offset < firstMovedMarker;
        });
        for (; first != doc.markers.end() && first->flow == flow; ++first) first->offset += length;
    } else {
        for (Marker& m : doc.markers)
            if (m.alive && m.flow == flow && m.offset >= firstMovedMarker) m.offset += length;
    }
    for (XRef& x : doc.xrefs)
        if (x.alive && x.flow == flow && x.offset >= firstMovedMarker) x.offset += length;
}

}  // namespace

void insertText(Document& doc, std::uint16_t flow, std::uint32_t offset, Index anchor, std::string_view text) {
    insertTextBefore(doc, flow, offset, anchor, kByOffset, text);
}

Index insertElement(Document& doc, Index definition, Index parent, Index before, std::uint32_t offset) {
    const auto index = static_cast<Index>(doc.elements.size());
    Element element;
    element.definition = definition;
    element.flow = doc.elements[parent].flow;
    element.begin = element.end = offset;
    element.handleId = index + 1;
    element.unique = index + 1;
    doc.elements.push_back(element);
    linkBefore(doc, index, parent, before);
    return index;
}

void cutElement(Document& doc, Index element) {
    Element& e = doc.elements[element];
    if (e.end > e.begin) doc.flows[e.flow].pendingCuts.emplace_back(e.begin, e.end);
    unlink(doc, element);
    markSubtreeDead(doc, element);
}

void cutText(Document& doc, std::uint16_t flow, std::uint32_t begin, std::uint32_t end) {
    if (begin >= end) return;
    Index holder = kNil;
    for (Index root = doc.flows[flow].root; root != kNil; root = doc.elements[root].nextSibling) {
        const Element& r = doc.elements[root];
        if (r.begin <= begin && end <= r.end) holder = root;
    }
    // Descend while one child holds the whole range.
    while (holder != kNil) {
        Index next = kNil;
        for (Index c = doc.elements[holder].firstChild; c != kNil; c = doc.elements[c].nextSibling) {
            const Element& child = doc.elements[c];
            if (child.begin <= begin && end <= child.end && !(child.begin == begin && child.end == end)) next = c;
        }
        if (next == kNil) break;
        holder = next;
    }
    if (holder != kNil) {
        // Elements wholly inside the range go; partly covered ones are
        // clipped by the cut itself.
        std::vector<Index> work{holder};
        while (!work.empty()) {
            const Index at = work.back();
            work.pop_back();
            for (Index c = doc.elements[at].firstChild; c != kNil;) {
                const Element& child = doc.elements[c];
                const Index next = child.nextSibling;
                if (begin <= child.begin && child.end <= end && !(child.begin == child.end && (child.begin == begin || child.end == end))) {
                    unlink(doc, c);
                    markSubtreeDead(doc, c);
                } else if (child.begin < end && child.end > begin) {
                    work.push_back(c);
                }
                c = next;
            }
        }
    }
    doc.flows[flow].pendingCuts.emplace_back(begin, end);
}

namespace {

// Maps source catalogue entries to the target's, adding what is missing.
struct Transfer {
    const Document& from;
    Document& to;
    std::unordered_map<Index, Index> definitions;
    std::unordered_map<Index, Index> colors;
    std::unordered_map<Index, Index> conditions;

    Index definition(Index source) {
        auto found = definitions.find(source);
        if (found != definitions.end()) return found->second;
        const ElementDefinition& def = from.definitions[source];
        Index target;
        auto existing = to.definitionByTag.find(def.tag);
        if (existing != to.definitionByTag.end()) {
            target = existing->second;
        } else {
            target = static_cast<Index>(to.definitions.size());
            ElementDefinition copy = def;
            copy.alive = true;
            to.definitions.push_back(std::move(copy));
            to.definitionByTag.emplace(def.tag, target);
        }
        definitions.emplace(source, target);
        return target;
    }

    // A catalogue entry (colour or condition format) is the target's entry of
    // the same name, added when the target has none.
    template <class Entry, class Lookup>
    static Index mapByName(std::unordered_map<Index, Index>& cache, const std::vector<Entry>& source,
                           std::vector<Entry>& target, Index index, Lookup byName) {
        auto found = cache.find(index);
        if (found != cache.end()) return found->second;
        const Entry& entry = source[index];
        Index mapped = byName(entry.name);
        if (mapped == kNil) {
            mapped = static_cast<Index>(target.size());
            target.push_back(entry);
        }
        cache.emplace(index, mapped);
        return mapped;
    }

    Index color(Index source) {
        return mapByName(colors, from.colors, to.colors, source, [&](const std::string& n) { return to.colorByName(n); });
    }

    Index condition(Index source) {
        return mapByName(conditions, from.conditions, to.conditions, source,
                         [&](const std::string& n) { return to.conditionByName(n); });
    }

    ConditionSet conditionSet(const ConditionSet& source) {
        ConditionSet mapped;
        for (Index c : source) mapped.push_back(condition(c));
        return mapped;
    }

    void attributes(Index source, Index target) {
        const Element& s = from.elements[source];
        const ElementDefinition& sourceDef = from.definitions[s.definition];
        const ElementDefinition& targetDef = to.definitions[to.elements[target].definition];
        for (std::uint32_t i = 0; i < s.attributesCount; ++i) {
            const AttributeSlot& slot = from.attributeSlots[s.attributesBegin + i];
            auto position = targetDef.attributeIndex.find(sourceDef.attributes[slot.position].name);
            if (position == targetDef.attributeIndex.end()) continue;
            to.setAttributeValues(target, position->second, to.values.intern(from.values.get(slot.values)));
        }
    }
};

}  // namespace

std::vector<Index> copyElements(const Document& from, Index first, Index last, Document& to, Index parent,
                                Index before, std::uint32_t offset) {
    std::vector<Index> copies;
    const Element& firstEl = from.elements[first];
    const Element& lastEl = from.elements[last];
    const std::uint16_t sourceFlow = firstEl.flow;
    const std::uint32_t begin = firstEl.begin;
    const std::uint32_t end = lastEl.end;
    const std::uint16_t targetFlow = to.elements[parent].flow;
    insertTextBefore(to, targetFlow, offset, parent, before,
                     std::string_view(from.flows[sourceFlow].text).substr(begin, end - begin));
    const auto move = [&](std::uint32_t at) { return at - begin + offset; };

    Transfer transfer{from, to, {}, {}, {}};
    // Copy each top element and walk its subtree, keeping a parallel parent stack.
    for (Index top = first;; top = from.elements[top].nextSibling) {
        std::vector<std::pair<Index, Index>> work{{top, kNil}};  // (source, target parent or kNil for `parent`)
        while (!work.empty()) {
            const auto [source, targetParent] = work.back();
            work.pop_back();
            const Element& s = from.elements[source];
            const Index target = insertElement(to, transfer.definition(s.definition),
                                               targetParent == kNil ? parent : targetParent,
                                               targetParent == kNil ? before : kNil, move(s.begin));
            Element& t = to.elements[target];
            t.end = move(s.end);
            t.beginAdjust = s.beginAdjust;
            t.titlePosition = s.titlePosition;
            transfer.attributes(source, target);
            auto row = from.rowConditions.find(source);
            if (row != from.rowConditions.end()) {
                ConditionSet mapped = transfer.conditionSet(row->second);
                std::sort(mapped.begin(), mapped.end());
                to.rowConditions[target] = std::move(mapped);
            }
            if (targetParent == kNil) copies.push_back(target);
            // Children in reverse, so that they are taken in order.
            std::vector<Index> children;
            for (Index c = s.firstChild; c != kNil; c = from.elements[c].nextSibling) children.push_back(c);
            for (auto it = children.rbegin(); it != children.rend(); ++it) work.emplace_back(*it, target);
        }
        if (top == last) break;
    }

    const Flow& sf = from.flows[sourceFlow];
    Flow& tf = to.flows[targetFlow];
    for (std::uint32_t at = begin; at < end;) {
        const std::uint32_t stop = sf.formats.nextKey(at, end);
        CharFormat format = sf.formats.at(at);
        if (format.set & CharFormat::kColor) format.color = transfer.color(format.color);
        tf.formats.assign(move(at), move(stop), format);
        at = stop;
    }
    for (std::uint32_t at = begin; at < end;) {
        const std::uint32_t stop = sf.conditions.nextKey(at, end);
        const std::uint32_t set = sf.conditions.at(at);
        if (set != 0 && set < from.conditionSets.size())
            tf.conditions.assign(move(at), move(stop), to.internConditionSet(transfer.conditionSet(from.conditionSets[set])));
        at = stop;
    }
    return copies;
}

}  // namespace voka::headless
