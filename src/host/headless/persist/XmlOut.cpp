#include "host/headless/persist/XmlOut.h"

#include <array>
#include <cerrno>
#include <unistd.h>

namespace voka::headless {

namespace {

constexpr std::size_t kBufferSize = 1 << 20;

// The replacement of each byte that needs one, by context; empty: written as is.
struct EscapeTable {
    std::array<std::string_view, 256> text{};
    std::array<std::string_view, 256> attribute{};
    constexpr EscapeTable() {
        text['&'] = attribute['&'] = "&amp;";
        text['<'] = attribute['<'] = "&lt;";
        text['>'] = attribute['>'] = "&gt;";
        text['\r'] = attribute['\r'] = "&#13;";
        attribute['"'] = "&quot;";
        attribute['\t'] = "&#9;";
        attribute['\n'] = "&#10;";
    }
};
constexpr EscapeTable kEscapes;

}  // namespace

XmlOut::XmlOut(int fd) : fd_(fd) { buffer_.reserve(kBufferSize + 4096); }

void XmlOut::drain() {
    std::size_t done = 0;
    while (error_ == 0 && done < buffer_.size()) {
        ssize_t n = ::write(fd_, buffer_.data() + done, buffer_.size() - done);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) {
            error_ = n < 0 ? errno : EIO;
            break;
        }
        done += static_cast<std::size_t>(n);
    }
    buffer_.clear();
}

void XmlOut::raw(std::string_view markup) {
    if (error_ != 0) return;
    buffer_.append(markup);
    if (buffer_.size() >= kBufferSize) drain();
}

void XmlOut::escaped(std::string_view s, bool inAttribute) {
    if (error_ != 0) return;
    const auto& table = inAttribute ? kEscapes.attribute : kEscapes.text;
    std::size_t start = 0;
    for (std::size_t i = 0; i < s.size(); ++i) {
        std::string_view replacement = table[static_cast<unsigned char>(s[i])];
        if (replacement.empty()) continue;
        buffer_.append(s.data() + start, i - start);
        buffer_.append(replacement);
        start = i + 1;
    }
    buffer_.append(s.data() + start, s.size() - start);
    if (buffer_.size() >= kBufferSize) drain();
}

void XmlOut::text(std::string_view characters) { escaped(characters, false); }

void XmlOut::attributeValue(std::string_view value) { escaped(value, true); }

void XmlOut::attribute(std::string_view name, std::string_view value) {
    raw(" ");
    raw(name);
    raw("=\"");
    attributeValue(value);
    raw("\"");
}

void XmlOut::attribute(std::string_view name, long long value) {
    attribute(name, std::string_view(std::to_string(value)));
}

bool XmlOut::flush() {
    drain();
    return error_ == 0;
}

std::string escapeAttributeValue(std::string_view value) {
    std::string out;
    out.reserve(value.size());
    for (char c : value) {
        std::string_view replacement = kEscapes.attribute[static_cast<unsigned char>(c)];
        if (replacement.empty())
            out.push_back(c);
        else
            out.append(replacement);
    }
    return out;
}

}  // namespace voka::headless
