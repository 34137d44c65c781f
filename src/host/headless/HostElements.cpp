// The element tree, element definitions and attributes, element locations
// and text ranges, new and deleted elements, text.
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

Handle handleOrNone(Index index) { return index == kNil ? kNoObject : elementHandle(index); }

// The handle type of each kind of element that has a formatting object.
struct FormattingObject {
    int elementType;
    int objectType;
};
constexpr FormattingObject kFormattingObjects[] = {
    {kElementTable, kTableObject},
    {kElementTableRow, kRowObject},
    {kElementTableCell, kCellObject},
    {kElementFootnote, kFootnoteObject},
};

// FF_IED_DO_NOT_IMPORT_EDD: only the removal of overrides is wanted.
constexpr int kImportNoDefinitions = 0x0004;

std::uint32_t clampOffset(int offset, std::uint32_t length) {
    if (offset == kEndOfObject) return length;
    return std::min(static_cast<std::uint32_t>(offset), length);
}

}  // namespace

// --- Locations ---------------------------------------------------------------

bool HeadlessHost::resolve(const Document& doc, const TextLocation& location, Position& position, bool findAnchor) {
    if (location.offset < 0) return fail(false);
    if (objectType(location.object) == kFlowObject) {
        const Index flow = liveIndex(location.object, kFlowObject, doc.flows.size());
        if (flow == kNil) return false;
        position.flow = static_cast<std::uint16_t>(flow);
        position.offset = clampOffset(location.offset, static_cast<std::uint32_t>(doc.flows[flow].text.size()));
        position.anchor = findAnchor ? flowAnchorAt(doc, position.flow, position.offset) : kNil;
        return true;
    }
    const Index e = elementOfAnyHandle(doc, location.object);
    if (e == kNil) return false;
    const Element& el = doc.elements[e];
    position.flow = el.flow;
    position.offset = el.begin + clampOffset(location.offset, el.end - el.begin);
    position.anchor = findAnchor ? anchorAt(doc, e, position.offset) : kNil;
    return true;
}

bool HeadlessHost::resolveRange(const Document& doc, const TextRange& range, Position& begin, Position& end) {
    if (!resolve(doc, range.begin, begin) || !resolve(doc, range.end, end)) return false;
    if (begin.flow != end.flow || begin.offset > end.offset) return fail(false);
    return true;
}

// (parent, child, offset): `offset` counts from the end of the child's previous
// sibling (or the parent's start) and stops at the child. Without a child the
// location is the parent's end; a childless parent counts the offset into its text.
bool HeadlessHost::locate(const Document& doc, const ElementLocation& location, Position& position) {
    if (location.offset < 0) return fail(false);
    if (location.parent == kNoObject) {
        // The highest-level element of a flow has no parent element.
        const Index c = liveElement(doc, location.child);
        if (c == kNil) return false;
        if (doc.elements[c].parent != kNil) return fail(false);
        position = Position{doc.elements[c].flow, doc.elements[c].begin, kNil};
        return true;
    }
    const Index p = liveElement(doc, location.parent);
    if (p == kNil) return false;
    const Element& parent = doc.elements[p];
    position.flow = parent.flow;
    position.anchor = p;
    if (location.child != kNoObject) {
        const Index c = liveElement(doc, location.child);
        if (c == kNil) return false;
        const Element& child = doc.elements[c];
        if (child.parent != p) return fail(false);
        const std::uint32_t segment = child.previousSibling == kNil ? parent.begin : doc.elements[child.previousSibling].end;
        position.offset = segment + clampOffset(location.offset, child.begin - segment);
        return true;
    }
    position.offset = parent.firstChild != kNil ? parent.end
                                                : parent.begin + clampOffset(location.offset, parent.end - parent.begin);
    return true;
}

TextLocation HeadlessHost::relativeTo(const Document& doc, Index element, std::uint32_t offset) const {
    return TextLocation{elementHandle(element), static_cast<int>(offset - doc.elements[element].begin)};
}

