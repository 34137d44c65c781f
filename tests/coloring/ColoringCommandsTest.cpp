// The colouring commands as a user runs them: the result code and the exact
// words of each outcome, the missing-colour and closed-component questions,
// Esc, books, and uncolouring.
#include "coloring/ColoringCommands.h"
#include "coloring/ColoringMenu.h"
#include "schemes/SchemeWorld.h"

#include <gtest/gtest.h>

namespace voka::testing {
namespace {

using Texts = std::vector<std::string>;
const std::string kCancelled = prefixed("Coloring action cancelled by user.");
const std::string kBookDone = prefixed("Book coloring complete.");

TEST(ColoringCommands, ResultCodesAndWhatTheUserIsTold) {
    struct Setup {
        bool chapter = true;
        bool structureless = false;  // a document with text but no elements
        bool book = false;           // a book window, listing the chapter
        bool scheme = true;
    };
    struct Case {
        const char* what;
        Setup setup;
        int code, askScheme, showProgress, interactive;
        int result;
        Texts messages;
        const char* p1Color;  // nullptr: no chapter to look at
    };
    const std::vector<Case> cases = {
        {"Color Document while a book window is active does nothing, silently", {.book = true}, 13, 1, 1, 1, 0, {},
         "Black"},
        {"nothing open", {.chapter = false}, 13, 1, 1, 1, 102, {prefixed("No active book or document. Cannot color.")},
         nullptr},
        {"nothing open is told even when not interactive", {.chapter = false}, 15, 0, 1, 0, 102,
         {prefixed("No active book or document. Cannot color.")}, nullptr},
        {"no active scheme", {.scheme = false}, 13, 1, 1, 1, 104, {prefixed("Cannot color - no active coloring scheme.")},
         "Black"},
        {"no structure in the main flow", {.chapter = false, .structureless = true}, 13, 1, 1, 1, 105,
         {prefixed("No structure found in the main flow. Cannot apply color.")}, nullptr},
        {"colouring a selection with only a book open", {.chapter = false, .book = true}, 10, 1, 1, 1, 102,
         {prefixed("No active document. Cannot color.")}, nullptr},
        {"colouring a selection with nothing selected", {}, 10, 1, 1, 1, 103,
         {prefixed("No element selection or insertion point. Cannot color.")}, "Black"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        World world;
        Handle doc = c.setup.chapter ? world.chapter() : kNoObject;
        if (c.setup.structureless) headless::TreeBuilder().text("loose text").build(world.host, world.hostPath("t.xml"));
        if (c.setup.book) world.book({"chapter.xml"});
        if (c.setup.scheme) world.useScheme({kRedForExperts});

        EXPECT_EQ(ColorCommand(world.host, world.state, kNoObject, c.code, c.askScheme, c.showProgress,
                               c.interactive),
                  c.result);
        EXPECT_EQ(world.shown(), c.messages);
        if (c.p1Color != nullptr) {
            EXPECT_EQ(world.colorOf(doc, "p1"), c.p1Color);
        }
    }
}

TEST(ColoringCommands, SelectionColoursOnlyTheSelectedElementAndKeepsTheSelection) {
    World world;
    Handle doc = world.chapter();
    world.useScheme({kRedForExperts, {"Blue", {{"audience", {"novice"}}}}});
    world.paint(doc, "p2", "Magenta");
    // A selection from p1 to p2: the first selected element is coloured.
    Handle ch = elementById(world.host, doc, "ch");
    world.host.setElementSelection(
        doc, ElementRange{{ch, elementById(world.host, doc, "p1"), 0}, {ch, elementById(world.host, doc, "p2"), 0}});
    const TextRange before = world.host.textSelection(doc);

    EXPECT_EQ(ColorCommand(world.host, world.state, kNoObject, 10, 1, 1, 1), 1);
    EXPECT_EQ(world.colorOf(doc, "p1"), "Red");
    EXPECT_EQ(world.colorOf(doc, "p2"), "Magenta");  // outside the selection, left alone
    EXPECT_EQ(world.colorOf(doc, "ch"), "Black");
    EXPECT_EQ(world.host.textSelection(doc), before);
}

TEST(ColoringCommands, MissingColoursAreAskedAbout) {
    struct Case {
        const char* what;
        int code, warn;
        bool yes;
        int result;
        const char* p2Color;  // the rule after the missing one still colours when the user goes on
    };
    const std::vector<Case> cases = {
        {"document: going on colours with the colours there are", 13, 1, true, 1, "Blue"},
        {"document: declining cancels", 13, 1, false, 108, "Black"},
        {"selection: declining cancels", 10, 1, false, 108, "Black"},
        {"no question when the warning is off; the insertion point's element is coloured", 10, 0, true, 1, "Blue"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        World world;
        Handle doc = world.chapter();
        world.useScheme({{"Orange", {{"audience", {"expert"}}}},
                         {"Blue", {{"audience", {"novice"}}}},
                         {"Purple", {{"audience", {"nobody"}}}}});
        world.state.coloringOptions.warnMissingColors = c.warn;
        // Color Selection starts at the chapter holding the insertion point, so that p2 is walked too.
        Handle ch = elementById(world.host, doc, "ch");
        world.host.setTextSelection(doc, TextRange{{ch, 2}, {ch, 2}});
        if (c.warn) c.yes ? world.user.answerYes() : world.user.answerNo();

        EXPECT_EQ(ColorCommand(world.host, world.state, kNoObject, c.code, 1, 1, 1), c.result);
        Texts expected;
        if (c.warn && c.code == 13) {
            expected.push_back(prefixed(
                "The following file:\n\n" + world.hostPath("chapter.xml") +
                "\n\n...is missing the following color definitions:\n\nOrange\nPurple\n\n...which are referenced in "
                "the active coloring scheme. A scheme rule cannot apply a color that does not exist in the "
                "document. If you choose to continue, the colors listed above will not be applied. Do you want to "
                "continue?"));
        }
        if (c.warn && c.code == 10) {
            expected.push_back(prefixed(
                "The following colors are used by the active coloring scheme, but are not present active in the "
                "document:\n\nOrange\nPurple\n\nA rule cannot apply a color that does not exist in the document. If "
                "you choose to continue, the colors listed above will not be applied. Do you want to continue?"));
        }
        if (c.result == 108) expected.push_back(kCancelled);
        EXPECT_EQ(world.shown(), expected);
        EXPECT_EQ(world.colorOf(doc, "p2"), c.p2Color);
    }
}

// A book with two.xml closed asks first; declining missing colours (two.xml
// lacks Orange) stops the book at the chapter that lacks them.
TEST(ColoringCommands, BookQuestionsStopTheBookWhenDeclined) {
    const std::string closedQuestion = prefixed(
        "One or more book components are not open. These files will not be processed.  Do you want to continue?");
    for (bool closed : {true, false}) {
        for (bool yes : {true, false}) {
            SCOPED_TRACE(std::string(closed ? "closed component, " : "missing colours, ") + (yes ? "Yes" : "No"));
            World world;
            Handle one = world.chapter("one.xml", !closed);
            Handle two = closed ? kNoObject : world.chapter("two.xml");
            Handle three = world.chapter("three.xml", !closed);
            world.book({"one.xml", "two.xml", "three.xml"});
            const char* color = closed ? "Red" : "Orange";
            world.useScheme({{color, {{"audience", {"expert"}}}}});
            yes ? world.user.answerYes() : world.user.answerNo();

            EXPECT_EQ(colorCommandForMenu(world.host, world.state, 7), yes ? 1 : 108);
            const Texts shown = world.shown();
            ASSERT_EQ(shown.size(), 2u);
            if (closed) {
                EXPECT_EQ(shown[0], closedQuestion);
            } else {
                EXPECT_NE(shown[0].find(world.hostPath("two.xml")), std::string::npos);
                EXPECT_NE(shown[0].find("\n\nOrange\n\n"), std::string::npos);
            }
            EXPECT_EQ(shown[1], yes ? kBookDone : kCancelled);
            EXPECT_EQ(world.colorOf(one, "p1"), yes || !closed ? color : "Black");
            if (two != kNoObject) {
                EXPECT_EQ(world.colorOf(two, "p1"), "Black");
            }
            EXPECT_EQ(world.colorOf(three, "p1"), yes ? color : "Black");
        }
    }
}

// 150 paragraphs that all match: Esc is looked at when the 102nd element comes.
TEST(ColoringCommands, EscIsPolledEvery102Elements) {
    for (bool confirm : {true, false}) {
        SCOPED_TRACE(confirm ? "cancel confirmed" : "cancel declined");
        World world;
        headless::TreeBuilder b;
        b.open("Chapter");
        for (int i = 0; i < 150; ++i) b.leaf("Para", {{"id", std::to_string(i)}, {"audience", "all"}}, "text ");
        Handle doc = b.build(world.host, world.hostPath("long.xml"));
        world.useScheme({{"Red", {{"audience", {"all"}}}}});
        world.user.pressEsc();
        confirm ? world.user.answerYes() : world.user.answerNo();

        EXPECT_EQ(colorCommandForMenu(world.host, world.state, 6), confirm ? 108 : 1);
        Texts expected{prefixed("Are you sure you want to cancel this operation?")};
        if (confirm) expected.push_back(kCancelled);
        EXPECT_EQ(world.shown(), expected);
        // The chapter is element 1, paragraph i is element i + 2.
        EXPECT_EQ(world.colorOf(doc, "99"), "Red");
        EXPECT_EQ(world.colorOf(doc, "100"), confirm ? "Black" : "Red");
        EXPECT_EQ(world.colorOf(doc, "149"), confirm ? "Black" : "Red");
    }
}

TEST(ColoringCommands, UncolouringRemovesEveryOverride) {
    struct Case {
        const char* what;
        int command;
        bool scheme;
        int result;
        const char* after;
        int strikethrough;
    };
    const std::vector<Case> cases = {
        {"Uncolor Document removes colouring and hand-made overrides", 20, true, 1, "Black", 0},
        {"Uncolor Book does the same for every open component", 21, true, 1, "Black", 0},
        {"without an active scheme nothing is removed", 20, false, 104, "Magenta", 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        World world;
        Handle doc = world.chapter();
        if (c.command == 21) world.book({"chapter.xml", "closed.xml"});
        if (c.scheme) world.useScheme({kRedForExperts});
        world.paint(doc, "p2", "Magenta", 1);

        EXPECT_EQ(colorCommandForMenu(world.host, world.state, c.command), c.result);
        EXPECT_EQ(world.shown(), Texts{});
        EXPECT_EQ(world.colorOf(doc, "p2"), c.after);
        EXPECT_EQ(world.host.textProperty(doc, TextLocation{elementById(world.host, doc, "p2"), 0},
                                          TextProperty::Strikethrough),
                  c.strikethrough);
    }
}

TEST(ColoringCommands, ProgressShowsTheDocumentBeingColoured) {
    World world;
    world.chapter();
    world.useScheme({kRedForExperts});
    ASSERT_EQ(colorCommandForMenu(world.host, world.state, 6), 1);
    const headless::DialogView* view = world.user.modelessView("br_Dialog_Status");
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(view->title, "Coloring Document...");
    ASSERT_GE(view->lines.size(), 4u);
    EXPECT_EQ(view->lines[0], "Please wait. Currently processing:");
    EXPECT_EQ(view->lines[1], world.hostPath("chapter.xml").substr(0, 50));
    EXPECT_EQ(view->lines[3], "Press Esc to cancel");
}

}  // namespace
}  // namespace voka::testing
