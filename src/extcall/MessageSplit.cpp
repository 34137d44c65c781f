#include "extcall/MessageSplit.h"

#include <cctype>

namespace voka {

std::vector<std::string> splitMessage(const std::string& message, const std::string& delimiter) {
    // Searching for "" would find it everywhere: the message stays one item.
    if (delimiter.empty()) return {message};
    std::vector<std::string> items;
    std::size_t from = 0;
    for (std::size_t at = message.find(delimiter); at != std::string::npos; at = message.find(delimiter, from)) {
        items.push_back(message.substr(from, at - from));
        from = at + delimiter.size();
    }
    // A message ending with the delimiter has no empty last item.
    if (from < message.size()) items.push_back(message.substr(from));
    return items;
}

bool flagArgument(const std::string& text) {
    if (text.empty()) return false;
    const char first = text.front();
    return first == 't' || first == 'T' || first == '1';
}

char firstLetter(const std::string& text) {
    if (text.empty()) return '\0';
    return static_cast<char>(std::toupper(static_cast<unsigned char>(text.front())));
}

}  // namespace voka
