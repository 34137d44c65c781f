#include "host/headless/persist/FileReferences.h"

#include "host/headless/persist/ExternalResources.h"

#include <algorithm>

namespace voka::headless {

namespace {

bool hasScheme(std::string_view uri) {
    for (std::size_t i = 0; i < uri.size(); ++i) {
        const char c = uri[i];
        if (c == ':') return i > 1;  // "C:" is a drive, not a scheme
        const bool ok = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                        (i > 0 && ((c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.'));
        if (!ok) return false;
    }
    return false;
}

int hexValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

std::string decoded(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size() && hexValue(text[i + 1]) >= 0 && hexValue(text[i + 2]) >= 0) {
            out += static_cast<char>(hexValue(text[i + 1]) * 16 + hexValue(text[i + 2]));
            i += 2;
        } else {
            out += text[i];
        }
    }
    return out;
}

}  // namespace

std::string baseFolder(const std::string& base) {
    const std::size_t slash = base.rfind('/');
    return slash == std::string::npos ? std::string() : base.substr(0, slash + 1);
}

Reference resolveReference(std::string_view href, const std::string& base, std::string& path) {
    while (!href.empty() && (href.front() == ' ' || href.front() == '\t' || href.front() == '\n')) href.remove_prefix(1);
    while (!href.empty() && (href.back() == ' ' || href.back() == '\t' || href.back() == '\n')) href.remove_suffix(1);
    if (auto cut = href.find_first_of("#?"); cut != std::string_view::npos) href = href.substr(0, cut);
    if (href.empty()) return Reference::Empty;
    std::string file;
    if (hasScheme(href)) {
        // file: URIs name local files; every other scheme is the network.
        if (!pathOfUri(href, file) || file.front() != '/') return Reference::Remote;
    } else {
        file = decoded(href);
        // Writers on Windows separate with backslashes; the host takes them as separators too.
        std::replace(file.begin(), file.end(), '\\', '/');
        if (file.find('\0') != std::string::npos) return Reference::Empty;
        if (file.front() != '/') file = baseFolder(base) + file;
    }
    path = std::filesystem::path(file).lexically_normal().string();
    return Reference::File;
}

}  // namespace voka::headless
