// The files shipped into every per-user folder: the shared settings
// document must give a new installation working preferences, and the report
// template must declare every entry kind.
#include "frame/Paths.h"
#include "settings/HostSession.h"
#include "settings/Preferences.h"
#include "settings/SettingsDocument.h"

namespace voka {
namespace {

const std::string kResources = VOKA_SOURCE_DIR "/resources/";

TEST(ShippedFiles, SharedSettingsGiveTheShippedPreferences) {
    testing::HostSession session;
    PluginState& state = session.state();
    initializePathsAndState(session.host, state);
    const Handle doc = openSettingsInvisibly(session.host, testing::HostSession::hostPath(kResources + "BR_Settings.fm"));
    ASSERT_NE(doc, kNoObject);
    std::string unused;
    EXPECT_EQ(readSetting(session.host, state, doc, "BR_Settings", "Version2", unused, kSettingInteger), 1);
    ASSERT_TRUE(readPreferences(session.host, state, doc, kNoObject, false, true));
    EXPECT_EQ(state.prefs.masterPath, state.paths.localCopy);
    EXPECT_EQ(state.active.category + "/" + state.active.coloringScheme + "/" + state.active.validationScheme,
              "Software/By audience/Audience check");
    EXPECT_EQ(state.prefs.externalCallDelimiter, "---");
    EXPECT_EQ(state.prefs.filterType, 2);
    for (int rule = 0; rule < 4; ++rule) EXPECT_EQ(state.prefs.validationRuleActive[rule], 1) << rule;
    // Every key can be written back: the group declares them all.
    const Handle group = findElement(session.host, state, doc, kNoObject, "SettingsGroupE", "*", "*", "Main");
    for (const std::string& key : testing::preferenceKeys()) {
        EXPECT_TRUE(writeString(session.host, state, doc, group, key, "x")) << key;
    }
    EXPECT_TRUE(session.shown().empty());
}

TEST(ShippedFiles, ReportTemplateDeclaresEveryEntryKind) {
    testing::HostSession session;
    const Handle doc = openSettingsInvisibly(session.host,
                                             testing::HostSession::hostPath(kResources + "BR_Plugin_Report_Template.fm"));
    ASSERT_NE(doc, kNoObject);
    for (const char* tag : {"SingleLine", "Heading1", "Heading1Hyperlink", "Heading2Hyperlink", "Heading2",
                            "NormalMessage", "HyperlinkMessage", "ShortDate", "LongDate"}) {
        EXPECT_NE(session.host.namedObject(doc, kElementDefinitionObject, tag), kNoObject) << tag;
    }
    EXPECT_NE(session.host.namedObject(doc, kMarkerTypeObject, "Hypertext"), kNoObject);
}

}  // namespace
}  // namespace voka
