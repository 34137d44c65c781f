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
// what does not change between them (the conditions' names and keywords, the
// element definitions, the ancestors' collected values) so that an element
// costs one attribute fetch and no allocation per comparison.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"

#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace voka {

// Context codes: the selection, the two special element kinds, a document
// and a book's document.
inline constexpr int kContextSelection = 10;
inline constexpr int kContextTableCell = 11;
inline constexpr int kContextFootnote = 12;
inline constexpr int kContextDocument = 13;
inline constexpr int kContextBook = 14;

// The values an ancestor walk yields for one attribute name, and whether any
// ancestor on the way had the attribute at all.
struct InheritedValues {
    bool known = false;
    bool seen = false;
    const std::vector<std::string>* values = nullptr;
};

struct MatchContext {
    struct Condition {
        int slot = 0;  // index into names
        bool noValue = false;
        bool anyValue = false;
        const std::vector<std::string>* wanted = nullptr;  // the rule's listed values
    };
    struct Rule {
        bool matchAll = false;
        std::size_t first = 0;  // into conditions
        std::size_t count = 0;
    };
    struct DefinitionInfo {
        int tagged = -1;  // -1 not read yet, else 0 or 1
        bool definitionsRead = false;
        AttributeDefinitions definitions;
        std::vector<char> declares;  // per name slot
    };
    struct Ancestor {
        bool parentKnown = false;
        Handle parent = kNoObject;
        Handle definition = kNoObject;
        bool collected = false;
        Attributes attributes;
        std::vector<InheritedValues> resolved;  // per name slot
    };

    // From the rule table (prepareMatching).
    bool exact = true;
    int eddDefaults = 0;
    int spaceDelimited = 0;
    std::vector<std::string> names;  // distinct condition names under the scheme's comparison
    std::vector<Condition> conditions;  // of all rules, in order
    std::vector<Rule> rules;

    Handle doc = kNoObject;
    std::unordered_map<Handle, DefinitionInfo> definitions;
    std::unordered_map<Handle, Ancestor> ancestors;

    // The element being matched.
    Handle element = kNoObject;
    bool parentKnown = false;
    Handle parent = kNoObject;
    Attributes ownAttributes;
    const Attributes* attributes = nullptr;
    std::vector<int> slotIndex;                // per name slot: index in *attributes, -1 absent, -2 not looked up
    std::vector<InheritedValues> inherited;    // per name slot
    std::vector<std::pair<Ancestor*, Handle>> chain;  // scratch of the ancestor walk
};

// Readies `context` for matching elements of `doc` against state.coloring.
// The rule table must neither change nor move while the context is in use.
void prepareMatching(const PluginState& state, Handle doc, MatchContext& context);

// The cached facts of an element definition (tag present, declared names).
const MatchContext::DefinitionInfo& definitionInfo(Host& host, MatchContext& context, Handle definition);

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
