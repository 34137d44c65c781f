// Runs of character properties over byte offsets: what colouring writes and
// uncolouring removes. Wrong splits show as colour bleeding into neighbours.
#include "HostFixture.h"

namespace voka::headless::testing {
namespace {

using Runs = std::map<std::uint32_t, int>;

struct Assign {
    std::uint32_t begin, end;
    int value;
};

TEST(RunMap, AssignSplitsAndCoalesces) {
    struct Case {
        const char* name;
        std::vector<Assign> assigns;
        Runs runs;
    };
    const Case cases[] = {
        {"one range", {{2, 5, 1}}, {{2, 1}, {5, 0}}},
        {"adjacent equal ranges merge", {{2, 5, 1}, {5, 8, 1}}, {{2, 1}, {8, 0}}},
        {"a range inside another splits it", {{0, 10, 1}, {3, 6, 2}}, {{0, 1}, {3, 2}, {6, 1}, {10, 0}}},
        {"clearing a middle part", {{0, 10, 1}, {3, 6, 0}}, {{0, 1}, {3, 0}, {6, 1}, {10, 0}}},
        {"clearing everything leaves no runs", {{0, 10, 1}, {0, 10, 0}}, {}},
        {"a wider range swallows a narrower", {{3, 6, 1}, {1, 8, 2}}, {{1, 2}, {8, 0}}},
        {"overlapping the start", {{3, 6, 1}, {1, 4, 2}}, {{1, 2}, {4, 1}, {6, 0}}},
        {"an empty range changes nothing", {{3, 6, 1}, {4, 4, 2}}, {{3, 1}, {6, 0}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        RunMap<int> map;
        for (const Assign& a : c.assigns) map.assign(a.begin, a.end, a.value);
        EXPECT_EQ(map.runs(), c.runs);
    }
}

TEST(RunMap, ValueAtAnOffset) {
    RunMap<int> map;
    map.assign(2, 5, 7);
    map.assign(5, 6, 9);
    const std::pair<std::uint32_t, int> expected[] = {{0, 0}, {1, 0}, {2, 7}, {4, 7}, {5, 9}, {6, 0}, {100, 0}};
    for (const auto& [offset, value] : expected) EXPECT_EQ(map.at(offset), value) << "at " << offset;
}

TEST(RunMap, UpdateKeepsOtherProperties) {
    RunMap<CharFormat> map;
    CharFormat red;
    red.set = CharFormat::kColor;
    red.color = 2;
    map.assign(0, 10, red);
    map.update(4, 6, [](CharFormat& f) {
        f.set |= CharFormat::kUnderlining;
        f.underlining = kDoubleUnderline;
    });
    EXPECT_EQ(map.at(3), red);
    EXPECT_EQ(map.at(4).color, 2u);
    EXPECT_EQ(map.at(4).underlining, kDoubleUnderline);
    EXPECT_EQ(map.at(6), red);
    EXPECT_EQ(map.runs().size(), 4u);
}

TEST(RunMap, ShiftAfterInsertingAndRemovingText) {
    struct Case {
        const char* name;
        std::uint32_t from;
        std::int64_t delta;
        Runs runs;
    };
    // Before each shift: 1 over [0,3), 2 over [3,6).
    const Case cases[] = {
        {"insert at a run boundary", 3, 2, {{0, 1}, {5, 2}, {8, 0}}},
        {"insert inside a run", 4, 2, {{0, 1}, {3, 2}, {8, 0}}},
        {"insert after the runs", 7, 5, {{0, 1}, {3, 2}, {6, 0}}},
        {"remove across a boundary", 2, -2, {{0, 1}, {2, 2}, {4, 0}}},
        {"remove a whole run", 3, -3, {{0, 1}, {3, 0}}},
        {"remove everything", 0, -6, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        RunMap<int> map;
        map.assign(0, 3, 1);
        map.assign(3, 6, 2);
        map.shift(c.from, c.delta);
        EXPECT_EQ(map.runs(), c.runs);
    }
}

// Through the host: the properties colouring sets, and what removes them.
struct Styled {
    Handle doc, chapter, title, para;
    TextRange all;
};

Styled styledDoc(HostFixture& f) {
    TreeBuilder b;
    b.open("Chapter").leaf("Title", {}, "Intro").leaf("Para", {}, "Body text").close();
    Styled s;
    s.doc = b.build(f.host, f.folder.hostPath("s.xml"));
    s.chapter = root(f.host, s.doc);
    s.title = f.host.firstChild(s.doc, s.chapter);
    s.para = f.host.lastChild(s.doc, s.chapter);
    s.all = f.host.elementTextRange(s.doc, s.chapter);
    return s;
}

TEST(TextFormats, PropertiesAcceptTheirValuesOnly) {
    struct Case {
        const char* name;
        TextProperty property;
        int value;  // -2: the colour Red of the document
        bool accepted;
    };
    const Case cases[] = {
        {"a colour of the document", TextProperty::Color, -2, true},
        {"colour 0", TextProperty::Color, 0, false},
        {"the refresh marker 666", TextProperty::Color, 666, false},
        {"the skip marker 667", TextProperty::Color, 667, false},
        {"single underline", TextProperty::Underlining, kSingleUnderline, true},
        {"numeric underline", TextProperty::Underlining, kNumericUnderline, true},
        {"underline 4", TextProperty::Underlining, 4, false},
        {"overline", TextProperty::Overline, 1, true},
        {"overline 2", TextProperty::Overline, 2, false},
        {"strikethrough", TextProperty::Strikethrough, 1, true},
        {"change bar", TextProperty::ChangeBar, 1, true},
        {"change bar -1", TextProperty::ChangeBar, -1, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        HostFixture f;
        Styled s = styledDoc(f);
        const int value = c.value == -2 ? static_cast<int>(f.host.namedObject(s.doc, kColorObject, "Red")) : c.value;
        const TextRange para = f.host.elementTextRange(s.doc, s.para);
        const TextLocation inPara{s.para, 4};
        const int before = f.host.textProperty(s.doc, inPara, c.property);
        EXPECT_EQ(f.host.setTextProperty(s.doc, para, c.property, value), c.accepted);
        EXPECT_EQ(f.host.textProperty(s.doc, inPara, c.property), c.accepted ? value : before);
        // The title next to it never changes.
        EXPECT_EQ(f.host.textProperty(s.doc, {s.title, 4}, c.property), before);
    }
}

TEST(TextFormats, DefinitionsAppliedAgainDropOverrides) {
    HostFixture f;
    Styled s = styledDoc(f);
    const int red = static_cast<int>(f.host.namedObject(s.doc, kColorObject, "Red"));
    const int black = static_cast<int>(f.host.namedObject(s.doc, kColorObject, "Black"));
    const Handle hidden = f.host.newNamedObject(s.doc, kConditionFormatObject, "Hidden");
    ASSERT_TRUE(f.host.setTextProperty(s.doc, s.all, TextProperty::Color, red));
    ASSERT_TRUE(f.host.setTextProperty(s.doc, f.host.elementTextRange(s.doc, s.para), TextProperty::Overline, 1));
    ASSERT_TRUE(f.host.setTextConditions(s.doc, f.host.elementTextRange(s.doc, s.title), {hidden}));

    // One element formatted from its definition again loses its overrides only.
    ASSERT_TRUE(f.host.setElementDefinition(s.doc, s.para, f.host.elementDefinition(s.doc, s.para)));
    EXPECT_EQ(f.host.textProperty(s.doc, {s.para, 0}, TextProperty::Color), black);
    EXPECT_EQ(f.host.textProperty(s.doc, {s.para, 0}, TextProperty::Overline), 0);
    EXPECT_EQ(f.host.textProperty(s.doc, {s.title, 0}, TextProperty::Color), red);

    // Importing without the flag keeps overrides; with it, every override goes,
    // but conditions are not overrides.
    ASSERT_EQ(f.host.importElementDefinitions(s.doc, s.doc, 0), 0);
    EXPECT_EQ(f.host.textProperty(s.doc, {s.title, 0}, TextProperty::Color), red);
    ASSERT_EQ(f.host.importElementDefinitions(s.doc, s.doc, kImportRemoveOverrides | kImportNoNotify), 0);
    EXPECT_EQ(f.host.textProperty(s.doc, {s.title, 0}, TextProperty::Color), black);
    EXPECT_TRUE(f.host.document(s.doc)->flows[0].formats.empty());
    EXPECT_EQ(f.host.textConditions(s.doc, {s.title, 0}), std::vector<Handle>{hidden});
}

}  // namespace
}  // namespace voka::headless::testing