TextLocation HeadlessHost::toTextLocation(Handle doc, const ElementLocation& location) {
    Document* d = settledDocument(doc);
    if (!d) return {};
    Position position;
    if (!locate(*d, location, position)) return {};
    if (position.anchor == kNil) return TextLocation{indexHandle(kFlowObject, position.flow), static_cast<int>(position.offset)};
    return relativeTo(*d, position.anchor, position.offset);
}

TextRange HeadlessHost::elementTextRange(Handle doc, Handle element) {
    Document* d = settledDocument(doc);
    if (!d) return {};
    const Index e = liveElement(*d, element);
    if (e == kNil) return {};
    const Element& el = d->elements[e];
    return TextRange{relativeTo(*d, e, el.begin), relativeTo(*d, e, el.end)};
}

// --- Tree --------------------------------------------------------------------

Handle HeadlessHost::stepTo(Handle doc, Index element) {
    ++elementSteps_;
    stepDoc_ = doc;
    stepElement_ = element;
    return elementHandle(element);
}

Handle HeadlessHost::firstChild(Handle doc, Handle element) {
    Document* d = liveDocument(doc);
    if (!d) return kNoObject;
    const Index e = liveElement(*d, element);
    if (e == kNil) return kNoObject;
    const Index c = d->elements[e].firstChild;
    if (c == kNil) return kNoObject;
    return stepTo(doc, c);
}

Handle HeadlessHost::lastChild(Handle doc, Handle element) {
    Document* d = liveDocument(doc);
    if (!d) return kNoObject;
    const Index e = liveElement(*d, element);
    if (e == kNil) return kNoObject;
    const Index c = d->elements[e].lastChild;
    if (c == kNil) return kNoObject;
    return stepTo(doc, c);
}

Handle HeadlessHost::nextSibling(Handle doc, Handle element) {
    Document* d = liveDocument(doc);
    if (!d) return kNoObject;
    const Index e = liveElement(*d, element);
    if (e == kNil) return kNoObject;
    const Index s = d->elements[e].nextSibling;
    if (s == kNil) return kNoObject;
    return stepTo(doc, s);
}

Handle HeadlessHost::previousSibling(Handle doc, Handle element) {
    Document* d = liveDocument(doc);
    if (!d) return kNoObject;
    const Index e = liveElement(*d, element);
    if (e == kNil) return kNoObject;
    const Index s = d->elements[e].previousSibling;
    if (s == kNil) return kNoObject;
    return stepTo(doc, s);
}

Handle HeadlessHost::parent(Handle doc, Handle element) {
    Document* d = liveDocument(doc);
    if (!d) return kNoObject;
    const Index e = liveElement(*d, element);
    if (e == kNil) return kNoObject;
    const Index p = d->elements[e].parent;
    if (p == kNil) return kNoObject;
    return stepTo(doc, p);
}

Handle HeadlessHost::elementDefinition(Handle doc, Handle element) {
    Document* d = liveDocument(doc);
    if (!d) return kNoObject;
    const Index e = liveElement(*d, element);
    if (e == kNil) return kNoObject;
    const Index def = d->elements[e].definition;
    return def < d->definitions.size() ? indexHandle(kElementDefinitionObject, def) : kNoObject;
}

int HeadlessHost::elementType(Handle doc, Handle element) {
    Document* d = liveDocument(doc);
    if (!d) return kElementUnspecified;
    const Index e = liveElement(*d, element);
    return e == kNil ? kElementUnspecified : typeOf(*d, e);
}

Handle HeadlessHost::formattingObject(Handle doc, Handle element) {
    Document* d = liveDocument(doc);
    if (!d) return kNoObject;
    const Index e = liveElement(*d, element);
    if (e == kNil) return kNoObject;
    const int type = typeOf(*d, e);
    for (const FormattingObject& kind : kFormattingObjects)
        if (kind.elementType == type) return indexHandle(kind.objectType, e);
    return kNoObject;
}

// A formatting object's text is its element's: the element is its only paragraph.
Handle HeadlessHost::firstParagraph(Handle doc, Handle object) { return elementOfObject(doc, object); }

Handle HeadlessHost::lastParagraph(Handle doc, Handle object) { return elementOfObject(doc, object); }

