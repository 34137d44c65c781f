#include "host/headless/persist/XmlOut.h"

#include <charconv>
#include <cerrno>
#include <unistd.h>

namespace voka::headless {

namespace {

constexpr std::size_t kBufferSize = 1 << 20;

// The replacements, and per context a byte per character: 0 written as is,
// else the replacement's number.
constexpr std::string_view kReplacements[] = {"", "&amp;", "&lt;", "&gt;", "&#13;", "&quot;", "&#9;", "&#10;"};
struct EscapeTable {
    std::uint8_t text[256] = {};
    std::uint8_t attribute[256] = {};
    constexpr EscapeTable() {
        text['&'] = attribute['&'] = 1;
        text['<'] = attribute['<'] = 2;
        text['>'] = attribute['>'] = 3;
        text['\r'] = attribute['\r'] = 4;
        attribute['"'] = 5;
        attribute['\t'] = 6;
        attribute['\n'] = 7;
    }
};
constexpr EscapeTable kEscapes;

}  // namespace

XmlOut::XmlOut(int fd) : fd_(fd), buffer_(new char[kBufferSize]), capacity_(kBufferSize) {}

void XmlOut::writeThrough(const char* data, std::size_t size) {
    std::size_t done = 0;
    while (error_ == 0 && done < size) {
        ssize_t n = ::write(fd_, data + done, size - done);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) {
            error_ = n < 0 ? errno : EIO;
            break;
        }
        done += static_cast<std::size_t>(n);
    }
}

void XmlOut::drain() {
    writeThrough(buffer_.get(), used_);
    used_ = 0;
}

void XmlOut::raw(std::string_view markup) {
    if (error_ == 0) append(markup.data(), markup.size());
}

// Copies the stretches between characters that need a reference whole.
void XmlOut::escaped(std::string_view s, const std::uint8_t* table) {
    if (error_ != 0) return;
    const char* start = s.data();
    const char* const end = start + s.size();
    for (const char* at = start; at != end; ++at) {
        const std::uint8_t code = table[static_cast<unsigned char>(*at)];
        if (code == 0) continue;
        append(start, static_cast<std::size_t>(at - start));
        append(kReplacements[code].data(), kReplacements[code].size());
        start = at + 1;
    }
    append(start, static_cast<std::size_t>(end - start));
}

void XmlOut::text(std::string_view characters) { escaped(characters, kEscapes.text); }

void XmlOut::attributeValue(std::string_view value) { escaped(value, kEscapes.attribute); }

void XmlOut::attribute(std::string_view name, std::string_view value) {
    if (error_ != 0) return;
    append(" ", 1);
    append(name.data(), name.size());
    append("=\"", 2);
    attributeValue(value);
    append("\"", 1);
}

void XmlOut::attribute(std::string_view name, long long value) {
    char digits[24];
    const auto written = std::to_chars(digits, digits + sizeof digits, value);
    attribute(name, std::string_view(digits, static_cast<std::size_t>(written.ptr - digits)));
}

bool XmlOut::flush() {
    drain();
    return error_ == 0;
}

std::string escapeAttributeValue(std::string_view value) {
    std::string out;
    out.reserve(value.size());
    for (char c : value) {
        const std::uint8_t code = kEscapes.attribute[static_cast<unsigned char>(c)];
        if (code == 0)
            out.push_back(c);
        else
            out.append(kReplacements[code]);
    }
    return out;
}

}  // namespace voka::headless
