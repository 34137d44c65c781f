// What the end-to-end tests of voka share: scratch folders, running the
// built voka on a per-user folder of its own, reading and listing the files
// it writes, and the alert texts it prints.
#pragma once

#include "ChildProcess.h"

#include <string>
#include <vector>

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
    std::string operator/(const std::string& name) const { return path_ + "/" + name; }

private:
    std::string path_;
};

std::string vokaExecutable();
std::string sourceDirectory();
std::string exampleBookDirectory();

// voka --home HOME --quiet ARGS...: the status lines would depend on timing,
// so every run leaves them out and standard error holds only what the
// plug-in and voka say.
ProcessResult runVoka(const std::string& home, const std::vector<std::string>& args, const RunOptions& options = {});

// Makes `home` (created when missing) a per-user folder voka has already
// set up, so that later runs print no welcome. Empty, or what went wrong.
std::string installHome(const std::string& home);

std::string readFile(const std::string& path);
bool writeFile(const std::string& path, const std::string& content);
// Every file under `folder`, as paths relative to it, sorted; "" when there are none.
std::string fileListing(const std::string& folder);

// What a run prints, when it goes as it should.
extern const char* const kWelcomeAlert;  // the first run in a new per-user folder
std::string pluginMessage(const std::string& text);  // an alert of the plug-in, as voka prints it

}  // namespace voka::test
