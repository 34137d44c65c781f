// Dialogs as the plug-in runs them: resources by name, modal runs driven by
// the user with events and "stay up", and broken resources.
#include "HostFixture.h"

namespace voka::headless::testing {
namespace {

struct DialogFixture : HostFixture {
    DialogFixture() {
        writeDialogs(folder);
        host.attachClient(&client);
        dialog = host.openDialogResource("t_Dialog_Choice");
    }
    std::vector<int> events() const {
        std::vector<int> items;
        for (const auto& [number, item] : client.events) items.push_back(item);
        return items;
    }
    RecordingClient client;
    Handle dialog;
};

TEST(Dialogs, ModalRunsUntilAClosingButtonIsLetThrough) {
    struct Case {
        const char* name;
        std::function<void(DialogUser&)> user;
        int stayUpTimes;  // the plug-in keeps the dialog up on the first OK presses
        std::vector<int> events;
        std::string text;
        int choice;
    };
    const Case cases[] = {
        {"OK ends it",
         [](DialogUser& d) {
             d.type(2, "typed");
             d.choose(3, 1);
             d.press(9);
         },
         0, {3, 9}, "typed", 1},
        {"the plug-in keeps it up once",
         [](DialogUser& d) {
             d.press(9);
             EXPECT_TRUE(d.isUp());
             d.type(2, "fixed");
             d.press(9);
             EXPECT_FALSE(d.isUp());
         },
         1, {9, 9}, "fixed", -1},
        {"a button that does not close, and presses after the end",
         [](DialogUser& d) {
             d.press(11);
             EXPECT_TRUE(d.isUp());
             d.press(10);
             EXPECT_FALSE(d.press(9));
         },
         0, {11, 10}, "", -1},
        {"closing the window", [](DialogUser& d) { d.cancel(); }, 0, {kDialogEventClose}, "", -1},
        {"the user walks away", [](DialogUser&) {}, 0, {kDialogEventClose}, "", -1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        DialogFixture f;
        int stayUp = c.stayUpTimes;
        f.client.onDialogEvent = [&](int number, int item) {
            EXPECT_EQ(number, 1225);
            if (item == 9 && stayUp-- > 0) f.host.returnValue(kReturnDialogStayUp);
        };
        f.host.setItemLabels(f.dialog, f.host.dialogItem(f.dialog, 3), {"Software", "Hardware"});
        f.agent.onDialog("t_Dialog_Choice", c.user);
        EXPECT_EQ(f.host.modalDialog(1225, f.dialog), 0);
        EXPECT_EQ(f.events(), c.events);
        // The results stay readable until the plug-in closes the dialog.
        EXPECT_EQ(f.host.itemText(f.dialog, f.host.dialogItem(f.dialog, 2)), c.text);
        EXPECT_EQ(f.host.itemState(f.dialog, f.host.dialogItem(f.dialog, 3)), c.choice);
        EXPECT_EQ(f.host.itemState(f.dialog, f.host.dialogItem(f.dialog, 4)), 1);
        EXPECT_EQ(f.host.shownDialog("t_Dialog_Choice"), kNoObject);
        EXPECT_EQ(f.host.close(f.dialog, 0), 0);
        EXPECT_EQ(f.host.dialogItem(f.dialog, 2), kNoObject);
    }
}

TEST(Dialogs, ItemsAsThePlugInSetsThem) {
    DialogFixture f;
    const Handle popup = f.host.dialogItem(f.dialog, 3);
    EXPECT_FALSE(f.host.setItemState(f.dialog, popup, 2));  // past the last entry
    EXPECT_TRUE(f.host.setItemState(f.dialog, popup, 1));
    EXPECT_TRUE(f.host.setItemLabels(f.dialog, popup, {"Only"}));
    EXPECT_EQ(f.host.itemState(f.dialog, popup), -1);  // the selection went with its entry
    // An item of another dialog is not an item of this one.
    EXPECT_EQ(f.host.itemText(f.host.openDialogResource("t_Dialog_Choice"), popup), "");
    EXPECT_EQ(f.host.errorNumber(), kErrorFailed);
    // An insensitive button cannot be pressed.
    ASSERT_TRUE(f.host.setItemSensitive(f.dialog, f.host.dialogItem(f.dialog, 9), false));
    f.agent.onDialog([](DialogUser& d) {
        EXPECT_FALSE(d.press(9));
        d.press(10);
    });
    f.host.modalDialog(1, f.dialog);
    EXPECT_EQ(f.events(), std::vector<int>{10});
}

TEST(Dialogs, MissingAndBrokenResources) {
    DialogFixture f;
    f.folder.write("dialogs/t_Broken.xml", "<dialog name=\"t_Broken\">\n<item number=\"1\" kind=\"label\">\n</dialog>\n");
    f.folder.write("dialogs/t_Twice.xml",
                   R"(<dialog name="t_Twice"><item number="1" kind="label"/><item number="1" kind="text"/></dialog>)");
    struct Case {
        const char* name;
        std::string resource;
        std::string reported;  // "" when nothing is said
    };
    const Case cases[] = {
        {"no such file", "t_Nothing", ""},
        {"a path instead of a name", "../dialogs/t_Dialog_Choice", ""},
        {"malformed XML", "t_Broken", "t_Broken.xml: line "},
        {"an item number twice", "t_Twice", "item 1 is defined twice"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        f.agent.clearTranscript();
        f.host.clearError();
        EXPECT_EQ(f.host.openDialogResource(c.resource), kNoObject);
        EXPECT_EQ(f.host.errorNumber(), kErrorFailed);
        const auto errors = f.agent.texts(Said::Error);
        ASSERT_EQ(errors.size(), c.reported.empty() ? 0u : 1u);
        if (!c.reported.empty()) {
            EXPECT_NE(errors[0].find(c.reported), std::string::npos) << errors[0];
        }
    }
}

}  // namespace
}  // namespace voka::headless::testing
