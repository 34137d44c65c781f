// Scratch folders and small file helpers for the persistence tests.
#pragma once

#include <string>

namespace voka::test {

// A fresh folder under the system's temporary directory, removed with
// everything in it when the object goes.
class ScratchFolder {
public:
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    const std::string& path() const { return path_; }
    std::string file(const std::string& name) const { return path_ + "/" + name; }
    // Writes `content` to the named file and returns its path.
    std::string write(const std::string& name, const std::string& content) const;
    // Names of the files in the folder, sorted.
    std::string listing() const;

private:
    std::string path_;
};

std::string readFile(const std::string& path);

}  // namespace voka::test
