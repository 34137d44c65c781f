#include "host/headless/persist/AtomicFile.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace voka::headless {

namespace {

std::string failure(const std::string& target, const char* what, int err) {
    return "Cannot save \"" + target + "\": " + what + ": " + std::strerror(err);
}

std::string directoryOf(const std::string& path) {
    auto slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    if (slash == 0) return "/";
    return path.substr(0, slash);
}

// The rename is durable only once the directory entry is on disk too.
void syncDirectory(const std::string& path) {
    int dir = ::open(directoryOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (dir < 0) return;
    ::fsync(dir);
    ::close(dir);
}

}  // namespace

bool beginAtomicFile(const std::string& target, AtomicFile& file, std::string& error) {
    file.target = target;
    struct stat existing {};
    bool exists = ::stat(target.c_str(), &existing) == 0;
    if (exists && S_ISDIR(existing.st_mode)) {
        error = failure(target, "it is a folder", EISDIR);
        return false;
    }
    std::string pattern = target + ".voka-XXXXXX";
    std::vector<char> name(pattern.begin(), pattern.end());
    name.push_back('\0');
    int fd = ::mkstemp(name.data());
    if (fd < 0) {
        error = failure(target, "cannot create a temporary file beside it", errno);
        return false;
    }
    // A replaced file keeps its permissions; a new one gets the usual rw-r--r--.
    ::fchmod(fd, exists ? (existing.st_mode & 07777) : 0644);
    ::fcntl(fd, F_SETFD, FD_CLOEXEC);
    file.fd = fd;
    file.temporary = name.data();
    return true;
}

bool commitAtomicFile(AtomicFile& file, std::string& error) {
    if (file.fd < 0) {
        error = failure(file.target, "nothing was written", EBADF);
        return false;
    }
    if (::fsync(file.fd) != 0) {
        error = failure(file.target, "cannot sync", errno);
        abandonAtomicFile(file);
        return false;
    }
    int fd = file.fd;
    file.fd = -1;
    if (::close(fd) != 0) {
        error = failure(file.target, "cannot close", errno);
        ::unlink(file.temporary.c_str());
        return false;
    }
    if (::rename(file.temporary.c_str(), file.target.c_str()) != 0) {
        error = failure(file.target, "cannot replace it", errno);
        ::unlink(file.temporary.c_str());
        return false;
    }
    syncDirectory(file.target);
    return true;
}

void abandonAtomicFile(AtomicFile& file) {
    if (file.fd >= 0) ::close(file.fd);
    file.fd = -1;
    if (!file.temporary.empty()) ::unlink(file.temporary.c_str());
}

}  // namespace voka::headless
