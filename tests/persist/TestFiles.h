// Scratch folders, file helpers and case names for the persistence tests.
#pragma once

#include "host/headless/persist/Persist.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace voka::test {

using testing::HasSubstr;
using testing::Not;

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
    // Names of the files in the folder, sorted, one a line.
    std::string listing() const;

private:
    std::string path_;
};

std::string readFile(const std::string& path);

// Saves the document to `name` in the folder and returns what was written.
std::string savedText(const ScratchFolder& folder, const headless::Document& doc, const std::string& name = "saved.xml");

// A case's name as a test name: letters and digits, the rest as '_'.
std::string testName(const char* text);

}  // namespace voka::test
