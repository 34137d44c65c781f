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

TEST(ColoringSchemeReader, ResultsMessagesAndActiveScheme) {
    struct Case {
        const char* what;
        std::string category, scheme;
        int interactive, result;
        bool message;  // the read error is shown
        std::string activeAfter;  // the active colouring scheme name, the rules in the table and "loaded" afterwards
        std::size_t rules;
        bool loaded;
    };
    const std::vector<Case> cases = {
        {"the first of two schemes of that name loads", "Manuals", "Print", 1, 1, false, "Old", 1, true},
        {"a scheme without rules loads but is not loaded", "Manuals", "Empty", 1, 1, false, "Old", 0, false},
        {"an empty scheme name loads nothing", "Manuals", "", 1, 3, false, "Old", 3, true},
        {"<none> in any case loads nothing", "Manuals", "<NONE>", 1, 3, false, "Old", 3, true},
        {"a <none> category loads nothing", "<none>", "Print", 1, 3, false, "Old", 3, true},
        {"the missing-value sentinel loads nothing", "ThisIsAnERROR", "Print", 1, 3, false, "Old", 3, true},
        {"an unknown scheme clears the active scheme and says so", "Manuals", "Screen", 1, 2, true, "<none>", 0, false},
        {"an unknown scheme is silent when not interactive", "Manuals", "Screen", 0, 2, false, "<none>", 0, false},
        {"a renamed category makes the scheme unreadable", "Handbooks", "Print", 1, 2, true, "<none>", 0, false},
        {"a category without coloring schemes has none to read", "NoColoring", "Print", 1, 2, true, "<none>", 0,
         false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        World world;
        world.holdMainSettings({{"Manuals", {{"Print", {kRedForExperts}}, {"Print", {{"Blue"}, {"Blue"}}}, {"Empty"}}},
                                {"NoColoring", {}, {}, false}});
        // Something loaded before, to see what each outcome leaves.
        world.state.coloring.rules.resize(3);
        world.state.coloring.loaded = true;
        world.state.active.coloringScheme = "Old";

        EXPECT_EQ(ReadColoringScheme(world.host, world.state, c.category, c.scheme, c.interactive), c.result);
        EXPECT_EQ(world.shown(), std::vector<std::string>(c.message, prefixed(kReadError)));
        EXPECT_EQ(world.state.active.coloringScheme, c.activeAfter);
        EXPECT_EQ(world.state.coloring.rules.size(), c.rules);
        EXPECT_EQ(world.state.coloring.loaded, c.loaded);
        if (c.result == 1 && c.rules == 1) { EXPECT_EQ(world.state.coloring.rules[0].colorName, "Red"); }
    }
}

TEST(ColoringSchemeReader, ReadsRulesOptionsAndConditions) {
    World world;
    RuleSpec first{"Red", {{"audience", {"expert"}}, {"platform", {"linux", "<no value>"}}}, 7, 1, 1};
    const SchemeOptionValues options{{"IncludeEDDDefaults", "TRUE"}, {"SpaceDelimitedVals", "yes"}, {"IgnoreCaseSensitivity", "true"}};
    world.useScheme({first, {"<refresh EDD>"}, {.storedName = "ab"}, {.storedName = "Hi!Green"}, {.storedName = ""}},
                    "Print", options);
    const ColoringScheme& scheme = world.state.coloring;
    const auto& o = scheme.options;  // only "true", in any case, is true
    EXPECT_EQ(std::tie(o.includeEddDefaults, o.spaceDelimited, o.ignoreCase, o.processAllFlows), std::make_tuple(1, 0, 1, 0));

    std::vector<std::string> colors;
    for (const ColorRule& rule : scheme.rules) colors.push_back(rule.colorName);
    // A name shorter than the prefix is kept whole; a rule without a name
    // reads the sentinel less its first three characters.
    EXPECT_EQ(colors, (std::vector<std::string>{"Red", "<refresh EDD>", "ab", "Green", "sIsAnERROR"}));

    const ColorRule& red = scheme.rules.front();
    EXPECT_EQ(std::tie(red.style, red.matchAll, red.override), std::make_tuple(7, 1, 1));
    EXPECT_EQ(red.conditions, (Attributes{{"audience", {"expert"}}, {"platform", {"linux", "<no value>"}}}));
}

}  // namespace
}  // namespace voka::testing
