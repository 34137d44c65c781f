#include "cli/LocalDtd.h"

#include "cli/Outputs.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <sys/stat.h>

namespace voka::cli {
namespace fs = std::filesystem;

namespace {

constexpr std::uintmax_t kLargestDtd = 64u << 20;

// The quoted literal at `at` (after blanks), advancing past it.
bool quoted(const std::string& text, std::size_t& at, std::string& literal) {
    while (at < text.size() && (text[at] == ' ' || text[at] == '\t' || text[at] == '\r' || text[at] == '\n')) ++at;
    if (at >= text.size() || (text[at] != '"' && text[at] != '\'')) return false;
    const std::size_t end = text.find(text[at], at + 1);
    if (end == std::string::npos) return false;
    literal = text.substr(at + 1, end - at - 1);
    at = end + 1;
    return true;
}

bool readWhole(const fs::path& path, std::string& bytes) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return false;
    std::ostringstream all;
    all << in.rdbuf();
    bytes = all.str();
    return static_cast<bool>(in) || in.eof();
}

}  // namespace

std::string doctypeSystemId(const std::string& prolog) {
    std::size_t at = prolog.find("<!DOCTYPE");
    if (at == std::string::npos) return "";
    at += 9;
    while (at < prolog.size() && (prolog[at] == ' ' || prolog[at] == '\t' || prolog[at] == '\r' || prolog[at] == '\n')) ++at;
    while (at < prolog.size() && prolog[at] != ' ' && prolog[at] != '\t' && prolog[at] != '\r' && prolog[at] != '\n' &&
           prolog[at] != '[' && prolog[at] != '>')
        ++at;  // the root's name
    while (at < prolog.size() && (prolog[at] == ' ' || prolog[at] == '\t' || prolog[at] == '\r' || prolog[at] == '\n')) ++at;
    std::string literal;
    if (prolog.compare(at, 6, "SYSTEM") == 0) {
        at += 6;
        return quoted(prolog, at, literal) ? literal : "";
    }
    if (prolog.compare(at, 6, "PUBLIC") == 0) {
        at += 6;
        std::string publicId;
        return quoted(prolog, at, publicId) && quoted(prolog, at, literal) ? literal : "";
    }
    return "";
}

bool copyLocalDtd(const std::string& prolog, const std::string& input, const std::string& output,
                  const std::string& outputFolder, std::set<std::string>& handled, std::vector<std::string>& written,
                  std::string& problem) {
    const std::string systemId = doctypeSystemId(prolog);
    // Only a plain relative path that stays within the input's folder: a URI, an
    // absolute path or one climbing out is found by the output as by the input.
    if (systemId.empty() || systemId.find(':') != std::string::npos || systemId.find('%') != std::string::npos)
        return true;
    const fs::path relative = fs::path(systemId).lexically_normal();
    if (relative.is_absolute() || relative.empty() || *relative.begin() == "..") return true;
    const fs::path from = fs::path(input).parent_path() / relative;
    const fs::path to = fs::path(output).parent_path() / relative;
    if (!handled.insert(to.string()).second) return true;
    std::error_code ec;
    if (!fs::is_regular_file(from, ec) || fs::file_size(from, ec) > kLargestDtd || ec) return true;
    std::string bytes, there;
    if (!readWhole(from, bytes)) return true;
    struct stat info {};
    if (::lstat(to.c_str(), &info) == 0) {
        if (S_ISREG(info.st_mode) && readWhole(to, there) && there == bytes) return true;
        std::cerr << "voka: warning: " << to.string() << " is not the DTD " << from.string()
                  << ", and is left as it is: the output names it as its DTD\n";
        return true;
    }
    if (!makeFoldersFor(outputFolder, to.string(), problem)) return false;
    if (!writeAtomically(to.string(), [&](const auto& sink) { return sink(bytes); }, problem)) return false;
    written.push_back(to.string());
    return true;
}

}  // namespace voka::cli
