// How another client's message is taken apart: a command word and its
// arguments, separated by the delimiter of the local preferences, and the
// reading of an argument that stands for a yes/no flag.
#pragma once

#include <string>
#include <vector>

namespace voka {

// The items of the message, the command word first. The delimiter is matched
// exactly wherever it occurs, left to right; the text before each occurrence
// is an item even when empty, and the rest after the last one is an item only
// when it is not empty. An empty delimiter leaves the whole message one item.
std::vector<std::string> splitMessage(const std::string& message, const std::string& delimiter);

// True when the text starts with t, T or 1; anything else, "" included, is false.
bool flagArgument(const std::string& text);

// The text's first character in upper case, '\0' for an empty text: type
// arguments are told apart by their first letter alone.
char firstLetter(const std::string& text);

}  // namespace voka
