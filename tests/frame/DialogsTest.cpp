// The generic dialogs as a user meets them: the status lines, the Esc
// confirmation, the drop-down dialogs' OK and Cancel, the list editor and a
// missing dialog resource.
#include "frame/Dialogs.h"
#include "settings/HostSession.h"

namespace voka {
namespace {

using testing::HostSession;
using testing::List;

TEST(StatusDialog, StarKeepsALineAndEmptyBlanksIt) {
    HostSession session;
    PluginState& state = session.state();
    openStatus(session.host, state, "Working...");
    const Handle dialog = session.host.shownDialog("br_Dialog_Status");
    ASSERT_NE(dialog, kNoObject);
    auto user = session.host.dialogUser(dialog);
    EXPECT_EQ(user->title(), "Working...");

    struct Step {
        const char* lines[4];
        const char* shown[4];
    };
    const Step steps[] = {
        {{"one", "two", "three", "four"}, {"one", "two", "three", "four"}},
        {{"*", "", "*", "Press Esc to cancel"}, {"one", "", "three", "Press Esc to cancel"}},
        {{"*", "*", "*", "*"}, {"one", "", "three", "Press Esc to cancel"}},
    };
    for (const Step& step : steps) {
        setStatusLines(session.host, state, step.lines[0], step.lines[1], step.lines[2], step.lines[3]);
        for (int i = 0; i < 4; ++i) EXPECT_EQ(user->text(i + 1), step.shown[i]) << "line " << i + 1;
    }
    closeStatus(session.host, state);
    EXPECT_EQ(session.host.shownDialog("br_Dialog_Status"), kNoObject);
    // With no status dialog open, lines go nowhere.
    setStatusLines(session.host, state, "a", "b", "c", "d");
    EXPECT_TRUE(session.shown().empty());
}

TEST(StatusDialog, MissingResourcesSayDialogBoxError) {
    testing::TempFolder empty;
    HostSession session(empty.path().string());
    PluginState& state = session.state();
    openStatus(session.host, state, "Working...");
    setStatusLines(session.host, state, "a", "b", "c", "d");
    EXPECT_EQ(showOneChoiceDialog(session.host, state, 1, OneChoiceDialog{}), 0);
    EXPECT_EQ(showStringsListEditor(session.host, state, 50, "T", {"a"}, false), 0);
    EXPECT_EQ(session.shown(), (List{"Dialog box error.", "Dialog box error.", "Dialog box error."}));
}

TEST(CancelPoll, EscIsConfirmedBeforeAPassStops) {
    const List asked = {testing::kPrefix + "Are you sure you want to cancel this operation?"};
    struct Case {
        bool esc;
        bool yes;
        int result;
        int error;
        List shown;
    };
    for (const Case& c : {Case{false, false, 0, 0, {}}, Case{true, false, 0, 0, asked}, Case{true, true, 1, 210, asked}}) {
        HostSession session;
        if (c.esc) {
            session.user.pressEsc();
            c.yes ? session.user.answerYes() : session.user.answerNo();
        }
        EXPECT_EQ(pollCancel(session.host, session.state()), c.result);
        EXPECT_EQ(session.state().settingsError, c.error);
        EXPECT_EQ(session.shown(), c.shown);
    }
}

TEST(ChoiceDialogs, OkAndCancelReachTheCaller) {
    for (const int button : {kOneChoiceOk, kOneChoiceCancel}) {
        HostSession session;
        session.user.onDialog("br_Dialog_1DDown_wChkBox", [&](headless::DialogUser& d) {
            EXPECT_EQ(d.title(), "Pick one");
            EXPECT_EQ(d.labels(3), (List{"Coloring", "Filter"}));
            EXPECT_EQ(d.state(4), 1);
            d.choose(3, 1);
            d.press(button);
        });
        OneChoiceDialog dialog{.title = "Pick one", .choices3 = {"Coloring", "Filter"}, .checkState4 = 1};
        ASSERT_EQ(showOneChoiceDialog(session.host, session.state(), 1, dialog), 1);
        EXPECT_EQ(session.state().dialogs.accepted, button == kOneChoiceOk);
        const Handle open = openChoiceDialog(session.state());
        EXPECT_EQ(session.host.itemState(open, session.host.dialogItem(open, 3)), 1);
    }
}

TEST(ListEditor, EditsAListItemOnlyWhenAccepted) {
    for (const bool accept : {true, false}) {
        HostSession session;
        const Handle outer = session.host.openDialogResource("br_Dialog_1DDown_wChkBox");
        const Handle item = session.host.dialogItem(outer, 3);
        session.host.setItemLabels(outer, item, {"a", "b"});
        session.user.answerPrompt("c");
        session.user.onDialog("br_DialogStringsListEditor", [accept](headless::DialogUser& d) {
            EXPECT_EQ(d.title(), "List Editor");
            d.choose(kListItem, 0);
            d.press(kListDown);
            d.press(kListAdd);
            d.press(accept ? kListOk : kListCancel);
        });
        ASSERT_EQ(editItemList(session.host, session.state(), outer, 3), 1);
        EXPECT_EQ(session.host.itemLabels(outer, item), accept ? (List{"b", "a", "c"}) : (List{"a", "b"}));
        EXPECT_EQ(session.state().dialogs.listAccepted, accept);
    }
}

TEST(DialogResources, EveryGenericDialogHasItsItemsAndClosesOnOkAndCancel) {
    struct Resource {
        const char* name;
        int firstItem;  // items firstItem..lastItem exist
        int lastItem;
        int ok;  // 0: no buttons
        int cancel;
    };
    const Resource resources[] = {
        {"br_Dialog_Status", 1, 4, 0, 0},           {"br_Dialog_DDown", 1, 3, kDropDownOk, kDropDownCancel},
        {"br_Dialog_DDown_WIDE", 1, 3, kDropDownOk, kDropDownCancel},
        {"br_DialogStringsListEditor", 2, kListDelete, kListOk, kListCancel},
        {"br_DialogStringsListEditor_Wide", 2, kListDelete, kListOk, kListCancel},
        {"br_Dialog_1DDown_wChkBox", 1, 5, kOneChoiceOk, kOneChoiceCancel},
        {"br_Dialog_2DDown_wChkBox", 1, 8, kTwoChoiceOk, kTwoChoiceCancel},
    };
    for (const Resource& r : resources) {
        SCOPED_TRACE(r.name);
        HostSession session;
        for (const int button : {r.ok, r.cancel}) {
            const Handle dialog = session.host.openDialogResource(r.name);
            ASSERT_NE(dialog, kNoObject);
            for (int item = r.firstItem; item <= r.lastItem; ++item) EXPECT_NE(session.host.dialogItem(dialog, item), kNoObject) << item;
            if (button == 0) continue;
            bool closed = false;
            session.user.onDialog(r.name, [&](headless::DialogUser& d) { d.press(button); closed = !d.isUp(); });
            session.host.modalDialog(900, dialog);
            EXPECT_TRUE(closed) << button;
            session.host.close(dialog, 0);
        }
    }
}

}  // namespace
}  // namespace voka
