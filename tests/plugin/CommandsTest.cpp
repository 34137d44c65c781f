// Menus, commands and notifications of a started plug-in: where Test
// appears per debug level, the override question of the uncolour commands,
// numbers outside the table, the test command, and which
// notifications trigger automatic validation.
#include "plugin/FrameCommands.h"
#include "plugin/Menus.h"
#include "plugin/Notifications.h"
#include "settings/HostSession.h"
#include "settings/MainSettings.h"
#include "settings/SettingsDocument.h"

#include <algorithm>

namespace voka {
namespace {

using testing::HostSession;
using testing::List;

const headless::MenuItem* child(const headless::MenuItem& menu, const std::string& tag) {
    const auto found = std::ranges::find(menu.items, tag, &headless::MenuItem::tag);
    return found == menu.items.end() ? nullptr : &*found;
}

std::vector<int> commandNumbers(const headless::MenuItem& menu) {
    std::vector<int> numbers;
    for (const headless::MenuItem& item : menu.items) {
        if (item.kind == headless::MenuItem::Kind::Command) numbers.push_back(item.number);
    }
    return numbers;
}

// The VOKA menu of the document or the book menu bar; without a tag when missing.
headless::MenuItem vokaMenu(headless::HeadlessHost& host, const std::string& bar) {
    const headless::MenuItem top = host.menu(bar);
    const headless::MenuItem* voka = child(top, bar == "!MakerMainMenu" ? "vkp_VOKAMenu" : "vkp_VOKAMenu_Book");
    return voka ? *voka : headless::MenuItem{};
}

// A session started on a reachable master, which says nothing.
class StartedSession : public HostSession {
public:
    StartedSession() {
        putSharedSettings(testing::SharedSettings{
            1, 1, std::map<std::string, std::string>{{"MainSettingsDocPath", putMaster()}}});
        host.startClient();
    }
};

TEST(Menus, TestCommandPerDebugLevel) {
    struct Case {
        int debugLevel;
        bool inMainMenus;
    };
    for (const Case c : {Case{3, false}, Case{5, true}, Case{4, false}}) {
        SCOPED_TRACE(c.debugLevel);
        HostSession session;
        session.state().debugLevel = c.debugLevel;
        defineMenus(session.host, session.state());
        const headless::MenuItem doc = vokaMenu(session.host, "!MakerMainMenu");
        ASSERT_EQ(doc.tag, "vkp_VOKAMenu");
        EXPECT_EQ(child(vokaMenu(session.host, "!BookMainMenu"), "vkp_Test") != nullptr, c.inMainMenus);
        EXPECT_EQ(commandNumbers(session.host.menu("!StructureContextMenu")), (std::vector<int>{5, 11, 1}));
        EXPECT_EQ(commandNumbers(doc), c.inMainMenus ? (std::vector<int>{1, 15, 19}) : (std::vector<int>{15, 19}));
    }
}

// The started menus as a whole are compared by the command-line "menus" golden test.
TEST(Menus, StartedPluginAsksForTheNotificationsItUses) {
    StartedSession session;
    ASSERT_TRUE(session.plugin.started());
    const std::vector<std::pair<int, bool>> asked = {{53, true}, {57, true}, {55, true}, {59, true},
                                                     {63, true}, {11, true}, {40, true}, {13, true}};
    EXPECT_EQ(session.host.notificationRequests(), asked);
}

TEST(Commands, UncolorAsksAboutOverridesUntilTheAnswerIsYes) {
    const std::string question =
        testing::kPrefix +
        "This command has the same effect as refreshing the EDD definitions to remove format overrides. It will "
        "remove all format overrides, whether applied by VOKA or otherwise. Are you sure you want to continue?\n\n "
        "If you choose Yes, this warning will not appear again.";
    for (const int command : {20, 21}) {
        SCOPED_TRACE(command);
        StartedSession session;
        session.user.answerNo(2);
        session.user.answerYes();
        for (int i = 0; i < 3; ++i) {
            session.plugin.command(command);
            EXPECT_EQ(session.state().overrideWarningPending, i < 2 ? 1 : 0);
        }
        // Once answered Yes, neither command asks again.
        session.plugin.command(command == 20 ? 21 : 20);
        EXPECT_EQ(session.user.texts(headless::Said::Question), List(3, question));
    }
}

TEST(Commands, NumbersOutsideTheTableDoNothing) {
    for (const int number : {0, 22, -1}) {
        SCOPED_TRACE(number);
        StartedSession session;
        session.plugin.command(number);
        EXPECT_TRUE(session.shown().empty());
        EXPECT_EQ(testing::openDocumentCount(session.host), 0);
    }
}

TEST(Commands, TestCommandShowsDocumentAndElementNumbers) {
    StartedSession session;
    const Handle doc = openSettingsInvisibly(session.host, session.putMaster());
    ASSERT_NE(doc, kNoObject);
    session.host.setActiveDocument(doc);
    const Handle root = session.host.highestLevelElement(doc, session.host.mainFlow(doc));
    const Handle element = session.host.firstChild(doc, root);
    const Handle next = session.host.nextSibling(doc, element);
    struct Case {
        const char* what;
        ElementRange selection;
        Handle shown;
    };
    const Case cases[] = {
        {"a selected element", {{root, element, 0}, {root, next, 0}}, element},
        {"an insertion point just before a child is in its parent", {{root, element, 0}, {root, element, 0}}, root},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        ASSERT_TRUE(session.host.setElementSelection(doc, c.selection));
        session.plugin.command(1);
        EXPECT_EQ(session.shown().back(), testing::kPrefix + "Doc:  " + std::to_string(static_cast<int>(doc)) +
                                              "\n\nElement:  " + std::to_string(static_cast<int>(c.shown)));
    }
}

TEST(Notifications, WhichChangesTriggerAutomaticValidation) {
    HostSession session;
    const Handle doc = openSettingsInvisibly(session.host, session.putMaster());
    const Handle root = session.host.highestLevelElement(doc, session.host.mainFlow(doc));
    const Handle selected = session.host.firstChild(doc, root);
    const ElementRange selection{{root, selected, 0}, {root, session.host.nextSibling(doc, selected), 0}};
    const ElementRange insertionPoint{{root, selected, 0}, {root, selected, 0}};
    const int named = static_cast<int>(root);

    struct Case {
        int autoValidate;
        int code;
        const char* attribute;
        Handle expected;
        bool insertionPoint = false;  // just before `selected` instead of selecting it
    };
    const Case cases[] = {
        {1, kNotePostSetAttrValue, "audience", root},   {1, kNotePostSetAttrValue, "id", kNoObject},
        {1, kNotePostSetAttrValue, "IdRef", kNoObject}, {1, kNotePostSetAttrValue, "IDREFERENCE", kNoObject},
        {1, kNotePostSetAttrValue, "idreferences", root}, {1, kNotePostInsertElement, "", root},
        {1, kNotePostChangeElement, "", selected},       {1, kNotePostChangeElement, "", root, true},
        {1, kNotePreQuitDoc, "", kNoObject},            {0, kNotePostSetAttrValue, "audience", kNoObject},
        {2, kNotePostChangeElement, "", kNoObject},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::to_string(c.code) + " " + c.attribute + " auto " + std::to_string(c.autoValidate) +
                     (c.insertionPoint ? " at an insertion point" : ""));
        session.host.setElementSelection(doc, c.insertionPoint ? insertionPoint : selection);
        session.state().prefs.autoValidate = c.autoValidate;
        EXPECT_EQ(autoValidationTarget(session.host, session.state(), c.code, doc, c.attribute, named), c.expected);
    }
}

TEST(Notifications, SessionEndClosesTheHeldMainSettings) {
    StartedSession session;
    PluginState& state = session.state();
    ASSERT_NE(openMaster(session.host, state, 1), kNoObject);
    session.plugin.notify(kNotePreQuitSession, kNoObject, "", 0);
    EXPECT_EQ(state.mainSettingsDoc, kNoObject);
    EXPECT_EQ(testing::openDocumentCount(session.host), 0);
}

}  // namespace
}  // namespace voka
