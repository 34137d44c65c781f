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
#include "host/headless/ContentModel.h"
#include "host/headless/RunMap.h"

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
    // The list as the host shows it: an empty value is no value, so `audience=""` has none.
    const std::vector<std::string>& visible(std::uint32_t id) const { return lists_[visible_[id]]; }
    std::size_t size() const { return lists_.size(); }

private:
    std::uint32_t add(std::vector<std::string> values);
    std::deque<std::vector<std::string>> lists_;  // a deque: borrowed lists never move
    std::vector<std::uint32_t> visible_;          // per list, the same list without empty values
    // Looked up by view: a value read from a file is not copied unless it is new.
    struct ViewHash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
    };
    std::unordered_map<std::string, std::uint32_t, ViewHash, std::equal_to<>> bySingle_;  // one-value lists, the common case
    std::map<std::vector<std::string>, std::uint32_t> byList_;
};

struct ElementDefinition {
    std::string tag;
    int type = kElementContainer;
    AttributeDefinitions attributes;
    std::unordered_map<std::string, std::uint32_t> attributeIndex;  // name -> position
    bool alive = true;
    ContentModel content;  // content form: what the DTD lets the element hold
    // Declared only by an external DTD: the full form leaves it out when no
    // element uses it, as a DTD of hundreds of elements would swamp a topic.
    bool fromExternalDtd = false;
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

// Attributes whose values are several, separated by a character; '\0' reads
// an attribute's value as one whatever its vocabulary says.
using ValueSeparators = std::unordered_map<std::string, char>;

struct Document {
    std::string path;  // host notation, "" for untitled
    std::string title;
    bool modified = false;
    bool visible = true;
    bool showAll = true;
    bool contentForm = true;  // saved back in the vocabulary it was read in
    std::string contentProlog;  // content form: XML declaration, DOCTYPE and what stands before the root
    std::vector<ContentMarkup> contentMarkup;  // content form: comments and instructions in and after the root
    // Content form read from a file: for each element read, by its index, the
    // byte offset in the file just past its start tag (0 when unknown), so
    // that a finding can name the line and column where the element starts.
    std::vector<std::uint32_t> sourceTagEnds;
    // Content form: attributes whose several values the vocabulary separates
    // with another character than a blank (DocBook's profiling attributes
    // take ';'); a value read there is several values, written back so joined.
    ValueSeparators valueSeparators;

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
    // The markers stand in (flow, offset) order, as loaders and appending
    // writers leave them: text added then shifts only those after it, found
    // by a binary search. Cleared by a marker added out of order.
    bool markersInOrder = true;
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
    // Adds a marker, noting when it breaks the markers' order.
    void addMarker(Marker marker);
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

// What a book was read from. Only a voka book file is written back in place:
// a map or an XInclude document is the writer's own, and a book saves its
// changes into it never.
enum class BookSource { VokaBook, DitaMap, XInclude };

struct Book {
    std::string path;
    BookSource source = BookSource::VokaBook;
    bool modified = false;
    bool visible = true;
    std::vector<BookComponent> components;  // in book order
    std::uint32_t nextComponentId = 1;      // component handles are never reused
};

}  // namespace voka::headless
