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
MenuItem submenu(const std::string& tag, std::vector<MenuItem> items, const std::string& label = "") {
    return MenuItem{Kind::Menu, tag, label.empty() ? tag : label, {}, 0, std::move(items)};
}

void PrintTo(const MenuItem& item, std::ostream* os) {
    *os << item.tag << "(" << item.number << ")[";
    for (const MenuItem& child : item.items) PrintTo(child, os), *os << " ";
    *os << "]";
}

TEST(Menus, ListedAsBuiltInInsertionOrder) {
    HostFixture f;
    Host& h = f.host;
    const Handle main = h.namedObject(kNoObject, kMenuObject, "!MakerMainMenu");
    const Handle context = h.namedObject(kNoObject, kMenuObject, "!StructureContextMenu");
    EXPECT_EQ(h.namedObject(kNoObject, kMenuObject, "!NoSuchMenu"), kNoObject);

    const Handle voka = h.defineMenu("vkp_VOKAMenu", "VOKA");
    const Handle coloring = h.defineMenu("vkp_ColoringMenuDoc", "Coloring");
    const Handle colorSelection = h.defineCommand(5, "vkp_ColorSelection", "Color Selection... (Esc 1 1)", "\\!11");
    const Handle about = h.defineCommand(19, "vkp_VOKAHelpAbout", "About VOKA...", "");
    const Handle sep = h.newNamedObject(kNoObject, kMenuSeparatorObject, "vkp_separator1");
    ASSERT_TRUE(h.addMenuToMenu(main, voka));
    ASSERT_TRUE(h.addMenuToMenu(voka, coloring));
    ASSERT_TRUE(h.addCommandToMenu(coloring, colorSelection));
    ASSERT_TRUE(h.addCommandToMenu(voka, sep));
    ASSERT_TRUE(h.addCommandToMenu(voka, about));
    // The same separator may stand twice in one menu.
    ASSERT_TRUE(h.addCommandToMenu(context, sep));
    ASSERT_TRUE(h.addCommandToMenu(context, colorSelection));
    ASSERT_TRUE(h.addCommandToMenu(context, sep));
    // A menu cannot be put inside itself.
    EXPECT_FALSE(h.addMenuToMenu(coloring, voka));
    EXPECT_FALSE(h.addCommandToMenu(voka, voka));

    const MenuItem colorSelectionItem = command(5, "vkp_ColorSelection", "Color Selection... (Esc 1 1)", "\\!11");
    EXPECT_EQ(f.host.menu("!MakerMainMenu"),
              submenu("!MakerMainMenu", {submenu("vkp_VOKAMenu",
                                                 {submenu("vkp_ColoringMenuDoc", {colorSelectionItem}, "Coloring"),
                                                  separator("vkp_separator1"),
                                                  command(19, "vkp_VOKAHelpAbout", "About VOKA...")},
                                                 "VOKA")}));
    EXPECT_EQ(f.host.menu("!StructureContextMenu"),
              submenu("!StructureContextMenu",
                      {separator("vkp_separator1"), colorSelectionItem, separator("vkp_separator1")}));
    EXPECT_TRUE(f.host.menu("!BookMainMenu").items.empty());
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
        int number;  // 0: not delivered
    };
    const Case cases[] = {
        {"by number", [&] { return f.host.invokeCommand(21); }, 21},
        {"by tag", [&] { return f.host.invokeCommand("vkp_ColorSelection"); }, 5},
        {"an undefined number", [&] { return f.host.invokeCommand(22); }, 0},
        {"an undefined tag", [&] { return f.host.invokeCommand("vkp_Nothing"); }, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        client.calls.clear();
        EXPECT_EQ(c.invoke(), c.number != 0);
        using Calls = std::vector<RecordingClient::Call>;
        EXPECT_EQ(client.calls, (c.number != 0 ? Calls{{"command", c.number, 0, {}}} : Calls{}));
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

    f.host.requestNotification(kNotePostSetAttrValue, true);
    f.host.requestNotification(kNoteClientCall, true);
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
