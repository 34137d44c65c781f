// The local preferences: defaults of unset keys, and which keys update the
// session at every read and which only at start-up.
#include "frame/Paths.h"
#include "settings/HostSession.h"
#include "settings/Preferences.h"
#include "settings/SettingsDocument.h"

#include <gtest/gtest.h>

namespace voka {
namespace {

using testing::HostSession;
using Values = std::map<std::string, std::string>;

class PreferencesTest : public ::testing::Test {
protected:
    // Opens a shared settings document holding `values` after setting up the paths.
    Handle openWith(const std::optional<Values>& values) {
        initializePathsAndState(session.host, state());
        session.putSharedSettings(testing::SharedSettings{1, 1, values});
        return openSettingsInvisibly(session.host, state().paths.sharedSettings);
    }
    PluginState& state() { return session.state(); }
    HostSession session;
};

TEST_F(PreferencesTest, UnsetAndOddValuesTakeTheirDefaults) {
    struct Case {
        Values values;
        std::function<void(const PluginState&)> check;
        const char* what;
    };
    const Case cases[] = {
        {{}, [](const PluginState& s) { EXPECT_EQ(s.active.category, "<none>"); }, "no category"},
        {{{"DefaultCategory", ""}}, [](const PluginState& s) { EXPECT_EQ(s.active.category, "<none>"); },
         "empty category"},
        {{{"DefaultCategory", "Hardware"}},
         [](const PluginState& s) {
             EXPECT_EQ(s.active.category, "Hardware");
             EXPECT_EQ(s.editorCategory, "Hardware");
         },
         "category"},
        {{}, [](const PluginState& s) { EXPECT_EQ(s.prefs.externalCallDelimiter, "---"); }, "no delimiter"},
        {{{"ExternalCallDelimiter", ";"}}, [](const PluginState& s) { EXPECT_EQ(s.prefs.externalCallDelimiter, ";"); },
         "delimiter"},
        {{}, [](const PluginState& s) { EXPECT_EQ(s.active.coloringScheme, "<none>"); }, "no colouring scheme"},
        {{}, [](const PluginState& s) { EXPECT_EQ(s.active.validationScheme, "<none>"); }, "no validation scheme"},
        {{{"Extra101", "ThisIsAnERROR"}}, [](const PluginState& s) { EXPECT_EQ(s.prefs.extra101, ""); },
         "sentinel party"},
        {{{"MainSettingsDocPath", "<NONE>"}},
         [](const PluginState& s) {
             EXPECT_EQ(s.prefs.masterPath, s.paths.localCopy);
             EXPECT_EQ(s.prefs.pendingMasterPath, s.paths.localCopy);
         },
         "<None> in capitals"},
        {{}, [](const PluginState& s) { EXPECT_EQ(s.prefs.masterPath, "ThisIsAnERROR"); }, "no master path"},
        {{{"MainSettingsDocPath", "\\srv\\main.fm"}},
         [](const PluginState& s) { EXPECT_EQ(s.prefs.masterPath, "\\srv\\main.fm"); }, "master path"},
        {{{"DefaultFilterType", "1"}}, [](const PluginState& s) { EXPECT_EQ(s.prefs.filterType, 1); }, "filter 1"},
        {{{"DefaultFilterType", "3"}}, [](const PluginState& s) { EXPECT_EQ(s.prefs.filterType, 2); }, "filter 3"},
        {{{"DefaultFilterType", "x"}}, [](const PluginState& s) { EXPECT_EQ(s.prefs.filterType, 2); }, "filter x"},
        {{{"AutoValidateAttrs", "1"}}, [](const PluginState& s) { EXPECT_EQ(s.prefs.autoValidate, 1); }, "auto 1"},
        {{{"AutoValidateAttrs", "True"}}, [](const PluginState& s) { EXPECT_EQ(s.prefs.autoValidate, 0); },
         "auto True"},
        {{{"ValRule3Active", "1"}, {"ApplyStrikethroughText", "1"}},
         [](const PluginState& s) {
             EXPECT_EQ(s.prefs.validationRuleActive[2], 1);
             EXPECT_EQ(s.prefs.validationRuleActive[0], 0);
             EXPECT_EQ(s.prefs.applyStrikethrough, 1);
         },
         "rule switches"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const Handle doc = openWith(c.values);
        ASSERT_NE(doc, kNoObject);
        ASSERT_TRUE(readPreferences(session.host, state(), doc, kNoObject, false, true));
        c.check(state());
        EXPECT_TRUE(session.shown().empty());
        session.host.close(doc, kCloseModified);
    }
}

TEST_F(PreferencesTest, StartUpOnlyKeysWaitForTheNextStart) {
    const Handle doc = openWith(Values{{"DefaultColoringScheme", "By audience"},
                                       {"DefaultCategory", "Software"},
                                       {"ValRule1Active", "0"},
                                       {"AutoValidateAttrs", "0"}});
    ASSERT_TRUE(readPreferences(session.host, state(), doc, kNoObject, false, true));
    const Handle group = findElement(session.host, state(), doc, kNoObject, "SettingsGroupE", "*", "*", "Main");
    writeString(session.host, state(), doc, group, "DefaultColoringScheme", "By product");
    writeString(session.host, state(), doc, group, "DefaultCategory", "Hardware");
    writeString(session.host, state(), doc, group, "ValRule1Active", "1");
    writeString(session.host, state(), doc, group, "AutoValidateAttrs", "1");

    // The dialog's accept reads without setting the start-up globals.
    ASSERT_TRUE(readPreferences(session.host, state(), doc, kNoObject, false, false));
    EXPECT_EQ(state().active.coloringScheme, "By audience");
    EXPECT_EQ(state().active.category, "Software");
    EXPECT_EQ(state().prefs.validationRuleActive[0], 1);
    EXPECT_EQ(state().prefs.autoValidate, 1);

    ASSERT_TRUE(readPreferences(session.host, state(), doc, kNoObject, false, true));
    EXPECT_EQ(state().active.coloringScheme, "By product");
    EXPECT_EQ(state().active.category, "Hardware");
}

TEST_F(PreferencesTest, WithoutASettingsGroupNothingIsReadOrWritten) {
    const Handle doc = openWith(std::nullopt);
    state().active.category = "Kept";
    EXPECT_FALSE(readPreferences(session.host, state(), doc, kNoObject, false, true));
    EXPECT_EQ(state().active.category, "Kept");
    EXPECT_FALSE(writePreferences(session.host, state(), doc, kNoObject));
    EXPECT_EQ(session.shown(),
              (std::vector<std::string>{
                  std::string(testing::kPrefix) +
                      "A critical error occurred while reading your local main settings file. Please contact Brindel.",
                  std::string(testing::kPrefix) +
                      "A critical error occurred while reading your local settings file. Please contact Brindel."}));
}

}  // namespace
}  // namespace voka
