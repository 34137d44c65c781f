// The in-memory model of the headless host: documents, their element
// definitions, flows, element trees, text with runs of character properties
// and conditions, markers, cross-references, and books.
//
// Elements live in one vector per document and point at each other by index,
// so a walk over a million elements touches a few flat arrays. Attribute
// value lists are interned per document: the same value list on a hundred
// thousand elements is stored once.
#pragma once

#include "host/Host.h"

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace voka::headless {

using Index = std::uint32_t;
constexpr Index kNil = 0xFFFFFFFFu;

// Interned string lists (attribute values). Id 0 is the empty list.
class ValueLists {
public:
    ValueLists();
    std::uint32_t intern(const std::vector<std::string>& values);
    std::uint32_t internSingle(std::string_view value);
    const std::vector<std::string>& get(std::uint32_t id) const { return lists_[id]; }
    std::size_t size() const { return lists_.size(); }

private:
    std::deque<std::vector<std::string>> lists_;
    std::unordered_map<std::string, std::uint32_t> bySingle_;  // one-value lists, the common case
    std::map<std::vector<std::string>, std::uint32_t> byList_;
};

struct ElementDefinition {
    std::string tag;
    int type = kElementContainer;
    AttributeDefinitions attributes;
    std::unordered_map<std::string, std::uint32_t> attributeIndex;  // name -> position
    bool alive = true;
};

// One attribute value of an element: the position of its definition in the
// element definition, and the interned value list.
struct AttributeSlot {
    std::uint32_t position;
    std::uint32_t values;
};

struct Element {
    Index definition = kNil;
    Index parent = kNil;
    Index firstChild = kNil;
    Index lastChild = kNil;
    Index nextSibling = kNil;
    Index previousSibling = kNil;
    std::uint32_t begin = 0;  // byte offsets in the flow's text; the element covers [begin, end)
    std::uint32_t end = 0;
    std::uint32_t attributesBegin = 0;  // slots in Document::attributeSlots
    std::uint16_t attributesCount = 0;
    std::uint16_t flow = 0;
    std::uint32_t handleId = 0;  // low 24 bits of the element's handle
    std::uint32_t unique = 0;    // the object's unique number, never reused
    std::uint8_t alive = 1;
    std::uint8_t beginAdjust = 0;
    std::uint8_t titlePosition = 0;  // tables: 0 none, 1 above, 2 below
};

// Character format overrides carried by a run of text. A property not
// overridden is absent (its flag bit clear).
struct CharFormat {
    enum : std::uint8_t { kColor = 1, kUnderlining = 2, kOverline = 4, kStrikethrough = 8, kChangeBar = 16 };
    std::uint8_t set = 0;
    std::uint8_t underlining = 0;
    std::uint8_t overline = 0;
    std::uint8_t strikethrough = 0;
    std::uint8_t changeBar = 0;
    Index color = kNil;  // index into Document::colors
    bool operator==(const CharFormat&) const = default;
};

// Runs over byte offsets: the value at key k holds up to the next key. An
// interval map: setting a value over a range costs O(log n + runs touched).
template <class Value>
class RunMap {
public:
    void assign(std::uint32_t begin, std::uint32_t end, const Value& value);
    const Value& at(std::uint32_t offset) const;
    // Apply f to the value over [begin, end), splitting runs at the edges.
    template <class F> void update(std::uint32_t begin, std::uint32_t end, F f);
    void clear() { runs_.clear(); }
    void shift(std::uint32_t from, std::int64_t delta);  // after inserting or removing text
    // Moves every key through a non-decreasing map; keys that meet keep the
    // value of the last of them (the run that goes on after a removed range).
    template <class F> void remapKeys(F newKey);
    bool empty() const { return runs_.empty(); }
    const std::map<std::uint32_t, Value>& runs() const { return runs_; }
    std::map<std::uint32_t, Value>& runs() { return runs_; }
    // Drops keys that repeat the value before them, over the whole map.
    void normalize() { coalesce(0, 0xFFFFFFFFu); }

private:
    void split(std::uint32_t at);
    void coalesce(std::uint32_t from, std::uint32_t to);
    std::map<std::uint32_t, Value> runs_;
    Value empty_{};
};

template <class Value>
const Value& RunMap<Value>::at(std::uint32_t offset) const {
    auto it = runs_.upper_bound(offset);
    if (it == runs_.begin()) return empty_;
    return std::prev(it)->second;
}

template <class Value>
void RunMap<Value>::split(std::uint32_t at) {
    auto it = runs_.lower_bound(at);
    if (it != runs_.end() && it->first == at) return;
    const Value value = it == runs_.begin() ? empty_ : std::prev(it)->second;
    runs_.emplace_hint(it, at, value);
}

template <class Value>
void RunMap<Value>::coalesce(std::uint32_t from, std::uint32_t to) {
    auto it = runs_.lower_bound(from);
    if (it != runs_.begin()) --it;
    const Value* previous = &empty_;
    if (it != runs_.begin()) previous = &std::prev(it)->second;
    while (it != runs_.end() && it->first <= to) {
        if (it->second == *previous) {
            it = runs_.erase(it);
            continue;
        }
        previous = &it->second;
        ++it;
    }
    // The run after `to` may now repeat the value before it.
    if (it != runs_.end() && it->second == *previous) runs_.erase(it);
}

template <class Value>
void RunMap<Value>::assign(std::uint32_t begin, std::uint32_t end, const Value& value) {
    if (begin >= end) return;
    split(end);
    split(begin);
    auto first = runs_.find(begin);
    auto last = runs_.find(end);
    first->second = value;
    runs_.erase(std::next(first), last);
    coalesce(begin, end);
}

template <class Value>
template <class F>
void RunMap<Value>::update(std::uint32_t begin, std::uint32_t end, F f) {
    if (begin >= end) return;
    split(end);
    split(begin);
    for (auto it = runs_.find(begin); it != runs_.end() && it->first < end; ++it) f(it->second);
    coalesce(begin, end);
}

template <class Value>
void RunMap<Value>::shift(std::uint32_t from, std::int64_t delta) {
    if (delta == 0) return;
    if (delta > 0) {
        split(from);
        std::map<std::uint32_t, Value> tail;
        tail.insert(runs_.lower_bound(from), runs_.end());
        runs_.erase(runs_.lower_bound(from), runs_.end());
        for (auto& [key, value] : tail) runs_.emplace_hint(runs_.end(), key + delta, std::move(value));
        coalesce(from, from + static_cast<std::uint32_t>(delta));
        return;
    }
    const std::uint32_t length = static_cast<std::uint32_t>(-delta);
    const std::uint32_t end = from + length;
    const Value after = at(end);
    std::map<std::uint32_t, Value> tail;
    tail.insert(runs_.upper_bound(end), runs_.end());
    runs_.erase(runs_.lower_bound(from), runs_.end());
    runs_.emplace(from, after);
    for (auto& [key, value] : tail) runs_.emplace_hint(runs_.end(), key - length, std::move(value));
    coalesce(from, from);
}

template <class Value>
template <class F>
void RunMap<Value>::remapKeys(F newKey) {
    std::map<std::uint32_t, Value> moved;
    for (auto& [key, value] : runs_) moved.insert_or_assign(moved.end(), newKey(key), std::move(value));
    runs_ = std::move(moved);
    normalize();
}

using ConditionSet = std::vector<Index>;  // indices into Document::conditions, sorted

struct Marker {
    Index flow = 0;
    std::uint32_t offset = 0;
    std::string type;
    std::string text;
    bool alive = true;
};

struct XRef {
    Index flow = 0;
    std::uint32_t offset = 0;
    std::string sourceFile;
    std::string format;
    bool alive = true;
};

struct Flow {
    std::string name;
    std::string text;
    Index root = kNil;  // highest-level element
    bool main = false;
    RunMap<CharFormat> formats;
    RunMap<std::uint32_t> conditions;  // interned condition sets, 0 = none
    // Ranges of text removed with deleted elements whose offsets are not yet
    // applied: deleting many elements costs one pass (Document::applyCuts).
    std::vector<std::pair<std::uint32_t, std::uint32_t>> pendingCuts;
};

struct Color {
    std::string name;
    std::string rgb;  // "#RRGGBB"
};

struct ConditionFormat {
    std::string name;
    bool shown = true;
};

// Content form: a comment or processing instruction kept so that a save
// writes it back where it stood: inside `parent` (kNil: after the root
// element), after its child `after` (kNil: at the parent's start) and
// `offset` bytes of text further on.
struct ContentMarkup {
    Index parent = kNil;
    Index after = kNil;
    std::uint32_t offset = 0;
    std::string markup;  // "<!--...-->" or "<?...?>" as written
};

struct Document {
    std::string path;  // host notation, "" for untitled
    std::string title;
    bool modified = false;
    bool visible = true;
    bool showAll = true;
    bool contentForm = true;  // saved back in the vocabulary it was read in
    std::string contentProlog;  // content form: XML declaration, DOCTYPE and what stands before the root
    std::vector<ContentMarkup> contentMarkup;  // content form: comments and instructions in and after the root

    std::vector<ElementDefinition> definitions;
    std::unordered_map<std::string, Index> definitionByTag;
    std::vector<Element> elements;
    std::vector<AttributeSlot> attributeSlots;
    ValueLists values;
    std::vector<Flow> flows;
    std::vector<Color> colors;
    std::vector<ConditionFormat> conditions;
    std::vector<ConditionSet> conditionSets;  // interned; 0 is the empty set
    std::vector<std::string> markerTypes;
    std::vector<Marker> markers;
    std::vector<XRef> xrefs;
    std::map<Index, ConditionSet> rowConditions;  // table row element -> conditions
    std::map<std::pair<Index, int>, int> intProperties;  // pass-through properties by (object, number)
    std::map<std::pair<Index, int>, std::string> stringProperties;

    std::map<ConditionSet, std::uint32_t> conditionSetIndex;  // filled by internConditionSet

    // Helpers used by the loaders and the host.
    Index definitionFor(const std::string& tag, int type = kElementContainer);
    std::uint32_t attributePosition(Index definition, const std::string& name);  // adds the definition when missing
    Index appendElement(Index definition, Index parent, std::uint16_t flow);
    // Sets one attribute of an element (values 0 unsets it). Appending to the
    // element's slots is O(1) while they are the last ones, as a loader has them.
    void setAttributeValues(Index element, std::uint32_t position, std::uint32_t values);
    std::uint32_t attributeValues(Index element, std::uint32_t position) const;  // 0 when unset
    std::uint32_t internConditionSet(const ConditionSet& set);  // the set sorted; 0 for the empty set
    Index colorByName(std::string_view name) const;  // kNil when missing
    Index conditionByName(std::string_view name) const;
    Index markerTypeByName(std::string_view name) const;
    // Adds what every document starts with: the eight standard colours and
    // the marker type "Hypertext", each when missing.
    void ensureStandardCatalogue();
    // Rebuilds the lookup tables (definitionByTag, attribute indexes, the
    // condition-set index) from the vectors, after a loader filled them.
    void rebuildIndexes();
    bool hasPendingCuts() const;
    void applyCuts();  // see Flow::pendingCuts
};

struct StandardColor {
    const char* name;
    const char* rgb;
};
// Black, White, Red, Green, Blue, Cyan, Magenta, Yellow.
const std::vector<StandardColor>& standardColors();

struct BookComponent {
    std::string path;
    std::string userString;
    std::uint32_t handleId = 0;
    bool alive = true;
};

struct Book {
    std::string path;
    bool modified = false;
    bool visible = true;
    std::vector<BookComponent> components;  // in book order
    std::uint32_t nextComponentId = 1;      // component handles are never reused
};

}  // namespace voka::headless
