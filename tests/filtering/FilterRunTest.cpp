// Whole filter runs: a duplicate leaves the originals' files as they were, a
// book moved into another folder leaves out the chapters that go whole and
// re-points references to them, and the book's own folder is refused.
#include "filtering/BookTransport.h"
#include "filtering/FilterRun.h"
#include "schemes/SchemeWorld.h"
#include "support/ModelEquality.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace voka::testing {
namespace {

std::string contentOf(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

// A chapter saved to disk: Chapter (platform top) > P a (Win), P b (Mac),
// with a cross-reference to `xrefTo` when given.
Handle savedChapter(World& world, const std::string& name, const std::string& top, const std::string& xrefTo = "") {
    headless::TreeBuilder b;
    b.open("Chapter", {{"id", "top"}, {"Platform", top}});
    b.leaf("P", {{"id", "a"}, {"Platform", "Win"}}, "win ").leaf("P", {{"id", "b"}, {"Platform", "Mac"}}, "mac");
    if (!xrefTo.empty()) b.xref(world.hostPath(xrefTo));
    const Handle doc = b.build(world.host, world.hostPath(name));
    EXPECT_EQ(world.host.simpleSave(doc, world.hostPath(name), false), doc);
    return doc;
}

void duplicateFilterFor(World& world) {
    world.state.prefs.filterType = kFilterDuplicateFile;
    world.state.filter.rules = {{"Platform", {"Mac"}}};
}

TEST(FilterRun, ADuplicateDocumentLeavesTheOriginalAsItWas) {
    World world;
    duplicateFilterFor(world);
    const Handle doc = savedChapter(world, "chapter.xml", "Mac");
    const std::string onDisk = contentOf(world.folder / "chapter.xml");
    const std::string model = test::canonicalDump(*world.host.document(doc));
    world.state.filterRun.target = doc;
    world.state.filterRun.scope = 3;

    const int result = FilterRun(world.host, world.state, 1, 1);
    const Handle copy = static_cast<Handle>(result);
    ASSERT_NE(copy, doc);
    ASSERT_EQ(objectType(copy), kDocumentObject);
    EXPECT_EQ(world.host.title(copy), "chapter.xml (Filtered duplicate, UNSAVED)");
    EXPECT_EQ(world.host.path(copy), "") << "the duplicate is untitled";
    EXPECT_EQ(elementById(world.host, copy, "a"), kNoObject);
    EXPECT_NE(elementById(world.host, copy, "b"), kNoObject);
    EXPECT_EQ(test::canonicalDump(*world.host.document(doc)), model);
    EXPECT_EQ(contentOf(world.folder / "chapter.xml"), onDisk);
    EXPECT_EQ(world.shown(), std::vector<std::string>{std::string(kPrefix) + "Filter complete."});

    // The untitled duplicate has no file to be duplicated from.
    world.state.filterRun.target = copy;
    EXPECT_EQ(FilterRun(world.host, world.state, 1, 0), kFilterRunCopyFailed);
    EXPECT_EQ(world.state.cancel, 1);
}

TEST(FilterRun, ABookMovesIntoItsFolderWithoutTheChaptersThatGoWhole) {
    World world;
    duplicateFilterFor(world);
    savedChapter(world, "one.xml", "Mac", "two.xml");
    savedChapter(world, "two.xml", "Win");
    const Handle book = world.book({"one.xml", "two.xml"});
    ASSERT_NE(world.host.simpleSave(book, world.hostPath("manual.book"), false), kNoObject);
    const std::string one = contentOf(world.folder / "one.xml"), two = contentOf(world.folder / "two.xml");
    std::filesystem::create_directories(world.folder / "out");
    world.state.filterRun.target = world.host.activeBook();
    world.state.filterRun.scope = 4;
    world.state.filterRun.bookFolder = world.hostPath("out") + "\\";

    const Handle moved = static_cast<Handle>(FilterRun(world.host, world.state, 1, 1));
    ASSERT_EQ(objectType(moved), kBookObject);
    EXPECT_EQ(world.host.path(moved), world.hostPath("out\\manual.book"));
    std::vector<std::string> chapters;
    for (Handle c = world.host.firstComponent(moved); c != kNoObject; c = world.host.nextComponent(moved, c))
        chapters.push_back(world.host.componentPath(moved, c));
    EXPECT_EQ(chapters, std::vector<std::string>{world.hostPath("out\\one.xml")});
    // The chapter left out is still named where references pointed, in the new folder.
    Handle first = kNoObject;
    for (Handle doc = world.host.firstOpenDocument(); doc != kNoObject; doc = world.host.nextOpenDocument(doc))
        if (world.host.path(doc) == chapters.front()) first = doc;
    ASSERT_NE(first, kNoObject);
    EXPECT_EQ(world.host.xrefSourceFile(first, world.host.firstXRef(first)), world.hostPath("out\\two.xml"));
    EXPECT_EQ(elementById(world.host, first, "a"), kNoObject);
    EXPECT_EQ(contentOf(world.folder / "one.xml"), one);
    EXPECT_EQ(contentOf(world.folder / "two.xml"), two);
    const std::vector<std::string> shown = world.shown();
    ASSERT_GE(shown.size(), 2u);
    EXPECT_NE(shown.front().find("were removed from the new, filtered book:\n\n  - two.xml\n"), std::string::npos);
}

TEST(FilterRun, TheBooksOwnFolderInAnotherCaseIsRefused) {
    World world;
    duplicateFilterFor(world);
    savedChapter(world, "one.xml", "Mac");
    const Handle book = world.book({"one.xml"});
    ASSERT_NE(world.host.simpleSave(book, world.hostPath("manual.book"), false), kNoObject);
    const std::string one = contentOf(world.folder / "one.xml");
    world.state.filterRun.target = world.host.activeBook();
    world.state.filterRun.scope = 4;
    std::string folder = world.hostPath("");
    for (char& c : folder) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    world.state.filterRun.bookFolder = folder;

    EXPECT_EQ(FilterRun(world.host, world.state, 1, 0), kFilterRunSameFolder);
    EXPECT_EQ(world.state.cancel, 1);
    EXPECT_EQ(contentOf(world.folder / "one.xml"), one);
    std::string failed;
    EXPECT_EQ(TransportBook(world.host, world.state, world.host.activeBook(), world.hostPath("missing") + "\\", failed, 1),
              kNoObject);
    EXPECT_EQ(world.state.settingsError, kTransportBadFolder);
}

}  // namespace
}  // namespace voka::testing
