#include "validation/ValidationRules.h"

#include "schemes/NameLists.h"

namespace voka {

namespace {

template <class List>
bool listed(const List& list, std::string_view value, bool exact) {
    for (const auto& entry : list)
        if (namesEqual(entry, value, exact)) return true;
    return false;
}

}  // namespace

int findRuleErrors(const AttributeUnderCheck& attribute, const int active[4], bool exact, RuleError errors[4]) {
    int count = 0;
    const bool empty = attribute.values.empty();
    if (active[0]) {
        for (std::string_view value : attribute.values) {
            if (listed(*attribute.valid, value, exact)) continue;
            errors[count++] = RuleError{1, value};
            break;
        }
    }
    if (active[1] && attribute.hasReference && !attribute.reference.empty()) {
        // Every value is looked at; the last one missing is the one told.
        const std::string_view* missing = nullptr;
        for (const std::string_view& value : attribute.values)
            if (!listed(attribute.reference, value, exact)) missing = &value;
        if (missing != nullptr) errors[count++] = RuleError{2, *missing};
    }
    if (active[2] && empty && attribute.hasReference && !attribute.reference.empty())
        errors[count++] = RuleError{3, {}};
    if (active[3] && empty && !attribute.emptyAllowed) errors[count++] = RuleError{4, {}};
    return count;
}

}  // namespace voka
