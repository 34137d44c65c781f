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

// The plug-in polls for Esc every hundred elements or so of a long pass: the
// place it last stepped to tells how far it is, as documents are read in
// document order.
bool HeadlessHost::userCancelled() {
    if (OpenDocument* slot = openDocumentSlot(stepDoc_); slot && !slot->givenAway) {
        const Document& d = *slot->doc;
        const std::string& name = d.title.empty() ? d.path : d.title;
        agent_->progress(ProgressPoint{name, std::uint64_t{stepElement_} + 1, d.elements.size()});
    }
    return agent_->userCancelled(elementSteps_);
}

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
