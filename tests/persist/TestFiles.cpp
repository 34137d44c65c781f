#include "TestFiles.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace voka::test {

namespace fs = std::filesystem;

ScratchFolder::ScratchFolder() {
    std::string name = (fs::temp_directory_path() / "voka-persist-XXXXXX").string();
    if (::mkdtemp(name.data())) path_ = name;
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    fs::permissions(path_, fs::perms::owner_all, fs::perm_options::add, ignored);
    fs::remove_all(path_, ignored);
}

std::string ScratchFolder::write(const std::string& name, const std::string& content) const {
    std::ofstream(file(name), std::ios::binary) << content;
    return file(name);
}

std::string readFile(const std::string& path) {
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
}

std::string savedText(const ScratchFolder& folder, const headless::Document& doc, const std::string& name) {
    headless::SaveResult saved = headless::saveDocument(doc, folder.file(name));
    EXPECT_TRUE(saved.ok) << saved.error;
    return readFile(folder.file(name));
}

}  // namespace voka::test
