// Atomic replacement of a file: the new content goes to a temporary file
// beside the target, is synced, and is renamed over the target only when
// every write succeeded, so a failed save leaves the old file as it was.
#pragma once

#include <string>

namespace voka::headless {

struct AtomicFile {
    std::string target;
    std::string temporary;
    int fd = -1;
};

// Creates the temporary file; false and a message naming the target on failure.
bool beginAtomicFile(const std::string& target, AtomicFile& file, std::string& error);
// Syncs, closes and renames the temporary file over the target.
bool commitAtomicFile(AtomicFile& file, std::string& error);
// Closes and removes the temporary file; the target is untouched.
void abandonAtomicFile(AtomicFile& file);

}  // namespace voka::headless
