// Whether an element stays in a filtered document: every condition of the
// loaded filter scheme whose attribute the element has must hold, that is,
// one of the element's values is listed, or it has none and "<no value>" is
// listed, or it has some and "<any value>" is. An element without the
// attribute always passes the condition. Attribute names are compared
// exactly; values exactly unless the scheme ignores case; the two keywords
// are recognised in any case.
//
// A walk tests many elements against the same conditions: a FilterContext
// keeps them prepared, and reads each element's values as borrowed views.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"
#include "schemes/ValuePath.h"

#include <cstdint>
#include <string>
#include <vector>

namespace voka {

enum FilterVerdict : int { kFilterKeep = 0, kFilterRemove = 1 };

struct FilterContext {
    struct Rule {
        int slot = 0;              // the attribute's name slot in `path`
        bool listsNothing = false;  // no values at all: every element with the attribute goes
        bool noValue = false;
        bool onlyNoValue = false;  // "<no value>" is the one value listed
        bool anyValue = false;
        std::uint64_t wanted = 0;  // the listed values' bits among the path's words
        const std::vector<std::string>* values = nullptr;
    };
    bool exactValues = true;
    std::vector<Rule> rules;
    ValuePath path;  // holds the one element being tested
};

// Readies `context` for testing elements of `doc` against state.filter; the
// scheme must neither change nor move while the context is in use.
void prepareFilter(const PluginState& state, Handle doc, FilterContext& context);

// The element verdict over a prepared context: 1 remove, 0 keep.
int filterVerdictIn(Host& host, FilterContext& context, Handle element);

// Rule `ruleIndex` against an element attribute list: 1 when the element fails it.
int FilterRuleVerdict(const PluginState& state, int ruleIndex, const Attributes& elementAttributes);

// 1 when the element goes, 0 when it stays (or the document or element is 0).
int FilterElementVerdict(Host& host, PluginState& state, Handle doc, Handle element);

// The verdict of the highest-level element of the document's main flow; 0
// when there is no main flow or it has no element.
int TopElementCheck(Host& host, PluginState& state, Handle doc);

}  // namespace voka
