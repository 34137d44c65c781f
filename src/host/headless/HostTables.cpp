// Tables and their rows: iteration in document order, row conditions, and
// deleting rows the way the host allows it.
#include "host/headless/Editing.h"
#include "host/headless/Handles.h"
#include "host/headless/HeadlessHost.h"

#include <algorithm>

namespace voka::headless {

namespace {

int typeOf(const Document& doc, Index element) {
    const Index def = doc.elements[element].definition;
    return def < doc.definitions.size() ? doc.definitions[def].type : kElementUnspecified;
}

}  // namespace

// --- Tables and rows ------------------------------------------------------------------

// The next element in document order after `element` (its subtree
// included), across flows; kNil at the end.
Index HeadlessHost::nextTableAfter(const Document& doc, Index element) const {
    Index e = element;
    for (;;) {
        const Element& el = doc.elements[e];
        Index next = el.firstChild;
        if (next == kNil) {
            Index up = e;
            while (up != kNil && doc.elements[up].nextSibling == kNil) {
                const Index p = doc.elements[up].parent;
                if (p == kNil) {
                    // Out of this flow's tree: on to the next flow's.
                    for (std::size_t f = doc.elements[up].flow + 1u; f < doc.flows.size(); ++f) {
                        if (doc.flows[f].root != kNil) {
                            next = doc.flows[f].root;
                            break;
                        }
                    }
                    up = kNil;
                    break;
                }
                up = p;
            }
            if (up != kNil) next = doc.elements[up].nextSibling;
        }
        if (next == kNil) return kNil;
        if (typeOf(doc, next) == kElementTable) return next;
        e = next;
    }
}

Handle HeadlessHost::firstTable(Handle doc) {
    Document* d = liveDocument(doc);
    if (!d) return kNoObject;
    for (const Flow& flow : d->flows) {
        if (flow.root == kNil) continue;
        if (typeOf(*d, flow.root) == kElementTable) return indexHandle(kTableObject, flow.root);
        const Index t = nextTableAfter(*d, flow.root);
        return t == kNil ? kNoObject : indexHandle(kTableObject, t);
    }
    return kNoObject;
}

Handle HeadlessHost::nextTable(Handle doc, Handle table) {
    Document* d = liveDocument(doc);
    if (!d) return kNoObject;
    const Index t = elementOfAnyHandle(*d, table);
    if (t == kNil || typeOf(*d, t) != kElementTable) return fail(kNoObject);
    const Index next = nextTableAfter(*d, t);
    return next == kNil ? kNoObject : indexHandle(kTableObject, next);
}

Index HeadlessHost::tableOfRow(const Document& doc, Index row) const {
    for (Index p = doc.elements[row].parent; p != kNil; p = doc.elements[p].parent)
        if (typeOf(doc, p) == kElementTable) return p;
    return kNil;
}

// The next row of `table` after `row` (kNil: its first row): rows of nested
// tables belong to those tables.
Index HeadlessHost::nextRowAfter(const Document& doc, Index table, Index row) const {
    Index e = row == kNil ? table : row;
    bool descend = row == kNil;
    for (;;) {
        const Element& el = doc.elements[e];
        Index next = kNil;
        if (descend && el.firstChild != kNil) {
            next = el.firstChild;
        } else {
            Index up = e;
            while (up != table && doc.elements[up].nextSibling == kNil) up = doc.elements[up].parent;
            if (up == table) return kNil;
            next = doc.elements[up].nextSibling;
        }
        const int type = typeOf(doc, next);
        if (type == kElementTableRow) return next;
        e = next;
        descend = type != kElementTable;
    }
}

Handle HeadlessHost::firstRow(Handle doc, Handle table) {
    Document* d = liveDocument(doc);
    if (!d) return kNoObject;
    const Index t = elementOfAnyHandle(*d, table);
    if (t == kNil || typeOf(*d, t) != kElementTable) return fail(kNoObject);
    const Index r = nextRowAfter(*d, t, kNil);
    return r == kNil ? kNoObject : indexHandle(kRowObject, r);
}

Handle HeadlessHost::nextRow(Handle doc, Handle row) {
    Document* d = liveDocument(doc);
    if (!d) return kNoObject;
    const Index r = elementOfAnyHandle(*d, row);
    if (r == kNil || typeOf(*d, r) != kElementTableRow) return fail(kNoObject);
    const Index t = tableOfRow(*d, r);
    if (t == kNil) return kNoObject;
    const Index next = nextRowAfter(*d, t, r);
    return next == kNil ? kNoObject : indexHandle(kRowObject, next);
}

bool HeadlessHost::setRowConditions(Handle doc, Handle row, const std::vector<Handle>& conditions) {
    Document* d = liveDocument(doc);
    if (!d) return false;
    const Index r = elementOfAnyHandle(*d, row);
    if (r == kNil || typeOf(*d, r) != kElementTableRow) return fail(false);
    ConditionSet set;
    for (Handle condition : conditions) {
        const Index c = liveCondition(*d, condition);
        if (c == kNil) return false;
        set.push_back(c);
    }
    if (!mutationAllowed()) return false;
    std::sort(set.begin(), set.end());
    set.erase(std::unique(set.begin(), set.end()), set.end());
    if (set.empty()) d->rowConditions.erase(r);
    else d->rowConditions[r] = std::move(set);
    touch(*d);
    return true;
}

std::vector<Handle> HeadlessHost::rowConditions(Handle doc, Handle row) {
    Document* d = liveDocument(doc);
    if (!d) return {};
    const Index r = elementOfAnyHandle(*d, row);
    if (r == kNil || typeOf(*d, r) != kElementTableRow) return fail(std::vector<Handle>());
    std::vector<Handle> handles;
    auto found = d->rowConditions.find(r);
    if (found == d->rowConditions.end()) return handles;
    for (Index c : found->second) handles.push_back(indexHandle(kConditionFormatObject, c));
    return handles;
}

bool HeadlessHost::deleteRows(Handle doc, Handle table, Handle firstRowHandle, int count) {
    Document* d = liveDocument(doc);
    if (!d) return false;
    const Index t = elementOfAnyHandle(*d, table);
    const Index first = elementOfAnyHandle(*d, firstRowHandle);
    if (t == kNil || first == kNil) return false;
    if (typeOf(*d, t) != kElementTable || typeOf(*d, first) != kElementTableRow || tableOfRow(*d, first) != t ||
        count < 1)
        return fail(false);
    std::vector<Index> rows;
    for (Index r = first; r != kNil && static_cast<int>(rows.size()) < count; r = nextRowAfter(*d, t, r))
        rows.push_back(r);
    if (static_cast<int>(rows.size()) < count) return fail(false);
    // A table body keeps at least one row.
    for (Index r : rows) {
        const Index body = d->elements[r].parent;
        if (body == kNil || typeOf(*d, body) != kElementTableBody) continue;
        bool keepsOne = false;
        for (Index c = d->elements[body].firstChild; c != kNil && !keepsOne; c = d->elements[c].nextSibling)
            keepsOne = std::find(rows.begin(), rows.end(), c) == rows.end();
        if (!keepsOne) return fail(false);
    }
    if (!mutationAllowed()) return false;
    for (Index r : rows) cutElement(*d, r);
    touch(*d);
    return true;
}

}  // namespace voka::headless
