#include "schemes/NameLists.h"

#include "frame/PluginState.h"

namespace voka {

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
