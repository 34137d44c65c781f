// Whether a document is accepted as a main settings file: the skeleton
// with each of its elements missing in turn, or one of them out of place;
// and what the preferences dialog lists from the held document.
#include "settings/HostSession.h"
#include "settings/MainSettings.h"
#include "settings/MainSettingsChoice.h"
#include "settings/SettingsDocument.h"

namespace voka {
namespace {

TEST(MainSettingsSkeleton, EveryElementIsRequired) {
    struct Case {
        const char* omit;
        bool filterSchemesInScheme = false;  // the other containers are then not beside it
    };
    const Case cases[] = {{""},
                          {"VKP_MainSettings"},
                          {"SchemeCategories"},
                          {"SchemeCategory"},
                          {"FilterSchemes"},
                          {"ColoringSchemes"},
                          {"ValidationSchemes"},
                          {"ColorList"},
                          {"AttributeList"},
                          {"", true}};
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string("without ") + c.omit + (c.filterSchemesInScheme ? ", filter schemes in a scheme" : ""));
        testing::HostSession session;
        const Handle doc = openSettingsInvisibly(session.host, session.putMaster(c.omit, c.filterSchemesInScheme));
        ASSERT_NE(doc, kNoObject);
        const bool complete = *c.omit == '\0' && !c.filterSchemesInScheme;
        EXPECT_EQ(hasMainSettingsSkeleton(session.host, session.state(), doc), complete);
    }
}

// The part of the preferences dialog filled from the held main settings
// document, on opening and whenever the category changes.
TEST(PreferencesDialogLists, FilledFromTheHeldMainSettings) {
    testing::TempFolder dialogs;
    // Only the items filled from the main settings document.
    std::string resource = "<dialog name=\"vkp_Dialog_LocalSettings\" title=\"VOKA Preferences\">\n"
                           "<item number=\"4\" kind=\"text\" text=\"\"/>\n<item number=\"7\" kind=\"edit\" text=\"\"/>\n";
    for (const int popup : {8, 15, 35, 40}) {
        resource += "<item number=\"" + std::to_string(popup) + "\" kind=\"popup\" state=\"0\"/>\n";
    }
    testing::writeFile(dialogs / "vkp_Dialog_LocalSettings.xml", resource + "</dialog>\n");
    using testing::List;
    struct Case {
        const char* what;
        const char* omit;
        const char* category;  // the default category the dialog shows
        List categories, validation, coloring;
        size_t parties;
        List shown;
    };
    const Case cases[] = {
        {"the default category's schemes", "", "Software", {"Software", "<none>"}, {"Audience check", "<none>"},
         {"By audience", "<none>"}, 30, {}},
        {"an unknown category lists the first category's schemes", "", "Gone", {"Software", "<none>"},
         {"Audience check", "<none>"}, {"By audience", "<none>"}, 30, {}},
        {"no categories at all", "SchemeCategories", "Software", {}, {}, {}, 0,
         {testing::kPrefix +
          "A critical error occurred while reading your main settings file. Please contact Brindel."}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        testing::HostSession session(dialogs.path().string());
        PluginState& state = session.state();
        state.mainSettingsDoc = openSettingsInvisibly(session.host, session.putMaster(c.omit));
        ASSERT_NE(state.mainSettingsDoc, kNoObject);
        const Handle dialog = session.host.openDialogResource("vkp_Dialog_LocalSettings");
        ASSERT_NE(dialog, kNoObject);
        auto labels = [&](int item) { return session.host.itemLabels(dialog, session.host.dialogItem(dialog, item)); };
        session.host.setItemText(dialog, session.host.dialogItem(dialog, kPrefsCategoryTextItem), c.category);

        EXPECT_EQ(refreshPreferencesDialog(session.host, state, dialog), c.shown.empty());
        EXPECT_EQ(labels(kPrefsCategoryListItem), c.categories);
        EXPECT_EQ(labels(kPrefsValidationListItem), c.validation);
        EXPECT_EQ(labels(kPrefsColoringListItem), c.coloring);
        EXPECT_EQ(labels(kPrefsPartyListItem).size(), c.parties);
        EXPECT_EQ(session.shown(), c.shown);
    }
}

}  // namespace
}  // namespace voka
