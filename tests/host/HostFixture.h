// A headless host with a scripted user and a scratch folder, for the host's
// own tests; and a client that records what the host calls.
#pragma once

#include "host/headless/HeadlessHost.h"
#include "host/headless/Handles.h"
#include "host/headless/HostPaths.h"
#include "host/headless/ScriptedAgent.h"
#include "host/headless/TreeBuilder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

namespace voka::headless::testing {

class ScratchFolder {
public:
    ScratchFolder() {
        path_ = std::filesystem::temp_directory_path() /
                ("voka-host-" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) + "-" +
                 std::to_string(reinterpret_cast<std::uintptr_t>(this)));
        std::filesystem::create_directories(path_);
    }
    ~ScratchFolder() { std::filesystem::remove_all(path_, ignored_); }
    const std::filesystem::path& path() const { return path_; }
    // The host's notation of a file in the folder.
    std::string hostPath(const std::string& name) const { return toHostPath((path_ / name).string()); }
    void write(const std::string& name, const std::string& content) const {
        std::filesystem::create_directories((path_ / name).parent_path());
        std::ofstream(path_ / name) << content;
    }
    std::string read(const std::string& name) const {
        std::ifstream in(path_ / name, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    }

private:
    std::filesystem::path path_;
    std::error_code ignored_;
};

// The dialog of the dialog tests: a modal choice.
inline void writeDialogs(const ScratchFolder& folder) {
    folder.write("dialogs/t_Dialog_Choice.xml", R"(<dialog name="t_Dialog_Choice" title="Choose">
  <item number="1" kind="label" label="Scheme category"/><item number="2" kind="edit"/>
  <item number="3" kind="popup"><choice>One</choice><choice>Two</choice></item>
  <item number="4" kind="checkbox" label="Show this dialog" state="1"/>
  <item number="9" kind="button" label="OK" closes="1"/><item number="10" kind="button" label="Cancel" closes="1"/>
  <item number="11" kind="button" label="Apply"/>
</dialog>)");
}

struct HostFixture {
    HostFixture()
        : agent([](const std::string& what) { ADD_FAILURE() << what; }),
          host(HostConfig{folder.path().string(), (folder.path() / "dialogs").string(), {}}, agent) {}

    ScratchFolder folder;
    ScriptedAgent agent;
    HeadlessHost host;
};

// Records the dialog events the host delivers and lets a test act inside one.
class RecordingClient : public Client {
public:
    void initialize(int) override {}
    void command(int) override {}
    void notify(int, Handle, const std::string&, int) override {}
    void dialogEvent(int dialogNumber, int item, int) override {
        events.push_back({dialogNumber, item});
        if (onDialogEvent) onDialogEvent(dialogNumber, item);
    }

    std::vector<std::pair<int, int>> events;  // dialog number, item
    std::function<void(int, int)> onDialogEvent;
};

// The child elements of an element, by handle.
inline std::vector<Handle> children(Host& host, Handle doc, Handle element) {
    std::vector<Handle> result;
    for (Handle c = host.firstChild(doc, element); c != kNoObject; c = host.nextSibling(doc, c)) result.push_back(c);
    return result;
}

inline Handle root(Host& host, Handle doc) { return host.highestLevelElement(doc, host.mainFlow(doc)); }

// Chapter [Title "Intro", Para audience=novice "Hello", Para "World"], with a
// marker at the start of "World".
struct Chapter {
    Handle doc, chapter, title, first, second;
};

inline Chapter chapter(HostFixture& f, const std::string& name = "c.xml") {
    TreeBuilder b;
    b.open("Chapter").leaf("Title", {}, "Intro").leaf("Para", {{"audience", "novice"}}, "Hello");
    b.open("Para").marker("Hypertext", "openlink x").text("World").close().close();
    const Handle doc = b.build(f.host, f.folder.hostPath(name));
    const auto kids = children(f.host, doc, root(f.host, doc));
    return Chapter{doc, root(f.host, doc), kids.at(0), kids.at(1), kids.at(2)};
}

// The text an element covers.
inline std::string elementText(Host& host, Handle doc, Handle element) {
    return host.text(doc, host.elementTextRange(doc, element));
}

}  // namespace voka::headless::testing
