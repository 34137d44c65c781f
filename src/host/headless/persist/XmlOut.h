// Buffered XML output to a file descriptor: raw markup, escaped character
// data and escaped attribute values. A write error is remembered and every
// later write is dropped; the caller checks ok() once at the end.
#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

namespace voka::headless {

class XmlOut {
public:
    explicit XmlOut(int fd);
    XmlOut(const XmlOut&) = delete;
    XmlOut& operator=(const XmlOut&) = delete;

    void raw(std::string_view markup);
    void text(std::string_view characters);      // escapes & < > and CR
    void attributeValue(std::string_view value);  // also escapes " and TAB, LF, CR
    void attribute(std::string_view name, std::string_view value);  // ` name="value"`
    void attribute(std::string_view name, long long value);
    bool flush();
    bool ok() const { return error_ == 0; }
    int error() const { return error_; }

private:
    void escaped(std::string_view s, const std::uint8_t* table);
    void append(const char* data, std::size_t size) {
        if (size > capacity_ - used_) drain();
        if (size > capacity_ - used_) return writeThrough(data, size);
        std::memcpy(buffer_.get() + used_, data, size);
        used_ += size;
    }
    void drain();
    void writeThrough(const char* data, std::size_t size);
    int fd_;
    int error_ = 0;
    std::unique_ptr<char[]> buffer_;
    std::size_t capacity_;
    std::size_t used_ = 0;
};

// Escapes a value for a pseudo-attribute of a processing instruction, where
// "?>" must never appear: '>' is written as a reference too.
std::string escapeAttributeValue(std::string_view value);

}  // namespace voka::headless
