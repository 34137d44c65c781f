#include "VokaRun.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <stdlib.h>

namespace voka::test {
namespace fs = std::filesystem;

ScratchFolder::ScratchFolder() {
    std::string pattern = (fs::temp_directory_path() / "voka-cli-XXXXXX").string();
    if (mkdtemp(pattern.data())) path_ = pattern;
}

ScratchFolder::~ScratchFolder() {
    if (path_.empty()) return;
    std::error_code ec;
    // A test may have taken write permission away; give it back to remove the folder.
    for (auto it = fs::recursive_directory_iterator(path_, ec); !ec && it != fs::recursive_directory_iterator();
         it.increment(ec))
        if (it->is_directory(ec)) fs::permissions(it->path(), fs::perms::owner_all, fs::perm_options::add, ec);
    fs::permissions(path_, fs::perms::owner_all, fs::perm_options::add, ec);
    fs::remove_all(path_, ec);
}

std::string vokaExecutable() { return VOKA_EXE; }
std::string sourceDirectory() { return VOKA_SOURCE_DIR; }
std::string exampleBookDirectory() { return sourceDirectory() + "/resources/example/book"; }

ProcessResult runVoka(const std::string& home, const std::vector<std::string>& args, const RunOptions& options) {
    std::vector<std::string> argv{vokaExecutable(), "--home", home, "--quiet"};
    argv.insert(argv.end(), args.begin(), args.end());
    return runProcess(argv, options);
}

std::string installHome(const std::string& home) {
    std::error_code ec;
    fs::create_directories(home, ec);
    ProcessResult first = runVoka(home, {"menus"});
    if (first.exitCode != 0) return "voka menus in a new folder ended with " + std::to_string(first.exitCode) + ":\n" + first.err;
    if (first.err != kWelcomeAlert) return "voka menus in a new folder printed:\n" + first.err;
    return "";
}

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

bool writeFile(const std::string& path, const std::string& content) {
    std::ofstream out(path, std::ios::binary);
    out << content;
    out.close();
    return static_cast<bool>(out);
}

std::string fileListing(const std::string& folder) {
    std::vector<std::string> names;
    std::error_code ec;
    for (auto it = fs::recursive_directory_iterator(folder, ec); !ec && it != fs::recursive_directory_iterator();
         it.increment(ec))
        if (!it->is_directory(ec)) names.push_back(fs::relative(it->path(), folder).string());
    std::sort(names.begin(), names.end());
    std::string listing;
    for (const std::string& name : names) listing += name + "\n";
    return listing;
}

const char* const kWelcomeAlert =
    "--- Brindel Consulting message ---\n\n It appears that you are initializing a new installation of VOKA. "
    "Welcome. Please let us know if you have any problems with the software.  support@brindel.example.\n";

std::string pluginMessage(const std::string& text) { return "-- VOKA plugin message --\n\n" + text + "\n"; }

}  // namespace voka::test
