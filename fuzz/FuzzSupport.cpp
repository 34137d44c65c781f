#include "FuzzSupport.h"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <unistd.h>

namespace voka::fuzz {

namespace {

std::string folder;

void removeFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
}

}  // namespace

std::string scratchPath(const char* name) {
    if (folder.empty()) {
        const char* tmp = std::getenv("TMPDIR");
        std::string pattern = std::string(tmp && *tmp ? tmp : "/tmp") + "/voka-fuzz-XXXXXX";
        if (!::mkdtemp(pattern.data())) fail("cannot make a scratch folder", pattern);
        folder = pattern;
        std::atexit(removeFolder);
    }
    return folder + "/" + name;
}

std::string writeScratch(const char* name, const std::uint8_t* data, std::size_t size) {
    const std::string path = scratchPath(name);
    ::unlink(path.c_str());
    int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL, 0600);
    if (fd < 0) fail("cannot create", path);
    std::size_t done = 0;
    while (done < size) {
        ssize_t n = ::write(fd, data + done, size - done);
        if (n <= 0) fail("cannot write", path);
        done += static_cast<std::size_t>(n);
    }
    ::close(fd);
    return path;
}

void fail(const char* what, const std::string& detail) {
    std::fprintf(stderr, "\n*** %s: %s\n", what, detail.c_str());
    std::abort();
}

}  // namespace voka::fuzz
