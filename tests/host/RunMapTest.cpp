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
        if (i > 0) { ASSERT_LT(map.key(i - 1), map.key(i)); }
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

// Uncolouring imports the document's own definitions with the flag that drops
// every override; conditions are not overrides and stay. (One element given
// its definition again is the colouring engine's "<refresh EDD>" case.)
TEST(TextFormats, DefinitionsImportedAgainDropOverridesButNotConditions) {
    HostFixture f;
    Chapter s = chapter(f);
    const int red = static_cast<int>(f.host.namedObject(s.doc, kColorObject, "Red"));
    const int black = static_cast<int>(f.host.namedObject(s.doc, kColorObject, "Black"));
    const Handle hidden = f.host.newNamedObject(s.doc, kConditionFormatObject, "Hidden");
    ASSERT_TRUE(f.host.setTextProperty(s.doc, f.host.elementTextRange(s.doc, s.chapter), TextProperty::Color, red));
    ASSERT_TRUE(f.host.setTextConditions(s.doc, f.host.elementTextRange(s.doc, s.title), {hidden}));

    ASSERT_EQ(f.host.importElementDefinitions(s.doc, s.doc, 0), 0);
    EXPECT_EQ(f.host.textProperty(s.doc, {s.title, 0}, TextProperty::Color), red);
    ASSERT_EQ(f.host.importElementDefinitions(s.doc, s.doc, kImportRemoveOverrides | kImportNoNotify), 0);
    EXPECT_EQ(f.host.textProperty(s.doc, {s.title, 0}, TextProperty::Color), black);
    EXPECT_TRUE(f.host.document(s.doc)->flows[0].formats.empty());
    EXPECT_EQ(f.host.textConditions(s.doc, {s.title, 0}), std::vector<Handle>{hidden});
}

}  // namespace
}  // namespace voka::headless::testing
