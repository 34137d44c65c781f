#include "coloring/ColoringMessages.h"

namespace voka {

std::string withTexts(const char* pattern, std::initializer_list<std::string_view> texts) {
    std::string_view rest(pattern);
    std::string out;
    auto next = texts.begin();
    for (std::size_t at = rest.find("%s"); at != std::string_view::npos && next != texts.end();
         at = rest.find("%s")) {
        out.append(rest.substr(0, at));
        out.append(*next++);
        rest.remove_prefix(at + 2);
    }
    out.append(rest);
    return out;
}

}  // namespace voka
