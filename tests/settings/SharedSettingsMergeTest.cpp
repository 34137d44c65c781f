// The merge of the shipped settings document into the shared one, case by
// case: new installation (also one whose save fails), upgrade with equal or
// higher versions, a shipped file without its settings group, and another
// product of the maker.
#include "settings/HostSession.h"
#include "settings/SettingsDocument.h"
#include "settings/SharedSettingsMerge.h"

namespace voka {
namespace {

using testing::HostSession;
using testing::SharedSettings;

enum Talk { Silent, Welcome, Merged, MergeFailed };

// What the user is told, word for word, for `product`.
std::vector<std::string> told(Talk talk, const std::string& product) {
    const std::string banner = "--- Brindel Consulting message ---\n\n";
    const std::string welcome =
        ". Welcome. Please let us know if you have any problems with the software.  support@brindel.example.";
    if (talk == Silent) return {};
    if (talk == Welcome) return {banner + " It appears that you are initializing a new installation of " + product + welcome};
    return {banner + "It appears that you are initializing a new or upgrade installation of " + product + welcome,
            product + " has detected that you have or have had other Brindel plugins installed. All Brindel plugins share a "
                      "common settings file. " + product + " will now attempt to merge settings related to this new "
                      "software into the existing settings file.",
            talk == Merged ? "The merge appears to have completed successfully. Please contact Brindel if you notice anything unusual."
                           : "An error appears to have occurred during the merge. Please contact Brindel for assistance "
                             "(support@brindel.example"};
}
SharedSettings settings(int version1, int version2, const char* category) {
    return SharedSettings{version1, version2, std::map<std::string, std::string>{{"DefaultCategory", category}}};
}

// A host whose saves fail while `refuseSaves` is set, as on a full disk.
class SaveRefusingHost : public headless::HeadlessHost {
public:
    using HeadlessHost::HeadlessHost;
    Handle simpleSave(Handle doc, const std::string& path, bool interactive) override {
        return refuseSaves ? fail(kNoObject) : HeadlessHost::simpleSave(doc, path, interactive);
    }
    bool refuseSaves = false;
};

TEST(SharedSettingsMerge, EachInstallationCase) {
    struct Case {
        const char* name;
        std::optional<SharedSettings> shared;
        std::optional<SharedSettings> shipped;
        std::string product;
        Talk talk;
        const char* category;  // DefaultCategory of the result; nullptr: no result
        int version1;
        int version2;
        bool saveFails = false;
        const char* clipboard = nullptr;  // DefaultCategory of a settings group copied before the merge
    };
    const Case cases[] = {
        {"nothing at all", std::nullopt, std::nullopt, "VOKA", Silent, nullptr, 0, 0},
        {"nothing pending", settings(1, 1, "Mine"), std::nullopt, "VOKA", Silent, "Mine", 1, 1},
        {"new installation", std::nullopt, settings(1, 1, "Shipped"), "VOKA", Welcome, "Shipped", 1, 1},
        {"new installation that cannot be saved", std::nullopt, settings(1, 1, "Shipped"), "VOKA", Welcome, nullptr, 0, 0,
         true},
        {"equal versions", settings(1, 1, "Mine"), settings(1, 1, "Shipped"), "VOKA", Merged, "Mine", 1, 1},
        {"higher Version2 replaces the group", settings(1, 1, "Mine"), settings(1, 2, "Shipped"), "voka", Merged, "Shipped", 1, 2},
        {"higher Version1 only", settings(1, 1, "Mine"), settings(4, 1, "Shipped"), "VOKA", Merged, "Mine", 4, 1},
        {"higher Version2 without a group", settings(1, 1, "Mine"), SharedSettings{1, 2, std::nullopt}, "VOKA", MergeFailed, "Mine", 1, 2},
        {"higher Version2 without a group still pastes the clipboard", settings(1, 1, "Mine"),
         SharedSettings{1, 2, std::nullopt}, "VOKA", MergeFailed, "Copied", 1, 2, false, "Copied"},
        {"another product skips the group", settings(1, 1, "Mine"), settings(1, 2, "Shipped"), "Quorvane", Merged, "Mine", 1, 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        testing::BasicHostSession<SaveRefusingHost> session;
        if (c.shared) session.putSharedSettings(*c.shared);
        if (c.shipped) session.putShippedSettings(*c.shipped);
        PluginState& state = session.state();
        if (c.clipboard) {
            testing::writeFile(session.folder / "copied.fm", testing::sharedSettingsXml(settings(1, 1, c.clipboard)));
            const Handle copied =
                openSettingsInvisibly(session.host, HostSession::hostPath(session.folder / "copied.fm"));
            const Handle group = findElement(session.host, state, copied, kNoObject, "SettingsGroupE", "*", "*", "Main");
            const Handle root = session.host.parent(copied, group);
            const ElementRange whole{{root, group, 0}, {root, session.host.nextSibling(copied, group), 0}};
            ASSERT_TRUE(session.host.setElementSelection(copied, whole));
            ASSERT_TRUE(session.host.copySelection(copied));
            session.host.close(copied, kCloseModified);
        }
        session.host.refuseSaves = c.saveFails;
        const std::string sharedPath = HostSession::hostPath(session.inBrindel("BR_Settings.fm"));
        const Handle result = mergeSharedSettings(
            session.host, state, sharedPath, HostSession::hostPath(session.inBrindel("BR_Settings_TEMPVOKA.fm")), c.product);

        EXPECT_EQ(session.shown(), told(c.talk, c.product));
        EXPECT_TRUE(session.user.texts(headless::Said::Question).empty());
        EXPECT_FALSE(std::filesystem::exists(session.inBrindel("BR_Settings_TEMPVOKA.fm")));
        if (c.category == nullptr) {
            EXPECT_EQ(result, kNoObject);
            EXPECT_EQ(testing::openDocumentCount(session.host), 0);
            continue;
        }
        ASSERT_NE(result, kNoObject);
        EXPECT_FALSE(session.host.isVisible(result));
        // What counts is the file: close the result and read the saved document.
        session.host.close(result, kCloseModified);
        const Handle saved = openSettingsInvisibly(session.host, sharedPath);
        ASSERT_NE(saved, kNoObject);
        std::string category;
        readSetting(session.host, state, saved, "SettingsGroupE", "DefaultCategory", category, kSettingString);
        EXPECT_EQ(category, c.category);
        for (const auto& [key, version] : {std::pair{"Version1", c.version1}, std::pair{"Version2", c.version2}}) {
            EXPECT_EQ(readSetting(session.host, state, saved, "BR_Settings", key, category, kSettingInteger), version);
        }
        EXPECT_EQ(testing::openDocumentCount(session.host), 1);
    }
}

}  // namespace
}  // namespace voka
