// The report template shipped into every per-user folder must declare every
// entry kind.
#include "settings/HostSession.h"
#include "settings/SettingsDocument.h"

namespace voka {
namespace {

TEST(ShippedFiles, ReportTemplateDeclaresEveryEntryKind) {
    testing::HostSession session;
    const Handle doc = openSettingsInvisibly(session.host,
                                             testing::HostSession::hostPath(VOKA_SOURCE_DIR "/resources/BR_Plugin_Report_Template.fm"));
    ASSERT_NE(doc, kNoObject);
    for (const char* tag : {"SingleLine", "Heading1", "Heading1Hyperlink", "Heading2Hyperlink", "Heading2",
                            "NormalMessage", "HyperlinkMessage", "ShortDate", "LongDate"}) {
        EXPECT_NE(session.host.namedObject(doc, kElementDefinitionObject, tag), kNoObject) << tag;
    }
    EXPECT_NE(session.host.namedObject(doc, kMarkerTypeObject, "Hypertext"), kNoObject);
}

}  // namespace
}  // namespace voka
