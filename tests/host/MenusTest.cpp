// Menus and commands as the plug-in builds them at start-up, the commands
// reaching the client, notifications and calls from other clients.
#include "HostFixture.h"

namespace voka::headless::testing {
namespace {

using Kind = MenuItem::Kind;

MenuItem command(int number, const std::string& tag, const std::string& label, const std::string& shortcut = "") {
    return MenuItem{Kind::Command, tag, label, shortcut, number, {}};
}
MenuItem separator(const std::string& name) { return MenuItem{Kind::Separator, name, {}, {}, 0, {}}; }
MenuItem submenu(const std::string& tag, const std::string& label, std::vector<MenuItem> items) {
    return MenuItem{Kind::Menu, tag, label, {}, 0, std::move(items)};
}

void PrintTo(const MenuItem& item, std::ostream* os) {
    *os << item.tag << "(" << item.number << ")";
    if (item.items.empty()) return;
    *os << "[";
    for (const MenuItem& child : item.items) {
        PrintTo(child, os);
        *os << " ";
    }
    *os << "]";
}

TEST(Menus, ListedAsBuiltInInsertionOrder) {
    HostFixture f;
    Host& h = f.host;
    const Handle main = h.namedObject(kNoObject, kMenuObject, "!MakerMainMenu");
    const Handle context = h.namedObject(kNoObject, kMenuObject, "!StructureContextMenu");
    ASSERT_NE(main, kNoObject);
    ASSERT_NE(context, kNoObject);
    EXPECT_EQ(h.namedObject(kNoObject, kMenuObject, "!NoSuchMenu"), kNoObject);

    const Handle voka = h.defineMenu("vkp_VOKAMenu", "VOKA");
    const Handle coloring = h.defineMenu("vkp_ColoringMenuDoc", "Coloring");
    const Handle colorSelection = h.defineCommand(5, "vkp_ColorSelection", "Color Selection... (Esc 1 1)", "\\!11");
    const Handle colorDoc = h.defineCommand(6, "vkp_ColorDoc", "Color Document... (Esc 1 2)", "\\!12");
    const Handle about = h.defineCommand(19, "vkp_VOKAHelpAbout", "About VOKA...", "");
    const Handle sep = h.newNamedObject(kNoObject, kMenuSeparatorObject, "vkp_separator1");
    ASSERT_TRUE(h.addMenuToMenu(main, voka));
    ASSERT_TRUE(h.addMenuToMenu(voka, coloring));
    ASSERT_TRUE(h.addCommandToMenu(coloring, colorSelection));
    ASSERT_TRUE(h.addCommandToMenu(coloring, colorDoc));
    ASSERT_TRUE(h.addCommandToMenu(voka, sep));
    ASSERT_TRUE(h.addCommandToMenu(voka, about));
    // The same separator may stand twice in one menu.
    ASSERT_TRUE(h.addCommandToMenu(context, sep));
    ASSERT_TRUE(h.addCommandToMenu(context, colorSelection));
    ASSERT_TRUE(h.addCommandToMenu(context, sep));
    // A menu cannot be put inside itself.
    EXPECT_FALSE(h.addMenuToMenu(coloring, voka));
    EXPECT_FALSE(h.addCommandToMenu(voka, voka));

    const MenuItem expectedMain = submenu(
        "!MakerMainMenu", "!MakerMainMenu",
        {submenu("vkp_VOKAMenu", "VOKA",
                 {submenu("vkp_ColoringMenuDoc", "Coloring",
                          {command(5, "vkp_ColorSelection", "Color Selection... (Esc 1 1)", "\\!11"),
                           command(6, "vkp_ColorDoc", "Color Document... (Esc 1 2)", "\\!12")}),
                  separator("vkp_separator1"), command(19, "vkp_VOKAHelpAbout", "About VOKA...")})});
    EXPECT_EQ(f.host.menu("!MakerMainMenu"), expectedMain);
    const MenuItem expectedContext =
        submenu("!StructureContextMenu", "!StructureContextMenu",
                {separator("vkp_separator1"), command(5, "vkp_ColorSelection", "Color Selection... (Esc 1 1)", "\\!11"),
                 separator("vkp_separator1")});
    EXPECT_EQ(f.host.menu("!StructureContextMenu"), expectedContext);
    EXPECT_TRUE(f.host.menu("!BookMainMenu").items.empty());

    const auto commands = f.host.commands();
    ASSERT_EQ(commands.size(), 3u);
    EXPECT_EQ(commands[0].tag, "vkp_ColorSelection");
    EXPECT_EQ(commands[2].number, 19);
}

TEST(Menus, CommandsReachTheClientByNumberOrTag) {
    HostFixture f;
    RecordingClient client;
    f.host.attachClient(&client);
    f.host.defineCommand(5, "vkp_ColorSelection", "Color Selection...", "");
    f.host.defineCommand(21, "vkp_UnColorBook", "Uncolor Book...", "");
    struct Case {
        const char* name;
        std::function<bool()> invoke;
        bool delivered;
        int number;
    };
    const Case cases[] = {
        {"by number", [&] { return f.host.invokeCommand(21); }, true, 21},
        {"by tag", [&] { return f.host.invokeCommand("vkp_ColorSelection"); }, true, 5},
        {"an undefined number", [&] { return f.host.invokeCommand(22); }, false, 0},
        {"an undefined tag", [&] { return f.host.invokeCommand("vkp_Nothing"); }, false, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        client.calls.clear();
        EXPECT_EQ(c.invoke(), c.delivered);
        const std::vector<RecordingClient::Call> expected =
            c.delivered ? std::vector<RecordingClient::Call>{{"command", c.number, 0, {}}} : std::vector<RecordingClient::Call>{};
        EXPECT_EQ(client.calls, expected);
    }
}

TEST(Notifications, DeliveredWhenAskedFor) {
    HostFixture f;
    RecordingClient client;
    f.host.attachClient(&client);
    f.host.startClient();
    EXPECT_EQ(client.calls, (std::vector<RecordingClient::Call>{{"initialize", 1, 0, {}}}));
    client.calls.clear();

    EXPECT_FALSE(f.host.notifyClient(kNotePostSetAttrValue, kNoObject, "audience", 7));
    EXPECT_EQ(f.host.callClientFromOutside("Hello"), -1);
    EXPECT_TRUE(client.calls.empty());

    for (int code : {kNotePostInsertElement, kNotePostSetAttrValue, kNoteClientCall}) f.host.requestNotification(code, true);
    f.host.requestNotification(kNotePostInsertElement, false);
    EXPECT_EQ(f.host.notificationRequests().size(), 4u);
    EXPECT_FALSE(f.host.notifyClient(kNotePostInsertElement, kNoObject, "", 3));
    EXPECT_TRUE(f.host.notifyClient(kNotePostSetAttrValue, kNoObject, "audience", 7));
    // Another client's call is answered with what the plug-in returns.
    client.onNotify = [&](int code, const std::string& text) {
        if (code == kNoteClientCall) f.host.returnValue(text == "Hello" ? 1 : 101);
    };
    EXPECT_EQ(f.host.callClientFromOutside("Hello"), 1);
    EXPECT_EQ(f.host.callClientFromOutside("VOKA", "Nonsense"), 101);
    EXPECT_EQ(client.calls, (std::vector<RecordingClient::Call>{{"notify", kNotePostSetAttrValue, 7, "audience"},
                                                                 {"notify", kNoteClientCall, 0, "Hello"},
                                                                 {"notify", kNoteClientCall, 0, "Nonsense"}}));

    // The plug-in calling a client that is not there.
    f.host.clearError();
    EXPECT_EQ(f.host.callClient("Nobody", "Hello"), -1);
    EXPECT_EQ(f.host.errorNumber(), kErrorFailed);
    RecordingClient other;
    other.onNotify = [&](int, const std::string&) { f.host.returnValue(42); };
    f.host.registerClient("Other", &other);
    EXPECT_EQ(f.host.callClient("Other", "Ping"), 42);
}

}  // namespace
}  // namespace voka::headless::testing
