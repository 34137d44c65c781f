// Edits keep every element's text where it was: text added in one element
// shows in it alone, a deleted element takes exactly its text, and colours
// and markers stay on the text they were put on.
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

TEST(Editing, AddedTextGoesIntoOneElement) {
    enum Where { TitleStart, FirstMiddle, FirstEnd, ChapterEnd, FlowStart };
    struct Case {
        const char* name;
        Where where;
        std::string title, first, chapter;
    };
    const Case cases[] = {
        {"start of the title", TitleStart, "--Intro", "Hello", "--IntroHelloWorld"},
        {"inside a paragraph", FirstMiddle, "Intro", "He--llo", "IntroHe--lloWorld"},
        {"end of a paragraph", FirstEnd, "Intro", "Hello--", "IntroHello--World"},
        {"end of the chapter, after its last child", ChapterEnd, "Intro", "Hello", "IntroHelloWorld--"},
        {"start of the flow", FlowStart, "Intro", "Hello", "--IntroHelloWorld"},
    };
    for (const Case& k : cases) {
        SCOPED_TRACE(k.name);
        HostFixture f;
        Red c(f);
        // Where the text is added, and where the added text then begins.
        const Handle flow = f.host.mainFlow(c.doc);
        const std::map<Where, std::pair<TextLocation, TextLocation>> spots = {
            {TitleStart, {{c.title, 0}, {c.title, 0}}},
            {FirstMiddle, {{c.first, 2}, {c.first, 2}}},
            {FirstEnd, {{c.first, kEndOfObject}, {c.first, 5}}},
            {ChapterEnd, {{c.chapter, kEndOfObject}, {c.chapter, 15}}},
            {FlowStart, {{flow, 0}, {flow, 0}}},
        };
        const auto& [at, probe] = spots.at(k.where);
        ASSERT_TRUE(f.host.addText(c.doc, at, "--"));
        EXPECT_EQ(elementText(f.host, c.doc, c.title), k.title);
        EXPECT_EQ(elementText(f.host, c.doc, c.first), k.first);
        EXPECT_EQ(elementText(f.host, c.doc, c.second), "World");
        EXPECT_EQ(elementText(f.host, c.doc, c.chapter), k.chapter);
        // The colour and the marker moved with "World"; the new text has no colour.
        EXPECT_EQ(c.colorAt(c.second, 0), c.red);
        EXPECT_EQ(c.colorAt(c.second, 4), c.red);
        EXPECT_NE(f.host.textProperty(c.doc, probe, TextProperty::Color), c.red);
        EXPECT_TRUE(c.markerOnWorld());
        EXPECT_TRUE(f.host.isModified(c.doc));
    }
}

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

TEST(Editing, ManyDeletionsInOnePass) {
    HostFixture f;
    TreeBuilder b;
    b.open("Chapter");
    for (int i = 0; i < 500; ++i) b.open("Para").leaf("Word", {}, "w" + std::to_string(i)).text(".").close();
    const Handle doc = b.build(f.host, f.folder.hostPath("many.xml"));
    const auto paras = children(f.host, doc, root(f.host, doc));
    // Delete every other paragraph, and a child of every third survivor, the
    // way a filter walks: nothing reads offsets in between.
    std::string expected;
    for (int i = 0; i < 500; ++i) {
        if (i % 2 == 0) {
            ASSERT_TRUE(f.host.deleteObject(doc, paras[i]));
        } else if (i % 3 == 0) {
            ASSERT_TRUE(f.host.deleteObject(doc, f.host.firstChild(doc, paras[i])));
            expected += ".";
        } else {
            expected += "w" + std::to_string(i) + ".";
        }
    }
    EXPECT_EQ(elementText(f.host, doc, root(f.host, doc)), expected);
    EXPECT_EQ(elementText(f.host, doc, f.host.firstChild(doc, paras[499])), "w499");
}

TEST(Editing, NewElementsAtElementLocations) {
    enum Place { BeforeTitle, BeforeSecond, AtChapterEnd, InsideChildless, BeforeForeign };
    struct Case {
        const char* name;
        Place place;
        std::string chapterAfter;  // with "[x]" typed into the new element
    };
    const Case cases[] = {
        {"before the first child", BeforeTitle, "[x]IntroHelloWorld"},
        {"before a later child", BeforeSecond, "IntroHello[x]World"},
        {"no child: at the end", AtChapterEnd, "IntroHelloWorld[x]"},
        {"inside an element without children", InsideChildless, "Intro[x]HelloWorld"},
        {"a child of another parent: nothing made", BeforeForeign, "IntroHelloWorld"},
    };
    for (const Case& k : cases) {
        SCOPED_TRACE(k.name);
        HostFixture f;
        Chapter c = chapter(f);
        const std::map<Place, ElementLocation> places = {
            {BeforeTitle, {c.chapter, c.title, 0}},    {BeforeSecond, {c.chapter, c.second, 0}},
            {AtChapterEnd, {c.chapter, kNoObject, 0}}, {InsideChildless, {c.first, kNoObject, 0}},
            {BeforeForeign, {c.first, c.second, 0}},
        };
        const Handle note = f.host.newNamedObject(c.doc, kElementDefinitionObject, "Note");
        const Handle made = f.host.newElement(c.doc, note, places.at(k.place));
        EXPECT_EQ(made == kNoObject, k.place == BeforeForeign);
        if (made != kNoObject) {
            ASSERT_TRUE(f.host.addText(c.doc, {made, 0}, "[x]"));
        }
        EXPECT_EQ(elementText(f.host, c.doc, c.chapter), k.chapterAfter);
        EXPECT_EQ(elementText(f.host, c.doc, c.second), "World");
    }
}

}  // namespace
}  // namespace voka::headless::testing
