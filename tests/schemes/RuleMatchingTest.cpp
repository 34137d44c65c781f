// Which rule an element gets: the first that matches, with values inherited
// from ancestors, EDD defaults, blank-separated words and case folding as the
// scheme asks, and the no-attribute-seen asymmetry that users' schemes rely on.
#include "schemes/ElementAttributes.h"
#include "schemes/RuleMatching.h"
#include "schemes/SchemeWorld.h"

#include <gtest/gtest.h>

namespace voka::testing {
namespace {

using headless::AttrValue;

struct Element {
    std::vector<AttributeDefinition> declares;  // besides "id"
    std::vector<AttrValue> values;
};

struct MatchCase {
    const char* what;
    Element parent;
    Element child;
    std::vector<RuleSpec> rules;
    SchemeOptions options;
    int context;
    int expected;  // rule index, -1 none
};

AttributeDefinition declared(const std::string& name, std::vector<std::string> defaults = {}) {
    return AttributeDefinition{name, kAttrString, 0, {}, std::move(defaults)};
}

RuleSpec rule(const std::string& color, std::vector<ConditionSpec> conditions, int matchAll = 0) {
    RuleSpec r;
    r.color = color;
    r.conditions = std::move(conditions);
    r.matchAll = matchAll;
    return r;
}

SchemeOptions options(int eddDefaults, int spaceDelimited, int ignoreCase) {
    SchemeOptions o;
    o.includeEddDefaults = eddDefaults;
    o.spaceDelimited = spaceDelimited;
    o.ignoreCase = ignoreCase;
    return o;
}

const SchemeOptions kPlain{};
const Element kBare{};

// Root > Parent > Child; the tests match the child.
Handle buildDocument(World& world, const MatchCase& c) {
    headless::TreeBuilder b;
    auto withId = [](std::vector<AttributeDefinition> list) {
        list.insert(list.begin(), declared("id"));
        return list;
    };
    b.define("Root", kElementContainer, {declared("id")});
    b.define("Parent", kElementContainer, withId(c.parent.declares));
    b.define("Child", kElementContainer, withId(c.child.declares));
    auto attributes = [](const char* id, std::vector<AttrValue> values) {
        values.insert(values.begin(), AttrValue{"id", id});
        return values;
    };
    b.open("Root", {{"id", "root"}})
        .open("Parent", attributes("parent", c.parent.values))
        .text("parent text ")
        .leaf("Child", attributes("child", c.child.values), "child text")
        .close()
        .close();
    return b.build(world.host, world.hostPath("content.xml"));
}

void loadRules(PluginState& state, const MatchCase& c) {
    state.coloring = ColoringScheme{};
    state.coloring.options = c.options;
    for (const RuleSpec& spec : c.rules) {
        ColorRule loaded;
        loaded.colorName = spec.color;
        loaded.matchAll = spec.matchAll;
        for (const ConditionSpec& condition : spec.conditions) {
            loaded.conditions.push_back(Attribute{condition.name, condition.values});
        }
        state.coloring.rules.push_back(loaded);
    }
    state.coloring.loaded = true;
}

const Element kAudienceExpert{{declared("audience")}, {{"audience", "expert"}}};
const Element kAudienceEmpty{{declared("audience")}, {}};
const Element kAudienceDeclaredNovice{{declared("audience")}, {{"audience", "novice"}}};

const std::vector<MatchCase> kCases = {
    {"the first of two matching rules wins", kBare, kAudienceExpert,
     {rule("Red", {{"audience", {"expert"}}}), rule("Blue", {{"audience", {"expert"}}})}, kPlain, 13, 0},
    {"a later rule matches when the earlier does not", kBare, kAudienceExpert,
     {rule("Red", {{"audience", {"novice"}}}), rule("Blue", {{"audience", {"novice", "expert"}}})}, kPlain, 13, 1},
    {"no rule matches", kBare, kAudienceExpert, {rule("Red", {{"audience", {"novice"}}})}, kPlain, 13, -1},

    // <no value> and inheritance.
    {"<no value> matches an attribute left empty with no ancestor value", kAudienceEmpty, kAudienceEmpty,
     {rule("Red", {{"audience", {"<no value>"}}})}, kPlain, 13, 0},
    {"<no value> never matches a missing attribute outside the inheriting contexts", kAudienceEmpty, kBare,
     {rule("Red", {{"audience", {"<NO VALUE>"}}})}, kPlain, 13, -1},
    {"a missing attribute matches <no value> in the selection when an ancestor has it empty", kAudienceEmpty, kBare,
     {rule("Red", {{"audience", {"<no value>"}}})}, kPlain, 10, 0},
    {"a missing attribute takes an ancestor's value in the selection", kAudienceDeclaredNovice, kBare,
     {rule("Red", {{"audience", {"<no value>"}}}), rule("Blue", {{"audience", {"novice"}}})}, kPlain, 10, 1},
    {"an empty attribute takes the parent's value in a document", kAudienceDeclaredNovice, kAudienceEmpty,
     {rule("Red", {{"audience", {"novice"}}})}, kPlain, 13, 0},
    {"a table cell inherits a missing attribute", kAudienceDeclaredNovice, kBare,
     {rule("Red", {{"audience", {"novice"}}})}, kPlain, 11, 0},
    {"a footnote inherits a missing attribute", kAudienceDeclaredNovice, kBare,
     {rule("Red", {{"audience", {"novice"}}})}, kPlain, 12, 0},
    {"a book's document does not inherit a missing attribute", kAudienceDeclaredNovice, kBare,
     {rule("Red", {{"audience", {"novice"}}})}, kPlain, 14, -1},

    // Match all, and the no-attribute-seen flag that is never reset.
    {"match all fails at once when the first attribute is absent", kBare,
     Element{{declared("platform")}, {{"platform", "linux"}}},
     {rule("Red", {{"audience", {"expert"}}, {"platform", {"linux"}}}, 1)}, kPlain, 13, -1},
    {"match all: once an attribute was seen, an absent one counts as having no value", kBare, kAudienceExpert,
     {rule("Red", {{"audience", {"expert"}}, {"platform", {"<no value>"}}}, 1)}, kPlain, 13, 0},
    {"any one: an absent attribute is skipped while none was seen", kBare, kBare,
     {rule("Red", {{"platform", {"<no value>"}}})}, kPlain, 13, -1},
    {"match all compares <no value> as a plain value when the attribute has values", kBare, kAudienceExpert,
     {rule("Red", {{"audience", {"<no value>", "expert"}}}, 1)}, kPlain, 13, -1},
    {"match all accepts <any value> before looking at the listed values", kBare, kAudienceExpert,
     {rule("Red", {{"audience", {"<any value>", "novice"}}}, 1)}, kPlain, 13, 0},
    {"match all needs every listed value", kBare, kAudienceExpert,
     {rule("Red", {{"audience", {"expert", "novice"}}}, 1)}, kPlain, 13, -1},

    // Blank-separated words.
    {"one word of a two-word value matches with space-delimited values", kBare,
     Element{{declared("audience")}, {{"audience", "alpha  beta"}}},
     {rule("Red", {{"audience", {"beta"}}})}, options(0, 1, 0), 13, 0},
    {"without space-delimited values a word does not match the whole", kBare,
     Element{{declared("audience")}, {{"audience", "alpha beta"}}},
     {rule("Red", {{"audience", {"beta"}}})}, kPlain, 13, -1},
    {"without space-delimited values the whole value matches", kBare,
     Element{{declared("audience")}, {{"audience", "alpha beta"}}},
     {rule("Red", {{"audience", {"beta"}}}), rule("Blue", {{"audience", {"alpha beta"}}})}, kPlain, 13, 1},
    {"a value of blanks alone is no value once split", kBare,
     Element{{declared("audience")}, {{"audience", "   "}}},
     {rule("Red", {{"audience", {"<no value>"}}})}, options(0, 1, 0), 13, 0},

    // Case.
    {"ignore case matches name and value in other cases", kBare,
     Element{{declared("Status")}, {{"Status", "Final"}}},
     {rule("Red", {{"status", {"final"}}})}, options(0, 0, 1), 13, 0},
    {"without ignore case neither name nor value matches in other cases", kBare,
     Element{{declared("Status")}, {{"Status", "Final"}}},
     {rule("Red", {{"status", {"Final"}}}), rule("Blue", {{"Status", {"final"}}})}, kPlain, 13, -1},

    // EDD defaults, paired with definitions by position.
    {"an EDD default stands in for a missing value when the scheme asks", kBare,
     Element{{declared("audience", {"admin"})}, {}},
     {rule("Red", {{"audience", {"admin"}}})}, options(1, 0, 0), 13, 0},
    {"an EDD default is ignored when the scheme does not ask", kBare,
     Element{{declared("audience", {"admin"})}, {}},
     {rule("Red", {{"audience", {"admin"}}}), rule("Blue", {{"audience", {"<no value>"}}})}, kPlain, 13, 1},
    {"an ancestor's EDD default is inherited", Element{{declared("audience", {"admin"})}, {}}, kBare,
     {rule("Red", {{"audience", {"admin"}}})}, options(1, 0, 0), 10, 0},
};

TEST(RuleMatching, FindsTheRuleAUserExpects) {
    for (const MatchCase& c : kCases) {
        SCOPED_TRACE(c.what);
        World world;
        Handle doc = buildDocument(world, c);
        loadRules(world.state, c);
        Handle child = elementById(world.host, doc, "child");
        ASSERT_NE(child, kNoObject);
        EXPECT_EQ(FindMatchingRule(world.host, world.state, doc, child, c.context), c.expected);

        // The single-rule test agrees with the search.
        Attributes attributes = GetElementAttributes(world.host, world.state, doc, child,
                                                     c.options.includeEddDefaults, c.options.spaceDelimited);
        int inherit = (c.context >= 10 && c.context <= 12) ? 1 : 0;
        int first = -1;
        for (int r = 0; r < static_cast<int>(c.rules.size()) && first < 0; ++r) {
            if (RuleMatchesElement(world.host, world.state, doc, child, r, attributes, inherit)) first = r;
        }
        EXPECT_EQ(first, c.expected);
    }
}

// A walk reuses what it learnt about ancestors; siblings under different
// parents must still see their own parent's values.
TEST(RuleMatching, ContextKeepsEachBranchsInheritedValues) {
    World world;
    headless::TreeBuilder b;
    b.define("Node", kElementContainer, {declared("id"), declared("audience")});
    b.open("Node", {{"id", "root"}})
        .open("Node", {{"audience", "novice"}})
        .leaf("Node", {{"id", "a"}}, "a")
        .close()
        .open("Node", {{"audience", "expert"}})
        .leaf("Node", {{"id", "b"}}, "b")
        .close()
        .open("Node")
        .leaf("Node", {{"id", "c"}}, "c")
        .close()
        .close();
    Handle doc = b.build(world.host, world.hostPath("tree.xml"));
    MatchCase c{"", kBare, kBare,
                {rule("Red", {{"audience", {"novice"}}}), rule("Blue", {{"audience", {"expert"}}}),
                 rule("Green", {{"audience", {"<no value>"}}})},
                kPlain, 13, 0};
    loadRules(world.state, c);
    MatchContext context;
    prepareMatching(world.state, doc, context);
    const std::vector<std::pair<const char*, int>> expected = {{"a", 0}, {"b", 1}, {"c", 2}, {"a", 0}};
    for (const auto& [id, rule] : expected) {
        SCOPED_TRACE(id);
        EXPECT_EQ(findMatchingRuleIn(world.host, world.state, context, elementById(world.host, doc, id), 13), rule);
    }
}

}  // namespace
}  // namespace voka::testing
