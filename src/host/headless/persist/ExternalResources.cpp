#include "host/headless/persist/ExternalResources.h"

#include <libxml/catalog.h>
#include <libxml/xmlmemory.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace voka::headless {

namespace {

bool unreserved(unsigned char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' || c == '.' ||
           c == '_' || c == '~';
}

void appendEscape(std::string& out, unsigned char c) {
    static const char kHex[] = "0123456789ABCDEF";
    out += '%';
    out += kHex[c >> 4];
    out += kHex[c & 15];
}

int hexValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// The scheme of an absolute URI ("http"), or empty for a path or a relative reference.
std::string_view schemeOf(std::string_view uri) {
    for (std::size_t i = 0; i < uri.size(); ++i) {
        const char c = uri[i];
        if (c == ':') return i > 1 ? uri.substr(0, i) : std::string_view();  // "C:" is no scheme
        const bool ok = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                        (i > 0 && ((c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.'));
        if (!ok) return {};
    }
    return {};
}

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if ((a[i] | 0x20) != (b[i] | 0x20)) return false;
    return true;
}

std::string realFolder(const std::string& path) {
    char buffer[PATH_MAX];
    return ::realpath(path.c_str(), buffer) ? std::string(buffer) : std::string();
}

bool inside(const std::string& path, const std::string& folder) {
    if (folder.empty()) return false;
    if (folder == "/") return true;
    return path.size() > folder.size() && path.compare(0, folder.size(), folder) == 0 && path[folder.size()] == '/';
}

// Opens without blocking, so that a FIFO cannot stall the load, and reads a
// regular file whole.
ExternalFile readRegular(const std::string& path, std::size_t maxBytes) {
    ExternalFile file;
    int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (fd < 0) {
        if (errno == ENOENT || errno == ENOTDIR) file.missing = true;
        else file.refusal = std::string("it cannot be opened: ") + std::strerror(errno);
        return file;
    }
    struct stat info {};
    if (::fstat(fd, &info) != 0 || !S_ISREG(info.st_mode)) {
        ::close(fd);
        file.refusal = "it is not a regular file";
        return file;
    }
    if (static_cast<std::size_t>(info.st_size) > maxBytes) {
        ::close(fd);
        file.refusal = "it is larger than the " + std::to_string(maxBytes) + " bytes one document may read";
        return file;
    }
    file.bytes.resize(static_cast<std::size_t>(info.st_size));
    std::size_t done = 0;
    while (done < file.bytes.size()) {
        ssize_t n = ::read(fd, file.bytes.data() + done, file.bytes.size() - done);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) break;
        done += static_cast<std::size_t>(n);
    }
    file.bytes.resize(done);
    ::close(fd);
    return file;
}

}  // namespace

std::string fileUri(std::string_view absolutePath) {
    std::string uri = "file://";
    for (unsigned char c : absolutePath) {
        if (unreserved(c) || c == '/') uri += static_cast<char>(c);
        else appendEscape(uri, c);
    }
    return uri;
}

std::string_view uriScheme(std::string_view uri) { return schemeOf(uri); }

std::string percentDecoded(std::string_view text) {
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

bool pathOfUri(std::string_view uri, std::string& path) {
    const std::string_view scheme = schemeOf(uri);
    if (scheme.empty()) {
        path.assign(uri);
        return !path.empty();
    }
    if (!equalsIgnoringCase(scheme, "file")) return false;
    uri.remove_prefix(5);
    if (uri.substr(0, 2) == "//") {
        uri.remove_prefix(2);
        if (uri.substr(0, 9) == "localhost") uri.remove_prefix(9);
        if (uri.empty() || uri.front() != '/') return false;  // a file on another host
    }
    if (auto cut = uri.find_first_of("?#"); cut != std::string_view::npos) uri = uri.substr(0, cut);
    path = percentDecoded(uri);
    return !path.empty() && path.find('\0') == std::string::npos;
}

std::string displayLocation(std::string_view uriOrPath) {
    std::string path;
    if (equalsIgnoringCase(schemeOf(uriOrPath), "file") && pathOfUri(uriOrPath, path)) return path;
    return std::string(uriOrPath);
}

std::string escapedReference(std::string_view systemId) {
    std::string out;
    for (unsigned char c : systemId) {
        if (c <= 0x20 || c >= 0x7f || c == '"' || c == '<' || c == '>' || c == '\\' || c == '^' || c == '`' ||
            c == '{' || c == '|' || c == '}')
            appendEscape(out, c);
        else
            out += static_cast<char>(c);
    }
    return out;
}

ExternalFile readExternal(const std::string& documentFolder, const char* uri, const char* publicId,
                          std::size_t maxBytes) {
    ExternalFile file;
    xmlChar* listed = xmlCatalogResolve(reinterpret_cast<const xmlChar*>(publicId), reinterpret_cast<const xmlChar*>(uri));
    std::string resolved = listed ? reinterpret_cast<const char*>(listed) : (uri ? uri : "");
    if (listed) xmlFree(listed);
    std::string path;
    if (!pathOfUri(resolved, path)) {
        file.refusal = schemeOf(resolved).empty() ? "it names no file" : "voka never reads from the network";
        return file;
    }
    if (path.front() != '/') {
        file.refusal = "it names no absolute path";
        return file;
    }
    // A catalog is the user's own list of trusted places; anything else must
    // lie in the document's folder tree, links resolved.
    if (!listed) {
        const std::string real = realFolder(path);
        if (real.empty()) {
            file.missing = true;
            return file;
        }
        if (!inside(real, documentFolder)) {
            file.refusal = "it is outside the document's folder and no XML catalog lists it";
            return file;
        }
    }
    ExternalFile read = readRegular(path, maxBytes);
    read.path = path;
    return read;
}

}  // namespace voka::headless
