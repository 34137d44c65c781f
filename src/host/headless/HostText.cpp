// Text properties, named objects (colours, condition formats, marker types,
// definitions), conditional text, tables and rows, markers, cross-references
// and the import of formats.
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

// Each character property: its flag, which values it takes, how it is kept.
struct CharProperty {
    TextProperty property;
    std::uint8_t flag;
    int maxValue;  // values 0..maxValue; colours are checked apart
    std::uint8_t CharFormat::*field;
};
const CharProperty kCharProperties[] = {
    {TextProperty::Underlining, CharFormat::kUnderlining, kNumericUnderline, &CharFormat::underlining},
    {TextProperty::Overline, CharFormat::kOverline, 1, &CharFormat::overline},
    {TextProperty::Strikethrough, CharFormat::kStrikethrough, 1, &CharFormat::strikethrough},
    {TextProperty::ChangeBar, CharFormat::kChangeBar, 1, &CharFormat::changeBar},
};

const CharProperty* charProperty(TextProperty property) {
    for (const CharProperty& p : kCharProperties)
        if (p.property == property) return &p;
    return nullptr;
}

// Named catalogues of a document, by handle type.
struct NamedKind {
    int type;
    Index (*find)(const Document&, const std::string&);
    Index (*add)(Document&, const std::string&);
    const std::string& (*name)(const Document&, Index);
    std::size_t (*size)(const Document&);
};

Index findDefinition(const Document& doc, const std::string& tag) {
    auto found = doc.definitionByTag.find(tag);
    return found == doc.definitionByTag.end() || !doc.definitions[found->second].alive ? kNil : found->second;
}

Index findFlow(const Document& doc, const std::string& name) {
    for (std::size_t i = 0; i < doc.flows.size(); ++i)
        if (doc.flows[i].name == name) return static_cast<Index>(i);
    return kNil;
}

const NamedKind kNamedKinds[] = {
    {kColorObject, [](const Document& d, const std::string& n) { return d.colorByName(n); },
     [](Document& d, const std::string& n) {
         d.colors.push_back(Color{n, "#000000"});
         return static_cast<Index>(d.colors.size() - 1);
     },
     [](const Document& d, Index i) -> const std::string& { return d.colors[i].name; },
     [](const Document& d) { return d.colors.size(); }},
    {kConditionFormatObject, [](const Document& d, const std::string& n) { return d.conditionByName(n); },
     [](Document& d, const std::string& n) {
         d.conditions.push_back(ConditionFormat{n, true});
         return static_cast<Index>(d.conditions.size() - 1);
     },
     [](const Document& d, Index i) -> const std::string& { return d.conditions[i].name; },
     [](const Document& d) { return d.conditions.size(); }},
    {kMarkerTypeObject, [](const Document& d, const std::string& n) { return d.markerTypeByName(n); },
     [](Document& d, const std::string& n) {
         d.markerTypes.push_back(n);
         return static_cast<Index>(d.markerTypes.size() - 1);
     },
     [](const Document& d, Index i) -> const std::string& { return d.markerTypes[i]; },
     [](const Document& d) { return d.markerTypes.size(); }},
    {kElementDefinitionObject, findDefinition,
     [](Document& d, const std::string& n) { return d.definitionFor(n); },
     [](const Document& d, Index i) -> const std::string& { return d.definitions[i].tag; },
     [](const Document& d) { return d.definitions.size(); }},
    {kFlowObject, findFlow, nullptr, [](const Document& d, Index i) -> const std::string& { return d.flows[i].name; },
     [](const Document& d) { return d.flows.size(); }},
};

const NamedKind* namedKind(int type) {
    for (const NamedKind& kind : kNamedKinds)
        if (kind.type == type) return &kind;
    return nullptr;
}

// FF_UFF_COND and FF_UFF_COLOR of the format import.
constexpr int kImportConditionFormats = 0x0010;
constexpr int kImportColors = 0x0100;

}  // namespace

// --- Character properties -------------------------------------------------------

