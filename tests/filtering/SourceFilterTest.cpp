// A source-file filter hides what fails and nothing else, and a restore gives
// every word back: a writer who filters the master copy must lose nothing.
#include "filtering/SourceFilter.h"
#include "schemes/SchemeWorld.h"
#include "support/ModelEquality.h"

#include <gtest/gtest.h>

namespace voka::testing {
namespace {

// Topic > Section s1 (Win) > P p1 (Mac); Section s2 (Mac) with its own
// condition "Draft"; a second flow "Notes" with n1 (Win) under "Draft".
Handle profiledTopic(World& world, const std::string& name = "topic.xml") {
    headless::TreeBuilder b;
    b.conditionFormat("Draft");
    b.open("Topic", {{"id", "top"}});
    b.open("Section", {{"id", "s1"}, {"Platform", "Win"}}).leaf("P", {{"id", "p1"}, {"Platform", "Mac"}}, "one").close();
    b.leaf("Section", {{"id", "s2"}, {"Platform", "Mac"}}, "two");
    b.flow("Notes").leaf("Note", {{"id", "n1"}, {"Platform", "Win"}}, "note");
    const Handle doc = b.build(world.host, world.hostPath(name));
    Host& host = world.host;
    const Handle draft = host.namedObject(doc, kConditionFormatObject, "Draft");
    host.setTextConditions(doc, host.elementTextRange(doc, elementById(host, doc, "s2")), {draft});
    const Handle notes = host.nextFlow(doc, host.mainFlow(doc));
    const Handle n1 = host.highestLevelElement(doc, notes);
    host.setTextConditions(doc, host.elementTextRange(doc, n1), {draft});
    return doc;
}

std::vector<std::string> conditionNamesAt(World& world, Handle doc, Handle element) {
    std::vector<std::string> names;
    for (Handle c : world.host.textConditions(doc, TextLocation{element, 0})) names.push_back(world.host.objectName(doc, c));
    return names;
}

TEST(SourceFilter, HidesWhatFailsAndARestoreGivesEverythingBack) {
    for (int allFlows : {0, 1}) {
        SCOPED_TRACE(allFlows ? "every flow" : "the main flow only");
        World world;
        world.state.prefs.filterType = kFilterSourceFile;
        world.state.filter.rules = {{"Platform", {"Mac"}}};
        world.state.filter.options.processAllFlows = allFlows;
        const Handle doc = profiledTopic(world);
        Host& host = world.host;
        const Handle n1 = host.highestLevelElement(doc, host.nextFlow(doc, host.mainFlow(doc)));

        ASSERT_EQ(FilterPass(host, world.state, doc, 3, 1), 1);
        EXPECT_EQ(conditionNamesAt(world, doc, elementById(host, doc, "p1")), std::vector<std::string>{"Hidden"});
        EXPECT_EQ(conditionNamesAt(world, doc, elementById(host, doc, "s2")), std::vector<std::string>{})
            << "the document's own conditions go first, in every flow";
        EXPECT_EQ(conditionNamesAt(world, doc, n1), allFlows ? std::vector<std::string>{"Hidden"} : std::vector<std::string>{});
        const Handle hidden = host.namedObject(doc, kConditionFormatObject, "Hidden");
        EXPECT_FALSE(host.conditionShown(doc, hidden));
        EXPECT_EQ(host.intProperty(doc, doc, kPropShowAll), 0);

        // A second filter reuses the condition.
        ASSERT_EQ(FilterPass(host, world.state, doc, 3, 1), 1);
        EXPECT_EQ(host.namedObject(doc, kConditionFormatObject, "Hidden"), hidden);
        int hiddenFormats = 0;
        for (const headless::ConditionFormat& format : world.host.document(doc)->conditions)
            hiddenFormats += format.name == "Hidden";
        EXPECT_EQ(hiddenFormats, 1);

        world.user.answerYes();
        RestoreDocument(host, world.state, doc, 1);
        for (const char* id : {"top", "s1", "p1", "s2"})
            EXPECT_EQ(conditionNamesAt(world, doc, elementById(host, doc, id)), std::vector<std::string>{}) << id;
        EXPECT_EQ(conditionNamesAt(world, doc, n1), std::vector<std::string>{});
        EXPECT_EQ(host.intProperty(doc, doc, kPropShowAll), 1);
        // Every word, element and value is back; what the restore cannot give
        // back is the document's own conditions, which the filter had to clear.
        const Handle expected = profiledTopic(world, "expected.xml");
        RemoveConditionalTextSettings(host, world.state, expected, "Hidden");
        host.setConditionShown(expected, host.newNamedObject(expected, kConditionFormatObject, "Hidden"), false);
        EXPECT_EQ(test::firstDifference(*world.host.document(doc), *world.host.document(expected)), "");
    }
}

TEST(SourceFilter, ABookRestoreTouchesOnlyOpenChapters) {
    World world;
    const Handle one = profiledTopic(world, "one.xml");
    Host& host = world.host;
    host.close(profiledTopic(world, "two.xml"), kCloseModified);
    const Handle book = world.book({"one.xml", "two.xml"});
    RestoreBook(host, world.state, book, 0);
    EXPECT_EQ(conditionNamesAt(world, one, elementById(host, one, "s2")), std::vector<std::string>{});
    int open = 0;
    for (Handle doc = host.firstOpenDocument(); doc != kNoObject; doc = host.nextOpenDocument(doc)) ++open;
    EXPECT_EQ(open, 1) << "a closed chapter is not opened";
    EXPECT_TRUE(world.shown().empty());

    RestoreBook(host, world.state, kNoObject, 0);
    host.close(book, kCloseModified);
    RestoreBook(host, world.state, kNoObject, 0);
    EXPECT_EQ(world.shown().back(), std::string(kPrefix) + "No active document. Cannot continue.");
}

}  // namespace
}  // namespace voka::testing
