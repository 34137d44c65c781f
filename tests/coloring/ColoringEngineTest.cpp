// What a colouring leaves on the text: the colour and style of the first
// matching rule, children over parents unless the parent's rule overrides,
// the two colour markers, and where a walk starts and stops.
#include "coloring/ColoringEngine.h"
#include "coloring/RuleColors.h"
#include "schemes/SchemeWorld.h"

#include <gtest/gtest.h>

namespace voka::testing {
namespace {

RuleSpec rule(const std::string& color, std::vector<ConditionSpec> conditions, int style = 0, int override = 0) {
    RuleSpec r;
    r.color = color;
    r.conditions = std::move(conditions);
    r.style = style;
    r.override = override;
    return r;
}

// Chapter (novice) "intro " > Para p1 (expert) "expert text", Para p2 (empty) "plain text".
Handle chapter(World& world) {
    headless::TreeBuilder b;
    b.define("Para", kElementContainer, {{"id", kAttrString, 0, {}, {}}, {"audience", kAttrString, 0, {}, {}}});
    b.open("Chapter", {{"id", "ch"}, {"audience", "novice"}})
        .text("intro ")
        .leaf("Para", {{"id", "p1"}, {"audience", "expert"}}, "expert text")
        .leaf("Para", {{"id", "p2"}}, "plain text")
        .close();
    return b.build(world.host, world.hostPath("chapter.xml"));
}

void useScheme(World& world, std::vector<RuleSpec> rules) {
    world.holdMainSettings({{"Manuals", {{"Print", std::move(rules), {}}}, {}}});
    ASSERT_EQ(world.activate("Manuals", "Print"), 1);
}

void paint(World& world, Handle doc, const char* id, const char* color) {
    Handle element = elementById(world.host, doc, id);
    world.host.setTextProperty(doc, world.host.elementTextRange(doc, element), TextProperty::Color,
                               static_cast<int>(world.host.namedObject(doc, kColorObject, color)));
}

struct Look {
    const char* id;
    std::string color;
    int underlining = 0;
    int overline = 0;
    int strikethrough = 0;
    int changeBar = 0;
};

void expectLooks(World& world, Handle doc, const std::vector<Look>& looks) {
    for (const Look& look : looks) {
        SCOPED_TRACE(look.id);
        Handle element = elementById(world.host, doc, look.id);
        TextLocation at{element, 0};
        EXPECT_EQ(colorAt(world.host, doc, element), look.color);
        EXPECT_EQ(world.host.textProperty(doc, at, TextProperty::Underlining), look.underlining);
        EXPECT_EQ(world.host.textProperty(doc, at, TextProperty::Overline), look.overline);
        EXPECT_EQ(world.host.textProperty(doc, at, TextProperty::Strikethrough), look.strikethrough);
        EXPECT_EQ(world.host.textProperty(doc, at, TextProperty::ChangeBar), look.changeBar);
    }
}

TEST(ColoringEngine, RulesColourTheTextAsUsersExpect) {
    struct Case {
        const char* what;
        std::vector<RuleSpec> rules;
        bool handPainted;  // p1 and p2 carry Magenta before the colouring
        std::vector<Look> looks;
    };
    const std::vector<Case> cases = {
        {"a child's own rule wins over its part of the parent's colour",
         {rule("Red", {{"audience", {"novice"}}}), rule("Blue", {{"audience", {"expert"}}})},
         false,
         {{"ch", "Red"}, {"p1", "Blue"}, {"p2", "Red"}}},
        {"an override rule on the parent keeps the children in its colour",
         {rule("Red", {{"audience", {"novice"}}}, 0, 1), rule("Blue", {{"audience", {"expert"}}})},
         false,
         {{"ch", "Red"}, {"p1", "Red"}, {"p2", "Red"}}},
        {"the first matching rule is the only one applied",
         {rule("Green", {{"audience", {"expert"}}}, 2), rule("Blue", {{"audience", {"expert"}}}, 1)},
         false,
         {{"ch", "Black"}, {"p1", "Green", 0, 0, 1}, {"p2", "Black"}}},
        {"<refresh EDD> gives the element its definition's formatting, then its style",
         {rule("<refresh EDD>", {{"audience", {"expert"}}}, 1)},
         true,
         {{"p1", "Black", 0, 1}, {"p2", "Magenta"}}},
        {"<skip> leaves the colour and applies the style",
         {rule("<skip>", {{"audience", {"expert"}}}, 3)},
         true,
         {{"p1", "Magenta", kSingleUnderline}, {"p2", "Magenta"}}},
        {"a colour the document lacks still wins and colours nothing",
         {rule("Orange", {{"audience", {"expert"}}}, 4), rule("Blue", {{"audience", {"expert"}}})},
         true,
         {{"p1", "Magenta", kDoubleUnderline}}},
        {"styles 5, 6 and 7",
         {rule("Red", {{"audience", {"novice"}}}, 5), rule("Blue", {{"audience", {"expert"}}}, 7)},
         false,
         {{"ch", "Red", 0, 0, 0, 1}, {"p1", "Blue", kNumericUnderline, 0, 0, 1}, {"p2", "Red", 0, 0, 0, 1}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        World world;
        Handle doc = chapter(world);
        useScheme(world, c.rules);
        if (c.handPainted) {
            paint(world, doc, "p1", "Magenta");
            paint(world, doc, "p2", "Magenta");
        }
        std::string missing;
        ResolveRuleColors(world.host, world.state, doc, missing);
        Handle root = world.host.highestLevelElement(doc, world.host.mainFlow(doc));
        EXPECT_EQ(ColorElementTree(world.host, world.state, doc, root, 13, 1, 0), 1);
        expectLooks(world, doc, c.looks);
    }
}

TEST(ColoringEngine, WalkCoversTheStartElementAndItsDescendantsOnly) {
    struct Case {
        const char* what;
        const char* start;
        int walkOn;
        std::vector<Look> looks;
    };
    const std::vector<Case> cases = {
        {"a start with a next sibling stops there", "p1", 1,
         {{"p1", "Red"}, {"p1a", "Blue"}, {"p2", "Black"}, {"p2a", "Black"}}},
        {"a start without a next sibling stops at its parent", "p2", 1,
         {{"p1", "Black"}, {"p2", "Red"}, {"p2a", "Blue"}, {"after", "Black"}}},
        {"walk off colours the start element alone", "ch", 0, {{"ch", "Red"}, {"p1a", "Red"}, {"p2a", "Red"}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        World world;
        headless::TreeBuilder b;
        // A visited Note turns blue; one not visited keeps its parent's colour.
        b.open("Book", {{"id", "book"}})
            .open("Chapter", {{"id", "ch"}, {"audience", "all"}})
            .text("intro ")
            .open("Para", {{"id", "p1"}, {"audience", "all"}})
            .text("first ")
            .leaf("Note", {{"id", "p1a"}, {"audience", "note"}}, "a")
            .close()
            .open("Para", {{"id", "p2"}, {"audience", "all"}})
            .text("second ")
            .leaf("Note", {{"id", "p2a"}, {"audience", "note"}}, "b")
            .close()
            .close()
            .leaf("Chapter", {{"id", "after"}, {"audience", "all"}}, "after")
            .close();
        Handle doc = b.build(world.host, world.hostPath("book.xml"));
        useScheme(world, {rule("Red", {{"audience", {"all"}}}), rule("Blue", {{"audience", {"note"}}})});
        std::string missing;
        ResolveRuleColors(world.host, world.state, doc, missing);
        Handle start = elementById(world.host, doc, c.start);
        EXPECT_EQ(ColorElementTree(world.host, world.state, doc, start, 13, c.walkOn, 0), 1);
        expectLooks(world, doc, c.looks);
    }
}

// Table cells and footnotes take missing attributes from their ancestors,
// other elements of a document do not.
TEST(ColoringEngine, CellsAndFootnotesInheritInADocument) {
    World world;
    headless::TreeBuilder b;
    b.open("Chapter", {{"id", "ch"}, {"audience", "novice"}})
        .text("intro ")
        .leaf("entry", {{"id", "cell"}, {"platform", "linux"}}, "cell")
        .leaf("fn", {{"id", "note"}, {"platform", "linux"}}, "note")
        .leaf("Para", {{"id", "para"}, {"platform", "linux"}}, "para")
        .close();
    Handle doc = b.build(world.host, world.hostPath("cells.xml"));
    RuleSpec both = rule("Red", {{"platform", {"linux"}}, {"audience", {"novice"}}});
    both.matchAll = 1;
    useScheme(world, {both});
    std::string missing;
    ResolveRuleColors(world.host, world.state, doc, missing);
    Handle root = world.host.highestLevelElement(doc, world.host.mainFlow(doc));
    EXPECT_EQ(ColorElementTree(world.host, world.state, doc, root, 13, 1, 0), 1);
    expectLooks(world, doc, {{"ch", "Black"}, {"cell", "Red"}, {"note", "Red"}, {"para", "Black"}});
}

}  // namespace
}  // namespace voka::testing
