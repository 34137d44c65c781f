#include "Cli.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace voka::test {
namespace fs = std::filesystem;

ScratchFolder::ScratchFolder() {
    std::string pattern = (fs::temp_directory_path() / "voka-cli-XXXXXX").string();
    if (mkdtemp(pattern.data())) path = pattern;
}

ScratchFolder::~ScratchFolder() {
    std::error_code ec;
    if (!path.empty()) fs::remove_all(path, ec);
}

std::string sourceDirectory() { return VOKA_SOURCE_DIR; }
std::string chapterSource(const std::string& chapter) {
    return sourceDirectory() + "/resources/example/book/" + chapter + ".xml";
}

ProcessResult runVoka(const std::string& home, const std::vector<std::string>& args, const RunOptions& options) {
    std::vector<std::string> argv{VOKA_EXE, "--home", home};
    argv.insert(argv.end(), args.begin(), args.end());
    return runProcess(argv, options);
}

std::string installHome(const std::string& home) {
    fs::create_directories(home);
    ProcessResult first = runVoka(home, {"menus"});
    if (first.exitCode != 0 || first.err != kWelcomeAlert)
        return "voka menus in a new folder ended with " + std::to_string(first.exitCode) + ":\n" + first.err;
    return "";
}

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

void writeFile(const std::string& path, const std::string& content) { std::ofstream(path, std::ios::binary) << content; }

std::string fileListing(const std::string& folder) {
    std::vector<std::string> names;
    std::error_code ec;
    for (auto it = fs::recursive_directory_iterator(folder, ec); !ec && it != fs::recursive_directory_iterator();
         it.increment(ec))
        if (!it->is_directory(ec)) names.push_back(fs::relative(it->path(), folder).string() + "\n");
    std::sort(names.begin(), names.end());
    std::string listing;
    for (const std::string& name : names) listing += name;
    return listing;
}

std::map<std::string, std::string> snapshot(const std::string& folder) {
    std::map<std::string, std::string> files;
    std::istringstream listing(fileListing(folder));
    for (std::string name; std::getline(listing, name);) files[name] = readFile(folder + "/" + name);
    return files;
}

const char* const kWelcomeAlert =
    "--- Brindel Consulting message ---\n\n It appears that you are initializing a new installation of VOKA. "
    "Welcome. Please let us know if you have any problems with the software.  support@brindel.example.\n";

std::string pluginMessage(const std::string& text) { return "-- VOKA plugin message --\n\n" + text + "\n"; }

}  // namespace voka::test
