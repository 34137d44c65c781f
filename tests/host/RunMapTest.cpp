// Runs of character properties over byte offsets: what colouring writes and
// uncolouring removes. Wrong splits show as colour bleeding into neighbours.
#include "HostFixture.h"

namespace voka::headless::testing {
namespace {

using Runs = std::map<std::uint32_t, int>;

TEST(RunMap, AssignSplitsAndCoalesces) {
    struct Assign {
        std::uint32_t begin, end;
        int value;
    };
    struct Case {
        const char* name;
        std::vector<Assign> assigns;
        Runs runs;
    };
    const Case cases[] = {
        {"adjacent equal ranges merge", {{2, 5, 1}, {5, 8, 1}}, {{2, 1}, {8, 0}}},
        {"a range inside another splits it", {{0, 10, 1}, {3, 6, 2}}, {{0, 1}, {3, 2}, {6, 1}, {10, 0}}},
        {"clearing a middle part", {{0, 10, 1}, {3, 6, 0}}, {{0, 1}, {3, 0}, {6, 1}, {10, 0}}},
        {"clearing everything leaves no runs", {{0, 10, 1}, {0, 10, 0}}, {}},
        {"overlapping the start", {{3, 6, 1}, {1, 4, 2}}, {{1, 2}, {4, 1}, {6, 0}}},
        {"an empty range changes nothing", {{3, 6, 1}, {4, 4, 2}}, {{3, 1}, {6, 0}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        RunMap<int> map;
        for (const Assign& a : c.assigns) map.assign(a.begin, a.end, a.value);
        EXPECT_EQ(map.runs(), c.runs);
        EXPECT_EQ(map.at(c.runs.empty() ? 0 : c.runs.rbegin()->first), 0);
    }
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
        {"the skip marker 667", TextProperty::Color, 667, false},
        {"numeric underline", TextProperty::Underlining, kNumericUnderline, true},
        {"underline 4", TextProperty::Underlining, 4, false},
        {"overline 2", TextProperty::Overline, 2, false},
        {"change bar", TextProperty::ChangeBar, 1, true},
        {"change bar -1", TextProperty::ChangeBar, -1, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        HostFixture f;
        Chapter s = chapter(f);
        const int value = c.value == -2 ? static_cast<int>(f.host.namedObject(s.doc, kColorObject, "Red")) : c.value;
        const int before = f.host.textProperty(s.doc, {s.first, 4}, c.property);
        EXPECT_EQ(f.host.setTextProperty(s.doc, f.host.elementTextRange(s.doc, s.first), c.property, value), c.accepted);
        EXPECT_EQ(f.host.textProperty(s.doc, {s.first, 4}, c.property), c.accepted ? value : before);
        // The neighbours never change.
        EXPECT_EQ(f.host.textProperty(s.doc, {s.title, 4}, c.property), before);
        EXPECT_EQ(f.host.textProperty(s.doc, {s.second, 0}, c.property), before);
    }
}

TEST(TextFormats, DefinitionsAppliedAgainDropOverrides) {
    HostFixture f;
    Chapter s = chapter(f);
    const int red = static_cast<int>(f.host.namedObject(s.doc, kColorObject, "Red"));
    const int black = static_cast<int>(f.host.namedObject(s.doc, kColorObject, "Black"));
    const Handle hidden = f.host.newNamedObject(s.doc, kConditionFormatObject, "Hidden");
    ASSERT_TRUE(f.host.setTextProperty(s.doc, f.host.elementTextRange(s.doc, s.chapter), TextProperty::Color, red));
    ASSERT_TRUE(f.host.setTextProperty(s.doc, f.host.elementTextRange(s.doc, s.first), TextProperty::Overline, 1));
    ASSERT_TRUE(f.host.setTextConditions(s.doc, f.host.elementTextRange(s.doc, s.title), {hidden}));

    // One element formatted from its definition again loses its overrides only.
    ASSERT_TRUE(f.host.setElementDefinition(s.doc, s.first, f.host.elementDefinition(s.doc, s.first)));
    EXPECT_EQ(f.host.textProperty(s.doc, {s.first, 0}, TextProperty::Color), black);
    EXPECT_EQ(f.host.textProperty(s.doc, {s.first, 0}, TextProperty::Overline), 0);
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
