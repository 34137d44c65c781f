// Whether a document is accepted as a main settings file: the skeleton
// with each of its elements missing in turn.
#include "settings/HostSession.h"
#include "settings/MainSettings.h"
#include "settings/SettingsDocument.h"

namespace voka {
namespace {

TEST(MainSettingsSkeleton, EveryElementIsRequired) {
    for (const char* omit : {"", "VKP_MainSettings", "SchemeCategories", "SchemeCategory", "FilterSchemes",
                             "ColoringSchemes", "ValidationSchemes", "ColorList", "AttributeList"}) {
        SCOPED_TRACE(std::string("without ") + omit);
        testing::HostSession session;
        const Handle doc = openSettingsInvisibly(session.host, session.putMaster(omit));
        ASSERT_NE(doc, kNoObject);
        EXPECT_EQ(hasMainSettingsSkeleton(session.host, session.state(), doc), *omit == '\0');
    }
}

}  // namespace
}  // namespace voka
