// Which elements a filter keeps, and what the walk does with the others: a
// wrong verdict drops content a reader needed or leaks content meant for
// another audience; a wrong walk leaves half a table behind.
#include "filtering/FilterScheme.h"
#include "filtering/FilterVerdict.h"
#include "filtering/FilterWalk.h"
#include "schemes/SchemeWorld.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace voka::testing {
namespace {

using headless::AttrValue;

// How the tested element carries the rule's attribute.
enum class Carries { Absent, Empty, Value };

struct VerdictCase {
    const char* what;
    std::vector<std::string> listed;  // the rule's values for "Platform"
    Carries carries;
    std::string value;  // when Carries::Value
    SchemeOptions options;
    bool removed;
    std::vector<std::string> defaults = {};  // declared for Platform
};

SchemeOptions withCase() { return SchemeOptions{0, 0, 1, 0}; }
SchemeOptions withWords() { return SchemeOptions{0, 1, 0, 0}; }
SchemeOptions withDefaults() { return SchemeOptions{1, 0, 0, 0}; }

// The verdict of the element itself must agree with the rule verdict over
// the element's attribute list, so both are asked.
TEST(FilterDecision, VerdictsAsUsersProfileTheirContent) {
    const VerdictCase cases[] = {
        {"an unlisted value goes", {"Mac"}, Carries::Value, "Win", {}, true},
        {"a listed value stays", {"Mac"}, Carries::Value, "Mac", {}, false},
        {"an element without the attribute stays", {"Mac"}, Carries::Absent, "", {}, false},
        {"an element with the attribute empty goes", {"Mac"}, Carries::Empty, "", {}, true},
        {"<no value> alone keeps an empty attribute", {"<no value>"}, Carries::Empty, "", {}, false},
        {"<no value> alone drops any value", {"<no value>"}, Carries::Value, "Mac", {}, true},
        {"<any value> keeps any value", {"<any value>"}, Carries::Value, "Win", {}, false},
        {"<any value> drops an empty attribute", {"<any value>"}, Carries::Empty, "", {}, true},
        {"<no value> and Mac keep an empty attribute", {"<no value>", "Mac"}, Carries::Empty, "", {}, false},
        {"<no value> and Mac keep Mac", {"<no value>", "Mac"}, Carries::Value, "Mac", {}, false},
        {"<no value> and Mac drop Win", {"<no value>", "Mac"}, Carries::Value, "Win", {}, true},
        {"a rule without values drops every element with the attribute", {}, Carries::Empty, "", {}, true},
        {"a rule without values keeps elements without the attribute", {}, Carries::Absent, "", {}, false},
        {"values are compared in their case", {"Mac"}, Carries::Value, "mac", {}, true},
        {"unless the scheme ignores case", {"Mac"}, Carries::Value, "mac", withCase(), false},
        {"the keywords are read in any case", {"<NO Value>"}, Carries::Empty, "", {}, false},
        {"a value of two words is one value", {"Mac"}, Carries::Value, "Win Mac", {}, true},
        {"unless values are split at blanks", {"Mac"}, Carries::Value, "Win  Mac", withWords(), false},
        {"an EDD default counts when the scheme asks", {"Mac"}, Carries::Empty, "", withDefaults(), true, {"Win"}},
        {"a listed EDD default keeps the element", {"Mac"}, Carries::Empty, "", withDefaults(), false, {"Mac"}},
    };
    for (const VerdictCase& c : cases) {
        SCOPED_TRACE(c.what);
        World world;
        world.state.filter.options = c.options;
        world.state.filter.rules = {{"Platform", c.listed}};

        headless::TreeBuilder b;
        AttributeDefinitions declared{{"id", kAttrString, 0, {}, {}}};
        if (c.carries != Carries::Absent) declared.push_back({"Platform", kAttrString, 0, {}, c.defaults});
        b.define("P", kElementContainer, declared);
        std::vector<AttrValue> values{{"id", "p"}};
        if (c.carries == Carries::Value) values.emplace_back("Platform", c.value);
        b.open("Topic").leaf("P", values, "text");
        const Handle doc = b.build(world.host, world.hostPath("topic.xml"));
        const Handle p = elementById(world.host, doc, "p");

        Attributes list = world.host.attributes(doc, p);
        if (c.options.includeEddDefaults)
            for (Attribute& attribute : list)
                if (attribute.values.empty()) attribute.values = c.defaults;
        if (c.options.spaceDelimited)
            for (Attribute& attribute : list)
                if (!attribute.values.empty()) attribute.values = {"Win", "Mac"};
        EXPECT_EQ(FilterRuleVerdict(world.state, 0, list), c.removed ? 1 : 0) << "rule verdict";
        EXPECT_EQ(FilterElementVerdict(world.host, world.state, doc, p), c.removed ? 1 : 0) << "element verdict";
    }
}

TEST(FilterDecision, EveryConditionMustHoldAndNamesAreExact) {
    World world;
    headless::TreeBuilder b;
    b.open("Topic").leaf("P", {{"id", "both"}, {"Platform", "Mac"}, {"Audience", "novice"}}, "a");
    b.leaf("Note", {{"id", "plain"}}, "b");
    const Handle doc = b.build(world.host, world.hostPath("topic.xml"));
    const Handle both = elementById(world.host, doc, "both"), plain = elementById(world.host, doc, "plain");
    struct Case {
        const char* what;
        std::vector<FilterRule> rules;
        int ignoreCase;
        int both;
    };
    const Case cases[] = {
        {"two conditions that hold keep it", {{"Platform", {"Mac"}}, {"Audience", {"novice"}}}, 0, 0},
        {"one that fails drops it", {{"Platform", {"Mac"}}, {"Audience", {"expert"}}}, 0, 1},
        {"an empty scheme keeps everything", {}, 0, 0},
        {"an attribute name in another case is another attribute", {{"platform", {"Win"}}}, 1, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        world.state.filter.rules = c.rules;
        world.state.filter.options.ignoreCase = c.ignoreCase;
        EXPECT_EQ(FilterElementVerdict(world.host, world.state, doc, both), c.both);
        EXPECT_EQ(FilterElementVerdict(world.host, world.state, doc, plain), 0) << "no attributes, no removal";
    }
    world.state.filter.rules = {{"Platform", {"Win"}}};
    EXPECT_EQ(TopElementCheck(world.host, world.state, doc), 0) << "the top element has no Platform";
}

TEST(FilterDecision, LoadingASchemeKeepsTheLastOneWhenTheNextIsMissing) {
    World world;
    EXPECT_EQ(LoadFilterScheme(world.host, world.state, "Manuals", "Print", 1), kFilterNoSettings);
    FilterSchemeSpec print{"Print", {{"Platform", {"Mac", "<no value>"}}, {"Audience", {}}},
                           {{"IgnoreCaseSensitivity", "TRUE"}, {"SpaceDelimitedVals", "False"}}};
    world.holdMainSettings({{"Manuals", {}, {}, true, true, {print}}});
    EXPECT_EQ(LoadFilterScheme(world.host, world.state, "Manuals", "Print", 1), kFilterLoaded);
    ASSERT_EQ(world.state.filter.rules.size(), 2u);
    EXPECT_EQ(world.state.filter.rules[0].attribute, "Platform");
    EXPECT_EQ(world.state.filter.rules[0].values, (std::vector<std::string>{"Mac", "<no value>"}));
    EXPECT_TRUE(world.state.filter.rules[1].values.empty());
    EXPECT_EQ(world.state.filter.options.ignoreCase, 1);
    EXPECT_EQ(world.state.filter.options.spaceDelimited, 0);

    EXPECT_EQ(LoadFilterScheme(world.host, world.state, "<NONE>", "Print", 1), kFilterNotLoaded);
    EXPECT_EQ(LoadFilterScheme(world.host, world.state, "Manuals", "Web", 1), kFilterNotLoaded);
    EXPECT_EQ(world.state.filter.rules.size(), 2u) << "a failed load keeps the scheme loaded before";
    EXPECT_EQ(world.shown(), std::vector<std::string>{std::string(kPrefix) +
                                                      " A critical error occurred while reading your main settings "
                                                      "file for filter scheme parameters. Please obtain technical support."});
}

TEST(FilterWalk, ADuplicateLosesWhatFailsWithItsChildrenAndTablesByTheirRules) {
    struct Case {
        const char* what;
        std::vector<std::string> failing;  // ids whose Platform is Win
        std::vector<std::string> left;
        int settingsError = 0;
    };
    const Case cases[] = {
        {"nothing fails", {}, {"top", "s1", "p1", "p2", "tbl", "body", "r1", "c1", "r2", "c2", "s2"}},
        {"a section takes the paragraphs it holds, even those that pass", {"s1"}, {"top", "tbl", "body", "r1", "c1", "r2", "c2", "s2"}},
        {"one row of two goes alone", {"r1"}, {"top", "s1", "p1", "p2", "tbl", "body", "r2", "c2", "s2"}},
        {"the only row of a body takes the table", {"r1", "r2"}, {"top", "s1", "p1", "p2", "s2"}},
        {"a failing cell stays, quietly", {"c1"}, {"top", "s1", "p1", "p2", "tbl", "body", "r1", "c1", "r2", "c2", "s2"}, 221},
        {"a failing body takes its table", {"body"}, {"top", "s1", "p1", "p2", "s2"}},
        {"the last element of the document", {"s2"}, {"top", "s1", "p1", "p2", "tbl", "body", "r1", "c1", "r2", "c2"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        World world;
        world.state.prefs.filterType = kFilterDuplicateFile;
        world.state.filter.rules = {{"Platform", {"Mac"}}};
        auto attrs = [&](const std::string& id) {
            std::vector<AttrValue> out{{"id", id}};
            if (std::find(c.failing.begin(), c.failing.end(), id) != c.failing.end()) out.emplace_back("Platform", "Win");
            else out.emplace_back("Platform", "Mac");
            return out;
        };
        headless::TreeBuilder b;
        b.open("Topic", attrs("top"));
        b.open("Section", attrs("s1")).leaf("P", attrs("p1"), "one").leaf("P", attrs("p2"), "two").close();
        b.open("table", attrs("tbl")).open("tbody", attrs("body"));
        b.open("row", attrs("r1")).leaf("entry", attrs("c1"), "x").close();
        b.open("row", attrs("r2")).leaf("entry", attrs("c2"), "y").close();
        b.close().close();
        b.leaf("Section", attrs("s2"), "last");
        const Handle doc = b.build(world.host, world.hostPath("topic.xml"));
        ASSERT_EQ(world.host.elementType(doc, elementById(world.host, doc, "r1")), kElementTableRow);
        FilterSubtree(world.host, world.state, doc, world.host.highestLevelElement(doc, world.host.mainFlow(doc)), 3, 1);
        EXPECT_EQ(world.state.cancel, 0);
        EXPECT_EQ(idsInOrder(world.host, doc), c.left);
        EXPECT_EQ(world.state.settingsError, c.settingsError);
        EXPECT_TRUE(world.shown().empty());
    }
}

// Esc is polled every 102nd element; a confirmed cancel stops the walk where
// it is, with what was deleted gone and the rest untouched.
TEST(FilterWalk, EscStopsTheWalkWhereItIs) {
    for (bool confirm : {true, false}) {
        SCOPED_TRACE(confirm ? "cancel confirmed" : "cancel declined");
        World world;
        world.state.prefs.filterType = kFilterDuplicateFile;
        world.state.filter.rules = {{"Platform", {"Mac"}}};
        headless::TreeBuilder b;
        b.open("Topic");
        for (int i = 0; i < 150; ++i) b.leaf("P", {{"id", std::to_string(i)}, {"Platform", "Win"}}, "text ");
        const Handle doc = b.build(world.host, world.hostPath("long.xml"));
        world.user.pressEsc();
        confirm ? world.user.answerYes() : world.user.answerNo();
        FilterSubtree(world.host, world.state, doc, world.host.highestLevelElement(doc, world.host.mainFlow(doc)), 3, 1);
        EXPECT_EQ(world.state.cancel, confirm ? 1 : 0);
        // The topic is the first element of the walk, paragraph i the (i + 2)th.
        const std::vector<std::string> left = idsInOrder(world.host, doc);
        EXPECT_EQ(left.size(), confirm ? 50u : 0u);
        if (confirm) { EXPECT_EQ(left.front(), "100"); }
    }
}

}  // namespace
}  // namespace voka::testing
