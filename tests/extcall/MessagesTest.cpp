// How a client's message is read and what the setting commands do: where
// the delimiter splits a message, every option SetParm sets with the yes/no
// reading of its values, and SetScheme, which never leaves the main settings
// document open.
#include "CallWorld.h"

#include <functional>

namespace voka::testing {
namespace {

TEST(TextCommands, TheDelimiterSplitsTheMessageIntoCountedItems) {
    struct Case {
        const char* delimiter;
        const char* message;
        int result;
    };
    const Case cases[] = {
        {"---", "Hello", 1}, {"---", "hELLO", 1}, {"---", "Hello---x", 101}, {"---", "Nonsense", 101}, {"---", "", 101},
        {"---", "SetParm---Filter_Type---S", 1},
        {"---", "setPARM---Filter_Type---S---", 1},   // a trailing delimiter adds no item
        {"---", "SetParm---Filter_Type------S", 103},  // two in a row: an empty item that counts
        {"---", "SetParm------S", 109},                // ... and is read as the key
        {"---", "SetParm---Filter_Type--S", 103}, {"---", "---SetParm---Filter_Type---S", 101},
        {"<=>", "SetParm<=>Filter_Type<=>S", 1}, {"aB", "SetParmaBFilter_TypeaBS", 1},
        {"aB", "SetParmABFilter_TypeABS", 101},  // the delimiter's case matters
        {"", "SetParm---Filter_Type---S", 101}, {"", "Hello", 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.delimiter) + " " + c.message);
        CallWorld world;
        world.state.prefs.externalCallDelimiter = c.delimiter;
        EXPECT_EQ(world.call(c.message), c.result);
        const bool setsType = c.result == 1 && std::string(c.message).find("Filter_Type") != std::string::npos;
        EXPECT_EQ(world.state.prefs.filterType, setsType ? kFilterSourceFile : kFilterDuplicateFile);
    }
}

TEST(TextCommands, SetParmSetsEachOptionAndReadsFlags) {
    using Read = std::function<std::string(const PluginState&)>;
    const Read type = [](const PluginState& s) { return std::to_string(s.prefs.filterType); };
    const Read strike = [](const PluginState& s) { return std::to_string(s.prefs.applyStrikethrough); };
    auto rule = [](int i) { return Read([i](const PluginState& s) { return std::to_string(s.prefs.validationRuleActive[i]); }); };
    auto option = [](int i) { return Read([i](const PluginState& s) { return std::to_string(s.filteringOptions[i]); }); };
    struct Case {
        const char* message;
        int result;
        Read read;
        const char* value;
    };
    const Case cases[] = {
        {"Filter_Type---S", 1, type, "1"}, {"filter_type---source", 1, type, "1"}, {"Filter_Type---x", 110, type, "2"},
        {"FILTER_TYPE---d", 1, type, "2"}, {"Filter_SaveFirst---yes", 1, option(kFilterSaveFirstOption), "0"},
        {"Filter_RemoveOverrides---1", 1, option(kFilterRemoveColoringOption), "1"},
        {"Filter_Path---/books/out/", 1, [](const PluginState& s) { return s.filterRun.bookFolder; }, "\\books\\out\\"},
        {"Val_Rule1Active---False", 1, rule(0), "0"}, {"Val_Rule2Active---0", 1, rule(1), "0"},
        {"Val_Rule3Active--- true", 1, rule(2), "0"}, {"val_rule4active---no", 1, rule(3), "0"},
        {"Val_ApplyStrikethrough---True", 1, strike, "1"}, {"Val_ApplyStrikethrough---tomato", 1, strike, "1"},
        {"Val_ApplyStrikethrough---1", 1, strike, "1"}, {"Val_ApplyStrikethrough---yes", 1, strike, "0"},
        {"Val_Rule5Active---True", 109, strike, "0"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.message);
        CallWorld world;
        EXPECT_EQ(world.call(std::string("SetParm---") + c.message), c.result);
        EXPECT_EQ(c.read(world.state), c.value);
    }
}

TEST(TextCommands, SetSchemeLoadsActivatesAndAlwaysClosesTheSettings) {
    struct Case {
        const char* message;
        int result;
        std::vector<std::string> active;  // category, colouring, validation, filter scheme
        bool held = false;                // main settings held before the call, with "Held" > "Own"
        bool localCopy = true;
    };
    const std::string none = kNone;
    const std::vector<std::string> unchanged{none, none, none, none};
    const Case cases[] = {
        {"SetScheme---Coloring---Manuals---Print", 1, {"Manuals", "Print", none, none}},
        {"SetScheme---v---Manuals---Check", 1, {"Manuals", none, "Check", none}},
        {"SetScheme---filter---Manuals---Novice", 1, {"Manuals", none, none, "Novice"}},
        {"SetScheme---Xylo---Manuals---Print", 102, unchanged}, {"SetScheme------Manuals---Print", 102, unchanged},
        {"SetScheme---C---Manuals---Nope", 106, unchanged}, {"SetScheme---F---Manuals---Nope", 106, unchanged},
        {"SetScheme---V---Nope---Check", 106, unchanged},
        {"SetScheme---C---Held---Own", 1, {"Held", "Own", none, none}, true},
        {"SetScheme---Q---Held---Own", 102, unchanged, true},
        {"SetScheme---C---Manuals---Print", 107, unchanged, false, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.message);
        CallWorld world;
        if (c.held) world.holdMainSettings({{"Held", {{"Own", {kRedForExperts}}}}}, "held.fm");
        if (!c.localCopy) std::filesystem::remove(world.folder / kLocalCopy);
        EXPECT_EQ(world.call(c.message), c.result);
        const ActiveNames& a = world.state.active;
        EXPECT_EQ((std::vector{a.category, a.coloringScheme, a.validationScheme, a.filterScheme}), c.active);
        EXPECT_EQ(world.state.coloring.rules.size(), c.active[1] == none ? 0u : c.active[1] == "Own" ? 1u : 2u);
        EXPECT_EQ(world.state.mainSettingsDoc, kNoObject);
        EXPECT_EQ(world.host.firstOpenDocument(), kNoObject);
    }
}

}  // namespace
}  // namespace voka::testing
