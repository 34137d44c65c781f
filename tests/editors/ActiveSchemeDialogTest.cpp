// The active scheme dialog as a user works it: what it opens on (or why it
// does not open), what a new category lists, what OK and Cancel keep, the
// check box shared by both kinds, and the dialog shown before a colouring.
#include "coloring/ColoringMenu.h"
#include "editors/ActiveSchemeDialog.h"
#include "plugin/DialogDispatch.h"
#include "schemes/SchemeWorld.h"
#include "settings/SettingsDocument.h"

#include <gtest/gtest.h>

namespace voka::testing {
namespace {

using Texts = std::vector<std::string>;
constexpr const char* kDialog = "br_Dialog_2DDown_wChkBox";
constexpr int kCategories = 3, kSchemeLabel = 4, kSchemes = 6, kCheck = 7, kOk = 9, kCancel = 10;

// A world whose host hands the dialog's events to the plug-in's dispatcher.
struct DialogWorld : World, Client {
    DialogWorld() {
        host.attachClient(this);
        installActiveSchemeDialog(state);
    }
    void initialize(int) override {}
    void command(int) override {}
    void notify(int, Handle, const std::string&, int) override {}
    void dialogEvent(int dialog, int item, int modifiers) override {
        dispatchDialogEvent(host, state, dialog, item, modifiers);
    }
};

const std::vector<CategorySpec> kSettings = {
    {"Manuals", {{"Print", {kRedForExperts}}, {"Screen", {kRedForExperts}}}, {"Strict", "Loose"}},
    {"Web", {{"Online"}, {"Screen", {kRedForExperts}}}},
    {"Empty"},
};
const Texts kSchemesOf[] = {{"Print", "Screen"}, {"Online", "Screen"}, {"<none>"}};

TEST(ActiveSchemeDialog, OpensOnTheActiveChoicesAndKeepsWhatOkChose) {
    struct Case {
        const char* what;
        std::string category, scheme;  // active before
        int pickCategory, pickScheme;  // -1: leave
        int button, result;
        int openedCategory, openedScheme, pickedScheme;  // shown on opening, and after the picks
        std::string categoryAfter, schemeAfter;
    };
    const std::vector<Case> cases = {
        {"OK keeps the shown choice and loads it", "Manuals", "Screen", -1, -1, kOk, 1, 0, 1, 1, "Manuals", "Screen"},
        {"another scheme of the same category", "Manuals", "Screen", -1, 0, kOk, 1, 0, 1, 0, "Manuals", "Print"},
        {"a deleted category opens on the first", "Gone", "Screen", -1, -1, kCancel, 0, 0, 1, 1, "Manuals", "Screen"},
        {"a new category keeps the current scheme when it has one of that name", "Manuals", "Screen", 1, -1, kOk, 1,
         0, 1, 1, "Web", "Screen"},
        {"a new category without that scheme shows its first", "Manuals", "Print", 1, -1, kOk, 1, 0, 0, 0, "Web",
         "Online"},
        {"a category without schemes shows <none>, which loads nothing", "Manuals", "Print", 2, -1, kOk, 3, 0, 0, 0,
         "Empty", "<none>"},
        {"Cancel changes nothing", "Web", "Online", 0, 1, kCancel, 0, 1, 0, 1, "Web", "Online"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        DialogWorld world;
        world.holdMainSettings(kSettings);
        world.state.active.category = c.category;
        world.state.active.coloringScheme = c.scheme;
        world.user.onDialog(kDialog, [&](headless::DialogUser& d) {
            EXPECT_EQ(d.title(), "Set Active Coloring Scheme");
            EXPECT_EQ(d.label(1), "Scheme category");
            EXPECT_EQ(d.labels(kCategories), (Texts{"Manuals", "Web", "Empty"}));
            EXPECT_EQ(d.state(kCategories), c.openedCategory);
            EXPECT_EQ(d.label(kSchemeLabel), "Coloring scheme");
            EXPECT_EQ(d.labels(kSchemes), kSchemesOf[c.openedCategory]);
            EXPECT_EQ(d.state(kSchemes), c.openedScheme);
            EXPECT_EQ(d.label(kCheck), "Show this dialog before coloring actions");
            if (c.pickCategory >= 0) d.choose(kCategories, c.pickCategory);
            if (c.pickScheme >= 0) d.choose(kSchemes, c.pickScheme);
            EXPECT_EQ(d.labels(kSchemes), kSchemesOf[c.pickCategory >= 0 ? c.pickCategory : c.openedCategory]);
            EXPECT_EQ(d.state(kSchemes), c.pickedScheme);
            d.press(c.button);
        });

        EXPECT_EQ(showActiveSchemeDialog(world.host, world.state, 17), c.result);
        EXPECT_EQ(world.state.active.category, c.categoryAfter);
        EXPECT_EQ(world.state.active.coloringScheme, c.schemeAfter);
        EXPECT_EQ(world.state.coloring.loaded, c.result == 1 && c.schemeAfter != "Online");
        EXPECT_EQ(world.shown(), Texts{});
    }
}

// The check box starts from the colouring flag for both kinds; the validation
// dialog stores it into the validation flag.
TEST(ActiveSchemeDialog, CheckBoxStartsFromTheColouringFlag) {
    DialogWorld world;
    world.holdMainSettings(kSettings);
    world.state.active.category = "Manuals";
    world.state.active.validationScheme = "Loose";
    world.state.schemeDialog.showBeforeColoring = 0;
    world.state.schemeDialog.showBeforeValidation = 1;
    world.state.calls.readValidationScheme = [](Host&, PluginState&, const std::string& category,
                                                const std::string& scheme, int interactive) {
        return category == "Manuals" && scheme == "Loose" && interactive == 1 ? 1 : 2;
    };
    world.user.onDialog(kDialog, [&](headless::DialogUser& d) {
        EXPECT_EQ(d.title(), "Set Active Validation Scheme");
        EXPECT_EQ(d.label(kSchemeLabel), "Validation scheme");
        EXPECT_EQ(d.labels(kSchemes), (Texts{"Strict", "Loose"}));
        EXPECT_EQ(d.state(kSchemes), 1);
        EXPECT_EQ(d.label(kCheck), "Show this dialog before validation actions");
        EXPECT_EQ(d.state(kCheck), 0);
        d.press(kOk);
    });

    EXPECT_EQ(showActiveSchemeDialog(world.host, world.state, 24), 1);
    EXPECT_EQ(world.state.schemeDialog.showBeforeValidation, 0);
    EXPECT_EQ(world.state.schemeDialog.showBeforeColoring, 0);
    EXPECT_EQ(world.state.active.validationScheme, "Loose");
}

TEST(ActiveSchemeDialog, OpensTheLocalCopyWhenNothingIsHeld) {
    enum LocalCopy { Present, Missing, WithoutCategories };
    struct Case {
        const char* what;
        LocalCopy localCopy;
        int result, cancel;
        Texts shown;  // nothing shown: the dialog opens and OK is pressed
    };
    const std::vector<Case> cases = {
        {"local copy present", Present, 1, 0, {}},
        {"local copy missing", Missing, 0, 1,
         {prefixed(" Could not open the main settings document. Check to make sure the path specified in your "
                   "preferences is correct. If it is, another user may have it open, or you may be having network "
                   "problems.\n\nThis operation will be aborted. If the problem persists, please obtain technical "
                   "support.")}},
        {"local copy without scheme categories", WithoutCategories, 0, 0,
         {prefixed("A critical error occurred while reading your main settings file. Please contact Brindel.")}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        DialogWorld world;
        world.state.paths.localCopy = world.hostPath("local.fm");
        world.state.active.category = "Manuals";
        world.state.active.coloringScheme = "Print";
        if (c.localCopy != Missing) world.saveMainSettings(kSettings, "local.fm");
        if (c.localCopy == WithoutCategories) {
            const Handle doc = world.host.open(world.hostPath("local.fm"), OpenParams{false, false});
            const Handle categories =
                findElement(world.host, world.state, doc, kNoObject, kTagSchemeCategories, "*", "*", "");
            ASSERT_TRUE(world.host.deleteObject(doc, categories));
            ASSERT_NE(world.host.simpleSave(doc, world.hostPath("local.fm"), false), kNoObject);
            world.host.close(doc, kCloseModified);
        }
        if (c.shown.empty()) world.user.onDialog(kDialog, [](headless::DialogUser& d) { d.press(kOk); });

        EXPECT_EQ(showActiveSchemeDialog(world.host, world.state, 17), c.result);
        EXPECT_EQ(world.state.mainSettingsDoc, kNoObject);  // released again
        EXPECT_EQ(world.state.cancel, c.cancel);
        EXPECT_EQ(world.shown(), c.shown);
    }
}

TEST(ActiveSchemeDialog, ShownBeforeColouringWhenAskedFor) {
    struct Case {
        const char* what;
        int showBefore, button, result;
        const char* p1Color;
    };
    const std::vector<Case> cases = {
        {"OK colours with the scheme chosen in the dialog", 1, kOk, 1, "Red"},
        {"Cancel colours nothing", 1, kCancel, 0, "Black"},
        {"not shown when the user turned it off", 0, 0, 1, "Black"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        DialogWorld world;
        Handle doc = world.chapter();
        world.holdMainSettings(kSettings);
        ASSERT_EQ(world.activate("Web", "Online"), 1);  // colours nothing
        world.state.schemeDialog.showBeforeColoring = c.showBefore;
        if (c.showBefore) {
            world.user.onDialog(kDialog, [&](headless::DialogUser& d) {
                EXPECT_EQ(d.title(), "Color Document");
                d.choose(kCategories, 0);
                d.choose(kSchemes, 0);  // Manuals: Print
                d.press(c.button);
            });
        }
        EXPECT_EQ(colorCommandForMenu(world.host, world.state, 6), c.result);
        EXPECT_EQ(world.colorOf(doc, "p1"), c.p1Color);
    }
}

}  // namespace
}  // namespace voka::testing
