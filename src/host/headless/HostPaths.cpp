#include "host/headless/HostPaths.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace voka::headless {

std::string toHostPath(const std::string& systemPath) {
    std::string host = systemPath;
    std::replace(host.begin(), host.end(), '/', '\\');
    return host;
}

std::string toSystemPath(const std::string& hostPath) {
    std::string system = hostPath;
    std::replace(system.begin(), system.end(), '\\', '/');
    return system;
}

std::string normalHostPath(const std::string& hostPath) {
    if (hostPath.empty()) return hostPath;
    std::filesystem::path path(toSystemPath(hostPath));
    std::error_code error;
    if (path.is_relative()) {
        std::filesystem::path absolute = std::filesystem::absolute(path, error);
        if (!error) path = absolute;
    }
    return toHostPath(path.lexically_normal().string());
}

std::string fileNameOf(const std::string& hostPath) {
    const auto slash = hostPath.find_last_of("\\/");
    return slash == std::string::npos ? hostPath : hostPath.substr(slash + 1);
}

std::string folderOf(const std::string& hostPath) {
    const auto slash = hostPath.find_last_of("\\/");
    return slash == std::string::npos ? std::string() : hostPath.substr(0, slash + 1);
}

std::string toDisplayText(const std::string& text) {
    std::string shown = text;
    for (std::size_t i = 0; i < shown.size(); ++i)
        if (shown[i] == '\\' && (i + 1 >= shown.size() || shown[i + 1] != '!')) shown[i] = '/';
    return shown;
}

}  // namespace voka::headless
