#include "schemes/RuleMatching.h"

#include "schemes/NameLists.h"
#include "schemes/SchemeSchema.h"

#include <algorithm>
#include <span>
#include <string>
#include <string_view>

namespace voka {

namespace {

int nameSlot(MatchContext& context, const std::string& name) {
    int found = findInList(context.names, name, context.exact);
    if (found >= 0) return found;
    context.names.push_back(name);
    return static_cast<int>(context.names.size()) - 1;
}

// Equality without a library call for the common short mismatch.
bool sameText(std::string_view a, const std::string& b) {
    if (a.size() != b.size()) return false;
    if (a.empty()) return true;
    return a.front() == b.front() && std::char_traits<char>::compare(a.data(), b.data(), a.size()) == 0;
}

bool listed(std::span<const std::string_view> values, const std::string& wanted, bool exact) {
    for (std::string_view value : values) {
        if (exact ? sameText(value, wanted) : equalsIgnoreCase(value, wanted)) return true;
    }
    return false;
}

// Rule `ruleIndex` against the last element of the context's path.
int matchRule(const MatchContext& context, int ruleIndex, bool inherit) {
    const ValuePath& path = context.path;
    const MatchContext::Rule& rule = context.rules[static_cast<std::size_t>(ruleIndex)];
    const MatchContext::Condition* conditions = context.conditions.data() + rule.first;
    const bool matchAll = rule.matchAll;
    int result = 0;
    bool noAttributeSeen = true;  // deliberately not reset per condition
    for (std::size_t i = 0; i < rule.count; ++i) {
        const MatchContext::Condition& condition = conditions[i];
        const ValuePath::Own& own = path.own(condition.slot);
        ValuePath::Values found;
        if (own.has) {
            noAttributeSeen = false;
            found = own.values;
        }
        if ((own.has && found.empty()) || (!own.has && inherit)) {
            const ValuePath::Inherited& inherited = path.inherited(condition.slot);
            if (inherited.seen) noAttributeSeen = false;
            found = inherited.values;
        }
        if (noAttributeSeen) {
            if (matchAll) return 0;
            continue;
        }
        if (found.empty()) {
            result = condition.noValue ? 1 : 0;
            if (result == 1 && !matchAll) return 1;
            if (result == 0 && matchAll) return 0;
            continue;
        }
        if (condition.anyValue) {
            result = 1;
            if (!matchAll) return 1;
            continue;
        }
        if (path.hasWords()) {
            // Each wanted value is one of the path's words: a bit test per value.
            const std::uint64_t hit = found.words & condition.wantedWords;
            if (hit != 0) {
                result = 1;
                if (!matchAll) return 1;
            }
            if (matchAll && hit != condition.wantedWords) return 0;
            continue;
        }
        const std::span<const std::string_view> values = path.values(found);
        bool missed = false;
        for (const std::string& wanted : *condition.wanted) {
            if (listed(values, wanted, context.exact)) {
                result = 1;
                if (!matchAll) return 1;
            } else {
                missed = true;
            }
        }
        if (matchAll && missed) return 0;
    }
    return result;
}

bool inheritsIn(int contextCode) {
    return contextCode == kContextSelection || contextCode == kContextTableCell || contextCode == kContextFootnote;
}

}  // namespace

void prepareMatching(const PluginState& state, Handle doc, MatchContext& context) {
    context.doc = doc;
    context.exact = state.coloring.options.ignoreCase == 0;
    context.names.clear();
    context.conditions.clear();
    context.rules.clear();
    for (const ColorRule& rule : state.coloring.rules) {
        MatchContext::Rule prepared;
        prepared.matchAll = rule.matchAll == 1;
        prepared.first = context.conditions.size();
        prepared.count = rule.conditions.size();
        for (const Attribute& attribute : rule.conditions) {
            MatchContext::Condition condition;
            condition.slot = nameSlot(context, attribute.name);
            condition.noValue = findInList(attribute.values, kNoValue, false) >= 0;
            condition.anyValue = findInList(attribute.values, kAnyValue, false) >= 0;
            condition.wanted = &attribute.values;
            context.conditions.push_back(condition);
        }
        context.rules.push_back(prepared);
    }
    ValueOptions options;
    options.exactNames = options.exactValues = context.exact;
    options.eddDefaults = state.coloring.options.includeEddDefaults != 0;
    options.spaceDelimited = state.coloring.options.spaceDelimited != 0;
    context.path.prepare(doc, context.names, options);
    std::vector<std::string> words;
    for (const MatchContext::Condition& condition : context.conditions)
        for (const std::string& wanted : *condition.wanted)
            if (std::find(words.begin(), words.end(), wanted) == words.end()) words.push_back(wanted);
    if (!context.path.setWords(words)) return;
    for (MatchContext::Condition& condition : context.conditions)
        for (const std::string& wanted : *condition.wanted)
            condition.wantedWords |= std::uint64_t{1} << (std::find(words.begin(), words.end(), wanted) - words.begin());
}

int findMatchingRuleIn(Host& host, PluginState& state, MatchContext& context, Handle element, int contextCode) {
    // A gone element has no values and no ancestors: no rule matches it.
    if (!context.path.reach(host, element)) return -1;
    const bool inherit = inheritsIn(contextCode);
    for (std::size_t rule = 0; rule < context.rules.size(); ++rule) {
        if (matchRule(context, static_cast<int>(rule), inherit)) return static_cast<int>(rule);
    }
    return -1;
}

int RuleMatchesElement(Host& host, PluginState& state, Handle doc, Handle element, int ruleIndex,
                       const Attributes& elementAttributes, int inherit) {
    if (ruleIndex < 0 || ruleIndex >= static_cast<int>(state.coloring.rules.size())) return 0;
    MatchContext context;
    prepareMatching(state, doc, context);
    const Handle parent = host.parent(doc, element);
    if (parent == kNoObject || !context.path.reach(host, parent)) context.path.clear();
    context.path.enterGiven(element, elementAttributes);
    return matchRule(context, ruleIndex, inherit != 0);
}

int FindMatchingRule(Host& host, PluginState& state, Handle doc, Handle element, int contextCode) {
    MatchContext context;
    prepareMatching(state, doc, context);
    return findMatchingRuleIn(host, state, context, element, contextCode);
}

}  // namespace voka
