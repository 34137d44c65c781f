// The Filter Document and Filter Book commands as a user meets them: what is
// refused before the dialog opens, what the dialog offers, and what OK does.
#include "filtering/FilterDialog.h"
#include "filtering/FilterRun.h"
#include "frame/Dialogs.h"
#include "plugin/DialogDispatch.h"
#include "schemes/SchemeWorld.h"

#include <gtest/gtest.h>

#include <fstream>

namespace voka::testing {
namespace {

using Texts = std::vector<std::string>;
constexpr const char* kDialog = "vkp_Dialog_Filter";
constexpr int kCategoryText = 5, kCategoryPopup = 6, kSchemeText = 8, kSchemePopup = 9, kBrowse = 13, kSource = 17,
              kDuplicate = 18, kWorldPeace = 21, kOk = 22, kCancel = 23;

// A world whose host hands the dialog's events to the plug-in's dispatcher,
// with a local copy of the main settings holding filter schemes.
struct FilterWorld : World, Client {
    FilterWorld() {
        host.attachClient(this);
        const FilterSchemeSpec macOnly{"Mac only", {{"Platform", {"Mac"}}}};
        saveMainSettings({{"Manuals", {}, {}, true, true, {macOnly}}, {"Empty"}}, "local.fm");
        state.paths.localCopy = hostPath("local.fm");
        state.active.category = "Manuals";
        state.active.filterScheme = "Mac only";
    }
    void initialize(int) override {}
    void command(int) override {}
    void notify(int, Handle, const std::string&, int) override {}
    void dialogEvent(int dialog, int item, int modifiers) override {
        dispatchDialogEvent(host, state, dialog, item, modifiers);
    }

    Handle chapter(const std::string& name) {
        headless::TreeBuilder b;
        b.open("Chapter", {{"id", "top"}}).leaf("P", {{"id", "a"}, {"Platform", "Win"}}, "win ");
        b.leaf("P", {{"id", "b"}, {"Platform", "Mac"}}, "mac");
        const Handle doc = b.build(host, hostPath(name));
        EXPECT_EQ(host.simpleSave(doc, hostPath(name), false), doc);
        return doc;
    }
};

TEST(FilterDialog, NothingToFilterIsSaidBeforeTheDialog) {
    FilterWorld world;
    EXPECT_EQ(FilterCommand(world.host, world.state, 3), kFilterRunStopped);
    EXPECT_EQ(FilterCommand(world.host, world.state, 4), kFilterRunStopped);
    world.chapter("one.xml");
    world.book({"one.xml", "two.xml"});
    EXPECT_EQ(FilterCommand(world.host, world.state, 4), kFilterRunStopped);
    EXPECT_EQ(world.shown(), (Texts{std::string(kPrefix) + "No active document. Cannot continue.",
                                    std::string(kPrefix) + "No active book. Cannot continue.",
                                    std::string(kPrefix) + "All files of the book must be open before filtering. "
                                                           "Please open all chapter files and try again."}));
}

TEST(FilterDialog, ACategoryWithoutFilterSchemesCannotBeAccepted) {
    FilterWorld world;
    world.chapter("chapter.xml");
    Texts offered;
    world.user.onDialog(kDialog, [&](headless::DialogUser& dialog) {
        EXPECT_EQ(dialog.title(), "Filter Document");
        EXPECT_EQ(dialog.text(kCategoryText), "Manuals");
        EXPECT_EQ(dialog.text(kSchemeText), "Mac only");
        offered = dialog.labels(kCategoryPopup);
        dialog.choose(kCategoryPopup, 1);
        EXPECT_EQ(dialog.text(kCategoryText), "Empty");
        EXPECT_EQ(dialog.text(kSchemeText), "<none>");
        EXPECT_FALSE(dialog.sensitive(kBrowse)) << "a document has no destination folder";
        dialog.press(kOk);
        EXPECT_TRUE(dialog.isUp()) << "a failed OK keeps the dialog up";
        dialog.press(kWorldPeace);
        dialog.press(kWorldPeace);
        dialog.press(kCancel);
    });
    EXPECT_EQ(FilterCommand(world.host, world.state, 3), kFilterRunStopped);
    EXPECT_EQ(offered, (Texts{"Manuals", "Empty"}));
    EXPECT_EQ(world.state.mainSettingsDoc, kNoObject) << "the main settings are let go";
    const Texts shown = world.shown();
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_NE(shown[0].find("Something went wrong trying to process your category and scheme entries"), std::string::npos);
    EXPECT_EQ(shown[1], std::string(kPrefix) + "You never know.  It just might work.") << "once a command";
}

TEST(FilterDialog, OkFiltersWithWhatTheDialogChose) {
    FilterWorld world;
    const Handle doc = world.chapter("chapter.xml");
    world.state.prefs.filterType = kFilterSourceFile;
    world.user.onDialog(kDialog, [&](headless::DialogUser& dialog) {
        EXPECT_EQ(dialog.state(kSource), 1);
        dialog.choose(kDuplicate, 1);
        EXPECT_EQ(dialog.state(kSource), 0) << "one filter type at a time";
        dialog.choose(kSchemePopup, 0);
        dialog.press(kOk);
    });
    const Handle copy = static_cast<Handle>(FilterCommand(world.host, world.state, 3));
    ASSERT_NE(copy, doc);
    ASSERT_EQ(objectType(copy), kDocumentObject);
    EXPECT_EQ(world.state.prefs.filterType, kFilterDuplicateFile);
    EXPECT_EQ(world.state.active.filterScheme, "Mac only");
    EXPECT_EQ(elementById(world.host, copy, "a"), kNoObject);
    EXPECT_NE(elementById(world.host, doc, "a"), kNoObject) << "the original keeps everything";
    EXPECT_EQ(world.shown(), Texts{std::string(kPrefix) + "Filter complete."});
}

}  // namespace
}  // namespace voka::testing