Handle HeadlessHost::elementOfObject(Handle doc, Handle object) {
    Document* d = liveDocument(doc);
    if (!d) return kNoObject;
    return handleOrNone(elementOfAnyHandle(*d, object));
}

// --- Definitions --------------------------------------------------------------

std::string HeadlessHost::definitionTag(Handle doc, Handle definition) {
    Document* d = liveDocument(doc);
    if (!d) return {};
    const Index i = liveIndex(definition, kElementDefinitionObject, d->definitions.size());
    return i == kNil ? std::string() : d->definitions[i].tag;
}

int HeadlessHost::definitionType(Handle doc, Handle definition) {
    Document* d = liveDocument(doc);
    if (!d) return kElementUnspecified;
    const Index i = liveIndex(definition, kElementDefinitionObject, d->definitions.size());
    return i == kNil ? kElementUnspecified : d->definitions[i].type;
}

Handle HeadlessHost::firstElementDefinition(Handle doc) {
    Document* d = liveDocument(doc);
    if (!d) return kNoObject;
    for (std::size_t i = 0; i < d->definitions.size(); ++i)
        if (d->definitions[i].alive) return indexHandle(kElementDefinitionObject, static_cast<Index>(i));
    return kNoObject;
}

Handle HeadlessHost::nextElementDefinition(Handle doc, Handle definition) {
    Document* d = liveDocument(doc);
    if (!d) return kNoObject;
    const Index i = liveIndex(definition, kElementDefinitionObject, d->definitions.size());
    if (i == kNil) return kNoObject;
    for (std::size_t n = i + 1; n < d->definitions.size(); ++n)
        if (d->definitions[n].alive) return indexHandle(kElementDefinitionObject, static_cast<Index>(n));
    return kNoObject;
}

AttributeDefinitions HeadlessHost::attributeDefinitions(Handle doc, Handle definition) {
    Document* d = liveDocument(doc);
    if (!d) return {};
    const Index i = liveIndex(definition, kElementDefinitionObject, d->definitions.size());
    if (i == kNil) return {};
    AttributeDefinitions result = d->definitions[i].attributes;
    for (AttributeDefinition& attribute : result) std::erase(attribute.defaults, std::string());
    return result;
}

bool HeadlessHost::setElementDefinition(Handle doc, Handle element, Handle definition) {
    Document* d = settledDocument(doc);
    if (!d) return false;
    const Index e = liveElement(*d, element);
    const Index def = liveIndex(definition, kElementDefinitionObject, d->definitions.size());
    if (e == kNil || def == kNil) return false;
    if (!mutationAllowed()) return false;
    Element& el = d->elements[e];
    if (def == el.definition) {
        // Formatting the element from its definition again drops the overrides.
        d->flows[el.flow].formats.assign(el.begin, el.end, CharFormat{});
        touch(*d);
        return true;
    }
    const ElementDefinition& from = d->definitions[el.definition];
    const ElementDefinition& to = d->definitions[def];
    std::vector<AttributeSlot> kept;
    for (std::uint32_t i = 0; i < el.attributesCount; ++i) {
        const AttributeSlot& slot = d->attributeSlots[el.attributesBegin + i];
        auto position = to.attributeIndex.find(from.attributes[slot.position].name);
        if (position != to.attributeIndex.end()) kept.push_back(AttributeSlot{position->second, slot.values});
    }
    std::copy(kept.begin(), kept.end(), d->attributeSlots.begin() + el.attributesBegin);
    el.attributesCount = static_cast<std::uint16_t>(kept.size());
    el.definition = def;
    touch(*d);
    return true;
}

