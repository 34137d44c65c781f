// Loading the active colouring scheme from the main settings document: what
// each outcome does to the active scheme, what the user is told, and how
// rule names, options and conditions are read.
#include "schemes/ColoringSchemeReader.h"
#include "schemes/SchemeWorld.h"

#include <gtest/gtest.h>

namespace voka::testing {
namespace {

constexpr const char* kReadError =
    "An error occurred while attempting to read coloring scheme parameters. Check the specified category and "
    "scheme. If you were recently working in the scheme editor, you may have renamed or deleted the active "
    "category or scheme.\n\nIf you feel you have received this message in error, please contact Brindel.";

RuleSpec redForExperts() {
    RuleSpec r;
    r.color = "Red";
    r.conditions = {{"audience", {"expert"}}};
    return r;
}

std::vector<CategorySpec> settings() {
    RuleSpec blue;
    blue.color = "Blue";
    return {
        {"Manuals", {{"Print", {redForExperts()}, {}}, {"Print", {blue, blue}, {}}, {"Empty", {}, {}}}, {}},
        {"NoColoring", {}, {}, false},
    };
}

struct LoadCase {
    const char* what;
    std::string category;
    std::string scheme;
    int interactive;
    int result;
    bool message;
    std::string activeAfter;  // the active colouring scheme name afterwards
    std::size_t rules;        // rules in the table afterwards
};

TEST(ColoringSchemeReader, ResultsMessagesAndActiveScheme) {
    const std::vector<LoadCase> cases = {
        {"a scheme that exists loads", "Manuals", "Print", 1, 1, false, "Old", 1},
        {"an empty scheme name loads nothing", "Manuals", "", 1, 3, false, "Old", 3},
        {"<none> in any case loads nothing", "Manuals", "<NONE>", 1, 3, false, "Old", 3},
        {"a <none> category loads nothing", "<none>", "Print", 1, 3, false, "Old", 3},
        {"the missing-value sentinel loads nothing", "ThisIsAnERROR", "Print", 1, 3, false, "Old", 3},
        {"an unknown scheme clears the active scheme and says so", "Manuals", "Screen", 1, 2, true, "<none>", 0},
        {"an unknown scheme is silent when not interactive", "Manuals", "Screen", 0, 2, false, "<none>", 0},
        {"a renamed category makes the scheme unreadable", "Handbooks", "Print", 1, 2, true, "<none>", 0},
        {"a category without coloring schemes has none to read", "NoColoring", "Print", 1, 2, true, "<none>", 0},
    };
    for (const LoadCase& c : cases) {
        SCOPED_TRACE(c.what);
        World world;
        world.holdMainSettings(settings());
        // Something loaded before, to see what each outcome leaves.
        world.state.coloring.rules.resize(3);
        world.state.coloring.loaded = true;
        world.state.active.coloringScheme = "Old";

        EXPECT_EQ(ReadColoringScheme(world.host, world.state, c.category, c.scheme, c.interactive), c.result);
        EXPECT_EQ(world.shown(), c.message ? std::vector<std::string>{prefixed(kReadError)}
                                           : std::vector<std::string>{});
        EXPECT_EQ(world.state.active.coloringScheme, c.activeAfter);
        EXPECT_EQ(world.state.coloring.rules.size(), c.rules);
    }
}

TEST(ColoringSchemeReader, ReadsRulesInOrder) {
    World world;
    RuleSpec first = redForExperts();
    first.style = 7;
    first.matchAll = 1;
    first.override = 1;
    first.conditions.push_back({"platform", {"linux", "<no value>"}});
    RuleSpec refresh;
    refresh.color = "<refresh EDD>";
    RuleSpec shortName;
    shortName.storedName = "ab";
    RuleSpec migrated;
    migrated.storedName = "Hi!Green";
    RuleSpec unnamed;
    unnamed.storedName = "";
    world.holdMainSettings({{"Manuals",
                             {{"Print",
                               {first, refresh, shortName, migrated, unnamed},
                               {{"IncludeEDDDefaults", "TRUE"},
                                {"SpaceDelimitedVals", "yes"},
                                {"IgnoreCaseSensitivity", "true"}}}},
                             {}}});

    ASSERT_EQ(world.activate("Manuals", "Print"), 1);
    const ColoringScheme& scheme = world.state.coloring;
    EXPECT_TRUE(scheme.loaded);
    EXPECT_EQ(scheme.options.includeEddDefaults, 1);
    EXPECT_EQ(scheme.options.spaceDelimited, 0);
    EXPECT_EQ(scheme.options.ignoreCase, 1);
    EXPECT_EQ(scheme.options.processAllFlows, 0);

    std::vector<std::string> colors;
    for (const ColorRule& rule : scheme.rules) colors.push_back(rule.colorName);
    // A name shorter than the prefix is kept whole; a rule without a name
    // reads the sentinel less its first three characters.
    EXPECT_EQ(colors, (std::vector<std::string>{"Red", "<refresh EDD>", "ab", "Green", "sIsAnERROR"}));

    const ColorRule& red = scheme.rules.front();
    EXPECT_EQ(red.style, 7);
    EXPECT_EQ(red.matchAll, 1);
    EXPECT_EQ(red.override, 1);
    EXPECT_EQ(red.conditions, (Attributes{{"audience", {"expert"}}, {"platform", {"linux", "<no value>"}}}));
}

TEST(ColoringSchemeReader, FirstOfTwoSameNamedSchemesAndEmptySchemes) {
    World world;
    world.holdMainSettings(settings());
    ASSERT_EQ(world.activate("Manuals", "Print"), 1);
    ASSERT_EQ(world.state.coloring.rules.size(), 1u);
    EXPECT_EQ(world.state.coloring.rules.front().colorName, "Red");

    // A scheme without rules loads, but leaves the table empty and not loaded.
    EXPECT_EQ(world.activate("Manuals", "Empty"), 1);
    EXPECT_TRUE(world.state.coloring.rules.empty());
    EXPECT_FALSE(world.state.coloring.loaded);
}

}  // namespace
}  // namespace voka::testing
