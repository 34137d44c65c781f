// The user (alerts, prompts, the file chooser, Esc) and the file utilities.
#include "host/headless/HeadlessHost.h"
#include "host/headless/HostPaths.h"

#include <filesystem>
#include <system_error>

namespace voka::headless {

int HeadlessHost::alert(const std::string& message, AlertKind kind) { return agent_->alert(message, kind); }

int HeadlessHost::promptString(const std::string& prompt, const std::string& initial, std::string& answer) {
    return agent_->promptString(prompt, initial, answer);
}

int HeadlessHost::chooseFile(const std::string& title, const std::string& directory, const std::string& defaultName,
                             int mode, std::string& chosen) {
    return agent_->chooseFile(title, directory, defaultName, mode, chosen);
}

bool HeadlessHost::userCancelled() { return agent_->userCancelled(elementSteps_); }

bool HeadlessHost::fileExists(const std::string& path) {
    std::error_code error;
    return !path.empty() && std::filesystem::exists(toSystemPath(path), error);
}

bool HeadlessHost::isDirectory(const std::string& path) {
    std::error_code error;
    return !path.empty() && std::filesystem::is_directory(toSystemPath(path), error);
}

bool HeadlessHost::deleteFile(const std::string& path) {
    std::error_code error;
    if (path.empty() || std::filesystem::is_directory(toSystemPath(path), error)) return fail(false);
    if (!std::filesystem::remove(toSystemPath(path), error)) return fail(false);
    return true;
}

}  // namespace voka::headless
