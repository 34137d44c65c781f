// Comparisons of names and values as the schemes use them: exact or ignoring
// case, a search in a string list, the drop of a rule name's position
// prefix, and the reading of a scheme's "True"/"False" option words. None of
// them allocates, so the matcher may call them once per element and rule.
#pragma once

#include "frame/Strings.h"

#include <string>
#include <string_view>
#include <vector>

namespace voka {

// Exact comparison when `exact`, otherwise ignoring case.
bool namesEqual(std::string_view a, std::string_view b, bool exact);

// First index of `probe` in `list` (exact when `exact`, else ignoring case), or -1.
int findInList(const std::vector<std::string>& list, std::string_view probe, bool exact);

// Drops the first `count` characters when the text is at least that long;
// shorter texts are kept whole.
void dropFirstCharacters(std::string& text, std::size_t count);

// A scheme option is on when its word is "true" in any case; anything else,
// the missing-value sentinel included, is off.
int optionIsOn(std::string_view word);

// True for "<none>" in any case: the name of no scheme or category.
bool isNoneName(std::string_view name);

}  // namespace voka
