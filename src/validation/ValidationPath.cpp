#include "validation/ValidationPath.h"

#include "schemes/NameLists.h"
#include "schemes/SchemeSchema.h"

namespace voka {

void ValidationPath::prepare(const ValidationScheme& scheme, Handle doc) {
    doc_ = doc;
    exact_ = scheme.options.ignoreCase == 0;
    rules_.clear();
    emptyAllowed_.clear();
    std::vector<std::string> names;
    // One slot per name under the scheme's comparison: a name finds the first entry.
    for (const ValidationRule& rule : scheme.rules) {
        if (findInList(names, rule.attribute, exact_) >= 0) continue;
        names.push_back(rule.attribute);
        rules_.push_back(&rule);
        // "<no value>" is recognised in any case, whatever the scheme compares with.
        emptyAllowed_.push_back(findInList(rule.values, kNoValue, false) >= 0 ? 1 : 0);
    }
    slots_ = names.size();
    ValueOptions options;
    options.exactNames = exact_;
    options.exactValues = exact_;
    options.eddDefaults = scheme.options.includeEddDefaults != 0;
    options.spaceDelimited = scheme.options.spaceDelimited != 0;
    path_.prepare(doc, names, options);
    definitions_.clear();
    lastDefinition_ = kNoObject;
    lastFacts_ = nullptr;
    facts_ = nullptr;
    chain_.clear();
    rows_.clear();
}

int ValidationPath::slotOf(std::string_view name) const {
    for (std::size_t slot = 0; slot < slots_; ++slot)
        if (namesEqual(rules_[slot]->attribute, name, exact_)) return static_cast<int>(slot);
    return -1;
}

const ValidationPath::DefinitionFacts& ValidationPath::facts(Host& host, Handle definition) {
    DefinitionFacts& f = definitions_[definition];
    if (f.read) return f;
    f.read = true;
    const AttributeDefinitions declared = host.attributeDefinitions(doc_, definition);
    f.declaresAny = !declared.empty();
    std::vector<char> seen(slots_, 0);
    for (const AttributeDefinition& attribute : declared) {
        const int slot = slotOf(attribute.name);
        if (slot < 0) continue;
        if (seen[static_cast<std::size_t>(slot)]) f.shared = true;
        seen[static_cast<std::size_t>(slot)] = 1;
        f.checked.push_back(Checked{slot, attribute.name});
    }
    return f;
}

ValidationPath::Reference ValidationPath::reference(int slot) const {
    if (chain_.size() < 2) return Reference{};
    return rows_[(chain_.size() - 2) * slots_ + static_cast<std::size_t>(slot)];
}

bool ValidationPath::push(Host& host, Handle element) {
    if (!path_.enter(host, element)) return false;
    chain_.push_back(element);
    const std::size_t base = (chain_.size() - 1) * slots_;
    rows_.resize(base + slots_);
    for (std::size_t slot = 0; slot < slots_; ++slot) {
        const ValuePath::Own& own = path_.own(static_cast<int>(slot));
        if (own.has) rows_[base + slot] = Reference{true, own.values};
        else rows_[base + slot] = base == 0 ? Reference{} : rows_[base - slots_ + slot];
    }
    // Neighbours mostly share a definition.
    const Handle definition = path_.lastDefinition();
    if (lastFacts_ == nullptr || definition != lastDefinition_) {
        lastFacts_ = &facts(host, definition);  // nodes of the map never move
        lastDefinition_ = definition;
    }
    facts_ = lastFacts_;
    return true;
}

void ValidationPath::pop() {
    path_.leave();
    chain_.pop_back();
    rows_.resize(chain_.size() * slots_);
}

void ValidationPath::clear() {
    path_.clear();
    chain_.clear();
    rows_.clear();
}

bool ValidationPath::rebuildTo(Host& host, Handle element) {
    clear();
    scratch_.clear();
    for (Handle at = element; at != kNoObject; at = host.parent(doc_, at)) scratch_.push_back(at);
    for (std::size_t i = scratch_.size(); i-- > 0;) {
        if (!push(host, scratch_[i])) {
            clear();
            return false;
        }
    }
    return true;
}

bool ValidationPath::reach(Host& host, Handle element) {
    const Handle parent = host.parent(doc_, element);
    while (!chain_.empty() && chain_.back() != parent) pop();
    const bool reached =
        (!chain_.empty() || parent == kNoObject || rebuildTo(host, parent)) && push(host, element);
    if (!reached) facts_ = nullptr;
    return reached;
}

}  // namespace voka
