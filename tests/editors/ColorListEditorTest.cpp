// The master colour list editor as a user works it: what OK writes and
// saves, what Cancel leaves byte for byte, the prompts it asks with, and the
// colour choices the scheme editor offers from the list.
#include "editors/ColorListEditor.h"
#include "editors/EditorWorld.h"
#include "frame/Dialogs.h"
#include "settings/SettingsDocument.h"

#include <gtest/gtest.h>


namespace voka::testing {
namespace {

using Texts = std::vector<std::string>;


Texts storedNames(EditorWorld& w) {
    const Handle doc = w.host.open(w.hostPath("main.fm"), OpenParams{false, false});
    const Texts names = colorChoices(w.host, w.state, doc, false, false);
    w.host.close(doc, kCloseModified);
    return names;
}

TEST(ColorListEditor, OkWritesTheEditedListAndCancelLeavesTheFile) {
    struct Case {
        const char* what;
        std::vector<int> presses;       // list editor buttons, in order
        std::vector<std::string> typed;  // answers to its prompts, in order
        int result;
        Texts names;  // stored afterwards
    };
    const std::vector<Case> cases = {
        {"add, then OK", {kListAdd, kListOk}, {"Teal"}, 1, {"Red", "Blue", "Teal"}},
        {"rename the first, move it down, OK", {kListRename, kListDown, kListOk}, {"Crimson"}, 1, {"Blue", "Crimson"}},
        {"delete every name, OK: an empty list", {kListDelete, kListDelete, kListOk}, {}, 1, {}},
        {"several edits, then Cancel", {kListAdd, kListDelete, kListDelete, kListCancel}, {"Teal"}, 0, {"Red", "Blue"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        EditorWorld w;
        const std::string before = w.fileText("main.fm");
        for (const std::string& answer : c.typed) w.user.answerPrompt(answer);
        w.user.onDialog("br_DialogStringsListEditor", [&](headless::DialogUser& dialog) {
            EXPECT_EQ("Master Color List", dialog.title());
            for (int item : c.presses) dialog.press(item);
        });
        EXPECT_EQ(c.result, EditMasterColorList(w.host, w.state));
        EXPECT_EQ(kNoObject, w.state.mainSettingsDoc) << "the main settings are released";
        EXPECT_EQ(c.names, storedNames(w));
        if (c.result == 0) {
            EXPECT_EQ(before, w.fileText("main.fm")) << "Cancel leaves the file byte for byte";
        }
        const Texts prompts = w.user.texts(headless::Said::Prompt);
        for (const std::string& prompt : prompts)
            EXPECT_TRUE(prompt == "New color?" || prompt == "New color name?") << prompt;
    }
}

TEST(ColorListEditor, ChoicesForARuleColour) {
    EditorWorld w;
    const Handle doc = w.holdMainSettings({{"Manuals"}});
    EXPECT_EQ((Texts{"Red", "Blue"}), colorChoices(w.host, w.state, doc, false, false));
    EXPECT_EQ((Texts{"Red", "Blue", "<skip>", "<refresh EDD>", "Placeholder"}), colorChoices(w.host, w.state, doc, true, true));
}

TEST(ColorListEditor, NoMainSettingsToOpen) {
    EditorWorld w;
    w.state.prefs.masterPath = w.hostPath("gone.fm");
    EXPECT_EQ(0, EditMasterColorList(w.host, w.state));
    const Texts said = w.user.texts(headless::Said::Alert);
    ASSERT_EQ(1u, said.size());
    EXPECT_NE(said.front().find("Could not open the main settings document."), std::string::npos) << said.front();
}

}  // namespace
}  // namespace voka::testing
