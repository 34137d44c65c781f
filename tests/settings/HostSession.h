// A headless host session for the frame, settings and plug-in tests: a
// per-user folder of its own, a scripted user and a plug-in attached to the
// host, with helpers to place files in the "Brindel" folder and to read
// what the user was shown.
#pragma once

#include "host/headless/HeadlessHost.h"
#include "host/headless/HostPaths.h"
#include "plugin/Plugin.h"
#include "settings/SettingsFiles.h"

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace voka::testing {

// Answers from queues and keeps every text shown. Questions not scripted
// are answered No, prompts cancelled, modal dialogs closed.
class TestUser : public headless::UserAgent {
public:
    struct Shown {
        std::string text;
        AlertKind kind;
    };

    std::deque<bool> answers;                        // questions: true = Yes
    std::deque<std::optional<std::string>> prompts;  // nullopt = cancel
    std::deque<std::function<void(headless::DialogUser&)>> dialogs;
    int escPresses = 0;
    std::vector<Shown> shown;
    std::vector<std::string> promptTexts;

    int alert(const std::string& message, AlertKind kind) override {
        shown.push_back({message, kind});
        if (kind != kAlertYesDefault && kind != kAlertNoDefault) return 0;
        const bool yes = !answers.empty() && answers.front();
        if (!answers.empty()) answers.pop_front();
        return yes ? 0 : 1;
    }
    int promptString(const std::string& prompt, const std::string& initial, std::string& answer) override {
        promptTexts.push_back(prompt + "|" + initial);
        if (prompts.empty() || !prompts.front()) {
            if (!prompts.empty()) prompts.pop_front();
            return 1;
        }
        answer = *prompts.front();
        prompts.pop_front();
        return 0;
    }
    int chooseFile(const std::string&, const std::string&, const std::string&, int, std::string&) override {
        return 1;
    }
    bool userCancelled(std::uint64_t) override {
        if (escPresses == 0) return false;
        --escPresses;
        return true;
    }
    void runModalDialog(headless::DialogUser& dialog) override {
        if (dialogs.empty()) return;
        auto act = std::move(dialogs.front());
        dialogs.pop_front();
        act(dialog);
    }
    void hostMessage(headless::Said, const std::string&) override {}

    std::vector<std::string> texts() const {
        std::vector<std::string> out;
        for (const Shown& s : shown) out.push_back(s.text);
        return out;
    }
};

inline constexpr const char* kPrefix = "-- VOKA plugin message --\n\n";

class HostSession {
public:
    explicit HostSession(const std::string& dialogDirectory = VOKA_SOURCE_DIR "/resources/dialogs")
        : host(headless::HostConfig{(folder.path() / "user").string(), dialogDirectory}, user), plugin(host) {
        std::filesystem::create_directories(folder.path() / "user");
        host.attachClient(&plugin);
    }

    std::filesystem::path brindel() const { return folder.path() / "user" / "Brindel"; }
    std::filesystem::path inBrindel(const std::string& name) const { return brindel() / name; }
    // A file path as the plug-in sees it.
    static std::string hostPath(const std::filesystem::path& path) { return headless::toHostPath(path.string()); }

    void putSharedSettings(const SharedSettings& s) { writeFile(inBrindel("BR_Settings.fm"), sharedSettingsXml(s)); }
    void putShippedSettings(const SharedSettings& s) {
        writeFile(inBrindel("BR_Settings_TEMPVOKA.fm"), sharedSettingsXml(s));
    }
    void putLocalCopy() { writeFile(inBrindel("VOKA_MainSettings_LocalCopy.fm"), mainSettingsXml()); }
    // A master elsewhere; returns its path in host notation.
    std::string putMaster(const std::string& omit = "") {
        const auto path = folder.path() / "shared" / "VOKA_MainSettings.fm";
        writeFile(path, mainSettingsXml(omit));
        return hostPath(path);
    }

    PluginState& state() { return plugin.state(); }
    std::vector<std::string> shown() const { return user.texts(); }

    TempFolder folder;
    TestUser user;
    headless::HeadlessHost host;
    Plugin plugin;
};

// Every document the host still has open.
inline int openDocumentCount(Host& host) {
    int count = 0;
    for (Handle doc = host.firstOpenDocument(); doc != kNoObject; doc = host.nextOpenDocument(doc)) ++count;
    return count;
}

}  // namespace voka::testing
