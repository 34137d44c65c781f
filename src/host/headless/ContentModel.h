// What a DTD lets an element hold, kept per element definition of a
// content-form document: enough to tell whether an element's children still
// fit after some of them were deleted, so that a filtered file that its DTD
// would reject is named, not written silently.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace voka::headless {

struct Document;

// The declaration as a postfix program: an entry >= 0 is a child's name
// (an index into `names`), a negative one an operator.
struct ContentModel {
    enum class Kind : std::uint8_t { Undeclared, Any, Empty, Children };
    static constexpr std::int32_t kNothing = -1;   // matches no child: #PCDATA, an empty group
    static constexpr std::int32_t kSequence = -2;  // a , b
    static constexpr std::int32_t kChoice = -3;    // a | b
    static constexpr std::int32_t kOptional = -4;  // a?
    static constexpr std::int32_t kRepeat = -5;    // a*
    static constexpr std::int32_t kOneOrMore = -6; // a+
    Kind kind = Kind::Undeclared;
    std::vector<std::int32_t> program;
    std::vector<std::string> names;
};

// Whether children with these tags, in this order, fit the model. Undeclared
// and ANY take anything; a program that does not parse is taken to fit.
bool childrenFit(const ContentModel& model, std::span<const std::string_view> tags);

// Elements still in the document whose children fitted their content model
// before deletions and no longer do, in document order. Deleted elements keep
// their parent, and a loaded document's elements stand in document order.
std::vector<std::uint32_t> brokenByDeletions(const Document& doc);

}  // namespace voka::headless
