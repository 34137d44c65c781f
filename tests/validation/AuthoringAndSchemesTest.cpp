// Validation outside the menu commands: the check of an edited element that
// the host's notifications trigger, loading a validation scheme, and the
// article of the report's rule messages.
#include "validation/PluginReport.h"
#include "ValidationWorld.h"

#include <gtest/gtest.h>

namespace voka::testing {
namespace {

// Against World::chapter(): p1 "expert" breaks rules 1 and 2; p2, empty, rules 3 and 4.
const std::vector<ConditionSpec> kNoviceOnly{{"audience", {"novice"}}};
const Texts kP1Alerts{
    prefixed("The \"expert\" value for the audience attribute is invalid, according to the active validation "
             "scheme.  (Active scheme: Check)"),
    prefixed("The \"expert\" value for the audience attribute is not shared by the nearest ancestor element with "
             "that attribute. This is invalid, because it represents a hierarchical condition mismatch.  (Active "
             "scheme: Check)")};
const Texts kP2Alerts{
    prefixed("The \"audience\" attribute for the current element is not specified, denoting it as \"unconditional.\" "
             "However, the nearest ancestor with the attibute is specified, making it conditional. This is invalid, "
             "because it represents a hierarchical condition mismatch.  (Active scheme: Check)"),
    prefixed("The \"audience\" attribute for the current element is not specified, but the validation scheme does "
             "not allow for this attribute to be empty. The validation scheme must contain the item \"<no value>\" "
             "for this attribute to be valid as unspecified.  (Active scheme: Check)")};

// Which changes trigger a check, and which element it takes, is in
// plugin/CommandsTest; here each kind of change tells its element's errors.
TEST(AuthoringValidation, AChangedElementTellsItsErrors) {
    struct Case {
        const char* what;
        int code;
        const char* attribute;
        const char* element;  // named in the notification, and selected
        Texts alerts;
    };
    const std::vector<Case> cases = {
        {"an attribute value set", kNotePostSetAttrValue, "audience", "p1", kP1Alerts},
        {"an element inserted", kNotePostInsertElement, "", "p2", kP2Alerts},
        {"an element wrapped", kNotePostWrapElement, "", "p1", kP1Alerts},
        {"an element changed: the selected one", kNotePostChangeElement, "", "p2", kP2Alerts},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        ValidationWorld world;
        const Handle doc = world.chapter();
        world.useValidation(kNoviceOnly);
        world.state.prefs.autoValidate = 1;
        const Handle element = elementById(world.host, doc, c.element);
        const Handle chapter = elementById(world.host, doc, "ch");
        const Handle next = world.host.nextSibling(doc, element);
        world.host.setElementSelection(doc, {{chapter, element, 0}, {chapter, next, 0}});
        // The findings of the last menu command are not an authoring check's to change.
        world.state.validationFindings.push_back(ValidationFinding{1, doc, chapter, "", "", ""});

        world.host.notifyClient(c.code, doc, c.attribute, static_cast<int>(element));
        EXPECT_EQ(world.shown(), c.alerts);
        EXPECT_EQ(world.state.validationFindings.size(), 1u);
        EXPECT_EQ(world.report(), kNoObject);
    }
}

TEST(ValidationScheme, LoadResultsAndWhatIsKept) {
    enum Settings { Held, LocalCopy, Nothing };
    struct Case {
        const char* what;
        Settings held;
        std::string category, scheme;
        int result;
        bool told = false;
        std::string activeAfter = "Before";
    };
    const std::vector<Case> cases = {
        {"loaded", Held, "Manuals", "Strict", kValidationLoaded},
        {"loaded from the local copy, closed again", LocalCopy, "Manuals", "Strict", kValidationLoaded},
        {"no main settings to be had", Nothing, "Manuals", "Strict", kValidationNoSettings},
        {"no scheme named", Held, "Manuals", "<None>", kValidationNothingToLoad},
        {"an empty category", Held, "", "Strict", kValidationNothingToLoad},
        {"the missing-value sentinel", Held, "Manuals", "ThisIsAnERROR", kValidationNothingToLoad},
        {"a missing scheme", Held, "Manuals", "Gone", kValidationNotFound, true, "<none>"},
        {"a colouring scheme is not a validation scheme", Held, "Manuals", "Print", kValidationNotFound, true,
         "<none>"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        ValidationWorld world;
        const SchemeOptionValues options{{"IncludeEDDDefaults", "tRUE"}, {"SpaceDelimitedVals", "yes"},
                                         {"IgnoreCaseSensitivity", "True"}, {"ProcessAllFlows", "true"}};
        world.saveMainSettings({CategorySpec{.name = "Manuals", .coloring = {{"Print", {kRedForExperts}}},
                                             .validationSchemes = {{"Strict", {{"audience", {"novice", "<no value>"}},
                                                                               {"platform", {}}}, options}}}},
                               "local.fm");
        world.state.paths.localCopy = world.hostPath(c.held == Nothing ? "missing.fm" : "local.fm");
        if (c.held == Held) world.state.mainSettingsDoc = world.host.open(world.state.paths.localCopy, {false, false});
        world.state.validation.rules = {{"previous", {"x"}}};
        world.state.active.validationScheme = "Before";
        installValidationSchemeReader(world.state);

        EXPECT_EQ(world.state.calls.readValidationScheme(world.host, world.state, c.category, c.scheme, 1), c.result);
        EXPECT_EQ(world.state.active.validationScheme, c.activeAfter);
        EXPECT_EQ(world.shown().size(), c.told ? 1u : 0u);
        if (c.told) {
            EXPECT_EQ(world.shown().front(),
                      prefixed("An error occurred while attempting to read validation scheme parameters. Check the "
                               "specified category and scheme. If you were recently working in the scheme editor, "
                               "you may have renamed or deleted the active category or scheme.\n\nIf you feel you "
                               "have received this message in error, please contact Brindel."));
        }
        EXPECT_EQ(world.state.mainSettingsDoc != kNoObject, c.held == Held);
        const ValidationScheme& loaded = world.state.validation;
        if (c.result != kValidationLoaded) {
            EXPECT_EQ(loaded.rules.front().attribute, "previous");
            continue;
        }
        const SchemeOptions& o = loaded.options;
        EXPECT_EQ((std::vector<int>{o.includeEddDefaults, o.spaceDelimited, o.ignoreCase, o.processAllFlows}),
                  (std::vector<int>{1, 0, 1, 1}));
        ASSERT_EQ(loaded.rules.size(), 2u);
        EXPECT_EQ(loaded.rules[0].attribute, "audience");
        EXPECT_EQ(loaded.rules[0].values, (Texts{"novice", "<no value>"}));
        EXPECT_EQ(loaded.rules[1].values, Texts{});
    }
}

// "an" before a tag that starts with a vowel in either case, else "a".
TEST(PluginReport, TheArticleFollowsTheTag) {
    ValidationWorld world;
    headless::TreeBuilder b;
    b.open("Chapter").leaf("Item").leaf("item").leaf("Para").leaf("Upper").leaf("Yes");
    const Handle doc = b.build(world.host, world.hostPath("tags.xml"));
    Texts messages;
    for (Handle e = world.host.firstChild(doc, world.host.highestLevelElement(doc, world.host.mainFlow(doc)));
         e != kNoObject; e = world.host.nextSibling(doc, e))
        messages.push_back(reportRuleMessage(world.host, ruleMessageEntry(3), doc, e, "audience", "").substr(0, 9));
    messages.push_back(reportRuleMessage(world.host, ruleMessageEntry(3), doc, kNoObject, "audience", "").substr(0, 9));
    EXPECT_EQ(messages, (Texts{"An Item e", "An item e", "A Para el", "An Upper ", "A Yes ele", "A  elemen"}));
}

}  // namespace
}  // namespace voka::testing
