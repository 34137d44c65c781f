// Documents and books as files: save, save-as, close with and without
// discarding, the active document, books and their components.
#include "HostFixture.h"

namespace voka::headless::testing {
namespace {

Handle sample(HostFixture& f, const std::string& name, const std::string& text = "Hello") {
    TreeBuilder b;
    b.open("Chapter").leaf("Para", {{"audience", "novice"}}, text).close();
    return b.build(f.host, f.folder.hostPath(name));
}

TEST(Documents, SaveAsNamesTheNewFile) {
    HostFixture f;
    const std::string original = f.folder.hostPath("a.xml");
    const std::string copy = f.folder.hostPath("sub/../b.xml");
    const Handle doc = sample(f, "a.xml");
    ASSERT_EQ(f.host.simpleSave(doc, original, false), doc);
    const Handle para = f.host.firstChild(doc, root(f.host, doc));
    ASSERT_TRUE(f.host.setAttributes(doc, para, {{"audience", {"expert"}}}));
    EXPECT_TRUE(f.host.isModified(doc));
    EXPECT_EQ(f.host.intProperty(doc, doc, kPropDocIsModified), 1);

    const Handle saved = f.host.simpleSave(doc, copy, false);
    ASSERT_NE(saved, kNoObject);
    EXPECT_EQ(f.host.path(saved), f.folder.hostPath("b.xml"));
    EXPECT_EQ(f.host.title(saved), "b.xml");
    EXPECT_FALSE(f.host.isModified(saved));
    EXPECT_TRUE(f.host.fileExists(f.folder.hostPath("b.xml")));
    // Opening the new file finds the open document; the old file kept the old values.
    EXPECT_EQ(f.host.open(f.folder.hostPath("b.xml"), OpenParams{false, false}), saved);
    const Handle old = f.host.open(original, OpenParams{false, false});
    ASSERT_NE(old, kNoObject);
    ASSERT_NE(old, saved);
    EXPECT_EQ(f.host.attributes(old, f.host.firstChild(old, root(f.host, old)))[0].values, std::vector<std::string>{"novice"});
    // The open document of a file cannot be overwritten by saving another one there.
    f.host.clearError();
    EXPECT_EQ(f.host.simpleSave(saved, original, false), kNoObject);
    EXPECT_EQ(f.host.errorNumber(), kErrorFailed);
}

TEST(Documents, ClosingAModifiedDocument) {
    HostFixture f;
    const Handle doc = sample(f, "a.xml");
    ASSERT_TRUE(f.host.addText(doc, {root(f.host, doc), 0}, "x"));
    EXPECT_NE(f.host.close(doc, 0), 0);
    EXPECT_EQ(f.host.errorNumber(), kErrorFailed);
    EXPECT_EQ(f.host.firstOpenDocument(), doc);
    EXPECT_EQ(f.host.close(doc, kCloseModified), 0);
    EXPECT_EQ(f.host.firstOpenDocument(), kNoObject);
    EXPECT_EQ(f.host.activeDocument(), kNoObject);
    EXPECT_EQ(f.host.mainFlow(doc), kNoObject);
}

TEST(Documents, OpeningOrderAndTheActiveDocument) {
    HostFixture f;
    for (const char* name : {"a.xml", "b.xml", "c.xml"}) {
        const Handle doc = sample(f, name, name);
        ASSERT_EQ(f.host.simpleSave(doc, f.host.path(doc), false), doc);
        ASSERT_EQ(f.host.close(doc, 0), 0);
    }
    const Handle a = f.host.simpleOpen(f.folder.hostPath("a.xml"), false);
    const Handle b = f.host.simpleOpen(f.folder.hostPath("b.xml"), false);
    const Handle hidden = f.host.open(f.folder.hostPath("c.xml"), OpenParams{false, false});
    ASSERT_NE(hidden, kNoObject);
    // A document opened out of sight does not become the active one.
    EXPECT_EQ(f.host.activeDocument(), b);
    EXPECT_FALSE(f.host.isVisible(hidden));
    std::vector<Handle> open;
    for (Handle d = f.host.firstOpenDocument(); d != kNoObject; d = f.host.nextOpenDocument(d)) open.push_back(d);
    EXPECT_EQ(open, (std::vector<Handle>{a, b, hidden}));
    ASSERT_TRUE(f.host.setActiveDocument(a));
    ASSERT_EQ(f.host.close(a, 0), 0);
    EXPECT_EQ(f.host.activeDocument(), kNoObject);
    EXPECT_EQ(f.host.firstOpenDocument(), b);

    const Handle copy = f.host.openAsNewDocument(f.folder.hostPath("b.xml"));
    ASSERT_NE(copy, kNoObject);
    EXPECT_NE(copy, b);
    EXPECT_EQ(f.host.path(copy), "");
    EXPECT_EQ(elementText(f.host, copy, root(f.host, copy)), "b.xml");
    EXPECT_EQ(f.host.activeDocument(), copy);
    // Opening a file that is not there fails quietly.
    f.host.clearError();
    EXPECT_EQ(f.host.simpleOpen(f.folder.hostPath("none.xml"), false), kNoObject);
    EXPECT_EQ(f.host.errorNumber(), kErrorFailed);
}

TEST(Documents, ABrokenFileIsReportedAndNotOpened) {
    HostFixture f;
    f.folder.write("broken.xml", "<Chapter><Para>unclosed</Chapter>\n");
    EXPECT_EQ(f.host.simpleOpen(f.folder.hostPath("broken.xml"), false), kNoObject);
    const auto errors = f.agent.texts(Said::Error);
    ASSERT_EQ(errors.size(), 1u);
    EXPECT_NE(errors[0].find("broken.xml"), std::string::npos) << errors[0];
    EXPECT_EQ(f.host.firstOpenDocument(), kNoObject);
}

TEST(Books, ComponentsInBookOrder) {
    HostFixture f;
    for (const char* name : {"ch1.xml", "ch2.xml", "ch3.xml"}) f.host.simpleSave(sample(f, name), "", false);
    f.folder.write("book.xml", R"(<?xml version="1.0"?>
<voka-book version="1"><component path="ch1.xml"/><component path="ch3.xml"/></voka-book>
)");
    const Handle book = f.host.simpleOpen(f.folder.hostPath("book.xml"), false);
    ASSERT_EQ(objectType(book), kBookObject);
    EXPECT_EQ(f.host.activeBook(), book);
    auto paths = [&] {
        std::vector<std::string> list;
        for (Handle c = f.host.firstComponent(book); c != kNoObject; c = f.host.nextComponent(book, c))
            list.push_back(f.host.componentPath(book, c));
        return list;
    };
    // Component paths are full paths, as the open documents have them.
    EXPECT_EQ(paths(), (std::vector<std::string>{f.folder.hostPath("ch1.xml"), f.folder.hostPath("ch3.xml")}));
    const Handle first = f.host.firstComponent(book);
    const Handle added = f.host.newComponent(book, first, f.folder.hostPath("ch2.xml"));
    ASSERT_NE(added, kNoObject);
    EXPECT_EQ(paths(), (std::vector<std::string>{f.folder.hostPath("ch1.xml"), f.folder.hostPath("ch2.xml"),
                                                 f.folder.hostPath("ch3.xml")}));
    ASSERT_TRUE(f.host.setStringProperty(book, added, kPropUserString, "VOKA"));
    EXPECT_EQ(f.host.stringProperty(book, added, kPropUserString), "VOKA");
    EXPECT_TRUE(f.host.isModified(book));
    ASSERT_TRUE(f.host.deleteObject(book, first));
    EXPECT_EQ(f.host.componentPath(book, first), "");
    EXPECT_EQ(paths().size(), 2u);
    EXPECT_EQ(f.host.updateBook(book), 0);

    // Saved under a new name, the book reads back with the same components.
    const Handle saved = f.host.simpleSave(book, f.folder.hostPath("book2.xml"), false);
    ASSERT_EQ(saved, book);
    EXPECT_EQ(f.host.path(book), f.folder.hostPath("book2.xml"));
    ASSERT_EQ(f.host.close(book, 0), 0);
    const Handle reopened = f.host.simpleOpen(f.folder.hostPath("book2.xml"), false);
    ASSERT_NE(reopened, kNoObject);
    std::vector<std::string> again;
    for (Handle c = f.host.firstComponent(reopened); c != kNoObject; c = f.host.nextComponent(reopened, c))
        again.push_back(f.host.componentPath(reopened, c));
    EXPECT_EQ(again, (std::vector<std::string>{f.folder.hostPath("ch2.xml"), f.folder.hostPath("ch3.xml")}));
}

}  // namespace
}  // namespace voka::headless::testing
