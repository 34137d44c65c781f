#include "host/headless/persist/FileReferences.h"

#include "host/headless/persist/ExternalResources.h"

#include <algorithm>

namespace voka::headless {

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
    if (!uriScheme(href).empty()) {
        // file: URIs name local files; every other scheme is the network.
        if (!pathOfUri(href, file) || file.front() != '/') return Reference::Remote;
    } else {
        file = percentDecoded(href);
        // Writers on Windows separate with backslashes; the host takes them as separators too.
        std::replace(file.begin(), file.end(), '\\', '/');
        if (file.find('\0') != std::string::npos) return Reference::Empty;
        if (file.front() != '/') file = baseFolder(base) + file;
    }
    path = std::filesystem::path(file).lexically_normal().string();
    return Reference::File;
}

}  // namespace voka::headless
