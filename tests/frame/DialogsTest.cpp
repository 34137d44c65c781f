// The generic dialogs as a user meets them: the status lines, a missing
// status resource, and the Esc confirmation.
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
    EXPECT_EQ(session.shown(), List{"Dialog box error."});
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

}  // namespace
}  // namespace voka