bool HeadlessHost::setTextProperty(Handle doc, const TextRange& range, TextProperty property, int value) {
    Document* d = settledDocument(doc);
    if (!d) return false;
    Position b, e;
    if (!resolveRange(*d, range, b, e)) return false;
    CharFormat change;
    std::uint8_t flag;
    if (property == TextProperty::Color) {
        const Index color = liveIndex(static_cast<Handle>(value), kColorObject, d->colors.size());
        if (color == kNil) return false;
        flag = CharFormat::kColor;
        change.color = color;
    } else {
        const CharProperty* p = charProperty(property);
        if (!p || value < 0 || value > p->maxValue) return fail(false);
        flag = p->flag;
        change.*(p->field) = static_cast<std::uint8_t>(value);
    }
    if (!mutationAllowed()) return false;
    const CharProperty* p = charProperty(property);
    d->flows[b.flow].formats.update(b.offset, e.offset, [&](CharFormat& format) {
        format.set |= flag;
        if (p) format.*(p->field) = change.*(p->field);
        else format.color = change.color;
    });
    touch(*d);
    return true;
}

int HeadlessHost::textProperty(Handle doc, const TextLocation& at, TextProperty property) {
    Document* d = settledDocument(doc);
    if (!d) return 0;
    Position position;
    if (!resolve(*d, at, position)) return 0;
    const CharFormat& format = d->flows[position.flow].formats.at(position.offset);
    if (property == TextProperty::Color) {
        // Text without a colour of its own shows in black.
        const Index color = (format.set & CharFormat::kColor) ? format.color : d->colorByName("Black");
        return color == kNil ? 0 : static_cast<int>(indexHandle(kColorObject, color));
    }
    const CharProperty* p = charProperty(property);
    if (!p) return fail(0);
    return (format.set & p->flag) ? format.*(p->field) : 0;
}

// --- Named objects ----------------------------------------------------------------

Handle HeadlessHost::namedObject(Handle doc, ObjectType type, const std::string& name) {
    if (doc == kNoObject) {
        if (type == kMenuObject) {
            for (std::size_t i = 0; i < menus_.size(); ++i)
                if (menus_[i].tag == name) return indexHandle(kMenuObject, static_cast<Index>(i));
        } else if (type == kCommandObject) {
            for (std::size_t i = 0; i < commands_.size(); ++i)
                if (commands_[i].tag == name) return indexHandle(kCommandObject, static_cast<Index>(i));
        } else if (type == kMenuSeparatorObject) {
            for (std::size_t i = 0; i < separators_.size(); ++i)
                if (separators_[i] == name) return indexHandle(kMenuSeparatorObject, static_cast<Index>(i));
        }
        return fail(kNoObject);
    }
    Document* d = liveDocument(doc);
    if (!d) return kNoObject;
    const NamedKind* kind = namedKind(type);
    if (!kind) return fail(kNoObject);
    const Index i = kind->find(*d, name);
    return i == kNil ? fail(kNoObject) : indexHandle(type, i);
}

Handle HeadlessHost::newNamedObject(Handle doc, ObjectType type, const std::string& name) {
    if (name.empty()) return fail(kNoObject);
    if (doc == kNoObject) {
        if (type == kMenuSeparatorObject) {
            for (std::size_t i = 0; i < separators_.size(); ++i)
                if (separators_[i] == name) return indexHandle(kMenuSeparatorObject, static_cast<Index>(i));
            separators_.push_back(name);
            return indexHandle(kMenuSeparatorObject, static_cast<Index>(separators_.size() - 1));
        }
        if (type == kMenuObject) return defineMenu(name, name);
        return fail(kNoObject);
    }
    Document* d = liveDocument(doc);
    if (!d) return kNoObject;
    const NamedKind* kind = namedKind(type);
    if (!kind || !kind->add) return fail(kNoObject);
    const Index existing = kind->find(*d, name);
    if (existing != kNil) return indexHandle(type, existing);
    if (!idFits(kind->size(*d) + 1)) return fail(kNoObject);
    if (!mutationAllowed()) return kNoObject;
    const Index added = kind->add(*d, name);
    touch(*d);
    return indexHandle(type, added);
}

std::string HeadlessHost::objectName(Handle doc, Handle object) {
    const int type = objectType(object);
    if (doc == kNoObject) {
        if (type == kMenuObject) {
            const Index i = liveIndex(object, type, menus_.size());
            return i == kNil ? std::string() : menus_[i].tag;
        }
        if (type == kCommandObject) {
            const Index i = liveIndex(object, type, commands_.size());
            return i == kNil ? std::string() : commands_[i].tag;
        }
        if (type == kMenuSeparatorObject) {
            const Index i = liveIndex(object, type, separators_.size());
            return i == kNil ? std::string() : separators_[i];
        }
        if (type == kDialogResourceObject) {
            const DialogObject* dialog = liveDialog(object);
            return dialog ? dialog->name : std::string();
        }
        return fail(std::string());
    }
    Document* d = liveDocument(doc);
    if (!d) return {};
    const NamedKind* kind = namedKind(type);
    if (!kind) return fail(std::string());
    const Index i = liveIndex(object, type, kind->size(*d));
    return i == kNil ? std::string() : kind->name(*d, i);
}

