// The records both file forms carry beside the element tree (character
// format runs, condition runs, markers, cross-references), as lists of
// named fields: the full form writes the fields as XML attributes, the
// content form as pseudo-attributes of processing instructions.
#pragma once

#include "host/headless/Model.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace voka::headless {

using Fields = std::vector<std::pair<std::string, std::string>>;

// The value of a field; false when absent.
bool findField(const Fields& fields, std::string_view name, std::string& value);
bool parseNumber(std::string_view text, std::uint32_t& number);

// Pseudo-attributes of a processing instruction: name="value" pairs with
// XML character references. False when the data is not in that shape.
bool parsePseudoAttributes(std::string_view data, Fields& fields);
std::string formatPseudoAttributes(const Fields& fields);

// Calls f(begin, end, value) for every run that carries a value, in order,
// clamped to the text; a run map's last run reaches the end of the text.
template <class Value, class F>
void forEachRun(const RunMap<Value>& map, std::uint32_t textSize, F f) {
    const std::size_t count = map.size();
    for (std::size_t i = 0; i < count; ++i) {
        const Value& value = map.value(i);
        if (value == Value{}) continue;
        const std::uint32_t begin = map.key(i);
        const std::uint32_t end = i + 1 == count ? textSize : std::min(map.key(i + 1), textSize);
        if (begin < end) f(begin, end, value);
    }
}

// Name lookups while a document is read; the catalogues come first in a
// file, the records that name their entries after them.
struct NameCache {
    std::unordered_map<std::string, Index> colors;
    std::unordered_map<std::string, Index> conditions;
    void index(const Document& doc);
    Index color(const Document& doc, const std::string& name);
    // A condition named by a record but missing from the catalogue is added, shown.
    Index condition(Document& doc, const std::string& name);
};

// Character formats: the colour by name, the other properties by number.
Fields formatFields(const Document& doc, const CharFormat& format);
// False with a reason when a field is malformed or names an unknown colour.
bool readFormat(Document& doc, NameCache& names, const Fields& fields, CharFormat& format, std::string& problem);

// Condition sets as names joined by ";".
std::string conditionNames(const Document& doc, const ConditionSet& set);
std::uint32_t readConditionSet(Document& doc, NameCache& names, std::string_view joined);
ConditionSet readConditionList(Document& doc, NameCache& names, std::string_view joined);

// Reads a range record's start and end; false when missing or reversed.
bool readRange(const Fields& fields, std::uint32_t textSize, std::uint32_t& begin, std::uint32_t& end);

}  // namespace voka::headless
