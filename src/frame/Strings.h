// Small string helpers the plug-in needs where the host's client library
// would offer them: comparison ignoring case and the leading-digits
// conversion that settings values are read with.
#pragma once

#include <string>
#include <string_view>

namespace voka {

// ASCII comparison ignoring case, as the host library's compare does.
bool equalsIgnoreCase(std::string_view a, std::string_view b);
// The leading decimal number of the text (optional blanks and sign first),
// 0 when it starts with anything else; clamped to the range of int.
int leadingInteger(std::string_view text);
// The text when it has at most `keep` characters, else "..." and its last `keep`.
std::string lastCharactersShown(const std::string& text, std::size_t keep);

}  // namespace voka
