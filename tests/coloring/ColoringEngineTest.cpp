// What a colouring leaves on the text: the colour and style of the first
// matching rule, children over parents unless the parent's rule overrides,
// the two colour markers, and where a walk starts and stops.
#include "coloring/ColoringEngine.h"
#include "coloring/RuleColors.h"
#include "schemes/SchemeWorld.h"

#include <gtest/gtest.h>

namespace voka::testing {
namespace {

const ConditionSpec kNovice{"audience", {"novice"}}, kExpert{"audience", {"expert"}};

struct Look {
    const char* id;
    std::string color;
    int underlining = 0, overline = 0, strikethrough = 0, changeBar = 0;
};

// Colours the document from `start` (its root if 0) with the active scheme, and compares the looks.
void colourAndCompare(World& world, Handle doc, const std::vector<Look>& looks, const char* start = nullptr,
                      int walkOn = 1) {
    std::string missing;
    ResolveRuleColors(world.host, world.state, doc, missing);
    Handle from = start ? elementById(world.host, doc, start)
                        : world.host.highestLevelElement(doc, world.host.mainFlow(doc));
    EXPECT_EQ(ColorElementTree(world.host, world.state, doc, from, 13, walkOn, 0), 1);
    for (const Look& look : looks) {
        SCOPED_TRACE(look.id);
        Handle element = elementById(world.host, doc, look.id);
        auto property = [&](TextProperty p) { return world.host.textProperty(doc, TextLocation{element, 0}, p); };
        EXPECT_EQ(world.colorOf(doc, look.id), look.color);
        EXPECT_EQ(property(TextProperty::Underlining), look.underlining);
        EXPECT_EQ(property(TextProperty::Overline), look.overline);
        EXPECT_EQ(property(TextProperty::Strikethrough), look.strikethrough);
        EXPECT_EQ(property(TextProperty::ChangeBar), look.changeBar);
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
        {"a child's own rule wins over its part of the parent's colour; style 6",
         {{"Red", {kNovice}}, {"Blue", {kExpert}, 6}}, false,
         {{"ch", "Red"}, {"p1", "Blue", kNumericUnderline}, {"p2", "Red"}}},
        {"an override rule on the parent keeps the children in its colour",
         {{"Red", {kNovice}, 0, 0, 1}, {"Blue", {kExpert}}}, false, {{"ch", "Red"}, {"p1", "Red"}, {"p2", "Red"}}},
        {"the first matching rule is the only one applied; style 2",
         {{"Green", {kExpert}, 2}, {"Blue", {kExpert}, 1}}, false,
         {{"ch", "Black"}, {"p1", "Green", 0, 0, 1}, {"p2", "Black"}}},
        {"<refresh EDD> gives the element its definition's formatting, then its style 1",
         {{"<refresh EDD>", {kExpert}, 1}}, true, {{"p1", "Black", 0, 1}, {"p2", "Magenta"}}},
        {"<skip> leaves the colour and applies style 3", {{"<skip>", {kExpert}, 3}}, true,
         {{"p1", "Magenta", kSingleUnderline}, {"p2", "Magenta"}}},
        {"a colour the document lacks still wins and colours nothing; style 4",
         {{"Orange", {kExpert}, 4}, {"Blue", {kExpert}}}, true, {{"p1", "Magenta", kDoubleUnderline}}},
        {"style 5 sets a change bar, style 7 both a change bar and numeric underlining",
         {{"Red", {kNovice}, 5}, {"Blue", {kExpert}, 7}}, false,
         {{"ch", "Red", 0, 0, 0, 1}, {"p1", "Blue", kNumericUnderline, 0, 0, 1}, {"p2", "Red", 0, 0, 0, 1}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        World world;
        Handle doc = world.chapter();
        world.useScheme(c.rules);
        if (c.handPainted) {
            world.paint(doc, "p1", "Magenta");
            world.paint(doc, "p2", "Magenta");
        }
        colourAndCompare(world, doc, c.looks);
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
            .leaf("Chapter", {{"id", "after"}, {"audience", "all"}}, "after");
        Handle doc = b.build(world.host, world.hostPath("book.xml"));
        world.useScheme({{"Red", {{"audience", {"all"}}}}, {"Blue", {{"audience", {"note"}}}}});
        colourAndCompare(world, doc, c.looks, c.start, c.walkOn);
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
        .leaf("Para", {{"id", "para"}, {"platform", "linux"}}, "para");
    Handle doc = b.build(world.host, world.hostPath("cells.xml"));
    world.useScheme({{"Red", {{"platform", {"linux"}}, kNovice}, 0, 1}});
    colourAndCompare(world, doc, {{"ch", "Black"}, {"cell", "Red"}, {"note", "Red"}, {"para", "Black"}});
}

}  // namespace
}  // namespace voka::testing
