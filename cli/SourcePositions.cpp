#include "cli/SourcePositions.h"

#include <algorithm>
#include <fcntl.h>
#include <numeric>
#include <unistd.h>

namespace voka::cli {

std::vector<SourcePosition> startTagPositions(const std::string& systemPath, const std::vector<std::uint32_t>& tagEnds) {
    std::vector<SourcePosition> positions(tagEnds.size());
    std::vector<std::size_t> order(tagEnds.size());
    std::iota(order.begin(), order.end(), 0);
    std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return tagEnds[a] < tagEnds[b]; });
    std::size_t next = 0;
    while (next < order.size() && tagEnds[order[next]] == 0) ++next;
    const int fd = ::open(systemPath.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) return positions;

    // One pass, counting lines and the characters of the current line; the
    // last `<` read is the start of any tag that ends before the next one.
    std::uint64_t at = 0;
    std::uint32_t line = 1, column = 0;
    SourcePosition lastOpen;
    auto settle = [&] {
        while (next < order.size() && tagEnds[order[next]] <= at) positions[order[next++]] = lastOpen;
    };
    char buffer[1 << 16];
    while (next < order.size()) {
        const ssize_t n = ::read(fd, buffer, sizeof buffer);
        if (n <= 0) break;
        for (ssize_t i = 0; i < n; ++i, ++at) {
            settle();
            const auto c = static_cast<unsigned char>(buffer[i]);
            if (c == '\n') {
                ++line;
                column = 0;
                continue;
            }
            if ((c & 0xC0) != 0x80) ++column;  // a UTF-8 continuation byte is no new character
            if (c == '<') lastOpen = SourcePosition{line, column};
        }
    }
    settle();
    ::close(fd);
    return positions;
}

}  // namespace voka::cli
