#include "host/headless/persist/AtomicFile.h"

#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <random>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace voka::headless {

namespace {

// Named temporaries not yet committed, for removePendingTemporaries(): a
// signal handler may read only fixed storage, so the list is a fixed array
// written before a slot is marked in use. It is process-wide by nature.
constexpr int kSlots = 32;
struct PendingSlot {
    std::atomic<bool> used{false};
    char path[PATH_MAX];
};
PendingSlot pending[kSlots];

int listPending(const std::string& path) {
    if (path.size() >= PATH_MAX) return -1;
    for (int i = 0; i < kSlots; ++i) {
        bool expected = false;
        if (!pending[i].used.load() && pending[i].used.compare_exchange_strong(expected, true)) {
            std::memcpy(pending[i].path, path.c_str(), path.size() + 1);
            return i;
        }
    }
    return -1;
}

void unlistPending(int slot) {
    if (slot >= 0) pending[slot].used.store(false);
}

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

std::string randomSuffix() {
    static const char kLetters[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    std::random_device device;
    std::string suffix;
    for (int i = 0; i < 6; ++i) suffix += kLetters[device() % (sizeof kLetters - 1)];
    return suffix;
}

// Gives the unnamed file a name beside the target and renames it over the
// target, with the cancel signals held back in between so that no handler
// can end the process while the name exists.
bool publishUnnamed(AtomicFile& file, std::string& error) {
    sigset_t held, previous;
    sigemptyset(&held);
    sigaddset(&held, SIGINT);
    sigaddset(&held, SIGTERM);
    sigaddset(&held, SIGHUP);
    pthread_sigmask(SIG_BLOCK, &held, &previous);
    const std::string procPath = "/proc/self/fd/" + std::to_string(file.fd);
    bool ok = false;
    int err = 0;
    for (int attempt = 0; attempt < 16 && !ok; ++attempt) {
        const std::string name = file.target + ".voka-" + randomSuffix();
        int linked = ::linkat(AT_FDCWD, procPath.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW);
        if (linked != 0 && errno == ENOENT) linked = ::linkat(file.fd, "", AT_FDCWD, name.c_str(), AT_EMPTY_PATH);
        if (linked != 0) {
            err = errno;
            if (err == EEXIST) continue;
            break;
        }
        if (::rename(name.c_str(), file.target.c_str()) != 0) {
            err = errno;
            ::unlink(name.c_str());
            break;
        }
        ok = true;
    }
    pthread_sigmask(SIG_SETMASK, &previous, nullptr);
    if (!ok) error = failure(file.target, "cannot replace it", err);
    return ok;
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
    // A replaced file keeps its permissions; a new one gets the usual rw-r--r--.
    const mode_t mode = exists ? (existing.st_mode & 07777) : 0644;
    int fd = ::open(directoryOf(target).c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600);
    if (fd >= 0) {
        ::fchmod(fd, mode);
        file.fd = fd;
        return true;
    }
    std::string pattern = target + ".voka-XXXXXX";
    std::vector<char> name(pattern.begin(), pattern.end());
    name.push_back('\0');
    // Listed before it exists, so that a signal can never miss it.
    file.slot = listPending(pattern);
    fd = ::mkstemp(name.data());
    if (fd < 0) {
        int err = errno;
        unlistPending(file.slot);
        file.slot = -1;
        error = failure(target, "cannot create a temporary file beside it", err);
        return false;
    }
    if (file.slot >= 0) std::memcpy(pending[file.slot].path, name.data(), name.size());
    ::fchmod(fd, mode);
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
    if (file.durable && ::fsync(file.fd) != 0) {
        error = failure(file.target, "cannot sync", errno);
        abandonAtomicFile(file);
        return false;
    }
    if (file.temporary.empty()) {
        const bool ok = publishUnnamed(file, error);
        ::close(file.fd);
        file.fd = -1;
        if (ok && file.durable) syncDirectory(file.target);
        return ok;
    }
    int fd = file.fd;
    file.fd = -1;
    if (::close(fd) != 0) {
        error = failure(file.target, "cannot close", errno);
        abandonAtomicFile(file);
        return false;
    }
    if (::rename(file.temporary.c_str(), file.target.c_str()) != 0) {
        error = failure(file.target, "cannot replace it", errno);
        abandonAtomicFile(file);
        return false;
    }
    unlistPending(file.slot);
    file.slot = -1;
    if (file.durable) syncDirectory(file.target);
    return true;
}

void abandonAtomicFile(AtomicFile& file) {
    if (file.fd >= 0) ::close(file.fd);
    file.fd = -1;
    if (!file.temporary.empty()) ::unlink(file.temporary.c_str());
    unlistPending(file.slot);
    file.slot = -1;
}

void removePendingTemporaries() {
    for (PendingSlot& slot : pending)
        if (slot.used.load()) ::unlink(slot.path);
}

}  // namespace voka::headless