int HeadlessHost::importElementDefinitions(Handle target, Handle source, int flags) {
    Document* t = settledDocument(target);
    Document* s = settledDocument(source);
    if (!t || !s) return -1;
    if (!mutationAllowed()) return -1;
    if (t != s && !(flags & kImportNoDefinitions)) {
        // Definitions replaced with other attribute lists move their elements'
        // values by attribute name; values of attributes no longer declared go.
        std::vector<std::vector<int>> moves(t->definitions.size());
        for (const ElementDefinition& def : s->definitions) {
            if (!def.alive) continue;
            auto existing = t->definitionByTag.find(def.tag);
            if (existing == t->definitionByTag.end()) {
                const auto index = static_cast<Index>(t->definitions.size());
                t->definitions.push_back(def);
                t->definitionByTag.emplace(def.tag, index);
                continue;
            }
            ElementDefinition& old = t->definitions[existing->second];
            std::vector<int> move(old.attributes.size(), -1);
            bool same = old.attributes.size() == def.attributes.size();
            for (std::size_t a = 0; a < old.attributes.size(); ++a) {
                auto position = def.attributeIndex.find(old.attributes[a].name);
                if (position != def.attributeIndex.end()) move[a] = static_cast<int>(position->second);
                same = same && move[a] == static_cast<int>(a);
            }
            old.type = def.type;
            old.attributes = def.attributes;
            old.attributeIndex = def.attributeIndex;
            old.alive = true;
            if (!same) moves[existing->second] = std::move(move);
        }
        for (Element& el : t->elements) {
            if (!el.alive || el.definition >= moves.size() || moves[el.definition].empty()) continue;
            const std::vector<int>& move = moves[el.definition];
            std::uint16_t kept = 0;
            for (std::uint32_t i = 0; i < el.attributesCount; ++i) {
                const AttributeSlot slot = t->attributeSlots[el.attributesBegin + i];
                if (move[slot.position] < 0) continue;
                t->attributeSlots[el.attributesBegin + kept++] =
                    AttributeSlot{static_cast<std::uint32_t>(move[slot.position]), slot.values};
            }
            el.attributesCount = kept;
        }
    }
    if (flags & kImportRemoveOverrides)
        for (Flow& flow : t->flows) flow.formats.clear();
    touch(*t);
    return 0;
}

// --- Attributes ------------------------------------------------------------------

Attributes HeadlessHost::attributes(Handle doc, Handle element) {
    Document* d = liveDocument(doc);
    if (!d) return {};
    const Index e = liveElement(*d, element);
    if (e == kNil) return {};
    const Element& el = d->elements[e];
    if (el.definition >= d->definitions.size()) return {};
    const ElementDefinition& def = d->definitions[el.definition];
    Attributes result(def.attributes.size());
    for (std::size_t i = 0; i < result.size(); ++i) result[i].name = def.attributes[i].name;
    for (std::uint32_t i = 0; i < el.attributesCount; ++i) {
        const AttributeSlot& slot = d->attributeSlots[el.attributesBegin + i];
        if (slot.position < result.size()) result[slot.position].values = d->values.visible(slot.values);
    }
    return result;
}

bool HeadlessHost::borrowAttributeValues(Handle doc, Handle element, std::vector<std::span<const std::string>>& values) {
    values.clear();
    Document* d = liveDocument(doc);
    if (!d) return false;
    const Index e = liveElement(*d, element);
    if (e == kNil) return false;
    const Element& el = d->elements[e];
    if (el.definition >= d->definitions.size()) return true;
    values.resize(d->definitions[el.definition].attributes.size());
    for (std::uint32_t i = 0; i < el.attributesCount; ++i) {
        const AttributeSlot& slot = d->attributeSlots[el.attributesBegin + i];
        if (slot.position < values.size()) values[slot.position] = d->values.visible(slot.values);
    }
    return true;
}

