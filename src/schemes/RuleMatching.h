// Deciding which rule of the loaded colouring scheme applies to an element.
//
// A rule's conditions are tested in order against the element's attribute
// values; an attribute the element has without a value takes the values of
// the nearest ancestor that has some, and in the inheriting contexts (the
// selection and the two special element kinds) so does an attribute the
// element lacks. The no-attribute-seen flag is carried across the conditions
// of one rule and never reset, so an absent attribute counts as "absent" only
// until some earlier condition found its own: users' schemes depend on that.
//
// A walk matches many elements against the same rules; a MatchContext keeps
// what does not change between them (the conditions' names and keywords) and
// the path of the walk with the values of every element on it, so that an
// element costs one borrowed read of its values and no allocation.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"
#include "schemes/ValuePath.h"

#include <string>
#include <vector>

namespace voka {

// Context codes: the selection, the two special element kinds, a document
// and a book's document.
inline constexpr int kContextSelection = 10;
inline constexpr int kContextTableCell = 11;
inline constexpr int kContextFootnote = 12;
inline constexpr int kContextDocument = 13;
inline constexpr int kContextBook = 14;

struct MatchContext {
    struct Condition {
        int slot = 0;  // index into names
        bool noValue = false;
        bool anyValue = false;
        const std::vector<std::string>* wanted = nullptr;  // the rule's listed values
        std::uint64_t wantedWords = 0;  // their bits among the path's words, when it keeps words
    };
    struct Rule {
        bool matchAll = false;
        std::size_t first = 0;  // into conditions
        std::size_t count = 0;
    };

    // From the rule table (prepareMatching).
    bool exact = true;
    std::vector<std::string> names;  // distinct condition names under the scheme's comparison
    std::vector<Condition> conditions;  // of all rules, in order
    std::vector<Rule> rules;

    Handle doc = kNoObject;
    ValuePath path;  // the walk's element and its ancestors, with their values of `names`
};

// Readies `context` for matching elements of `doc` against state.coloring.
// The rule table must neither change nor move while the context is in use.
void prepareMatching(const PluginState& state, Handle doc, MatchContext& context);

// FindMatchingRule over a prepared context.
int findMatchingRuleIn(Host& host, PluginState& state, MatchContext& context, Handle element, int contextCode);

// 1 when rule `ruleIndex` matches the element whose collected attributes are
// `elementAttributes`; `inherit` 1 lets absent attributes take ancestors' values.
int RuleMatchesElement(Host& host, PluginState& state, Handle doc, Handle element, int ruleIndex,
                       const Attributes& elementAttributes, int inherit);

// Index of the first rule that matches the element, or -1. Context codes 10,
// 11 and 12 inherit absent attributes from ancestors.
int FindMatchingRule(Host& host, PluginState& state, Handle doc, Handle element, int contextCode);

}  // namespace voka
