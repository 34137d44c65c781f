// The four validation rules, applied to one attribute of one element:
//   1 Invalid syntax: a value the scheme does not list (the first one);
//   2 Child/ancestor condition mismatch: a value the nearest ancestor that
//     declares the attribute lacks, when that ancestor has values (the last one);
//   3 Unconditional child / conditional ancestor: no value, under an ancestor
//     with some;
//   4 Invalid empty attribute: no value, and the scheme does not list "<no value>".
// Pure functions over values already read; nothing here reads the host.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace voka {

struct AttributeUnderCheck {
    std::span<const std::string_view> values;        // the element's, as the scheme reads them
    const std::vector<std::string>* valid = nullptr;  // the scheme's valid values
    bool emptyAllowed = false;                       // the scheme lists "<no value>"
    bool hasReference = false;                       // some ancestor declares the attribute
    std::span<const std::string_view> reference;     // the nearest such ancestor's values
};

struct RuleError {
    int rule = 0;
    std::string_view value;  // the offending value; empty for rules 3 and 4
};

// The errors of the rules switched on in `active` (rules 1 to 4 at 0 to 3),
// in rule order, into `errors`; returns how many. Values are compared
// exactly when `exact`, else ignoring case.
int findRuleErrors(const AttributeUnderCheck& attribute, const int active[4], bool exact, RuleError errors[4]);

}  // namespace voka
