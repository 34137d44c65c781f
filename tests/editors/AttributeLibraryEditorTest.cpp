// The attribute library editor as a user works it: adding, renaming,
// moving and deleting attributes and values, double clicks, refusals of
// what exists already, Save writing both paths and Cancel leaving the file.
#include "editors/AttributeLibraryEditor.h"
#include "editors/EditorWorld.h"
#include "settings/SettingsDocument.h"

#include <gtest/gtest.h>


namespace voka::testing {
namespace {

using Library = std::vector<std::pair<std::string, std::vector<std::string>>>;

struct LibraryWorld : EditorWorld {
    Library stored(const std::string& name) {
        const Handle doc = host.open(hostPath(name), OpenParams{false, false});
        Library library;
        const Handle list = findElement(host, state, doc, kNoObject, kTagAttributeList, kWildcard, kWildcard, "");
        for (Handle a = list ? host.firstChild(doc, list) : kNoObject; a != kNoObject; a = host.nextSibling(doc, a)) {
            std::string attribute;
            readString(host, state, doc, a, kAttrName, attribute);
            library.emplace_back(attribute, readList(host, doc, a, kAttrValues, false));
        }
        host.close(doc, kCloseModified);
        return library;
    }
};

// One user action in the dialog.
struct Action {
    enum Kind { Press, Choose, DoubleClick } kind;
    int item;
    int state = 0;
};
Action press(int item) { return {Action::Press, item}; }
Action choose(int item, int entry) { return {Action::Choose, item, entry}; }
Action doubleClick(int item, int entry) { return {Action::DoubleClick, item, entry}; }

TEST(AttributeLibraryEditor, WhatSaveKeepsAndCancelLeaves) {
    constexpr const char* kExists = "The item you entered already exists. Please choose another.";
    struct Case {
        const char* what;
        std::vector<Action> actions;
        std::vector<std::string> answers;  // to the prompts, in order
        int result;
        Library library;  // stored in both files afterwards (for Save)
        std::vector<std::string> prompts;  // asked, in order
        int refusals;
    };
    const std::vector<Case> cases = {
        {"attributes and values added, a value edited by double click, an attribute moved down",
         {press(kLibAttributeAdd), press(kLibAttributeAdd), choose(kLibAttributes, 0), press(kLibValueAdd),
          press(kLibValueAdd), press(kLibValueAdd), doubleClick(kLibValues, 0), press(kLibAttributeDown), press(kLibSave)},
         {"audience", "platform", "novice", "expert", "novice", "beginner"},
         1,
         {{"platform", {}}, {"audience", {"beginner", "expert"}}},
         {"New attribute?", "New attribute?", "New value?", "New value?", "New value?", "Edit current value?"},
         1},
        {"names are compared exactly, and an unchanged edit is refused",
         {press(kLibAttributeAdd), press(kLibAttributeAdd), press(kLibAttributeAdd), press(kLibAttributeEdit), press(kLibSave)},
         {"audience", "audience", "Audience", "Audience"},
         1,
         {{"audience", {}}, {"Audience", {}}},
         {"New attribute?", "New attribute?", "New attribute?", "Edit attribute name?"},
         2},
        {"deleting the selected last attribute selects the new last; a double click renames it",
         {press(kLibAttributeAdd), press(kLibAttributeAdd), press(kLibAttributeAdd), press(kLibAttributeDelete),
          doubleClick(kLibAttributes, 1), press(kLibValueAdd), press(kLibValueAdd), choose(kLibValues, 1),
          press(kLibValueUp), press(kLibValueDelete), press(kLibSave)},
         {"a", "b", "c", "b2", "x", "y"},
         1,
         {{"a", {}}, {"b2", {"x"}}},
         {"New attribute?", "New attribute?", "New attribute?", "Edit attribute name?", "New value?", "New value?"},
         0},
        {"several edits, then Cancel", {press(kLibAttributeAdd), press(kLibValueAdd), press(kLibCancel)}, {"audience", "novice"},
         0, {}, {"New attribute?", "New value?"}, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        LibraryWorld w;
        const std::string before = w.fileText("main.fm");
        for (const std::string& answer : c.answers) w.user.answerPrompt(answer);
        w.user.onDialog("vkp_Dialog_AttributeList", [&](headless::DialogUser& dialog) {
            EXPECT_EQ("VOKA Attribute Library", dialog.title());
            for (const Action& a : c.actions) {
                const bool done = a.kind == Action::Press    ? dialog.press(a.item)
                                  : a.kind == Action::Choose ? dialog.choose(a.item, a.state)
                                                             : dialog.doubleClick(a.item, a.state);
                EXPECT_TRUE(done) << "item " << a.item;
            }
        });
        EXPECT_EQ(c.result, OpenAttributeLibrary(w.host, w.state));
        EXPECT_EQ(kNoObject, w.state.mainSettingsDoc) << "the main settings are released";
        EXPECT_EQ(c.prompts, w.user.texts(headless::Said::Prompt));
        int refusals = 0;
        for (const std::string& said : w.user.texts(headless::Said::Alert)) refusals += said.find(kExists) != std::string::npos;
        EXPECT_EQ(c.refusals, refusals);
        if (c.result == 0) {
            EXPECT_EQ(before, w.fileText("main.fm")) << "Cancel leaves the file byte for byte";
            EXPECT_FALSE(std::filesystem::exists(w.folder / "local.fm"));
            continue;
        }
        EXPECT_EQ(c.library, w.stored("main.fm"));
        EXPECT_EQ(c.library, w.stored("local.fm")) << "Save writes the local copy too";
    }
}

TEST(AttributeLibraryEditor, ButtonsNeedASelection) {
    LibraryWorld w;
    w.user.onDialog("vkp_Dialog_AttributeList", [&](headless::DialogUser& dialog) {
        for (int item : {kLibAttributeEdit, kLibAttributeDelete, kLibValueAdd, kLibValueEdit})
            EXPECT_FALSE(dialog.sensitive(item)) << item << " with an empty library";
        EXPECT_TRUE(dialog.sensitive(kLibAttributeAdd));
        dialog.press(kLibCancel);
    });
    EXPECT_EQ(0, OpenAttributeLibrary(w.host, w.state));
}

}  // namespace
}  // namespace voka::testing
