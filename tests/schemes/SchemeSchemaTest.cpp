// The main settings schema as users meet it: rule names that carry their
// position, and the check that refuses a file that is not a main settings
// document before the plug-in relies on its structure.
#include "schemes/SchemeSchema.h"
#include "schemes/SchemeWorld.h"
#include "settings/MainSettingsChoice.h"
#include "settings/SettingsDocument.h"

#include <gtest/gtest.h>

namespace voka::testing {
namespace {

TEST(SchemeSchema, RenumberingRewritesEveryPrefix) {
    World world;
    SchemeSpec scheme{"Print"};
    // Whatever three characters stand in front are replaced: placeholders,
    // copies that kept their old number, a migrated rule.
    for (const char* name : {"yo!Red", "3  Blue", "Hi!Green", "12 Cyan", "1  Red_COPY", "5  A", "6  B", "7  C",
                             "8  D", "9  E", "1  F", "2  G"})
        scheme.rules.push_back({.storedName = name});
    Handle doc = world.holdMainSettings({{"Manuals", {scheme}, {}}});
    Handle schemeElement = findScheme(world.host, world.state, doc, "Manuals", SchemeKind::Coloring, "Print");
    ASSERT_NE(schemeElement, kNoObject);

    EXPECT_EQ(renumberRules(world.host, world.state, doc, schemeElement), 12);
    std::vector<std::string> names;
    for (Handle r = world.host.firstChild(doc, schemeElement); r != kNoObject; r = world.host.nextSibling(doc, r))
        readString(world.host, world.state, doc, r, kAttrName, names.emplace_back());
    EXPECT_EQ(names, (std::vector<std::string>{"1  Red", "2  Blue", "3  Green", "4  Cyan", "5  Red_COPY", "6  A",
                                               "7  B", "8  C", "9  D", "10 E", "11 F", "12 G"}));
}

constexpr const char* kCannotOpen =
    "Unable to open the file you specified. Make sure that you selected a FrameMaker document, and that it is a "
    "valid main settings document.";
constexpr const char* kNotMainSettings =
    "The file you selected does not appear to be a valid main settings file. It may be corrupt, or structurally "
    "incomplete. A file such as this is likely to crash this software, so it cannot be used.\n\nPlease check and "
    "fix the file, or select another.";

TEST(SchemeSchema, ChosenFileMustBeAMainSettingsDocument) {
    struct Case {
        const char* what;
        bool filterSchemes, colorList, exists;
        int result;
        const char* message;
    };
    const std::vector<Case> cases = {
        {"a complete file is taken", true, true, true, 1, nullptr},
        {"a file that does not open", true, true, false, 0, kCannotOpen},
        {"a category without filter schemes", false, true, true, 0, kNotMainSettings},
        {"no colour list", true, false, true, 0, kNotMainSettings},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        World world;
        CategorySpec manuals{"Manuals", {}, {}, true, c.filterSchemes};
        if (c.exists) world.saveMainSettings({manuals}, "chosen.fm", c.colorList);
        world.user.chooseFileAnswer(world.hostPath("chosen.fm"));
        EXPECT_EQ(chooseMainSettingsFile(world.host, world.state, kNoObject), c.result);
        EXPECT_EQ(world.shown(), c.message ? std::vector{prefixed(c.message)} : std::vector<std::string>{});
        EXPECT_EQ(world.state.mainSettingsDoc != kNoObject, c.result == 1);
    }
}

}  // namespace
}  // namespace voka::testing
