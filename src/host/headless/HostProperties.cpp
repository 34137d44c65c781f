// Integer and string properties the plug-in names by number. The host gives
// meaning to a few; it keeps any other number as plain storage per object.
#include "host/headless/Editing.h"
#include "host/headless/Handles.h"
#include "host/headless/HeadlessHost.h"

namespace voka::headless {

namespace {

// Properties of a document with a meaning.
struct DocumentProperty {
    int number;
    int (*get)(const Document&);
    void (*set)(Document&, int);  // null: read only
    bool changesContent;          // saved with the document, so setting it modifies the document
};
constexpr DocumentProperty kDocumentProperties[] = {
    {kPropDocIsModified, [](const Document& d) { return d.modified ? 1 : 0; }, nullptr, false},
    {kPropIsOnScreen, [](const Document& d) { return d.visible ? 1 : 0; }, [](Document& d, int v) { d.visible = v != 0; },
     false},
    {kPropShowAll, [](const Document& d) { return d.showAll ? 1 : 0; }, [](Document& d, int v) { d.showAll = v != 0; },
     true},
};

const DocumentProperty* documentProperty(int number) {
    for (const DocumentProperty& p : kDocumentProperties)
        if (p.number == number) return &p;
    return nullptr;
}

bool namesElement(Handle object) {
    const int type = objectType(object);
    return type == kElementObject || type == kTableObject || type == kRowObject || type == kCellObject ||
           type == kFootnoteObject;
}

int typeOf(const Document& doc, Index element) {
    const Index def = doc.elements[element].definition;
    return def < doc.definitions.size() ? doc.definitions[def].type : kElementUnspecified;
}

int titlePositionOf(const Document& doc, Index table) {
    const Element& t = doc.elements[table];
    if (t.titlePosition != 0) return t.titlePosition;
    for (Index c = t.firstChild; c != kNil; c = doc.elements[c].nextSibling)
        if (typeOf(doc, c) == kElementTableTitle) return 1;
    return 0;
}

template <class Map, class Key>
typename Map::mapped_type stored(const Map& map, const Key& key) {
    auto found = map.find(key);
    return found == map.end() ? typename Map::mapped_type() : found->second;
}

}  // namespace

int HeadlessHost::intElementProperty(Document& doc, Index element, Handle object, int property) {
    const Element& e = doc.elements[element];
    if (property == kPropUnique) return static_cast<int>(e.unique);
    if (property == kPropElementBeginAdjust) return e.beginAdjust;
    if (property == kPropTblTitlePosition) return titlePositionOf(doc, element);
    return stored(doc.intProperties, std::pair<Index, int>(object, property));
}

bool HeadlessHost::setIntElementProperty(Document& doc, Index element, Handle object, int property, int value) {
    Element& e = doc.elements[element];
    if (property == kPropUnique) return fail(false);
    if (property == kPropElementBeginAdjust) {
        e.beginAdjust = value != 0 ? 1 : 0;
        return true;
    }
    if (property != kPropTblTitlePosition) {
        doc.intProperties[{object, property}] = value;
        return true;
    }
    if (value < 0 || value > 2 || typeOf(doc, element) != kElementTable) return fail(false);
    e.titlePosition = static_cast<std::uint8_t>(value);
    if (value != 0) return true;
    // A table without a title position has no title.
    for (Index c = e.firstChild; c != kNil;) {
        const Index next = doc.elements[c].nextSibling;
        if (typeOf(doc, c) == kElementTableTitle) cutElement(doc, c);
        c = next;
    }
    return true;
}

int HeadlessHost::intProperty(Handle doc, Handle object, int property) {
    if (doc == kNoObject) return stored(storedInts_, std::make_tuple(doc, object, property));
    if (objectType(doc) == kBookObject) {
        OpenBook* slot = openBookSlot(doc);
        if (!slot) return 0;
        if (object == doc) {
            if (property == kPropDocIsModified) return slot->book->modified ? 1 : 0;
            if (property == kPropIsOnScreen) return slot->book->visible ? 1 : 0;
            if (property == kPropIsInFront) return activeBook_ == doc ? 1 : 0;
            if (property == kPropUnique) return static_cast<int>(handleId(doc));
        } else if (liveComponent(*slot, object) == std::size_t(-1)) {
            return 0;
        }
        return stored(storedInts_, std::make_tuple(doc, object, property));
    }
    // What the host keeps of a window is read without reading a given-away model back.
    if ((object == doc || object == kNoObject) && !documentProperty(property)) {
        Document* state = documentState(doc);
        if (!state) return 0;
        if (property == kPropIsInFront) return activeDocument_ == doc ? 1 : 0;
        if (property == kPropUnique) return static_cast<int>(handleId(doc));
        return stored(state->intProperties, std::pair<Index, int>(doc, property));
    }
    Document* d = liveDocument(doc);
    if (!d) return 0;
    if (object == doc || object == kNoObject) {
        if (const DocumentProperty* p = documentProperty(property)) return p->get(*d);
        if (property == kPropIsInFront) return activeDocument_ == doc ? 1 : 0;
        if (property == kPropUnique) return static_cast<int>(handleId(doc));
        return stored(d->intProperties, std::pair<Index, int>(doc, property));
    }
    if (namesElement(object)) {
        // The unique number is how the plug-in asks whether an element still
        // exists: a deleted one reads 0, without an error.
        const Index i = handleId(object) - 1;
        if (property == kPropUnique && handleId(object) != 0 && i < d->elements.size() && !d->elements[i].alive)
            return 0;
        const Index e = elementOfAnyHandle(*d, object);
        return e == kNil ? 0 : intElementProperty(*d, e, object, property);
    }
    if (!validObject(*d, object)) return 0;
    if (property == kPropUnique) return static_cast<int>(handleId(object));
    return stored(d->intProperties, std::pair<Index, int>(object, property));
}

bool HeadlessHost::setIntProperty(Handle doc, Handle object, int property, int value) {
    if (doc == kNoObject) {
        storedInts_[{doc, object, property}] = value;
        return true;
    }
    if (objectType(doc) == kBookObject) {
        OpenBook* slot = openBookSlot(doc);
        if (!slot) return false;
        if (object == doc) {
            if (property == kPropDocIsModified || property == kPropUnique) return fail(false);
            if (property == kPropIsOnScreen) {
                slot->book->visible = value != 0;
                return true;
            }
            if (property == kPropIsInFront) {
                if (value != 0) bringToFront(doc);
                return true;
            }
        } else if (liveComponent(*slot, object) == std::size_t(-1)) {
            return false;
        }
        storedInts_[{doc, object, property}] = value;
        return true;
    }
    Document* d = liveDocument(doc);
    if (!d) return false;
    if (object == doc || object == kNoObject) {
        if (property == kPropIsInFront) {
            if (value != 0) bringToFront(doc);
            return true;
        }
        if (property == kPropUnique) return fail(false);
        const DocumentProperty* p = documentProperty(property);
        if (!p) {
            d->intProperties[{doc, property}] = value;
            return true;
        }
        if (!p->set) return fail(false);
        if (p->changesContent && !mutationAllowed()) return false;
        p->set(*d, value);
        if (p->changesContent) touch(*d);
        return true;
    }
    if (namesElement(object)) {
        const Index e = elementOfAnyHandle(*d, object);
        if (e == kNil || !mutationAllowed()) return false;
        if (!setIntElementProperty(*d, e, object, property, value)) return false;
        touch(*d);
        return true;
    }
    if (!validObject(*d, object)) return false;
    d->intProperties[{object, property}] = value;
    return true;
}

std::string HeadlessHost::stringProperty(Handle doc, Handle object, int property) {
    if (doc == kNoObject) return stored(storedStrings_, std::make_tuple(doc, object, property));
    if (objectType(doc) == kBookObject) {
        OpenBook* slot = openBookSlot(doc);
        if (!slot) return {};
        if (object != doc) {
            const std::size_t position = liveComponent(*slot, object);
            if (position == std::size_t(-1)) return {};
            if (property == kPropUserString) return slot->book->components[position].userString;
        }
        return stored(storedStrings_, std::make_tuple(doc, object, property));
    }
    Document* d = liveDocument(doc);
    if (!d) return {};
    if (object != doc && object != kNoObject && !validObject(*d, object)) return {};
    const Handle key = object == kNoObject ? doc : object;
    if (key == doc && property == kPropLabel) return d->title;
    return stored(d->stringProperties, std::pair<Index, int>(key, property));
}

bool HeadlessHost::setStringProperty(Handle doc, Handle object, int property, const std::string& value) {
    if (doc == kNoObject) {
        storedStrings_[{doc, object, property}] = value;
        return true;
    }
    if (objectType(doc) == kBookObject) {
        OpenBook* slot = openBookSlot(doc);
        if (!slot) return false;
        if (object != doc) {
            const std::size_t position = liveComponent(*slot, object);
            if (position == std::size_t(-1)) return false;
            if (property == kPropUserString) {
                if (!mutationAllowed()) return false;
                slot->book->components[position].userString = value;
                slot->book->modified = true;
                return true;
            }
        }
        storedStrings_[{doc, object, property}] = value;
        return true;
    }
    Document* d = liveDocument(doc);
    if (!d) return false;
    if (object != doc && object != kNoObject && !validObject(*d, object)) return false;
    const Handle key = object == kNoObject ? doc : object;
    if (key == doc && property == kPropLabel) {
        d->title = value;  // the window's title, not saved with the document
        return true;
    }
    d->stringProperties[{key, property}] = value;
    return true;
}

}  // namespace voka::headless
