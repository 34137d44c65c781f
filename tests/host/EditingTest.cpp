// Edits keep every element's text where it was: text added in one element
// shows in it alone, a deleted element takes exactly its text, and colours
// and markers stay on the text they were put on.
#include "HostFixture.h"

namespace voka::headless::testing {
namespace {

struct Chapter {
    Handle doc, chapter, title, first, second;
    int red;
};

// Chapter [Title "Intro", Para "Hello", Para "World"], "World" red with a
// marker at its start.
Chapter chapter(HostFixture& f) {
    TreeBuilder b;
    b.open("Chapter").leaf("Title", {}, "Intro").leaf("Para", {}, "Hello");
    b.open("Para").marker("Hypertext", "openlink x").text("World").close().close();
    Chapter c;
    c.doc = b.build(f.host, f.folder.hostPath("c.xml"));
    c.chapter = root(f.host, c.doc);
    const auto kids = children(f.host, c.doc, c.chapter);
    c.title = kids[0];
    c.first = kids[1];
    c.second = kids[2];
    c.red = static_cast<int>(f.host.namedObject(c.doc, kColorObject, "Red"));
    EXPECT_TRUE(f.host.setTextProperty(c.doc, f.host.elementTextRange(c.doc, c.second), TextProperty::Color, c.red));
    return c;
}

std::uint32_t markerOffset(HostFixture& f, Handle doc) {
    return f.host.document(doc)->markers.at(0).offset;
}

std::uint32_t beginOf(HostFixture& f, Handle doc, Handle element) {
    return f.host.document(doc)->elements[handleId(element) - 1].begin;
}

TEST(Editing, AddedTextGoesIntoOneElement) {
    enum Where { TitleStart, FirstMiddle, FirstEnd, ChapterEnd, FlowStart };
    struct Case {
        const char* name;
        Where where;
        std::string title, first, second, chapter;
    };
    const Case cases[] = {
        {"start of the title", TitleStart, "A: Intro", "Hello", "World", "A: IntroHelloWorld"},
        {"inside a paragraph", FirstMiddle, "Intro", "He--llo", "World", "IntroHe--lloWorld"},
        {"end of a paragraph", FirstEnd, "Intro", "Hello--", "World", "IntroHello--World"},
        {"end of the chapter, after its last child", ChapterEnd, "Intro", "Hello", "World", "IntroHelloWorld--"},
        {"start of the flow", FlowStart, "Intro", "Hello", "World", "--IntroHelloWorld"},
    };
    for (const Case& k : cases) {
        SCOPED_TRACE(k.name);
        HostFixture f;
        Chapter c = chapter(f);
        // Where the text is added, where the added text then begins, and the text.
        struct Spot {
            TextLocation at, probe;
            std::string added;
        };
        const Handle flow = f.host.mainFlow(c.doc);
        const std::map<Where, Spot> spots = {
            {TitleStart, {{c.title, 0}, {c.title, 0}, "A: "}},
            {FirstMiddle, {{c.first, 2}, {c.first, 2}, "--"}},
            {FirstEnd, {{c.first, kEndOfObject}, {c.first, 5}, "--"}},
            {ChapterEnd, {{c.chapter, kEndOfObject}, {c.chapter, 15}, "--"}},
            {FlowStart, {{flow, 0}, {flow, 0}, "--"}},
        };
        const Spot& spot = spots.at(k.where);
        ASSERT_TRUE(f.host.addText(c.doc, spot.at, spot.added));
        EXPECT_EQ(elementText(f.host, c.doc, c.title), k.title);
        EXPECT_EQ(elementText(f.host, c.doc, c.first), k.first);
        EXPECT_EQ(elementText(f.host, c.doc, c.second), k.second);
        EXPECT_EQ(elementText(f.host, c.doc, c.chapter), k.chapter);
        // The colour and the marker moved with "World"; the new text has no colour.
        EXPECT_EQ(f.host.textProperty(c.doc, {c.second, 0}, TextProperty::Color), c.red);
        EXPECT_EQ(f.host.textProperty(c.doc, {c.second, 4}, TextProperty::Color), c.red);
        EXPECT_NE(f.host.textProperty(c.doc, spot.probe, TextProperty::Color), c.red);
        EXPECT_EQ(markerOffset(f, c.doc), beginOf(f, c.doc, c.second));
        EXPECT_TRUE(f.host.isModified(c.doc));
    }
}

TEST(Editing, DeletedElementsTakeTheirText) {
    HostFixture f;
    Chapter c = chapter(f);
    ASSERT_TRUE(f.host.deleteObject(c.doc, c.first));
    EXPECT_EQ(elementText(f.host, c.doc, c.chapter), "IntroWorld");
    EXPECT_EQ(elementText(f.host, c.doc, c.second), "World");
    EXPECT_EQ(f.host.textProperty(c.doc, {c.second, 0}, TextProperty::Color), c.red);
    EXPECT_NE(f.host.textProperty(c.doc, {c.title, 4}, TextProperty::Color), c.red);
    EXPECT_EQ(markerOffset(f, c.doc), beginOf(f, c.doc, c.second));
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
    EXPECT_EQ(elementText(f.host, doc, paras[1]), "w1.");
    EXPECT_EQ(elementText(f.host, doc, paras[3]), ".");
    EXPECT_EQ(elementText(f.host, doc, paras[499]), "w499.");
    EXPECT_EQ(elementText(f.host, doc, f.host.firstChild(doc, paras[499])), "w499");
}

TEST(Editing, NewElementsAtElementLocations) {
    enum Place { BeforeTitle, BeforeSecond, AtChapterEnd, InsideChildless, BeforeForeign };
    struct Case {
        const char* name;
        Place place;
        bool made;
        std::string chapterAfter;  // with "[x]" typed into the new element
    };
    const Case cases[] = {
        {"before the first child", BeforeTitle, true, "[x]IntroHelloWorld"},
        {"before a later child", BeforeSecond, true, "IntroHello[x]World"},
        {"no child: at the end", AtChapterEnd, true, "IntroHelloWorld[x]"},
        {"inside an element without children", InsideChildless, true, "Intro[x]HelloWorld"},
        {"a child of another parent", BeforeForeign, false, "IntroHelloWorld"},
    };
    for (const Case& k : cases) {
        SCOPED_TRACE(k.name);
        HostFixture f;
        Chapter c = chapter(f);
        const std::map<Place, ElementLocation> places = {
            {BeforeTitle, {c.chapter, c.title, 0}},       {BeforeSecond, {c.chapter, c.second, 0}},
            {AtChapterEnd, {c.chapter, kNoObject, 0}},    {InsideChildless, {c.first, kNoObject, 0}},
            {BeforeForeign, {c.first, c.second, 0}},
        };
        const Handle note = f.host.newNamedObject(c.doc, kElementDefinitionObject, "Note");
        const Handle made = f.host.newElement(c.doc, note, places.at(k.place));
        EXPECT_EQ(made != kNoObject, k.made);
        if (made != kNoObject) {
            ASSERT_TRUE(f.host.addText(c.doc, {made, 0}, "[x]"));
            EXPECT_EQ(elementText(f.host, c.doc, made), "[x]");
        }
        EXPECT_EQ(elementText(f.host, c.doc, c.chapter), k.chapterAfter);
        EXPECT_EQ(elementText(f.host, c.doc, c.second), "World");
    }
}

TEST(Editing, ElementLocationsAsTextLocations) {
    HostFixture f;
    TreeBuilder b;
    b.open("Chapter").open("P").text("Some ").leaf("B", {}, "bold").text(" text").close().leaf("Empty").close();
    const Handle doc = b.build(f.host, f.folder.hostPath("m.xml"));
    const Handle p = f.host.firstChild(doc, root(f.host, doc));
    const Handle bold = f.host.firstChild(doc, p);
    const Handle empty = f.host.lastChild(doc, root(f.host, doc));
    struct Case {
        const char* name;
        ElementLocation begin, end;
        std::string text;
    };
    // The colouring engine's whole content of an element: from before its
    // first child to after its last, leading and trailing text included.
    const Case cases[] = {
        {"whole content of mixed text", {p, bold, 0}, {p, kNoObject, 0}, "Some bold text"},
        {"whole content of a leaf", {bold, kNoObject, 0}, {bold, kNoObject, kEndOfObject}, "bold"},
        {"offset counted before a child", {p, bold, 2}, {p, bold, kEndOfObject}, "me "},
        {"an empty element", {empty, kNoObject, 0}, {empty, kNoObject, kEndOfObject}, ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const TextRange range{f.host.toTextLocation(doc, c.begin), f.host.toTextLocation(doc, c.end)};
        EXPECT_EQ(f.host.text(doc, range), c.text);
    }
}

}  // namespace
}  // namespace voka::headless::testing
