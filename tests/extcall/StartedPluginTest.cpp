// A started plug-in answers other clients with the delimiter its local
// preferences give, "---" when they name none.
#include "settings/HostSession.h"

namespace voka::testing {
namespace {

TEST(StartedPlugin, AnswersCallsSplitByThePreferencesDelimiter) {
    HostSession session;
    const std::string master = session.putMaster();
    session.putSharedSettings(SharedSettings{1, 1, std::map<std::string, std::string>{{"MainSettingsDocPath", master}}});
    session.host.startClient();
    ASSERT_TRUE(session.plugin.started());
    EXPECT_EQ(session.host.callClientFromOutside("Hello"), 1);
    EXPECT_EQ(session.host.callClientFromOutside("VOKA", "SetParm---Filter_Type---Source"), 1);
    EXPECT_EQ(session.state().prefs.filterType, kFilterSourceFile);
    EXPECT_EQ(session.host.callClientFromOutside("SetParm---Filter_Type---Q"), 110);
    EXPECT_EQ(openDocumentCount(session.host), 0);
}

}  // namespace
}  // namespace voka::testing
