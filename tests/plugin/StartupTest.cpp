// Start-up as the user meets it: which messages appear, whether the menus
// are there, and that no settings document stays open or is spoilt.
#include "settings/HostSession.h"

#include <algorithm>

namespace voka {
namespace {

using testing::HostSession;
using testing::SharedSettings;
using testing::List;

const std::string kRetrievalError =
    testing::kPrefix +
    "An error occurred while attempting to retrieve a copy of the main settings document. The plugin will attempt "
    "to open your local copy.\n\nThis problem may be due to an incorrect path specification in your preferences, or "
    "if the file resides on a network, you may be experiencing network issues.";
const std::string kLocalCopyNotice =
    testing::kPrefix +
    "Your local copy was opened successfully. Most plugin functions will work, but you will not be able to edit "
    "schemes or other main settings information. Check the path specification in your preferences make sure it is "
    "valid.";
const std::string kNoLocalCopy = testing::kPrefix +
                                 "A local copy could not be opened either. The plugin is unable to initialize. Please "
                                 "contact Brindel.";
const std::string kCritical =
    testing::kPrefix +
    "A critical error occurred while attempting to open your local settings document. Make sure that the file "
    "exists, is named correctly, and is not corrupt.\n\nVOKA is unable to initialize.";

TEST(Startup, EachWayOfFindingTheSettings) {
    struct Case {
        const char* name;
        bool shared;
        bool masterReachable;
        bool localCopy;
        List messages;  // the plug-in starts, with its menus, when nothing critical is among them
    };
    const Case cases[] = {
        {"master reachable", true, true, false, {}},
        {"master missing, local copy present", true, false, true, {kRetrievalError, kLocalCopyNotice}},
        {"master and local copy missing", true, false, false, {kRetrievalError, kNoLocalCopy}},
        {"no shared settings", false, true, true, {kCritical}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        HostSession session;
        const std::string master =
            c.masterReachable ? session.putMaster() : HostSession::hostPath(session.folder / "gone" / "Main.fm");
        if (c.shared) {
            session.putSharedSettings(SharedSettings{1, 1, std::map<std::string, std::string>{{"MainSettingsDocPath", master}}});
        }
        if (c.localCopy) session.putLocalCopy();

        session.host.startClient();

        const bool started = c.messages.empty() || c.messages.back() == kLocalCopyNotice;
        EXPECT_EQ(session.shown(), c.messages);
        EXPECT_EQ(session.plugin.started(), started);
        const auto items = session.host.menu("!MakerMainMenu").items;
        EXPECT_EQ(std::ranges::any_of(items, [](const auto& item) { return item.tag == "vkp_VOKAMenu"; }), started);
        EXPECT_EQ(session.host.commands().size(), started ? 21u : 0u);
        EXPECT_EQ(testing::openDocumentCount(session.host), 0);
        EXPECT_EQ(session.host.shownDialog("br_Dialog_Status"), kNoObject);
        // Every start refreshes the local copy from the master.
        EXPECT_EQ(std::filesystem::exists(session.inBrindel("VOKA_MainSettings_LocalCopy.fm")), c.localCopy || started);
    }
}

// A per-user folder the host cannot write to: every save and delete fails.
class ReadOnlyFolderHost : public headless::HeadlessHost {
public:
    using HeadlessHost::HeadlessHost;
    Handle simpleSave(Handle, const std::string&, bool) override { return fail(kNoObject); }
    bool deleteFile(const std::string&) override { return fail(false); }
};

TEST(Startup, ReadOnlyOrMissingFolderStopsWithTheCriticalMessage) {
    struct Case {
        const char* name;
        bool folder;
        bool shared;
        size_t messages;  // the merge talks first, then start-up stops at the unsaved shared settings
    };
    for (const Case& c : {Case{"missing folder", false, false, 1}, Case{"read-only, new installation", true, false, 2},
                          Case{"read-only, upgrade", true, true, 4}}) {
        SCOPED_TRACE(c.name);
        testing::BasicHostSession<ReadOnlyFolderHost> session;
        if (!c.folder) std::filesystem::remove_all(session.brindel());
        if (c.shared) session.putSharedSettings({1, 1, {}});
        if (c.folder) session.putShippedSettings({1, 2, {}});
        const std::string sharedBefore = testing::readFile(session.inBrindel("BR_Settings.fm"));
        const std::string shippedBefore = testing::readFile(session.inBrindel("BR_Settings_TEMPVOKA.fm"));

        session.host.startClient();

        EXPECT_FALSE(session.plugin.started());
        ASSERT_EQ(session.shown().size(), c.messages);
        EXPECT_EQ(session.shown().back(), kCritical);
        EXPECT_EQ(testing::readFile(session.inBrindel("BR_Settings.fm")), sharedBefore);
        EXPECT_EQ(testing::readFile(session.inBrindel("BR_Settings_TEMPVOKA.fm")), shippedBefore);
        EXPECT_EQ(testing::openDocumentCount(session.host), 0);
    }
}

}  // namespace
}  // namespace voka
