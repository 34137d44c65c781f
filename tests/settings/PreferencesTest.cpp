// The local preferences as start-up reads them: defaults of unset and odd
// values, and a shared settings document without its settings group.
#include "frame/Paths.h"
#include "settings/HostSession.h"
#include "settings/Preferences.h"
#include "settings/SettingsDocument.h"

namespace voka {
namespace {

using Values = std::map<std::string, std::string>;

class PreferencesTest : public ::testing::Test {
protected:
    // Opens a shared settings document holding `values` after setting up the paths.
    Handle openWith(const std::optional<Values>& values) {
        initializePathsAndState(session.host, session.state());
        session.putSharedSettings(testing::SharedSettings{1, 1, values});
        return openSettingsInvisibly(session.host, session.state().paths.sharedSettings);
    }
    testing::HostSession session;
};

TEST_F(PreferencesTest, UnsetAndOddValuesTakeTheirDefaults) {
    using Get = std::string (*)(const PluginState&);
    const Get category = [](const PluginState& s) { return s.active.category + "/" + s.editorCategory; };
    const Get master = [](const PluginState& s) {
        return s.prefs.masterPath == s.paths.localCopy && s.prefs.pendingMasterPath == s.paths.localCopy ? "local copy"
                                                                                                       : s.prefs.masterPath;
    };
    const Get numbers = [](const PluginState& s) {
        std::string out = std::to_string(s.prefs.filterType) + std::to_string(s.prefs.autoValidate) +
                          std::to_string(s.prefs.applyStrikethrough) + " ";
        for (int rule : s.prefs.validationRuleActive) out += std::to_string(rule);
        return out;
    };
    struct Case {
        Values values;
        Get get;
        const char* expected;
    };
    const Case cases[] = {
        {{}, category, "<none>/<none>"},
        {{{"DefaultCategory", ""}}, category, "<none>/<none>"},
        {{{"DefaultCategory", "Hardware"}}, category, "Hardware/Hardware"},
        {{}, [](const PluginState& s) { return s.prefs.externalCallDelimiter; }, "---"},
        {{}, [](const PluginState& s) { return s.active.coloringScheme + "/" + s.active.validationScheme; }, "<none>/<none>"},
        {{{"Extra101", "ThisIsAnERROR"}}, [](const PluginState& s) { return s.prefs.extra101; }, ""},
        {{{"MainSettingsDocPath", "<NONE>"}}, master, "local copy"},
        {{}, master, "ThisIsAnERROR"},
        {{{"DefaultFilterType", "1"}, {"AutoValidateAttrs", "1"}}, numbers, "110 0000"},
        {{{"DefaultFilterType", "3"}, {"AutoValidateAttrs", "True"}}, numbers, "200 0000"},
        {{{"DefaultFilterType", "x"}, {"ValRule3Active", "1"}, {"ApplyStrikethroughText", "1"}}, numbers, "201 0010"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.expected);
        const Handle doc = openWith(c.values);
        ASSERT_NE(doc, kNoObject);
        ASSERT_TRUE(readPreferences(session.host, session.state(), doc, kNoObject, false, true));
        EXPECT_EQ(c.get(session.state()), c.expected);
        EXPECT_TRUE(session.shown().empty());
        session.host.close(doc, kCloseModified);
    }
}

TEST_F(PreferencesTest, WithoutASettingsGroupNothingIsReadOrWritten) {
    const Handle doc = openWith(std::nullopt);
    session.state().active.category = "Kept";
    EXPECT_FALSE(readPreferences(session.host, session.state(), doc, kNoObject, false, true));
    EXPECT_EQ(session.state().active.category, "Kept");
    EXPECT_FALSE(writePreferences(session.host, session.state(), doc, kNoObject));
    EXPECT_EQ(session.shown(),
              (testing::List{testing::kPrefix + "A critical error occurred while reading your local main settings "
                                                "file. Please contact Brindel.",
                             testing::kPrefix + "A critical error occurred while reading your local settings file. "
                                                "Please contact Brindel."}));
}

}  // namespace
}  // namespace voka
