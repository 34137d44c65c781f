// The colouring commands as a user runs them: the result code and the exact
// words of each outcome, the missing-colour and closed-component questions,
// Esc, books, and uncolouring.
#include "coloring/ColoringCommands.h"
#include "coloring/ColoringEngine.h"
#include "coloring/ColoringMenu.h"
#include "schemes/SchemeWorld.h"

#include <gtest/gtest.h>

namespace voka::testing {
namespace {

RuleSpec rule(const std::string& color, std::vector<ConditionSpec> conditions, int style = 0) {
    RuleSpec r;
    r.color = color;
    r.conditions = std::move(conditions);
    r.style = style;
    return r;
}

const std::string kCancelled = prefixed("Coloring action cancelled by user.");

// Chapter (novice) "intro " > Para p1 (expert) "expert text", Para p2 (empty) "plain text".
Handle chapter(World& world, const std::string& name, bool withOrange = false) {
    headless::TreeBuilder b;
    if (withOrange) b.color("Orange", "#FFA500");
    b.define("Para", kElementContainer, {{"id", kAttrString, 0, {}, {}}, {"audience", kAttrString, 0, {}, {}}});
    b.open("Chapter", {{"id", "ch"}, {"audience", "novice"}})
        .text("intro ")
        .leaf("Para", {{"id", "p1"}, {"audience", "expert"}}, "expert text")
        .leaf("Para", {{"id", "p2"}}, "plain text")
        .close();
    return b.build(world.host, world.hostPath(name));
}

Handle book(World& world, const std::vector<std::string>& chapters) {
    auto made = std::make_unique<headless::Book>();
    for (const std::string& name : chapters) made->components.push_back({world.hostPath(name), {}, 0, true});
    return world.host.adoptBook(std::move(made), world.hostPath("manual.book"));
}

void useScheme(World& world, const std::string& name, std::vector<RuleSpec> rules) {
    world.holdMainSettings({{"Manuals", {{name, std::move(rules), {}}}, {}}});
    ASSERT_EQ(world.activate("Manuals", name), 1);
}

std::string colorOf(World& world, Handle doc, const char* id) {
    return colorAt(world.host, doc, elementById(world.host, doc, id));
}

struct Setup {
    bool chapter = true;
    bool structureless = false;  // a document with text but no elements
    bool book = false;           // a book window, listing the chapter
    bool scheme = true;
    bool insertionPoint = false;  // in p1
};

struct CommandCase {
    const char* what;
    Setup setup;
    int code;
    int askScheme, showProgress, interactive;
    int result;
    std::vector<std::string> messages;
    const char* p1Color;  // nullptr: no chapter to look at
};

TEST(ColoringCommands, ResultCodesAndWhatTheUserIsTold) {
    const std::vector<CommandCase> cases = {
        {"Color Document while a book window is active does nothing, silently", {.book = true}, 13, 1, 1, 1, 0, {},
         "Black"},
        {"Uncolor Document while a book window is active does nothing", {.book = true}, 15, 0, 1, 0, 0, {}, "Black"},
        {"nothing open", {.chapter = false}, 13, 1, 1, 1, 102,
         {prefixed("No active book or document. Cannot color.")}, nullptr},
        {"nothing open is told even when not interactive", {.chapter = false}, 15, 0, 1, 0, 102,
         {prefixed("No active book or document. Cannot color.")}, nullptr},
        {"no active scheme", {.scheme = false}, 13, 1, 1, 1, 104,
         {prefixed("Cannot color - no active coloring scheme.")}, "Black"},
        {"uncolouring without an active scheme does nothing and says nothing", {.scheme = false}, 15, 0, 1, 0, 104,
         {}, "Black"},
        {"no structure in the main flow", {.chapter = false, .structureless = true}, 13, 1, 1, 1, 105,
         {prefixed("No structure found in the main flow. Cannot apply color.")}, nullptr},
        {"colouring a selection with only a book open", {.chapter = false, .book = true}, 10, 1, 1, 1, 102,
         {prefixed("No active document. Cannot color.")}, nullptr},
        {"colouring a selection with nothing selected", {}, 10, 1, 1, 1, 103,
         {prefixed("No element selection or insertion point. Cannot color.")}, "Black"},
        {"colouring the element at the insertion point", {.insertionPoint = true}, 10, 1, 1, 1, 1, {}, "Red"},
        {"colouring a document", {}, 13, 1, 1, 1, 1, {}, "Red"},
        {"colouring a book", {.book = true}, 14, 1, 1, 1, 1, {prefixed("Book coloring complete.")}, "Red"},
    };
    for (const CommandCase& c : cases) {
        SCOPED_TRACE(c.what);
        World world;
        Handle doc = kNoObject;
        if (c.setup.chapter) doc = chapter(world, "chapter.xml");
        if (c.setup.structureless) headless::TreeBuilder().text("loose text").build(world.host, world.hostPath("t.xml"));
        if (c.setup.book) book(world, {"chapter.xml"});
        if (c.setup.scheme) useScheme(world, "Print", {rule("Red", {{"audience", {"expert"}}})});
        if (c.setup.insertionPoint) {
            Handle p1 = elementById(world.host, doc, "p1");
            world.host.setTextSelection(doc, TextRange{{p1, 3}, {p1, 3}});
        }

        EXPECT_EQ(ColorCommand(world.host, world.state, kNoObject, c.code, c.askScheme, c.showProgress,
                               c.interactive),
                  c.result);
        EXPECT_EQ(world.shown(), c.messages);
        if (c.p1Color != nullptr) {
            EXPECT_EQ(colorOf(world, doc, "p1"), c.p1Color);
        }
    }
}

TEST(ColoringCommands, SelectionColoursOnlyTheSelectedElementAndKeepsTheSelection) {
    World world;
    Handle doc = chapter(world, "chapter.xml");
    useScheme(world, "Print", {rule("Red", {{"audience", {"expert"}}}), rule("Blue", {{"audience", {"novice"}}})});
    Handle p1 = elementById(world.host, doc, "p1");
    Handle p2 = elementById(world.host, doc, "p2");
    const int magenta = static_cast<int>(world.host.namedObject(doc, kColorObject, "Magenta"));
    world.host.setTextProperty(doc, world.host.elementTextRange(doc, p2), TextProperty::Color, magenta);
    // A selection of the whole p1 element: the first selected element is coloured.
    Handle ch = elementById(world.host, doc, "ch");
    world.host.setElementSelection(doc, ElementRange{{ch, p1, 0}, {ch, p2, 0}});
    const TextRange before = world.host.textSelection(doc);

    EXPECT_EQ(ColorCommand(world.host, world.state, kNoObject, 10, 1, 1, 1), 1);
    EXPECT_EQ(colorOf(world, doc, "p1"), "Red");
    EXPECT_EQ(colorOf(world, doc, "p2"), "Magenta");  // outside the selection, left alone
    EXPECT_EQ(colorOf(world, doc, "ch"), "Black");
    EXPECT_EQ(world.host.textSelection(doc), before);
}

TEST(ColoringCommands, MissingColoursAreAskedAbout) {
    struct Case {
        const char* what;
        int code;
        int warn;
        bool yes;
        int result;
        bool asked;
        const char* p2Color;  // the rule after the missing one still colours when the user goes on
    };
    const std::vector<Case> cases = {
        {"document: going on colours with the colours there are", 13, 1, true, 1, true, "Blue"},
        {"document: declining cancels", 13, 1, false, 108, true, "Black"},
        {"selection: declining cancels", 10, 1, false, 108, true, "Black"},
        {"selection: going on", 10, 1, true, 1, true, "Blue"},
        {"no question when the warning is off", 13, 0, true, 1, false, "Blue"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        World world;
        Handle doc = chapter(world, "chapter.xml");
        useScheme(world, "Print",
                  {rule("Orange", {{"audience", {"expert"}}}), rule("Blue", {{"audience", {"novice"}}}),
                   rule("Purple", {{"audience", {"nobody"}}})});
        world.state.coloringOptions.warnMissingColors = c.warn;
        // Color Selection starts at the chapter, so that p2 is walked too.
        Handle ch = elementById(world.host, doc, "ch");
        world.host.setTextSelection(doc, TextRange{{ch, 2}, {ch, 2}});
        if (c.asked) c.yes ? world.user.answerYes() : world.user.answerNo();

        EXPECT_EQ(ColorCommand(world.host, world.state, kNoObject, c.code, 1, 1, 1), c.result);
        std::vector<std::string> expected;
        if (c.asked && c.code == 13) {
            expected.push_back(prefixed(
                "The following file:\n\n" + world.hostPath("chapter.xml") +
                "\n\n...is missing the following color definitions:\n\nOrange\nPurple\n\n...which are referenced in "
                "the active coloring scheme. A scheme rule cannot apply a color that does not exist in the "
                "document. If you choose to continue, the colors listed above will not be applied. Do you want to "
                "continue?"));
        }
        if (c.asked && c.code == 10) {
            expected.push_back(prefixed(
                "The following colors are used by the active coloring scheme, but are not present active in the "
                "document:\n\nOrange\nPurple\n\nA rule cannot apply a color that does not exist in the document. If "
                "you choose to continue, the colors listed above will not be applied. Do you want to continue?"));
        }
        if (c.result == 108) expected.push_back(kCancelled);
        EXPECT_EQ(world.shown(), expected);
        EXPECT_EQ(colorOf(world, doc, "p2"), c.p2Color);
    }
}

TEST(ColoringCommands, BookWithAClosedComponentAsksFirst) {
    for (bool yes : {true, false}) {
        SCOPED_TRACE(yes ? "Yes" : "No");
        World world;
        Handle first = chapter(world, "one.xml");
        Handle third = chapter(world, "three.xml");
        book(world, {"one.xml", "two.xml", "three.xml"});
        useScheme(world, "Print", {rule("Red", {{"audience", {"expert"}}})});
        yes ? world.user.answerYes() : world.user.answerNo();

        EXPECT_EQ(colorCommandForMenu(world.host, world.state, 7), yes ? 1 : 108);
        const std::string question = prefixed(
            "One or more book components are not open. These files will not be processed.  Do you want to "
            "continue?");
        EXPECT_EQ(world.shown(), (std::vector<std::string>{question, yes ? prefixed("Book coloring complete.")
                                                                         : kCancelled}));
        EXPECT_EQ(colorOf(world, first, "p1"), yes ? "Red" : "Black");
        EXPECT_EQ(colorOf(world, third, "p1"), yes ? "Red" : "Black");
    }
}

TEST(ColoringCommands, DecliningMissingColoursStopsTheBook) {
    World world;
    Handle one = chapter(world, "one.xml", true);
    Handle two = chapter(world, "two.xml", false);
    Handle three = chapter(world, "three.xml", true);
    book(world, {"one.xml", "two.xml", "three.xml"});
    useScheme(world, "Print", {rule("Orange", {{"audience", {"expert"}}})});
    world.user.answerNo();

    EXPECT_EQ(colorCommandForMenu(world.host, world.state, 7), 108);
    ASSERT_EQ(world.shown().size(), 2u);
    EXPECT_NE(world.shown()[0].find(world.hostPath("two.xml")), std::string::npos);
    EXPECT_EQ(world.shown()[1], kCancelled);
    EXPECT_EQ(colorOf(world, one, "p1"), "Orange");
    EXPECT_EQ(colorOf(world, two, "p1"), "Black");
    EXPECT_EQ(colorOf(world, three, "p1"), "Black");
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
        useScheme(world, "Print", {rule("Red", {{"audience", {"all"}}})});
        world.user.pressEsc();
        confirm ? world.user.answerYes() : world.user.answerNo();

        EXPECT_EQ(colorCommandForMenu(world.host, world.state, 6), confirm ? 108 : 1);
        std::vector<std::string> expected{prefixed("Are you sure you want to cancel this operation?")};
        if (confirm) expected.push_back(kCancelled);
        EXPECT_EQ(world.shown(), expected);
        // The chapter is element 1, paragraph i is element i + 2.
        EXPECT_EQ(colorOf(world, doc, "99"), "Red");
        EXPECT_EQ(colorOf(world, doc, "100"), confirm ? "Black" : "Red");
        EXPECT_EQ(colorOf(world, doc, "149"), confirm ? "Black" : "Red");
    }
}

TEST(ColoringCommands, ColouringTwiceLeavesOnlyTheSecondScheme) {
    World world;
    Handle doc = chapter(world, "chapter.xml");
    useScheme(world, "First", {rule("Red", {{"audience", {"expert"}}}, 3)});
    ASSERT_EQ(colorCommandForMenu(world.host, world.state, 6), 1);
    ASSERT_EQ(colorOf(world, doc, "p1"), "Red");

    // The second scheme colours the chapter, and with it p1's text, blue.
    useScheme(world, "Second", {rule("Blue", {{"audience", {"novice"}}})});
    ASSERT_EQ(colorCommandForMenu(world.host, world.state, 6), 1);
    Handle p1 = elementById(world.host, doc, "p1");
    EXPECT_EQ(colorOf(world, doc, "p1"), "Blue");
    EXPECT_EQ(world.host.textProperty(doc, TextLocation{p1, 0}, TextProperty::Underlining), 0);
    EXPECT_EQ(colorOf(world, doc, "p2"), "Blue");
}

TEST(ColoringCommands, UncolouringRemovesEveryOverride) {
    struct Case {
        const char* what;
        int command;
        bool scheme;
        int result;
        const char* after;
    };
    const std::vector<Case> cases = {
        {"Uncolor Document removes colouring and hand-made overrides", 20, true, 1, "Black"},
        {"Uncolor Book does the same for every open component", 21, true, 1, "Black"},
        {"without an active scheme nothing is removed", 20, false, 104, "Magenta"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        World world;
        Handle doc = chapter(world, "chapter.xml");
        if (c.command == 21) book(world, {"chapter.xml", "closed.xml"});
        if (c.scheme) useScheme(world, "Print", {rule("Red", {{"audience", {"expert"}}})});
        Handle p2 = elementById(world.host, doc, "p2");
        const int magenta = static_cast<int>(world.host.namedObject(doc, kColorObject, "Magenta"));
        world.host.setTextProperty(doc, world.host.elementTextRange(doc, p2), TextProperty::Color, magenta);
        world.host.setTextProperty(doc, world.host.elementTextRange(doc, p2), TextProperty::Strikethrough, 1);

        EXPECT_EQ(colorCommandForMenu(world.host, world.state, c.command), c.result);
        EXPECT_EQ(world.shown(), std::vector<std::string>{});
        EXPECT_EQ(colorOf(world, doc, "p2"), c.after);
    }
}

TEST(ColoringCommands, ProgressShowsTheDocumentBeingColoured) {
    World world;
    chapter(world, "chapter.xml");
    useScheme(world, "Print", {rule("Red", {{"audience", {"expert"}}})});
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
