// Text properties, named objects (colours, condition formats, marker types,
// definitions), conditional text and the import of formats.
#include "host/headless/Editing.h"
#include "host/headless/Handles.h"
#include "host/headless/HeadlessHost.h"

#include <algorithm>

namespace voka::headless {

namespace {

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
        const auto& runs = d->flows[f].conditions;
        const auto length = static_cast<std::uint32_t>(d->flows[f].text.size());
        const std::uint32_t from = f == start.flow ? start.offset : 0;
        std::size_t it = runs.upperBound(from);
        if (it != 0) --it;
        for (; it < runs.size() && runs.key(it) < length; ++it) {
            if (!carries(runs.value(it))) continue;
            const std::uint32_t begin = std::max(runs.key(it), from);
            std::size_t stop = it + 1;
            while (stop < runs.size() && runs.key(stop) < length && carries(runs.value(stop))) ++stop;
            const std::uint32_t end = stop == runs.size() ? length : std::min(runs.key(stop), length);
            if (begin >= end) continue;
            const Handle flow = indexHandle(kFlowObject, static_cast<Index>(f));
            return TextRange{{flow, static_cast<int>(begin)}, {flow, static_cast<int>(end)}};
        }
    }
    return fail(TextRange{}, kErrorNotFound);
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
