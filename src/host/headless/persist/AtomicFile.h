// Atomic replacement of a file: the new content goes to a temporary file
// beside the target, is synced, and is renamed over the target only when
// every write succeeded, so a failed save leaves the old file as it was.
//
// Where the file system allows, the temporary file has no name until the
// moment it replaces the target, so a process killed while writing leaves
// nothing behind. Elsewhere it is named `TARGET.voka-XXXXXX`, and
// removePendingTemporaries() removes such files from a signal handler.
#pragma once

#include <string>

namespace voka::headless {

struct AtomicFile {
    std::string target;
    std::string temporary;  // empty while the file has no name
    int fd = -1;
    int slot = -1;          // where a named temporary is listed for removal
    // Sync to disk before the rename, so that even a power cut leaves the old
    // or the new file. Off only for what can be made again in a moment.
    bool durable = true;
};

// Creates the temporary file; false and a message naming the target on failure.
bool beginAtomicFile(const std::string& target, AtomicFile& file, std::string& error);
// Syncs, closes and renames the temporary file over the target. A symbolic
// link at the target is replaced, never followed.
bool commitAtomicFile(AtomicFile& file, std::string& error);
// Closes and removes the temporary file; the target is untouched.
void abandonAtomicFile(AtomicFile& file);

// Async-signal-safe: unlinks every named temporary file not yet committed.
void removePendingTemporaries();

}  // namespace voka::headless
