#include "filtering/FilterVerdict.h"

#include "schemes/NameLists.h"
#include "schemes/SchemeSchema.h"

#include <algorithm>

namespace voka {

namespace {

// The steps every condition goes through, whatever form the values come in.
// `has`: the element has the attribute; `empty`: it has no value;
// listed(): one of the condition's values is among the element's.
template <class Listed>
int ruleVerdict(const FilterContext::Rule& rule, bool has, bool empty, Listed listed) {
    if (!has) return kFilterKeep;
    if (rule.listsNothing) return kFilterRemove;
    if (rule.noValue && empty) return kFilterKeep;
    if (rule.onlyNoValue) return kFilterRemove;
    if (!rule.noValue && empty) return kFilterRemove;
    if (rule.anyValue) return kFilterKeep;
    return listed() ? kFilterKeep : kFilterRemove;
}

FilterContext::Rule factsOf(const FilterRule& source) {
    FilterContext::Rule rule;
    rule.values = &source.values;
    rule.listsNothing = source.values.empty();
    rule.noValue = findInList(source.values, kNoValue, false) >= 0;
    rule.onlyNoValue = rule.noValue && source.values.size() == 1;
    rule.anyValue = findInList(source.values, kAnyValue, false) >= 0;
    return rule;
}

template <class Values>
bool anyListed(const std::vector<std::string>& wanted, const Values& values, bool exact) {
    for (const std::string& want : wanted)
        for (const auto& value : values)
            if (namesEqual(value, want, exact)) return true;
    return false;
}

}  // namespace

void prepareFilter(const PluginState& state, Handle doc, FilterContext& context) {
    const FilterScheme& scheme = state.filter;
    context.exactValues = scheme.options.ignoreCase == 0;
    context.rules.clear();
    std::vector<std::string> names;
    std::vector<std::string> words;
    for (const FilterRule& source : scheme.rules) {
        FilterContext::Rule rule = factsOf(source);
        auto name = std::find(names.begin(), names.end(), source.attribute);
        rule.slot = static_cast<int>(name - names.begin());
        if (name == names.end()) names.push_back(source.attribute);
        for (const std::string& value : source.values)
            if (std::find(words.begin(), words.end(), value) == words.end()) words.push_back(value);
        context.rules.push_back(rule);
    }
    ValueOptions options;
    options.exactNames = true;  // a filter finds its attribute by exact name, whatever the scheme says
    options.exactValues = context.exactValues;
    options.eddDefaults = scheme.options.includeEddDefaults != 0;
    options.spaceDelimited = scheme.options.spaceDelimited != 0;
    context.path.prepare(doc, names, options);
    if (!context.path.setWords(words)) return;
    for (std::size_t i = 0; i < context.rules.size(); ++i)
        for (const std::string& value : scheme.rules[i].values)
            context.rules[i].wanted |= std::uint64_t{1}
                                       << (std::find(words.begin(), words.end(), value) - words.begin());
}

int filterVerdictIn(Host& host, FilterContext& context, Handle element) {
    ValuePath& path = context.path;
    path.clear();
    // A gone element has no attributes, and an element without attributes stays.
    if (!path.enter(host, element)) return kFilterKeep;
    for (const FilterContext::Rule& rule : context.rules) {
        const ValuePath::Own& own = path.own(rule.slot);
        const int verdict = ruleVerdict(rule, own.has, own.values.empty(), [&] {
            if (path.hasWords()) return (own.values.words & rule.wanted) != 0;
            return anyListed(*rule.values, path.values(own.values), context.exactValues);
        });
        if (verdict == kFilterRemove) return kFilterRemove;
    }
    return kFilterKeep;
}

int FilterRuleVerdict(const PluginState& state, int ruleIndex, const Attributes& elementAttributes) {
    if (ruleIndex < 0 || ruleIndex >= static_cast<int>(state.filter.rules.size())) return kFilterKeep;
    const FilterRule& source = state.filter.rules[static_cast<std::size_t>(ruleIndex)];
    const FilterContext::Rule rule = factsOf(source);
    // The first attribute of the name, compared exactly.
    auto attribute = std::find_if(elementAttributes.begin(), elementAttributes.end(),
                                  [&](const Attribute& a) { return a.name == source.attribute; });
    const bool has = attribute != elementAttributes.end();
    return ruleVerdict(rule, has, has && attribute->values.empty(), [&] {
        return anyListed(source.values, attribute->values, state.filter.options.ignoreCase == 0);
    });
}

int FilterElementVerdict(Host& host, PluginState& state, Handle doc, Handle element) {
    if (doc == kNoObject || element == kNoObject) return kFilterKeep;
    FilterContext context;
    prepareFilter(state, doc, context);
    return filterVerdictIn(host, context, element);
}

int TopElementCheck(Host& host, PluginState& state, Handle doc) {
    const Handle flow = host.mainFlow(doc);
    if (flow == kNoObject) return kFilterKeep;
    const Handle top = host.highestLevelElement(doc, flow);
    if (top == kNoObject) return kFilterKeep;
    return FilterElementVerdict(host, state, doc, top);
}

}  // namespace voka