// --- Conditions -----------------------------------------------------------------------

bool HeadlessHost::conditionShown(Handle doc, Handle condition) {
    Document* d = liveDocument(doc);
    if (!d) return false;
    const Index c = liveCondition(*d, condition);
    return c != kNil && d->conditions[c].shown;
}

bool HeadlessHost::setConditionShown(Handle doc, Handle condition, bool shown) {
    Document* d = liveDocument(doc);
    if (!d) return false;
    const Index c = liveCondition(*d, condition);
    if (c == kNil || !mutationAllowed()) return false;
    d->conditions[c].shown = shown;
    touch(*d);
    return true;
}

bool HeadlessHost::setTextConditions(Handle doc, const TextRange& range, const std::vector<Handle>& conditions) {
    Document* d = settledDocument(doc);
    if (!d) return false;
    Position b, e;
    if (!resolveRange(*d, range, b, e)) return false;
    ConditionSet set;
    for (Handle condition : conditions) {
        const Index c = liveCondition(*d, condition);
        if (c == kNil) return false;
        set.push_back(c);
    }
    if (!mutationAllowed()) return false;
    d->flows[b.flow].conditions.assign(b.offset, e.offset, d->internConditionSet(set));
    touch(*d);
    return true;
}

std::vector<Handle> HeadlessHost::textConditions(Handle doc, const TextLocation& at) {
    Document* d = settledDocument(doc);
    if (!d) return {};
    Position position;
    if (!resolve(*d, at, position)) return {};
    const std::uint32_t set = d->flows[position.flow].conditions.at(position.offset);
    std::vector<Handle> handles;
    if (set == 0 || set >= d->conditionSets.size()) return handles;
    for (Index c : d->conditionSets[set]) handles.push_back(indexHandle(kConditionFormatObject, c));
    return handles;
}

TextRange HeadlessHost::findConditionalText(Handle doc, const TextLocation& from,
                                            const std::vector<std::string>& conditionNames) {
    Document* d = settledDocument(doc);
    if (!d) return {};
    Position start;
    if (!resolve(*d, from, start)) return {};
    std::vector<Index> wanted;
    for (const std::string& name : conditionNames) {
        const Index c = d->conditionByName(name);
        if (c != kNil) wanted.push_back(c);
    }
    auto carries = [&](std::uint32_t set) {
        if (set == 0 || set >= d->conditionSets.size()) return false;
        for (Index c : d->conditionSets[set])
            if (std::find(wanted.begin(), wanted.end(), c) != wanted.end()) return true;
        return false;
    };
    // From the location to the end of its flow, then the flows after it.
    for (std::size_t f = start.flow; !wanted.empty() && f < d->flows.size(); ++f) {
        const auto& runs = d->flows[f].conditions.runs();
        const auto length = static_cast<std::uint32_t>(d->flows[f].text.size());
        const std::uint32_t from = f == start.flow ? start.offset : 0;
        auto it = runs.upper_bound(from);
        if (it != runs.begin()) --it;
        for (; it != runs.end() && it->first < length; ++it) {
            if (!carries(it->second)) continue;
            const std::uint32_t begin = std::max(it->first, from);
            auto stop = std::next(it);
            while (stop != runs.end() && stop->first < length && carries(stop->second)) ++stop;
            const std::uint32_t end = stop == runs.end() ? length : std::min(stop->first, length);
            if (begin >= end) continue;
            const Handle flow = indexHandle(kFlowObject, static_cast<Index>(f));
            return TextRange{{flow, static_cast<int>(begin)}, {flow, static_cast<int>(end)}};
        }
    }
    return fail(TextRange{}, kErrorNotFound);
}

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

// --- Markers and cross-references -------------------------------------------------------

Handle HeadlessHost::newMarker(Handle doc, const TextLocation& at) {
    Document* d = settledDocument(doc);
    if (!d) return kNoObject;
    Position position;
    if (!resolve(*d, at, position)) return kNoObject;
    if (!idFits(d->markers.size() + 1)) return fail(kNoObject);
    if (!mutationAllowed()) return kNoObject;
    Marker marker;
    marker.flow = position.flow;
    marker.offset = position.offset;
    marker.type = d->markerTypes.empty() ? std::string() : d->markerTypes.front();
    d->markers.push_back(std::move(marker));
    touch(*d);
    return indexHandle(kMarkerObject, static_cast<Index>(d->markers.size() - 1));
}

