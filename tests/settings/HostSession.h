// A headless host session for the frame, settings and plug-in tests: a
// per-user folder of its own, a scripted user and a plug-in attached to the
// host, with helpers to place files in the "Brindel" folder and to read
// what the user was shown.
#pragma once

#include "host/headless/HeadlessHost.h"
#include "host/headless/HostPaths.h"
#include "host/headless/ScriptedAgent.h"
#include "plugin/Plugin.h"
#include "settings/SettingsFiles.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace voka::testing {

using List = std::vector<std::string>;

// The scripted user of the host. Anything asked that the test did not script
// fails the test.
class TestUser : public headless::ScriptedAgent {
public:
    TestUser() : ScriptedAgent([](const std::string& what) { ADD_FAILURE() << what; }) {}
    using ScriptedAgent::texts;
    // Every alert and question, in the order shown.
    List texts() const {
        List out;
        for (const headless::TranscriptEntry& entry : transcript()) {
            if (entry.kind == headless::Said::Alert || entry.kind == headless::Said::Question) out.push_back(entry.text);
        }
        return out;
    }
};

inline const std::string kPrefix = "-- VOKA plugin message --\n\n";

// H: the host, which a test may replace by one that fails or fakes some calls.
template <class H = headless::HeadlessHost>
class BasicHostSession {
public:
    explicit BasicHostSession(const std::string& dialogDirectory = VOKA_SOURCE_DIR "/resources/dialogs")
        : host(headless::HostConfig{(folder.path() / "user").string(), dialogDirectory, {}}, user), plugin(host) {
        std::filesystem::create_directories(brindel());
        host.attachClient(&plugin);
    }
    std::filesystem::path brindel() const { return folder.path() / "user" / "Brindel"; }
    std::filesystem::path inBrindel(const std::string& name) const { return brindel() / name; }
    // A file path as the plug-in sees it.
    static std::string hostPath(const std::filesystem::path& path) { return headless::toHostPath(path.string()); }
    void putSharedSettings(const SharedSettings& s) { writeFile(inBrindel("BR_Settings.fm"), sharedSettingsXml(s)); }
    void putShippedSettings(const SharedSettings& s) { writeFile(inBrindel("BR_Settings_TEMPVOKA.fm"), sharedSettingsXml(s)); }
    void putLocalCopy() { writeFile(inBrindel("VOKA_MainSettings_LocalCopy.fm"), mainSettingsXml()); }
    // A master elsewhere; returns its path in host notation.
    std::string putMaster() {
        writeFile(folder / "shared" / "VOKA_MainSettings.fm", mainSettingsXml());
        return hostPath(folder / "shared" / "VOKA_MainSettings.fm");
    }
    PluginState& state() { return plugin.state(); }
    List shown() const { return user.texts(); }

    TempFolder folder;
    TestUser user;
    H host;
    Plugin plugin;
};
using HostSession = BasicHostSession<>;

// Every document the host still has open.
inline int openDocumentCount(Host& host) {
    int count = 0;
    for (Handle doc = host.firstOpenDocument(); doc != kNoObject; doc = host.nextOpenDocument(doc)) ++count;
    return count;
}

}  // namespace voka::testing
