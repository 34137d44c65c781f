#include "schemes/NameLists.h"

#include "frame/PluginState.h"

namespace voka {

namespace {

char lowerAscii(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

}  // namespace

bool equalsIgnoreCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (lowerAscii(a[i]) != lowerAscii(b[i])) return false;
    }
    return true;
}

bool namesEqual(std::string_view a, std::string_view b, bool exact) {
    return exact ? a == b : equalsIgnoreCase(a, b);
}

int findInList(const std::vector<std::string>& list, std::string_view probe, bool exact) {
    for (std::size_t i = 0; i < list.size(); ++i) {
        if (namesEqual(list[i], probe, exact)) return static_cast<int>(i);
    }
    return -1;
}

void dropFirstCharacters(std::string& text, std::size_t count) {
    if (text.size() < count) return;
    text.erase(0, count);
}

int optionIsOn(std::string_view word) { return equalsIgnoreCase(word, "true") ? 1 : 0; }

bool isNoneName(std::string_view name) { return equalsIgnoreCase(name, kNone); }

}  // namespace voka
