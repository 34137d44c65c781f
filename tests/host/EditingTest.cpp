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
    // Markers in text order are shifted from a search; one added before the
    // last breaks the order and every marker is looked at.
    for (const bool outOfOrder : {false, true})
    for (const Case& k : cases) {
        SCOPED_TRACE(std::string(k.name) + (outOfOrder ? ", markers out of order" : ""));
        HostFixture f;
        Red c(f);
        if (outOfOrder) ASSERT_NE(f.host.newMarker(c.doc, TextLocation{c.title, 0}), kNoObject);
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

TEST(Editing, NewElementsAtElementLocations) {
    struct Case {
        const char* name;
        std::function<ElementLocation(const Chapter&)> place;
        std::string chapterAfter;  // with "[x]" typed into the new element; unchanged: nothing made
    };
    const Case cases[] = {
        {"before a child", [](const Chapter& c) { return ElementLocation{c.chapter, c.second, 0}; }, "IntroHello[x]World"},
        {"no child: at the end", [](const Chapter& c) { return ElementLocation{c.chapter, kNoObject, 0}; },
         "IntroHelloWorld[x]"},
        {"inside an element without children", [](const Chapter& c) { return ElementLocation{c.first, kNoObject, 0}; },
         "Intro[x]HelloWorld"},
        {"a child of another parent", [](const Chapter& c) { return ElementLocation{c.first, c.second, 0}; },
         "IntroHelloWorld"},
    };
    for (const Case& k : cases) {
        SCOPED_TRACE(k.name);
        HostFixture f;
        Chapter c = chapter(f);
        const Handle note = f.host.newNamedObject(c.doc, kElementDefinitionObject, "Note");
        const Handle made = f.host.newElement(c.doc, note, k.place(c));
        EXPECT_EQ(made == kNoObject, k.chapterAfter == "IntroHelloWorld");
        if (made != kNoObject) { ASSERT_TRUE(f.host.addText(c.doc, {made, 0}, "[x]")); }
        EXPECT_EQ(elementText(f.host, c.doc, c.chapter), k.chapterAfter);
        EXPECT_EQ(elementText(f.host, c.doc, c.second), "World");
    }
}

}  // namespace
}  // namespace voka::headless::testing
