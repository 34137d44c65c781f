#include "schemes/RuleMatching.h"

#include "schemes/ElementAttributes.h"
#include "schemes/NameLists.h"
#include "schemes/SchemeSchema.h"

#include <string>

namespace voka {

namespace {

// Ancestors remembered between elements; a walk only ever needs the chain
// above the current element, so the memory is dropped when it grows past this.
constexpr std::size_t kRememberedAncestors = 4096;

constexpr int kNotLookedUp = -2;

const std::vector<std::string>& noValues() {
    static const std::vector<std::string> empty;
    return empty;
}

int nameSlot(MatchContext& context, const std::string& name) {
    int found = findInList(context.names, name, context.exact);
    if (found >= 0) return found;
    context.names.push_back(name);
    return static_cast<int>(context.names.size()) - 1;
}

int findAttribute(const Attributes& attributes, const std::string& name, bool exact) {
    for (std::size_t i = 0; i < attributes.size(); ++i) {
        if (namesEqual(attributes[i].name, name, exact)) return static_cast<int>(i);
    }
    return -1;
}

void readDefinitions(Host& host, MatchContext& context, Handle definition, MatchContext::DefinitionInfo& info) {
    if (info.definitionsRead) return;
    info.definitionsRead = true;
    info.definitions = host.attributeDefinitions(context.doc, definition);
    info.declares.assign(context.names.size(), 0);
    for (std::size_t slot = 0; slot < context.names.size(); ++slot) {
        for (const AttributeDefinition& declared : info.definitions) {
            if (namesEqual(declared.name, context.names[slot], context.exact)) {
                info.declares[slot] = 1;
                break;
            }
        }
    }
}

// The element's attributes as the scheme sees them, into `out`. The
// definition is only needed for the EDD defaults; 0 asks the host for it.
void collect(Host& host, MatchContext& context, Handle element, Handle definition, Attributes& out) {
    out = host.attributes(context.doc, element);
    if (context.eddDefaults) {
        if (definition == kNoObject) definition = host.elementDefinition(context.doc, element);
        MatchContext::DefinitionInfo& info = context.definitions[definition];
        readDefinitions(host, context, definition, info);
        applyDefaultsByPosition(out, info.definitions);
    }
    if (context.spaceDelimited) splitValuesAtBlanks(out);
}

Handle parentOf(Host& host, MatchContext& context, MatchContext::Ancestor& ancestor, Handle element) {
    if (!ancestor.parentKnown) {
        ancestor.parent = host.parent(context.doc, element);
        ancestor.parentKnown = true;
    }
    return ancestor.parent;
}

bool declaresSlot(Host& host, MatchContext& context, MatchContext::Ancestor& ancestor, Handle element, int slot) {
    if (ancestor.definition == kNoObject) ancestor.definition = host.elementDefinition(context.doc, element);
    if (ancestor.definition == kNoObject) return false;
    MatchContext::DefinitionInfo& info = context.definitions[ancestor.definition];
    readDefinitions(host, context, ancestor.definition, info);
    return info.declares[static_cast<std::size_t>(slot)] != 0;
}

// The ancestor walk from `start` upwards for one name: the first ancestor
// with values ends it. Results are remembered per ancestor, so siblings and
// descendants reuse them; an ancestor's attributes are collected only when
// its definition declares the name.
InheritedValues inheritFrom(Host& host, MatchContext& context, Handle start, int slot) {
    std::size_t slots = context.names.size();
    InheritedValues base{true, false, &noValues()};
    context.chain.clear();
    for (Handle at = start; at != kNoObject;) {
        MatchContext::Ancestor& ancestor = context.ancestors[at];
        if (ancestor.resolved.empty()) ancestor.resolved.resize(slots);
        if (ancestor.resolved[static_cast<std::size_t>(slot)].known) {
            base = ancestor.resolved[static_cast<std::size_t>(slot)];
            break;
        }
        context.chain.emplace_back(&ancestor, at);
        at = parentOf(host, context, ancestor, at);
    }
    for (std::size_t i = context.chain.size(); i-- > 0;) {
        auto [ancestorPointer, handle] = context.chain[i];
        MatchContext::Ancestor& ancestor = *ancestorPointer;
        InheritedValues result = base;
        if (declaresSlot(host, context, ancestor, handle, slot)) {
            if (!ancestor.collected) {
                collect(host, context, handle, ancestor.definition, ancestor.attributes);
                ancestor.collected = true;
            }
            int index = findAttribute(ancestor.attributes, context.names[static_cast<std::size_t>(slot)],
                                      context.exact);
            if (index >= 0) {
                const std::vector<std::string>& values = ancestor.attributes[static_cast<std::size_t>(index)].values;
                result.seen = true;
                if (!values.empty()) result.values = &values;
            }
        }
        ancestor.resolved[static_cast<std::size_t>(slot)] = result;
        base = result;
    }
    return base;
}

int slotIndexOf(MatchContext& context, int slot) {
    int& index = context.slotIndex[static_cast<std::size_t>(slot)];
    if (index == kNotLookedUp) {
        index = findAttribute(*context.attributes, context.names[static_cast<std::size_t>(slot)], context.exact);
    }
    return index;
}

const InheritedValues& inheritedFor(Host& host, MatchContext& context, int slot) {
    InheritedValues& inherited = context.inherited[static_cast<std::size_t>(slot)];
    if (inherited.known) return inherited;
    if (!context.parentKnown) {
        context.parent = host.parent(context.doc, context.element);
        context.parentKnown = true;
    }
    inherited = inheritFrom(host, context, context.parent, slot);
    return inherited;
}

void beginElement(MatchContext& context, Handle element, const Attributes* attributes) {
    if (context.ancestors.size() > kRememberedAncestors) context.ancestors.clear();
    context.element = element;
    context.parentKnown = false;
    context.attributes = attributes;
    context.slotIndex.assign(context.names.size(), kNotLookedUp);
    context.inherited.assign(context.names.size(), InheritedValues{});
}

// Equality without a library call for the common short mismatch.
bool sameText(const std::string& a, const std::string& b) {
    if (a.size() != b.size()) return false;
    if (a.empty()) return true;
    return a.front() == b.front() && std::char_traits<char>::compare(a.data(), b.data(), a.size()) == 0;
}

bool listed(const std::vector<std::string>& values, const std::string& wanted, bool exact) {
    for (const std::string& value : values) {
        if (exact ? sameText(value, wanted) : equalsIgnoreCase(value, wanted)) return true;
    }
    return false;
}

int matchRule(Host& host, MatchContext& context, int ruleIndex, bool inherit) {
    const MatchContext::Rule& rule = context.rules[static_cast<std::size_t>(ruleIndex)];
    const MatchContext::Condition* conditions = context.conditions.data() + rule.first;
    const bool matchAll = rule.matchAll;
    int result = 0;
    bool noAttributeSeen = true;  // deliberately not reset per condition
    for (std::size_t i = 0; i < rule.count; ++i) {
        const MatchContext::Condition& condition = conditions[i];
        int index = slotIndexOf(context, condition.slot);
        const std::vector<std::string>* values = &noValues();
        if (index >= 0) {
            noAttributeSeen = false;
            values = &(*context.attributes)[static_cast<std::size_t>(index)].values;
        }
        if ((index >= 0 && values->empty()) || (index < 0 && inherit)) {
            const InheritedValues& inherited = inheritedFor(host, context, condition.slot);
            if (inherited.seen) noAttributeSeen = false;
            values = inherited.values;
        }
        if (noAttributeSeen) {
            if (matchAll) return 0;
            continue;
        }
        if (values->empty()) {
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
        bool missed = false;
        for (const std::string& wanted : *condition.wanted) {
            if (listed(*values, wanted, context.exact)) {
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
    context = MatchContext{};
    context.doc = doc;
    context.exact = state.coloring.options.ignoreCase == 0;
    context.eddDefaults = state.coloring.options.includeEddDefaults;
    context.spaceDelimited = state.coloring.options.spaceDelimited;
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
}

const MatchContext::DefinitionInfo& definitionInfo(Host& host, MatchContext& context, Handle definition) {
    MatchContext::DefinitionInfo& info = context.definitions[definition];
    if (info.tagged < 0) info.tagged = host.definitionTag(context.doc, definition).empty() ? 0 : 1;
    return info;
}

int findMatchingRuleIn(Host& host, PluginState& state, MatchContext& context, Handle element, int contextCode) {
    collect(host, context, element, kNoObject, context.ownAttributes);
    beginElement(context, element, &context.ownAttributes);
    const bool inherit = inheritsIn(contextCode);
    for (std::size_t rule = 0; rule < context.rules.size(); ++rule) {
        if (matchRule(host, context, static_cast<int>(rule), inherit)) return static_cast<int>(rule);
    }
    return -1;
}

int RuleMatchesElement(Host& host, PluginState& state, Handle doc, Handle element, int ruleIndex,
                       const Attributes& elementAttributes, int inherit) {
    if (ruleIndex < 0 || ruleIndex >= static_cast<int>(state.coloring.rules.size())) return 0;
    MatchContext context;
    prepareMatching(state, doc, context);
    beginElement(context, element, &elementAttributes);
    return matchRule(host, context, ruleIndex, inherit != 0);
}

int FindMatchingRule(Host& host, PluginState& state, Handle doc, Handle element, int contextCode) {
    MatchContext context;
    prepareMatching(state, doc, context);
    return findMatchingRuleIn(host, state, context, element, contextCode);
}

}  // namespace voka
