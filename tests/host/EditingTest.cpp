// Deletions as a filter makes them: a deleted element takes exactly its text
// and its markers, and every other element's text, colours and markers stay
// where they were.
#include "HostFixture.h"

namespace voka::headless::testing {
namespace {

// The shared chapter with "World" red.
struct Red : Chapter {
    Red(HostFixture& f) : Chapter(voka::headless::testing::chapter(f)), host(f.host) {
        red = static_cast<int>(host.namedObject(doc, kColorObject, "Red"));
        EXPECT_TRUE(host.setTextProperty(doc, host.elementTextRange(doc, second), TextProperty::Color, red));
    }
    int colorAt(Handle element, int offset) { return host.textProperty(doc, {element, offset}, TextProperty::Color); }
    // The marker still sits at the start of "World".
    bool markerOnWorld() {
        const Document& d = *host.document(doc);
        return d.markers.at(0).offset == d.elements[handleId(second) - 1].begin;
    }
    HeadlessHost& host;
    int red;
};

TEST(Editing, DeletedElementsTakeTheirText) {
    HostFixture f;
    Red c(f);
    ASSERT_TRUE(f.host.deleteObject(c.doc, c.first));
    EXPECT_EQ(elementText(f.host, c.doc, c.chapter), "IntroWorld");
    EXPECT_EQ(elementText(f.host, c.doc, c.second), "World");
    EXPECT_EQ(c.colorAt(c.second, 0), c.red);
    EXPECT_NE(c.colorAt(c.title, 4), c.red);
    EXPECT_TRUE(c.markerOnWorld());
    // The marker goes with the element that holds it.
    ASSERT_TRUE(f.host.deleteObject(c.doc, c.second));
    EXPECT_EQ(f.host.firstMarker(c.doc), kNoObject);
    EXPECT_EQ(elementText(f.host, c.doc, c.chapter), "Intro");
}

// Every other paragraph deleted, and a child of every third survivor, the way
// a filter walks: nothing reads offsets in between.
TEST(Editing, ManyDeletionsInOnePass) {
    HostFixture f;
    TreeBuilder b;
    b.open("Chapter");
    for (int i = 0; i < 300; ++i) b.open("Para").leaf("Word", {}, "w" + std::to_string(i)).text(".").close();
    const Handle doc = b.build(f.host, f.folder.hostPath("many.xml"));
    const auto paras = children(f.host, doc, root(f.host, doc));
    std::string expected;
    for (int i = 0; i < 300; ++i) {
        const bool whole = i % 2 == 0, word = i % 3 == 0;
        if (whole || word) { ASSERT_TRUE(f.host.deleteObject(doc, whole ? paras[i] : f.host.firstChild(doc, paras[i]))); }
        if (!whole) expected += (word ? "" : "w" + std::to_string(i)) + ".";
    }
    EXPECT_EQ(elementText(f.host, doc, root(f.host, doc)), expected);
}

}  // namespace
}  // namespace voka::headless::testing
