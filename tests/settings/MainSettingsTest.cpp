// Whether a document is accepted as a main settings file: the skeleton
// with each of its elements missing in turn.
#include "settings/HostSession.h"
#include "settings/MainSettings.h"
#include "settings/SettingsDocument.h"

#include <gtest/gtest.h>

namespace voka {
namespace {

TEST(MainSettingsSkeleton, EveryElementIsRequired) {
    const char* omitted[] = {"",
                             "VKP_MainSettings",
                             "SchemeCategories",
                             "SchemeCategory",
                             "FilterSchemes",
                             "ColoringSchemes",
                             "ValidationSchemes",
                             "ColorList",
                             "AttributeList"};
    for (const char* omit : omitted) {
        SCOPED_TRACE(std::string("without ") + omit);
        testing::HostSession session;
        const Handle doc = openSettingsInvisibly(session.host, session.putMaster(omit));
        ASSERT_NE(doc, kNoObject);
        EXPECT_EQ(hasMainSettingsSkeleton(session.host, session.state(), doc), *omit == '\0');
    }
}

TEST(MainSettingsRetrieval, HoldsOneDocumentAndClosesIt) {
    testing::HostSession session;
    PluginState& state = session.state();
    state.prefs.masterPath = session.putMaster();
    const Handle first = openMaster(session.host, state, 1);
    ASSERT_NE(first, kNoObject);
    EXPECT_FALSE(session.host.isVisible(first));
    EXPECT_EQ(state.mainSettingsDoc, first);

    state.paths.localCopy = testing::HostSession::hostPath(session.folder / "copy.fm");
    testing::writeFile(session.folder / "copy.fm", testing::mainSettingsXml());
    const Handle second = openLocalCopy(session.host, state);
    ASSERT_NE(second, kNoObject);
    EXPECT_EQ(testing::openDocumentCount(session.host), 1);

    closeHeldMainSettings(session.host, state);
    EXPECT_EQ(state.mainSettingsDoc, kNoObject);
    EXPECT_EQ(testing::openDocumentCount(session.host), 0);

    // The checked open fails on a missing file without asking the host to open it.
    state.prefs.masterPath = kMissingValue;
    EXPECT_EQ(openMaster(session.host, state, 1), kNoObject);
    EXPECT_TRUE(session.shown().empty());
}

}  // namespace
}  // namespace voka
