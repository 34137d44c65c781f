// The list operations the editors call from their dialog events: moves and
// deletes that follow the selection and refuse what cannot be done, adds
// and renames that refuse duplicates.
#include "frame/Dialogs.h"
#include "settings/HostSession.h"

namespace voka {
namespace {

using testing::List;

class ListOperationsTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_NE(list, kNoObject); }
    void fill(const List& labels, int selected) {
        host.setItemLabels(dialog, list, labels);
        host.setItemState(dialog, list, selected);
    }
    List labels() { return host.itemLabels(dialog, list); }
    int selection() { return host.itemState(dialog, list); }

    testing::HostSession session;
    Host& host = session.host;
    Handle dialog = host.openDialogResource("br_DialogStringsListEditor");
    Handle list = host.dialogItem(dialog, kListItem);
};

TEST_F(ListOperationsTest, MovesFollowTheEntryAndRefuseAtTheEnds) {
    struct Case {
        List before;
        int selected;
        int code;
        int result;
        List after;
        int selectedAfter;
    };
    const Case cases[] = {
        {{"a", "b", "c"}, 1, kMoveUp, 0, {"b", "a", "c"}, 0},     {{"a", "b", "c"}, 1, kMoveDown, 2, {"a", "c", "b"}, 2},
        {{"a", "b", "c"}, 0, kMoveUp, -1, {"a", "b", "c"}, 0},    {{"a", "b", "c"}, 2, kMoveDown, -1, {"a", "b", "c"}, 2},
        {{"a", "b", "c"}, -1, kMoveDown, -1, {"a", "b", "c"}, -1}, {{"a", "b"}, 0, 3, -1, {"a", "b"}, 0},
        {{"a", "b", "c"}, 2, kMoveDelete, 2, {"a", "b"}, 1},     {{"a"}, 0, kMoveDelete, 0, {}, -1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE("code " + std::to_string(c.code) + " at " + std::to_string(c.selected));
        fill(c.before, c.selected);
        EXPECT_EQ(listMove(host, dialog, c.code), c.result);
        EXPECT_EQ(labels(), c.after);
        EXPECT_EQ(selection(), c.selectedAfter);
    }
    EXPECT_TRUE(session.shown().empty());
}

TEST_F(ListOperationsTest, AddAndRenameRefuseDuplicates) {
    struct Case {
        const char* what;
        bool rename;
        bool allowDuplicates;
        std::optional<std::string> answer;
        int result;
        List after;
        std::vector<std::string> shown;
    };
    const List start = {"red", "green"};
    const Case cases[] = {
        {"add", false, false, "blue", 2, {"red", "green", "blue"}, {}},
        {"add cancelled", false, false, std::nullopt, -1, start, {}},
        {"add empty", false, false, "", -1, start, {}},
        {"add duplicate", false, false, "red", -1, start, {"This item already exists"}},
        {"add allowed duplicate", false, true, "red", 2, {"red", "green", "red"}, {}},
        {"rename", true, false, "blue", 1, {"red", "blue"}, {}},
        {"rename unchanged", true, false, "green", -1, start, {}},
        {"rename duplicate", true, false, "red", -1, start, {"This item already exists"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        session.user.clearTranscript();
        fill(start, 1);
        c.answer ? session.user.answerPrompt(*c.answer) : session.user.cancelPrompt();
        const int result = c.rename ? listRename(host, dialog, "Name?", c.allowDuplicates)
                                    : listAdd(host, dialog, "Name?", c.allowDuplicates);
        EXPECT_EQ(result, c.result);
        EXPECT_EQ(labels(), c.after);
        EXPECT_EQ(c.result >= 0 ? selection() : c.result, c.result);
        EXPECT_EQ(session.shown(), c.shown);
    }
}

TEST_F(ListOperationsTest, EntriesChosenByIndexSelectionOrText) {
    fill({"a", "b", "c"}, 2);
    session.user.answerPrompt("B");
    EXPECT_EQ(listEditEntry(host, dialog, kListItem, -1, "b", false, true), 1);
    EXPECT_EQ(labels(), (List{"a", "B", "c"}));
    EXPECT_EQ(session.user.promptTexts.back(), "Edit item...|b");

    session.user.answerPrompt("a");
    EXPECT_EQ(listEditEntry(host, dialog, kListItem, 2, "", false, true), -1);
    EXPECT_EQ(session.shown(), List{"This item is already in the list."});
    // Removing the selected last entry selects the new last one.
    EXPECT_EQ(listRemoveEntry(host, dialog, kListItem, -1, ""), 2);
    EXPECT_EQ(labels(), (List{"a", "B"}));
    EXPECT_EQ(selection(), 1);
    EXPECT_EQ(listRemoveEntry(host, dialog, kListItem, -1, "missing"), -1);
}

}  // namespace
}  // namespace voka
