// Documents and books as files: save, save-as, close with and without
// discarding, Open As New, a driver's save refusal, and the window in front.
#include "HostFixture.h"

namespace voka::headless::testing {
namespace {

TEST(Documents, SaveAsNamesTheNewFile) {
    HostFixture f;
    const std::string original = f.folder.hostPath("a.xml");
    const Chapter c = chapter(f, "a.xml");
    ASSERT_EQ(f.host.simpleSave(c.doc, original, false), c.doc);
    ASSERT_TRUE(f.host.setAttributes(c.doc, c.first, {{"audience", {"expert"}}}));
    EXPECT_EQ(f.host.intProperty(c.doc, c.doc, kPropDocIsModified), 1);

    const Handle saved = f.host.simpleSave(c.doc, f.folder.hostPath("sub/../b.xml"), false);
    ASSERT_NE(saved, kNoObject);
    EXPECT_EQ(f.host.path(saved), f.folder.hostPath("b.xml"));
    EXPECT_EQ(f.host.title(saved), "b.xml");
    EXPECT_FALSE(f.host.isModified(saved));
    // Opening the new file finds the open document; the old file kept the old values.
    EXPECT_EQ(f.host.open(f.folder.hostPath("b.xml"), OpenParams{false, false}), saved);
    const Handle old = f.host.open(original, OpenParams{false, false});
    ASSERT_NE(old, kNoObject);
    ASSERT_NE(old, saved);
    const Handle oldPara = children(f.host, old, root(f.host, old)).at(1);
    EXPECT_EQ(f.host.attributes(old, oldPara)[0].values, std::vector<std::string>{"novice"});
    // The open document of a file cannot be overwritten by saving another one there.
    f.host.clearError();
    EXPECT_EQ(f.host.simpleSave(saved, original, false), kNoObject);
    EXPECT_EQ(f.host.errorNumber(), kErrorFailed);
}

TEST(Documents, ClosingAModifiedDocument) {
    HostFixture f;
    const Handle doc = chapter(f).doc;
    ASSERT_TRUE(f.host.addText(doc, {root(f.host, doc), 0}, "x"));
    EXPECT_NE(f.host.close(doc, 0), 0);
    EXPECT_EQ(f.host.errorNumber(), kErrorFailed);
    EXPECT_EQ(f.host.firstOpenDocument(), doc);
    EXPECT_EQ(f.host.close(doc, kCloseModified), 0);
    EXPECT_EQ(f.host.firstOpenDocument(), kNoObject);
    EXPECT_EQ(f.host.activeDocument(), kNoObject);
}

TEST(Documents, OpeningAndTheActiveDocument) {
    HostFixture f;
    const Handle b = chapter(f, "b.xml").doc;
    ASSERT_EQ(f.host.simpleSave(b, f.host.path(b), false), b);
    ASSERT_EQ(f.host.close(b, 0), 0);
    const Handle a = chapter(f, "a.xml").doc;
    // A document opened out of sight does not become the active one.
    const Handle hidden = f.host.open(f.folder.hostPath("b.xml"), OpenParams{false, false});
    ASSERT_NE(hidden, kNoObject);
    EXPECT_EQ(f.host.activeDocument(), a);
    EXPECT_FALSE(f.host.isVisible(hidden));
    const Handle copy = f.host.openAsNewDocument(f.folder.hostPath("b.xml"));
    EXPECT_NE(copy, hidden);
    EXPECT_EQ(f.host.path(copy), "");
    EXPECT_EQ(elementText(f.host, copy, root(f.host, copy)), "IntroHelloWorld");
    EXPECT_EQ(f.host.activeDocument(), copy);
    // Opening a file that is not there fails quietly; a broken one is reported.
    f.host.clearError();
    EXPECT_EQ(f.host.simpleOpen(f.folder.hostPath("none.xml"), false), kNoObject);
    EXPECT_EQ(f.host.errorNumber(), kErrorFailed);
    EXPECT_TRUE(f.agent.texts(Said::Error).empty());
    f.folder.write("broken.xml", "<Chapter><Para>unclosed</Chapter>\n");
    EXPECT_EQ(f.host.simpleOpen(f.folder.hostPath("broken.xml"), false), kNoObject);
    const auto errors = f.agent.texts(Said::Error);
    ASSERT_EQ(errors.size(), 1u);
    EXPECT_NE(errors[0].find("broken.xml"), std::string::npos) << errors[0];
}

// A copy of an unchanged open file takes its model; the original still
// answers as before, and reads its file again only when its content is asked for.
TEST(Documents, OpenAsNewOfAnOpenFileLeavesTheOriginalWhole) {
    struct Case {
        const char* name;
        bool changeOriginal;  // unsaved changes: the copy comes from the file on disk
    };
    for (const Case c : {Case{"unchanged", false}, Case{"with unsaved changes", true}}) {
        SCOPED_TRACE(c.name);
        HostFixture f;
        const Handle built = chapter(f, "a.xml").doc;
        ASSERT_EQ(f.host.simpleSave(built, f.host.path(built), false), built);
        ASSERT_EQ(f.host.close(built, 0), 0);
        const Handle a = f.host.simpleOpen(f.folder.hostPath("a.xml"), false);
        ASSERT_NE(a, kNoObject);
        ASSERT_TRUE(f.host.setIntProperty(a, a, kPropScreenX, 40));
        if (c.changeOriginal) { ASSERT_TRUE(f.host.addText(a, {root(f.host, a), 0}, "New ")); }
        const std::string text = elementText(f.host, a, root(f.host, a));
        const Handle copy = f.host.openAsNewDocument(f.host.path(a));
        ASSERT_NE(copy, kNoObject);
        EXPECT_EQ(elementText(f.host, copy, root(f.host, copy)), "IntroHelloWorld");
        EXPECT_EQ(f.host.intProperty(copy, copy, kPropScreenX), 0) << "the copy is a new window";
        ASSERT_TRUE(f.host.addText(copy, {root(f.host, copy), 0}, "Copy "));
        EXPECT_EQ(f.host.path(a), f.folder.hostPath("a.xml"));
        EXPECT_EQ(f.host.title(a), "a.xml");
        EXPECT_EQ(f.host.isModified(a), c.changeOriginal);
        EXPECT_EQ(f.host.intProperty(a, a, kPropScreenX), 40);
        EXPECT_EQ(elementText(f.host, a, root(f.host, a)), text) << "the copy's changes are its own";
        EXPECT_EQ(f.host.intProperty(a, a, kPropScreenX), 40);
        EXPECT_EQ(f.host.close(a, c.changeOriginal ? kCloseModified : 0), 0);
    }
}

// A driver may keep the plug-in's saves to places it allows; saving an
// unchanged file in place is then done without writing it.
TEST(Documents, ASaveRefusalKeepsFilesUnwritten) {
    HostFixture f;
    const Handle a = chapter(f, "a.xml").doc;
    ASSERT_EQ(f.host.simpleSave(a, f.host.path(a), false), a);
    const std::string before = f.folder.read("a.xml");
    std::filesystem::create_directories(f.folder.path() / "allowed");
    f.host.setSaveRefusal([&](const std::string& path) {
        return path.find("/allowed/") == std::string::npos ? "not there: " + path : std::string();
    });
    struct Case {
        const char* name;
        std::function<Handle()> save;
        bool saved;
    };
    const Case cases[] = {
        {"unchanged, in place", [&] { return f.host.simpleSave(a, f.host.path(a), false); }, true},
        {"elsewhere", [&] { return f.host.simpleSave(a, f.folder.hostPath("b.xml"), false); }, false},
        {"changed, in place",
         [&] {
             f.host.addText(a, {root(f.host, a), 0}, "x");
             return f.host.simpleSave(a, f.host.path(a), false);
         },
         false},
        {"where allowed", [&] { return f.host.simpleSave(a, f.folder.hostPath("allowed/c.xml"), false); }, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(c.save() != kNoObject, c.saved);
        EXPECT_EQ(f.folder.read("a.xml"), before);
        EXPECT_FALSE(std::filesystem::exists(f.folder.path() / "b.xml"));
    }
    EXPECT_EQ(f.agent.texts(Said::Error).size(), 2u) << "each refusal is said";
}

// One window is in front, a document's or a book's: a command that falls
// back from the document to the book sees which.
TEST(Books, OneWindowInFront) {
    HostFixture f;
    for (const char* name : {"ch1.xml", "ch2.xml"}) f.host.simpleSave(chapter(f, name).doc, "", false);
    f.folder.write("book.xml", R"(<voka-book version="1"><component path="ch1.xml"/></voka-book>)");
    const Handle doc = f.host.simpleOpen(f.folder.hostPath("ch2.xml"), false);
    const Handle book = f.host.simpleOpen(f.folder.hostPath("book.xml"), false);
    ASSERT_EQ(objectType(book), kBookObject);
    struct Case {
        const char* name;
        std::function<bool()> bring;
        Handle document, book;
    };
    const Case cases[] = {
        {"the book just opened", [] { return true; }, kNoObject, book},
        {"a document made active", [&] { return f.host.setActiveDocument(doc); }, doc, kNoObject},
        {"a book made active", [&] { return f.host.setActiveBook(book); }, kNoObject, book},
        {"a document put in front", [&] { return f.host.setIntProperty(doc, doc, kPropIsInFront, 1); }, doc, kNoObject},
        {"a book put in front", [&] { return f.host.setIntProperty(book, book, kPropIsInFront, 1); }, kNoObject, book},
        {"the open document opened again", [&] { return f.host.simpleOpen(f.host.path(doc), false) == doc; }, doc,
         kNoObject},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        ASSERT_TRUE(c.bring());
        EXPECT_EQ(f.host.activeDocument(), c.document);
        EXPECT_EQ(f.host.activeBook(), c.book);
    }
    // A book window has nothing selected in it; asking is no failure.
    f.host.clearError();
    EXPECT_EQ(f.host.elementSelection(book), ElementRange{});
    EXPECT_EQ(f.host.errorNumber(), 0);
    ASSERT_EQ(f.host.close(book, 0), 0);
    EXPECT_EQ(f.host.elementSelection(book), ElementRange{});
    EXPECT_NE(f.host.errorNumber(), 0) << "a closed book is a stale handle";
}

}  // namespace
}  // namespace voka::headless::testing
