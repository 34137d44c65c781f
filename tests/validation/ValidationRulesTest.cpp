// The four rules as a user meets them: which errors are told, with which
// value and in which order, under the scheme's options; a subtree walked
// once against ancestors inside and above it; and the strikethrough that
// follows a check.
#include "validation/ValidationCheck.h"
#include "ValidationWorld.h"

#include <gtest/gtest.h>

namespace voka::testing {
namespace {

// An element on a line of descent: "Decl" declares audience and platform,
// "Bare" only an id, "Code" audience with the EDD default "expert", "Twin"
// audience twice in two cases, "Empty" nothing at all.
struct Level {
    const char* tag = "Decl";
    std::vector<std::string> audience{};  // none: declared without a value
    std::string platform{}, twin{};
};

Handle lineOfDescent(World& world, const std::vector<Level>& levels) {
    headless::TreeBuilder b;
    auto attribute = [](const char* name, std::vector<std::string> defaults = {}) {
        return AttributeDefinition{name, kAttrString, 0, {}, std::move(defaults)};
    };
    b.define("Decl", kElementContainer, {attribute("id"), attribute("audience"), attribute("platform")});
    b.define("Bare", kElementContainer, {attribute("id")});
    b.define("Code", kElementContainer, {attribute("id"), attribute("audience", {"expert"})});
    b.define("Twin", kElementContainer, {attribute("id"), attribute("audience"), attribute("Audience")});
    b.define("Empty", kElementContainer, {});
    for (const Level& level : levels) {
        std::vector<headless::AttrValue> values;
        if (!level.audience.empty() && !level.audience.front().empty()) values.emplace_back("audience", level.audience);
        if (!level.platform.empty()) values.emplace_back("platform", level.platform);
        if (!level.twin.empty()) values.emplace_back("Audience", level.twin);
        b.open(level.tag, values).text("text ");
    }
    return b.build(world.host, world.hostPath("line.xml"));
}

Handle innermost(Host& host, Handle doc) {
    Handle at = host.highestLevelElement(doc, host.mainFlow(doc));
    while (host.firstChild(doc, at) != kNoObject) at = host.firstChild(doc, at);
    return at;
}

const ConditionSpec kAudiences{"audience", {"novice", "expert", "admin", "<no value>"}};
const SchemeOptionValues kSpaces{{"SpaceDelimitedVals", "True"}}, kAnyCase{{"IgnoreCaseSensitivity", "TRUE"}},
    kDefaults{{"IncludeEDDDefaults", "true"}};

TEST(ValidationRules, ErrorsOfOneElement) {
    struct Case {
        const char* what;
        std::vector<Level> levels;  // root first; the last is checked
        Texts findings;
        int result = -1;
        std::vector<ConditionSpec> scheme{kAudiences};
        SchemeOptionValues options{};
        std::vector<int> rules{1, 1, 1, 1};
    };
    const std::vector<Case> cases = {
        {"a listed value passes", {{"Decl", {"novice"}}}, {}},
        {"rule 1 tells the first of the unlisted values", {{"Decl", {"novice", "beginner", "administrator"}}},
         {"1 audience beginner"}, 1},
        {"values are compared in their case", {{"Decl", {"Novice"}}}, {"1 audience Novice"}, 1},
        {"... or ignoring it", {{"Decl", {"Novice"}}}, {}, -1, {kAudiences}, kAnyCase},
        {"space-delimited: two words are two listed values", {{"Decl", {"novice  expert"}}}, {}, -1, {kAudiences},
         kSpaces},
        {"without the option two words are one unlisted value", {{"Decl", {"novice expert"}}},
         {"1 audience novice expert"}, 1},
        {"rule 2: a value the declaring parent lacks", {{"Decl", {"novice"}}, {"Decl", {"expert"}}},
         {"2 audience expert"}, 2},
        {"rule 2 passes over ancestors without the attribute", {{"Decl", {"novice"}}, {"Bare"}, {"Decl", {"expert"}}},
         {"2 audience expert"}, 2},
        {"an ancestor declaring the attribute without a value stops the search",
         {{"Decl", {"novice"}}, {"Decl"}, {"Decl", {"expert"}}}, {}},
        {"rule 2 tells the last of two missing values", {{"Decl", {"admin"}}, {"Decl", {"novice expert"}}},
         {"2 audience expert"}, 2, {kAudiences}, kSpaces},
        {"rule 2: a value among the parent's passes", {{"Decl", {"novice expert"}}, {"Decl", {"expert"}}}, {}, -1,
         {kAudiences}, kSpaces},
        {"rule 3: no value under a valued ancestor", {{"Decl", {"novice"}}, {"Bare"}, {"Decl"}}, {"3 audience"}, 3},
        {"rules 3 and 4 when the scheme lacks \"<no value>\"", {{"Decl", {"novice"}}, {"Decl"}},
         {"3 audience", "4 audience"}, 4, {{"audience", {"novice", "expert"}}}},
        {"\"<NO VALUE>\" allows an empty value even with case significant", {{"Decl"}}, {}, -1,
         {{"audience", {"novice", "<NO VALUE>"}}}},
        {"attributes are checked in the element's order, not the scheme's", {{"Decl", {"beginner"}, "bogus"}},
         {"1 audience beginner", "1 platform bogus"}, 1, {{"platform", {"linux"}}, kAudiences}},
        {"an attribute the scheme does not list is never checked", {{"Decl", {"novice"}, "bogus"}}, {}},
        {"attribute names are compared in their case", {{"Decl", {"beginner"}}}, {}, -1, {{"Audience", {"novice"}}}},
        {"... or ignoring it", {{"Decl", {"beginner"}}}, {"1 audience beginner"}, 1, {{"Audience", {"novice"}}},
         kAnyCase},
        {"two attributes of one name are each checked with their own values",
         {{"Decl", {"novice"}}, {"Twin", {"beginner"}, "", "expert"}},
         {"1 audience beginner", "2 audience beginner", "2 Audience expert"}, 2, {kAudiences}, kAnyCase},
        {"the first entry of a name is the one used", {{"Decl", {"expert"}}}, {}, -1,
         {kAudiences, {"audience", {"novice"}}}},
        {"EDD defaults stand in for a missing value", {{"Decl", {"novice"}}, {"Code"}}, {"2 audience expert"}, 2,
         {kAudiences}, kDefaults},
        {"... an ancestor's too", {{"Code"}, {"Decl", {"novice"}}}, {"2 audience novice"}, 2, {kAudiences}, kDefaults},
        {"without the option the default is no value", {{"Decl", {"novice"}}, {"Code"}}, {"3 audience"}, 3},
        {"only the rules switched on are applied", {{"Decl", {"novice"}}, {"Decl", {"beginner"}}},
         {"2 audience beginner"}, 2, {kAudiences}, {}, {0, 1, 0, 0}},
        {"an element without attributes is not checked", {{"Decl", {"novice"}}, {"Empty"}}, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        ValidationWorld world;
        const Handle doc = lineOfDescent(world, c.levels);
        world.useValidation(c.scheme, c.options);
        world.useRules(c.rules);
        const Handle element = innermost(world.host, doc);

        EXPECT_EQ(CheckElement(world.host, world.state, doc, element, kValidateSelection), c.result);
        EXPECT_EQ(world.findings(), c.findings);
        for (const ValidationFinding& finding : world.state.validationFindings) EXPECT_EQ(finding.element, element);
        EXPECT_EQ(world.shown(), Texts{});
    }
}

// Each element once, in document order, against ancestors inside the
// subtree and above it; the walk ends with the subtree.
TEST(ValidationRules, ASubtreeIsCheckedOnceAgainstItsOwnAncestors) {
    const std::vector<std::tuple<const char*, Texts, int>> cases = {
        {"ch", {"ch 1 beginner", "s1 2 expert", "b 3", "c 2 expert", "s3 3"}, 3},
        {"s1", {"s1 2 expert", "b 3"}, 3},
        {"s2", {"c 2 expert"}, 2},
        {"a", {}, -1},
    };
    for (const auto& [start, expected, result] : cases) {
        SCOPED_TRACE(start);
        ValidationWorld world;
        headless::TreeBuilder b;
        b.define("Decl", kElementContainer, {{"id", kAttrString, 0, {}, {}}, {"audience", kAttrString, 0, {}, {}}});
        b.open("Decl", {{"id", "ch"}, {"audience", "beginner"}}).open("Decl", {{"id", "s1"}, {"audience", "expert"}});
        b.leaf("Decl", {{"id", "a"}, {"audience", "expert"}}, "a").leaf("Decl", {{"id", "b"}}, "b").close();
        b.open("Bare", {{"id", "s2"}}).leaf("Decl", {{"id", "c"}, {"audience", "expert"}}, "c").close();
        b.open("Decl", {{"id", "s3"}}).leaf("Decl", {{"id", "d"}, {"audience", "novice"}}, "d").close();
        const Handle doc = b.build(world.host, world.hostPath("tree.xml"));
        world.useValidation({kAudiences});

        EXPECT_EQ(CheckSubtree(world.host, world.state, doc, elementById(world.host, doc, start), kValidateSelection),
                  result);
        Texts found;
        for (const ValidationFinding& f : world.state.validationFindings)
            found.push_back(world.host.attributes(doc, f.element).front().values.front() + " " +
                            std::to_string(f.rule) + (f.value.empty() ? "" : " " + f.value));
        EXPECT_EQ(found, expected);
    }
}

TEST(ValidationRules, StrikethroughFollowsTheCheck) {
    struct Case {
        const char* what;
        int option;
        const char* tag;
        const char* value;
        bool struckBefore;
        int struckAfter;
    };
    const std::vector<Case> cases = {
        {"a failing element is struck through", 1, "Decl", "beginner", false, 1},
        {"a passing element loses its strikethrough", 1, "Decl", "novice", true, 0},
        {"with the option off a check still takes strikethrough off", 0, "Decl", "beginner", true, 0},
        {"with the option off nothing is struck through", 0, "Decl", "beginner", false, 0},
        {"an element without attributes keeps its strikethrough", 1, "Empty", "", true, 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        ValidationWorld world;
        const Handle doc = lineOfDescent(world, {{c.tag, {c.value}}});
        world.useValidation({kAudiences});
        world.state.prefs.applyStrikethrough = c.option;
        const Handle element = innermost(world.host, doc);
        const TextRange range = world.host.elementTextRange(doc, element);
        if (c.struckBefore) world.host.setTextProperty(doc, range, TextProperty::Strikethrough, 1);

        CheckElement(world.host, world.state, doc, element, kValidateSelection);
        for (int offset : {0, 3})  // the whole text, not only its start
            EXPECT_EQ(world.host.textProperty(doc, TextLocation{element, offset}, TextProperty::Strikethrough),
                      c.struckAfter);
    }
}

}  // namespace
}  // namespace voka::testing
