// The three validation commands as a user runs them from the menus: what
// each tells, what the report holds and whether it stays open, the result
// the host is given, books with closed chapters, Esc, and a broken template.
#include "editors/ActiveSchemeDialog.h"
#include "frame/Dialogs.h"
#include "frame/Selection.h"
#include "ValidationWorld.h"

#include <gtest/gtest.h>

#include <fstream>

namespace voka::testing {
namespace {

constexpr int kSelectionCommand = 11, kDocumentCommand = 12, kBookCommand = 13;

// Against World::chapter(): p1 "expert" under the novice chapter breaks
// rule 2; p2, empty, breaks rules 3 and 4.
const std::vector<ConditionSpec> kStrict{{"audience", {"novice", "expert"}}};
const std::string kBlank = "NormalMessage|   ";

TEST(ValidationCommands, ValidateDocumentReportsEachErrorWithItsLink) {
    ValidationWorld world;
    const Handle doc = world.chapter();
    world.useValidation(kStrict);
    world.command(kDocumentCommand);

    EXPECT_EQ(world.state.lastCommandResult, 1);
    EXPECT_EQ(world.shown(), Texts{});
    const std::string para = "audience attribute on a Para element contains ";
    EXPECT_EQ(world.entries(),
              (Texts{kBlank, kBlank, "SingleLine|", "Heading2Hyperlink|Validating...   chapter.xml ",
                     "NormalMessage|Validation scheme: Check ", kBlank,
                     "Heading2|Rule 2 (Child/ancestor condition mismatch):",
                     "NormalMessage|The " + para + "the value \"expert\", but the nearest ancestor element with that "
                     "attribute does not have that value, nor is unconditional. Check the conditional hierarchy.",
                     "HyperlinkMessage| >> Click here.",
                     "Heading2|Rule 3 (Unconditional child / conditional ancestor):",
                     "NormalMessage|A Para element has no values for its audience attribute, but at least one "
                     "ancestor element does. This essentially represents an \"unconditional\" element under a "
                     "conditional one, which may represent a hierarchical mismatch.",
                     "HyperlinkMessage| >> Click here.", "Heading2|Rule 4 (Invalid empty attribute):",
                     "NormalMessage|The " + para + "no value, but the validation scheme does not specify that the "
                     "attribute may be empty.",
                     "HyperlinkMessage| >> Click here."}));
    const Handle p1 = elementById(world.host, doc, "p1"), p2 = elementById(world.host, doc, "p2");
    EXPECT_EQ(world.links(), (Texts{"openlink " + world.hostPath("chapter.xml") + ":firstpage",
                                    world.objectLink(doc, p1), world.objectLink(doc, p2), world.objectLink(doc, p2)}));

    // What a driver prints from the findings is what the report says, entry for entry.
    ASSERT_EQ(world.findings(), (Texts{"2 audience expert", "3 audience", "4 audience"}));
    const Texts entries = world.entries(), links = world.links();
    for (std::size_t i = 0; i < 3; ++i) {
        const ValidationFinding& finding = world.state.validationFindings[i];
        EXPECT_EQ(entries[6 + 3 * i].substr(0, 15), "Heading2|Rule " + std::to_string(finding.rule));
        EXPECT_EQ(entries[7 + 3 * i], "NormalMessage|" + finding.message);
        EXPECT_EQ(links[1 + i], world.objectLink(finding.doc, finding.element));
        EXPECT_EQ(finding.doc, doc);
    }
}

TEST(ValidationCommands, WhatEachOutcomeTellsAndReturns) {
    struct Case {
        const char* what;
        int command;
        bool chapter = true, structureless = false, selectP1 = false, dialog = false;
        enum { Shipped, Missing, Rootless } reportTemplate = Shipped;
        const char* scheme = "Check";
        std::vector<int> rules{1, 1, 1, 1};
        Texts shown{};
        int result = 1;
        bool reportKept = false;
        std::size_t findings = 0;
    };
    const std::vector<Case> cases = {
        {.what = "nothing open", .command = kDocumentCommand, .chapter = false,
         .shown = {prefixed("No active book or document. Cannot validate.")}, .result = 0},
        {.what = "no active scheme", .command = kDocumentCommand, .scheme = "<NONE>",
         .shown = {prefixed("Cannot validate - no active validation scheme.")}, .result = 0},
        {.what = "nothing selected", .command = kSelectionCommand, .result = 0},
        {.what = "a selection without errors", .command = kSelectionCommand, .selectP1 = true, .rules = {1, 0, 0, 0},
         .shown = {prefixed("No validation errors found in selection.")}},
        {.what = "a selection with errors, against the chapter above it", .command = kSelectionCommand,
         .selectP1 = true, .reportKept = true, .findings = 1},
        {.what = "a document without errors", .command = kDocumentCommand, .rules = {1, 0, 0, 0},
         .shown = {prefixed("No validation errors found in document.")}},
        {.what = "a document without structure", .command = kDocumentCommand, .chapter = false, .structureless = true,
         .shown = {prefixed("No structure found in the main flow. Cannot apply color."),
                   prefixed("No validation errors found in document.")},
         .result = 0},
        {.what = "Validate Book without a book", .command = kBookCommand, .result = 0},
        {.what = "the active scheme dialog cancelled", .command = kDocumentCommand, .dialog = true, .result = 0},
        {.what = "without the template the errors are still found", .command = kDocumentCommand,
         .reportTemplate = Case::Missing,
         .shown = {prefixed("An error occurred while generating the plugin report. Make sure that the template is "
                            "in your Brindel subfolder and that it isn't corrupt.")},
         .findings = 3},
        {.what = "a template without its root is told once", .command = kDocumentCommand,
         .reportTemplate = Case::Rootless,
         .shown = {prefixed("There is an error in the report template. It has either been changed manually, or it is "
                            "corrupt. The plugin report cannot be generated. Please replace the template file with a "
                            "non-corrupt original.")},
         .findings = 3},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        ValidationWorld world;
        const Handle doc = c.chapter ? world.chapter() : kNoObject;
        if (c.structureless) headless::TreeBuilder().text("loose text").build(world.host, world.hostPath("t.xml"));
        world.useValidation(kStrict);
        world.state.active.validationScheme = c.scheme;
        world.useRules(c.rules);
        if (c.selectP1)
            world.host.setElementSelection(doc, wholeElement(world.host, doc, elementById(world.host, doc, "p1")));
        const std::filesystem::path reportTemplate = world.folder / ValidationWorld::kTemplate;
        if (c.reportTemplate == Case::Missing) std::filesystem::remove(reportTemplate);
        if (c.reportTemplate == Case::Rootless) {
            std::ifstream in(reportTemplate);
            std::string text(std::istreambuf_iterator<char>(in), {});
            const std::string root = "<element tag=\"PluginReport\"/>";
            ASSERT_NE(text.find(root), std::string::npos);
            std::ofstream(reportTemplate, std::ios::trunc) << text.erase(text.find(root), root.size());
        }
        if (c.dialog) {
            installActiveSchemeDialog(world.state);
            world.state.schemeDialog.showBeforeValidation = 1;
            world.user.onDialog("br_Dialog_2DDown_wChkBox", [](headless::DialogUser& d) {
                EXPECT_EQ(d.title(), "Validate Document");
                d.press(kTwoChoiceCancel);
            });
        }

        world.command(c.command);
        EXPECT_EQ(world.shown(), c.shown);
        EXPECT_EQ(world.state.lastCommandResult, c.result);
        // A template without its root leaves nothing in the report, open or not.
        if (c.reportTemplate == Case::Rootless) {
            EXPECT_EQ(world.entries(), Texts{});
        } else {
            EXPECT_EQ(world.report() != kNoObject, c.reportKept);
        }
        EXPECT_EQ(world.state.validationFindings.size(), c.findings);
    }
}

TEST(ValidationCommands, ABookNamesItsClosedChaptersAndKeepsTheReport) {
    ValidationWorld world;
    world.chapter("one.xml");
    world.chapter("two.xml");
    const Handle book = world.book({"one.xml", "closed.xml", "two.xml"});
    world.useValidation(kStrict);
    world.useRules({1, 0, 0, 0});
    world.command(kBookCommand);

    EXPECT_EQ(world.shown(), Texts{prefixed("No validation errors found in book.")});
    EXPECT_EQ(world.state.lastCommandResult, 1);
    auto chapter = [](const std::string& name) {
        return Texts{kBlank, kBlank, "SingleLine|", "Heading2Hyperlink|Validating...   " + name + " ", kBlank,
                     "NormalMessage|No errors found in document.  ", "SingleLine|"};
    };
    Texts expected{kBlank, "SingleLine|", "SingleLine|", kBlank, "Heading1|Validating entire book...  ",
                   "HyperlinkMessage|manual.book  ", "NormalMessage|Validation scheme: Check ", "LongDate|", kBlank,
                   "SingleLine|", "SingleLine|"};
    for (const Texts& part : {chapter("one.xml"),
                              Texts{kBlank, "NormalMessage|The file \"closed.xml\" is not open. Could not validate."},
                              chapter("two.xml"), Texts{"SingleLine|", "SingleLine|"}})
        expected.insert(expected.end(), part.begin(), part.end());
    EXPECT_EQ(world.entries(), expected);
    EXPECT_EQ(world.links(), (Texts{"openlink " + world.host.path(book) + ":firstpage",
                                    "openlink " + world.hostPath("one.xml") + ":firstpage",
                                    "openlink " + world.hostPath("two.xml") + ":firstpage"}));
    for (Handle doc = world.host.firstOpenDocument(); doc != kNoObject; doc = world.host.nextOpenDocument(doc))
        EXPECT_EQ(world.host.path(doc).find("closed.xml"), std::string::npos) << "closed chapters are never opened";
}

// Chapters of 150 failing paragraphs: Esc is looked at on the 102nd element,
// the chapter being the first; a book stops with the chapter.
TEST(ValidationCommands, EscStopsTheWalkWhenConfirmed) {
    for (bool book : {false, true}) {
        for (bool confirm : {true, false}) {
            SCOPED_TRACE(std::string(book ? "book, " : "document, ") + (confirm ? "confirmed" : "declined"));
            ValidationWorld world;
            for (const char* name : {"long.xml", "longer.xml"}) {
                headless::TreeBuilder b;
                b.open("Chapter");
                for (int i = 0; i < 150; ++i) b.leaf("Para", {{"audience", "nobody"}}, "text ");
                b.build(world.host, world.hostPath(name));
            }
            if (book) world.book({"long.xml", "longer.xml"});
            world.useValidation(kStrict);
            world.user.pressEsc();
            confirm ? world.user.answerYes() : world.user.answerNo();

            world.command(book ? kBookCommand : kDocumentCommand);
            EXPECT_EQ(world.shown(), Texts{prefixed("Are you sure you want to cancel this operation?")});
            EXPECT_EQ(world.state.validationFindings.size(), confirm ? 100u : book ? 300u : 150u);
            EXPECT_EQ(world.state.lastCommandResult, confirm ? 0 : 1);
            EXPECT_NE(world.report(), kNoObject) << "the errors found so far stay in the report";
        }
    }
}

}  // namespace
}  // namespace voka::testing