bool HeadlessHost::setMarkerType(Handle doc, Handle marker, Handle markerType) {
    Document* d = liveDocument(doc);
    if (!d) return false;
    const Index m = liveMarker(*d, marker);
    const Index t = liveIndex(markerType, kMarkerTypeObject, d->markerTypes.size());
    if (m == kNil || t == kNil || !mutationAllowed()) return false;
    d->markers[m].type = d->markerTypes[t];
    touch(*d);
    return true;
}

bool HeadlessHost::setMarkerText(Handle doc, Handle marker, const std::string& text) {
    Document* d = liveDocument(doc);
    if (!d) return false;
    const Index m = liveMarker(*d, marker);
    if (m == kNil || !mutationAllowed()) return false;
    d->markers[m].text = text;
    touch(*d);
    return true;
}

std::string HeadlessHost::markerText(Handle doc, Handle marker) {
    Document* d = liveDocument(doc);
    if (!d) return {};
    const Index m = liveMarker(*d, marker);
    return m == kNil ? std::string() : d->markers[m].text;
}

Handle HeadlessHost::firstMarker(Handle doc) {
    Document* d = settledDocument(doc);
    if (!d) return kNoObject;
    for (std::size_t i = 0; i < d->markers.size(); ++i)
        if (d->markers[i].alive) return indexHandle(kMarkerObject, static_cast<Index>(i));
    return kNoObject;
}

Handle HeadlessHost::nextMarker(Handle doc, Handle marker) {
    Document* d = settledDocument(doc);
    if (!d) return kNoObject;
    const Index m = liveMarker(*d, marker);
    if (m == kNil) return kNoObject;
    for (std::size_t i = m + 1; i < d->markers.size(); ++i)
        if (d->markers[i].alive) return indexHandle(kMarkerObject, static_cast<Index>(i));
    return kNoObject;
}

Handle HeadlessHost::firstXRef(Handle doc) {
    Document* d = settledDocument(doc);
    if (!d) return kNoObject;
    for (std::size_t i = 0; i < d->xrefs.size(); ++i)
        if (d->xrefs[i].alive) return indexHandle(kXRefObject, static_cast<Index>(i));
    return kNoObject;
}

Handle HeadlessHost::nextXRef(Handle doc, Handle xref) {
    Document* d = settledDocument(doc);
    if (!d) return kNoObject;
    const Index x = liveXRef(*d, xref);
    if (x == kNil) return kNoObject;
    for (std::size_t i = x + 1; i < d->xrefs.size(); ++i)
        if (d->xrefs[i].alive) return indexHandle(kXRefObject, static_cast<Index>(i));
    return kNoObject;
}

std::string HeadlessHost::xrefSourceFile(Handle doc, Handle xref) {
    Document* d = liveDocument(doc);
    if (!d) return {};
    const Index x = liveXRef(*d, xref);
    return x == kNil ? std::string() : d->xrefs[x].sourceFile;
}

bool HeadlessHost::setXRefSourceFile(Handle doc, Handle xref, const std::string& path) {
    Document* d = liveDocument(doc);
    if (!d) return false;
    const Index x = liveXRef(*d, xref);
    if (x == kNil || !mutationAllowed()) return false;
    d->xrefs[x].sourceFile = path;
    touch(*d);
    return true;
}

// --- Format import ------------------------------------------------------------------

int HeadlessHost::importFormats(Handle target, Handle source, int flags) {
    Document* t = liveDocument(target);
    Document* s = liveDocument(source);
    if (!t || !s) return -1;
    if (!mutationAllowed()) return -1;
    if (t != s) {
        if (flags & kImportColors) {
            for (const Color& color : s->colors) {
                const Index existing = t->colorByName(color.name);
                if (existing == kNil) t->colors.push_back(color);
                else t->colors[existing].rgb = color.rgb;
            }
        }
        if (flags & kImportConditionFormats) {
            for (const ConditionFormat& condition : s->conditions) {
                const Index existing = t->conditionByName(condition.name);
                if (existing == kNil) t->conditions.push_back(condition);
                else t->conditions[existing].shown = condition.shown;
            }
        }
        for (const std::string& type : s->markerTypes)
            if (t->markerTypeByName(type) == kNil) t->markerTypes.push_back(type);
    }
    touch(*t);
    return 0;
}

}  // namespace voka::headless
