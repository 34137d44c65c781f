#include "settings/MainSettingsChoice.h"

#include "frame/Alerts.h"
#include "settings/MainSettings.h"
#include "settings/SettingsDocument.h"

#include <array>

namespace voka {

namespace {

// The "Politics" tab is decorative: its choices are fixed and never stored.
constexpr std::array<const char*, 30> kParties = {
    "Conservative Party",  "Labour Party",    "Liberal Party",     "Social Democratic Party", "Green Party",
    "Christian Democrats", "Socialist Party", "Communist Party",   "Libertarian Party",       "Pirate Party",
    "Agrarian Party",      "Centre Party",    "Progressive Party", "Reform Party",            "Independent",
    "Birthday party",      "Tea party",       "Garden party",      "Dinner party",            "Cocktail party",
    "Block party",         "Costume party",   "Surprise party",    "Pajama party",            "Office party",
    "House party",         "Search party",    "Third party",       "Working party",           "Boarding party",
};

std::vector<std::string> schemeNames(Host& host, PluginState& state, Handle doc, Handle start, const char* tag) {
    std::vector<std::string> names;
    const Handle container = findElement(host, state, doc, start, tag, kWildcard, kWildcard, "Main");
    if (container != kNoObject) names = listChildValues(host, state, doc, container, "Name");
    names.push_back(kNone);
    return names;
}

}  // namespace

std::string shortenedPath(const std::string& path) {
    if (path.size() <= kShownPathLength) return path;
    // The file name at the end says more than the drive at the start.
    return "..." + path.substr(path.size() - (kShownPathLength - 3));
}

bool refreshPreferencesDialog(Host& host, PluginState& state, Handle dialog) {
    const Handle doc = state.mainSettingsDoc;
    const Handle categories = findElement(host, state, doc, kNoObject, "SchemeCategories", kWildcard, kWildcard, "Main");
    if (categories == kNoObject) {
        showMessage(host, "A critical error occurred while reading your main settings file. Please contact Brindel.");
        return false;
    }
    auto item = [&](int number) { return host.dialogItem(dialog, number); };
    host.setItemText(dialog, item(4), shortenedPath(state.prefs.pendingMasterPath));

    std::vector<std::string> categoryNames = listChildValues(host, state, doc, categories, "Name");
    categoryNames.push_back(kNone);
    host.setItemLabels(dialog, item(kPrefsCategoryListItem), categoryNames);

    // An unknown default category makes the scheme lists those of the first
    // category, found from the document root.
    const std::string category = host.itemText(dialog, item(kPrefsCategoryTextItem));
    const Handle chosen = findElement(host, state, doc, categories, "SchemeCategory", "Name", category, "Main");
    host.setItemLabels(dialog, item(kPrefsValidationListItem),
                       schemeNames(host, state, doc, chosen, "ValidationSchemes"));
    host.setItemLabels(dialog, item(kPrefsColoringListItem), schemeNames(host, state, doc, chosen, "ColoringSchemes"));
    host.setItemLabels(dialog, item(kPrefsPartyListItem), {kParties.begin(), kParties.end()});
    return true;
}

int chooseMainSettingsFile(Host& host, PluginState& state, Handle dialog) {
    std::string chosen;
    if (host.chooseFile("Main settings file path", state.prefs.pendingMasterPath, "", kChooseSelect, chosen) != 0 ||
        chosen.empty()) {
        return 0;
    }
    const Handle doc = openSettingsInvisiblyChecked(host, kNoObject, chosen);
    if (doc == kNoObject) {
        showMessage(host, "Unable to open the file you specified. Make sure that you selected a FrameMaker document, "
                          "and that it is a valid main settings document.");
        return 0;
    }
    if (!hasMainSettingsSkeleton(host, state, doc)) {
        // The rejected document stays open, as it always has.
        showMessage(host,
                    "The file you selected does not appear to be a valid main settings file. It may be corrupt, or "
                    "structurally incomplete. A file such as this is likely to crash this software, so it cannot be "
                    "used.\n\nPlease check and fix the file, or select another.");
        return 0;
    }
    if (state.mainSettingsDoc != doc) closeHeldMainSettings(host, state);
    state.mainSettingsDoc = doc;
    state.prefs.pendingMasterPath = chosen;
    refreshPreferencesDialog(host, state, dialog);
    return 1;
}

}  // namespace voka
