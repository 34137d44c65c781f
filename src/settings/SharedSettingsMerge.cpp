#include "settings/SharedSettingsMerge.h"

#include "frame/Alerts.h"
#include "frame/Selection.h"
#include "frame/Strings.h"
#include "settings/Preferences.h"
#include "settings/SettingsDocument.h"

namespace voka {

namespace {

constexpr const char* kBanner = "--- Brindel Consulting message ---\n\n";
constexpr const char* kVersionTag = "BR_Settings";

int version(Host& host, PluginState& state, Handle doc, const char* name) {
    std::string unused;
    return readSetting(host, state, doc, kVersionTag, name, unused, kSettingInteger);
}

// Replaces the settings group of S with the one of T; false when T has none.
bool copySettingsGroup(Host& host, PluginState& state, Handle shared, Handle shipped) {
    auto group = [&](Handle doc) {
        return findElement(host, state, doc, kNoObject, kSettingsGroupTag, kWildcard, kWildcard, "Main");
    };
    const Handle shippedGroup = group(shipped);
    // Going on without a group is safe: nothing is copied, and at start-up the clipboard holds nothing to paste.
    host.setElementSelection(shipped, wholeElement(host, shipped, shippedGroup));
    host.copySelection(shipped);
    const Handle sharedGroup = group(shared);
    if (sharedGroup != kNoObject) {
        host.setElementSelection(shared, wholeElement(host, shared, sharedGroup));
    } else {
        const Handle root = host.highestLevelElement(shared, host.mainFlow(shared));
        host.setElementSelection(shared, ElementRange{{root, kNoObject, 0}, {root, kNoObject, 0}});
    }
    host.paste(shared);
    return shippedGroup != kNoObject;
}

}  // namespace

Handle mergeSharedSettings(Host& host, PluginState& state, const std::string& sharedPath,
                           const std::string& tempPath, const std::string& productName) {
    const Handle shared = openSettingsInvisibly(host, sharedPath);
    const Handle shipped = openSettingsInvisibly(host, tempPath);
    if (shipped == kNoObject) return shared;  // nothing pending, or nothing at all

    // These texts are shared by all of the maker's plug-ins: they carry their
    // own banner, not this plug-in's prefix.
    const std::string welcomeEnd = " Welcome. Please let us know if you have any problems with the software.  " +
                                   std::string(kSupportAddress) + ".";
    if (shared == kNoObject) {
        const Handle created = host.simpleSave(shipped, sharedPath, false);
        if (created == kNoObject) host.close(shipped, kCloseModified);
        showPlainWarning(host, std::string(kBanner) + " It appears that you are initializing a new installation of " +
                                   productName + "." + welcomeEnd);
        // Safe after a failed save too: start-up then stops, and reinstalling puts the shipped file back.
        host.deleteFile(tempPath);
        return created;
    }

    showPlainWarning(host, std::string(kBanner) + "It appears that you are initializing a new or upgrade installation of " +
                               productName + "." + welcomeEnd);
    showPlainWarning(host, productName + " has detected that you have or have had other Brindel plugins installed. "
                                         "All Brindel plugins share a common settings file. " +
                               productName +
                               " will now attempt to merge settings related to this new software into the existing "
                               "settings file.");
    bool merged = true;
    const int shippedVersion1 = version(host, state, shipped, "Version1");
    if (shippedVersion1 > version(host, state, shared, "Version1")) {
        host.importElementDefinitions(shared, shipped, kImportRemoveOverrides | kImportNoNotify);
        writeSetting(host, state, shared, kVersionTag, "Version1", shippedVersion1, "", kSettingInteger);
        host.importFormats(shared, shipped, kFormatImportAll);
    }
    const int shippedVersion2 = version(host, state, shipped, "Version2");
    if (equalsIgnoreCase(productName, "VOKA") && shippedVersion2 > version(host, state, shared, "Version2")) {
        merged = copySettingsGroup(host, state, shared, shipped);
        const Handle root = host.highestLevelElement(shared, host.mainFlow(shared));
        writeString(host, state, shared, root, "Version2", std::to_string(shippedVersion2));
    }
    if (merged) {
        showPlainWarning(host, "The merge appears to have completed successfully. Please contact Brindel if you "
                               "notice anything unusual.");
    } else {
        showPlainWarning(host, "An error appears to have occurred during the merge. Please contact Brindel for "
                               "assistance (" + std::string(kSupportAddress));
    }
    host.close(shipped, kCloseModified);
    host.deleteFile(tempPath);
    const Handle saved = host.simpleSave(shared, sharedPath, false);
    if (saved == kNoObject) host.close(shared, kCloseModified);
    return saved;
}

}  // namespace voka
