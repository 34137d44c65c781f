// Runs of character properties over byte offsets: what colouring writes and
// uncolouring removes. Wrong splits show as colour bleeding into neighbours.
#include "HostFixture.h"

#include <random>

namespace voka::headless::testing {
namespace {

// What a run map must hold: one value per offset.
struct Reference {
    std::vector<int> values = std::vector<int>(kLength, 0);
    static constexpr std::uint32_t kLength = 64;
};

// The map must read like the reference at every offset and keep no key that
// repeats the value before it, whatever order the writes come in.
void expectSameAs(const RunMap<int>& map, const Reference& reference) {
    for (std::uint32_t offset = 0; offset < Reference::kLength; ++offset)
        ASSERT_EQ(map.at(offset), reference.values[offset]) << "at offset " << offset;
    int previous = 0;
    for (std::size_t i = 0; i < map.size(); ++i) {
        ASSERT_NE(map.value(i), previous) << "key " << map.key(i) << " repeats the run before it";
        if (i > 0) ASSERT_LT(map.key(i - 1), map.key(i));
        previous = map.value(i);
    }
}

// Colouring writes nested ranges in document order, recolouring writes over
// runs already there, editing shifts them: each order must give the same map.
TEST(RunMap, ReadsLikeOneValuePerOffset) {
    enum Order { kNested, kRandom, kBackwards };
    for (Order order : {kNested, kRandom, kBackwards}) {
        for (unsigned seed = 1; seed <= 40; ++seed) {
            SCOPED_TRACE("order " + std::to_string(order) + ", seed " + std::to_string(seed));
            std::mt19937 random(seed);
            auto below = [&](std::uint32_t n) { return static_cast<std::uint32_t>(random() % n); };
            RunMap<int> map;
            Reference reference;
            std::uint32_t cursor = order == kBackwards ? Reference::kLength : 0;
            for (int step = 0; step < 60; ++step) {
                std::uint32_t begin = below(Reference::kLength);
                if (order == kNested) begin = cursor = std::min<std::uint32_t>(cursor + below(3), Reference::kLength - 1);
                if (order == kBackwards) begin = cursor = cursor > 2 ? cursor - 1 - below(2) : 0;
                const std::uint32_t end = std::min<std::uint32_t>(begin + below(12), Reference::kLength);
                const int value = static_cast<int>(below(4));
                if (step % 3 == 0) {
                    map.assign(begin, end, value);
                    for (std::uint32_t i = begin; i < end; ++i) reference.values[i] = value;
                } else {
                    map.update(begin, end, [&](int& v) { v = v * 2 + value; });
                    for (std::uint32_t i = begin; i < end; ++i) reference.values[i] = reference.values[i] * 2 + value;
                }
                ASSERT_NO_FATAL_FAILURE(expectSameAs(map, reference));
                if (step % 17 == 16) {
                    // Text inserted or removed moves everything after it.
                    const std::uint32_t from = below(Reference::kLength / 2);
                    const std::uint32_t length = 1 + below(4);
                    if (step % 2 == 0) {
                        map.shift(from, length);
                        map.assign(from, from + length, 0);
                        reference.values.insert(reference.values.begin() + from, length, 0);
                    } else {
                        map.shift(from, -static_cast<std::int64_t>(length));
                        reference.values.erase(reference.values.begin() + from, reference.values.begin() + from + length);
                        reference.values.insert(reference.values.end(), length, 0);
                    }
                    reference.values.resize(Reference::kLength);
                    map.assign(Reference::kLength, Reference::kLength + 8, 0);
                    ASSERT_NO_FATAL_FAILURE(expectSameAs(map, reference));
                }
            }
        }
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