bool HeadlessHost::setAttributes(Handle doc, Handle element, const Attributes& attributes) {
    Document* d = liveDocument(doc);
    if (!d) return false;
    const Index e = liveElement(*d, element);
    if (e == kNil) return false;
    if (d->elements[e].definition >= d->definitions.size()) return fail(false);
    const ElementDefinition& def = d->definitions[d->elements[e].definition];
    // The whole list replaces the element's values; every name must be declared.
    std::vector<std::uint32_t> positions;
    positions.reserve(attributes.size());
    for (const Attribute& attribute : attributes) {
        auto position = def.attributeIndex.find(attribute.name);
        if (position == def.attributeIndex.end()) return fail(false);
        positions.push_back(position->second);
    }
    if (!mutationAllowed()) return false;
    std::vector<std::uint32_t> values(def.attributes.size(), 0);
    for (std::size_t i = 0; i < attributes.size(); ++i) values[positions[i]] = d->values.intern(attributes[i].values);
    Element& el = d->elements[e];
    const auto count = static_cast<std::uint16_t>(std::count_if(values.begin(), values.end(), [](auto v) { return v != 0; }));
    if (count > el.attributesCount) {
        el.attributesBegin = static_cast<std::uint32_t>(d->attributeSlots.size());
        d->attributeSlots.resize(d->attributeSlots.size() + count);
    }
    std::uint32_t at = el.attributesBegin;
    for (std::uint32_t position = 0; position < values.size(); ++position)
        if (values[position] != 0) d->attributeSlots[at++] = AttributeSlot{position, values[position]};
    el.attributesCount = count;
    touch(*d);
    return true;
}

// --- New and deleted elements, text ---------------------------------------------

Handle HeadlessHost::newElement(Handle doc, Handle definition, const ElementLocation& where) {
    Document* d = settledDocument(doc);
    if (!d) return kNoObject;
    const Index def = liveIndex(definition, kElementDefinitionObject, d->definitions.size());
    if (def == kNil) return kNoObject;
    if (where.parent == kNoObject || !idFits(d->elements.size() + 1)) return fail(kNoObject);
    Position position;
    if (!locate(*d, where, position)) return kNoObject;
    if (!mutationAllowed()) return kNoObject;
    const Index before = where.child == kNoObject ? kNil : handleId(where.child) - 1;
    const Index e = insertElement(*d, def, position.anchor, before, position.offset);
    touch(*d);
    return elementHandle(e);
}

bool HeadlessHost::deleteElement(Document& doc, Index element) {
    const int type = typeOf(doc, element);
    // A table cannot lose a cell, its body, or the last row of its body.
    if (type == kElementTableCell || type == kElementTableBody) return fail(false);
    if (type == kElementTableRow) {
        const Index p = doc.elements[element].parent;
        if (p != kNil && typeOf(doc, p) == kElementTableBody && doc.elements[p].firstChild == element &&
            doc.elements[p].lastChild == element)
            return fail(false);
    }
    if (!mutationAllowed()) return false;
    cutElement(doc, element);
    touch(doc);
    return true;
}

bool HeadlessHost::deleteObject(Handle doc, Handle object) {
    if (objectType(doc) == kBookObject) {
        OpenBook* slot = openBookSlot(doc);
        if (!slot) return false;
        const std::size_t position = liveComponent(*slot, object);
        if (position == std::size_t(-1)) return false;
        if (!mutationAllowed()) return false;
        slot->book->components.erase(slot->book->components.begin() + static_cast<std::ptrdiff_t>(position));
        indexComponents(*slot);
        slot->book->modified = true;
        return true;
    }
    Document* d = liveDocument(doc);
    if (!d) return false;
    const int type = objectType(object);
    if (type == kMarkerObject || type == kXRefObject) {
        const Index i = type == kMarkerObject ? liveMarker(*d, object) : liveXRef(*d, object);
        if (i == kNil || !mutationAllowed()) return false;
        if (type == kMarkerObject) d->markers[i].alive = false;
        else d->xrefs[i].alive = false;
        touch(*d);
        return true;
    }
    const Index e = elementOfAnyHandle(*d, object);
    if (e == kNil) return false;
    return deleteElement(*d, e);
}

bool HeadlessHost::addText(Handle doc, const TextLocation& where, const std::string& text) {
    Document* d = settledDocument(doc);
    if (!d) return false;
    Position position;
    if (!resolve(*d, where, position, true)) return false;
    if (!mutationAllowed()) return false;
    insertText(*d, position.flow, position.offset, position.anchor, text);
    touch(*d);
    return true;
}

std::string HeadlessHost::text(Handle doc, const TextRange& range) {
    Document* d = settledDocument(doc);
    if (!d) return {};
    Position begin, end;
    if (!resolveRange(*d, range, begin, end)) return {};
    return d->flows[begin.flow].text.substr(begin.offset, end.offset - begin.offset);
}

}  // namespace voka::headless
