// Book files: a book that loads saves, and loads back with the same components.
#include "FuzzSupport.h"
#include "host/headless/persist/Persist.h"

#include <algorithm>
#include <filesystem>
#include <unistd.h>

using namespace voka::headless;

namespace {

// A backslash in a component path is a separator to the writer (the host's
// own notation), so paths are compared as the file system would see them.
std::string normalPath(std::string path) {
    std::replace(path.begin(), path.end(), '\\', '/');
    return std::filesystem::path(path).lexically_normal().string();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    LoadResult loaded = loadFile(voka::fuzz::writeScratch("input.book", data, size));
    if (!loaded.book) return 0;
    const std::string saved = voka::fuzz::scratchPath("saved.book");
    SaveResult result = saveBook(*loaded.book, saved);
    if (!result.ok) voka::fuzz::fail("a loaded book does not save", result.error);
    LoadResult again = loadFile(saved);
    ::unlink(saved.c_str());
    if (!again.book) voka::fuzz::fail("a saved book does not load", again.error);
    const auto& before = loaded.book->components;
    const auto& after = again.book->components;
    if (before.size() != after.size())
        voka::fuzz::fail("a saved book loads back with another number of components",
                         std::to_string(before.size()) + " vs " + std::to_string(after.size()));
    for (std::size_t i = 0; i < before.size(); ++i) {
        if (normalPath(before[i].path) != normalPath(after[i].path) || before[i].userString != after[i].userString)
            voka::fuzz::fail("a saved book loads back with another component",
                             before[i].path + " [" + before[i].userString + "] vs " + after[i].path + " [" +
                                 after[i].userString + "]");
    }
    return 0;
}
