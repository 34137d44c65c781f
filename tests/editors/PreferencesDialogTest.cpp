// The preferences dialog before it opens: without a local copy of the main
// settings there is a message and no dialog.
#include "schemes/SchemeWorld.h"
#include "settings/PreferencesDialog.h"

#include <gtest/gtest.h>

namespace voka::testing {
namespace {

TEST(PreferencesDialog, NoLocalCopyMeansAMessageAndNoDialog) {
    World w;
    w.state.paths.localCopy = w.hostPath("gone.fm");
    EXPECT_EQ(0, OpenPreferencesDialog(w.host, w.state));
    const std::vector<std::string> said = w.user.texts(headless::Said::Alert);
    ASSERT_EQ(1u, said.size());
    EXPECT_NE(said.front().find("A critical error occurred opening the local copy of your main settings document."),
              std::string::npos)
        << said.front();
    EXPECT_EQ(kNoObject, w.state.dialogs.preferences);
}

}  // namespace
}  // namespace voka::testing
