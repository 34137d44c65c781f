#include "settings/MainSettings.h"

#include "frame/Alerts.h"
#include "settings/SettingsDocument.h"

namespace voka {

namespace {

// At most one main settings document is held; a new one replaces it.
Handle hold(Host& host, PluginState& state, Handle doc) {
    if (doc == kNoObject) return kNoObject;
    if (state.mainSettingsDoc != kNoObject && state.mainSettingsDoc != doc) {
        host.close(state.mainSettingsDoc, kCloseModified);
    }
    host.setVisible(doc, false);
    state.mainSettingsDoc = doc;
    return doc;
}

}  // namespace

Handle openMaster(Host& host, PluginState& state, int mode) {
    const std::string& path = state.prefs.masterPath;
    const Handle doc =
        mode == 1 ? openSettingsInvisiblyChecked(host, kNoObject, path) : openSettingsInvisibly(host, path);
    return hold(host, state, doc);
}

Handle openLocalCopy(Host& host, PluginState& state) {
    return hold(host, state, openSettingsInvisibly(host, state.paths.localCopy));
}

void closeHeldMainSettings(Host& host, PluginState& state) {
    if (state.mainSettingsDoc == kNoObject) return;
    host.close(state.mainSettingsDoc, kCloseModified);
    state.mainSettingsDoc = kNoObject;
}

Handle retrieveMainSettings(Host& host, PluginState& state) {
    const Handle master = openMaster(host, state, 1);
    if (master != kNoObject) {
        // Saving the master as the local copy refreshes the copy at every start;
        // the saved document is the one kept from here on.
        const Handle saved = host.simpleSave(master, state.paths.localCopy, false);
        if (saved != kNoObject) state.mainSettingsDoc = saved;
        return state.mainSettingsDoc;
    }
    showMessage(host,
                "An error occurred while attempting to retrieve a copy of the main settings document. The plugin "
                "will attempt to open your local copy.\n\nThis problem may be due to an incorrect "
                "path specification in your preferences, or if the file resides on a network, you may be "
                "experiencing network issues.");
    const Handle local = openLocalCopy(host, state);
    if (local == kNoObject) {
        showMessage(host, "A local copy could not be opened either. The plugin is unable to initialize. Please "
                          "contact Brindel.");
        return kNoObject;
    }
    showMessage(host,
                "Your local copy was opened successfully. Most plugin functions will work, but you will not be able "
                "to edit schemes or other main settings information. Check the path specification in your "
                "preferences make sure it is valid.");
    return local;
}

bool hasMainSettingsSkeleton(Host& host, PluginState& state, Handle doc) {
    auto find = [&](Handle start, const char* tag) {
        return findElement(host, state, doc, start, tag, kWildcard, kWildcard, "Main");
    };
    const Handle root = find(kNoObject, "VKP_MainSettings");
    if (root == kNoObject) return false;
    const Handle categories = find(root, "SchemeCategories");
    if (categories == kNoObject) return false;
    const Handle category = find(categories, "SchemeCategory");
    if (category == kNoObject) return false;
    const Handle filterSchemes = find(category, "FilterSchemes");
    if (filterSchemes == kNoObject) return false;
    // The other two containers are looked for under the filter schemes' parent, so that a file whose
    // filter schemes sit deeper than the category's other containers does not pass.
    const Handle holder = host.parent(doc, filterSchemes);
    if (find(holder, "ColoringSchemes") == kNoObject || find(holder, "ValidationSchemes") == kNoObject) return false;
    return find(kNoObject, "ColorList") != kNoObject && find(kNoObject, "AttributeList") != kNoObject;
}

}  // namespace voka
