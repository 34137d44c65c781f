// Which rule an element gets: the first that matches, with values inherited
// from ancestors, EDD defaults, blank-separated words and case folding as the
// scheme asks, and the no-attribute-seen asymmetry that users' schemes rely on.
#include "schemes/RuleMatching.h"
#include "schemes/SchemeWorld.h"

#include <gtest/gtest.h>

namespace voka::testing {
namespace {

using headless::AttrValue;

struct Element {
    std::vector<AttributeDefinition> declares;
    std::vector<AttrValue> values;
};

// An element declaring one attribute (with these EDD defaults) and giving it `value` unless nullptr.
Element with(const std::string& name, const char* value, std::vector<std::string> defaults = {}) {
    Element e{{{name, kAttrString, 0, {}, std::move(defaults)}}, {}};
    if (value != nullptr) e.values.emplace_back(name, value);
    return e;
}

const SchemeOptionValues kPlain{}, kEdd{{"IncludeEDDDefaults", "True"}}, kWords{{"SpaceDelimitedVals", "True"}},
    kNoCase{{"IgnoreCaseSensitivity", "True"}};
const Element kBare{}, kExpert = with("audience", "expert"), kEmpty = with("audience", nullptr),
              kNovice = with("audience", "novice");
const ConditionSpec kIsExpert{"audience", {"expert"}}, kIsNovice{"audience", {"novice"}},
    kNoValue{"audience", {"<no value>"}};

TEST(RuleMatching, FindsTheRuleAUserExpects) {
    struct Case {
        const char* what;
        Element parent, child;  // Root > Parent > Child; the child is matched
        std::vector<RuleSpec> rules;
        SchemeOptionValues options;
        int context, expected;  // expected: the rule's index, -1 for none
    };
    // More distinct listed values than the matcher keeps as bits: they are compared as text.
    std::vector<std::string> manyValues;
    for (int i = 0; i < 70; ++i) manyValues.push_back("value" + std::to_string(i));
    manyValues.push_back("expert");
    const std::vector<Case> cases = {
        {"the first of two matching rules wins", kBare, kExpert, {{"Red", {kIsNovice}}, {"Blue", {kIsExpert}},
         {"Green", {{"audience", {"novice", "expert"}}}}}, kPlain, 13, 1},

        // <no value> and inheritance.
        {"<no value> matches an attribute left empty with no ancestor value", kEmpty, kEmpty, {{"Red", {kNoValue}}},
         kPlain, 13, 0},
        {"<no value> never matches a missing attribute outside the inheriting contexts", kEmpty, kBare,
         {{"Red", {{"audience", {"<NO VALUE>"}}}}}, kPlain, 13, -1},
        {"a missing attribute matches <no value> in the selection when an ancestor has it empty", kEmpty, kBare,
         {{"Red", {kNoValue}}}, kPlain, 10, 0},
        {"an empty attribute takes the parent's value in a document", kNovice, kEmpty, {{"Red", {kIsNovice}}},
         kPlain, 13, 0},
        {"a table cell inherits a missing attribute", kNovice, kBare, {{"Red", {kIsNovice}}}, kPlain, 11, 0},
        {"a footnote inherits a missing attribute", kNovice, kBare, {{"Red", {kIsNovice}}}, kPlain, 12, 0},
        {"a book's document does not inherit a missing attribute", kNovice, kBare, {{"Red", {kIsNovice}}}, kPlain,
         14, -1},

        // Match all, and the no-attribute-seen flag that is never reset.
        {"match all fails at once when the first attribute is absent", kBare, with("platform", "linux"),
         {{"Red", {kIsExpert, {"platform", {"linux"}}}, 0, 1}}, kPlain, 13, -1},
        {"match all: once an attribute was seen, an absent one counts as having no value", kBare, kExpert,
         {{"Red", {kIsExpert, {"platform", {"<no value>"}}}, 0, 1}}, kPlain, 13, 0},
        {"any one: an absent attribute is skipped while none was seen", kBare, kBare,
         {{"Red", {{"platform", {"<no value>"}}}}}, kPlain, 13, -1},
        {"match all compares <no value> as a plain value when the attribute has values", kBare, kExpert,
         {{"Red", {{"audience", {"<no value>", "expert"}}}, 0, 1}}, kPlain, 13, -1},
        {"match all accepts <any value> before looking at the listed values", kBare, kExpert,
         {{"Red", {{"audience", {"<any value>", "novice"}}}, 0, 1}}, kPlain, 13, 0},

        // Blank-separated words and case.
        {"one word of a two-word value matches with space-delimited values", kBare, with("audience", "alpha  beta"),
         {{"Red", {{"audience", {"beta"}}}}}, kWords, 13, 0},
        {"without space-delimited values only the whole value matches", kBare, with("audience", "alpha beta"),
         {{"Red", {{"audience", {"beta"}}}}, {"Blue", {{"audience", {"alpha beta"}}}}}, kPlain, 13, 1},
        {"a value of blanks alone is no value once split", kBare, with("audience", "   "), {{"Red", {kNoValue}}},
         kWords, 13, 0},
        {"ignore case matches name and value in other cases", kBare, with("Status", "Final"),
         {{"Red", {{"status", {"final"}}}}}, kNoCase, 13, 0},
        {"ignore case: one value equals listed values written in two cases", kBare, with("audience", "EXPERT"),
         {{"Red", {{"audience", {"Expert", "expert"}}}, 0, 1}}, kNoCase, 13, 0},
        {"a scheme listing over sixty distinct values still finds the last", kBare, kExpert,
         {{"Red", {{"audience", manyValues}}}, {"Blue", {kIsExpert}}}, kPlain, 13, 0},
        {"without ignore case neither name nor value matches in other cases", kBare, with("Status", "Final"),
         {{"Red", {{"status", {"Final"}}}}, {"Blue", {{"Status", {"final"}}}}}, kPlain, 13, -1},

        // EDD defaults, paired with definitions by position.
        {"an EDD default stands in for a missing value when the scheme asks", kBare,
         with("audience", nullptr, {"admin"}), {{"Red", {{"audience", {"admin"}}}}}, kEdd, 13, 0},
        {"an EDD default is ignored when the scheme does not ask", kBare, with("audience", nullptr, {"admin"}),
         {{"Red", {{"audience", {"admin"}}}}, {"Blue", {kNoValue}}}, kPlain, 13, 1},
        {"an ancestor's EDD default is inherited", with("audience", nullptr, {"admin"}), kBare,
         {{"Red", {{"audience", {"admin"}}}}}, kEdd, 10, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        World world;
        headless::TreeBuilder b;
        b.define("Parent", kElementContainer, c.parent.declares).define("Child", kElementContainer, c.child.declares);
        b.open("Root").open("Parent", c.parent.values).text("parent text ").leaf("Child", c.child.values, "child");
        Handle doc = b.build(world.host, world.hostPath("content.xml"));
        world.useScheme(c.rules, "Print", c.options);
        Host& host = world.host;
        Handle child = host.firstChild(doc, host.firstChild(doc, host.highestLevelElement(doc, host.mainFlow(doc))));
        ASSERT_EQ(host.definitionTag(doc, host.elementDefinition(doc, child)), "Child");
        EXPECT_EQ(FindMatchingRule(host, world.state, doc, child, c.context), c.expected);
    }
}

// A walk reuses what it learnt about ancestors; siblings under different
// parents must still see their own parent's values.
TEST(RuleMatching, ContextKeepsEachBranchsInheritedValues) {
    World world;
    headless::TreeBuilder b;
    b.define("Node", kElementContainer, {{"id", kAttrString, 0, {}, {}}, {"audience", kAttrString, 0, {}, {}}});
    b.open("Node", {{"id", "root"}}).open("Node", {{"audience", "novice"}}).leaf("Node", {{"id", "a"}}, "a").close();
    b.open("Node", {{"audience", "expert"}}).leaf("Node", {{"id", "b"}}, "b").close().open("Node").leaf("Node", {{"id", "c"}}, "c");
    Handle doc = b.build(world.host, world.hostPath("tree.xml"));
    world.useScheme({{"Red", {kIsNovice}}, {"Blue", {kIsExpert}}, {"Green", {kNoValue}}});
    MatchContext context;
    prepareMatching(world.state, doc, context);
    for (const auto& [id, rule] : std::vector<std::pair<const char*, int>>{{"a", 0}, {"b", 1}, {"c", 2}, {"a", 0}}) {
        SCOPED_TRACE(id);
        EXPECT_EQ(findMatchingRuleIn(world.host, world.state, context, elementById(world.host, doc, id), 13), rule);
    }
}

}  // namespace
}  // namespace voka::testing
