#include "editors/ColorListEditor.h"

#include "frame/Alerts.h"
#include "frame/Dialogs.h"
#include "schemes/SchemeSchema.h"
#include "settings/MainSettings.h"
#include "settings/SettingsDocument.h"

namespace voka {

std::vector<std::string> colorChoices(Host& host, PluginState& state, Handle doc, bool withSpecials,
                                      bool withPlaceholder) {
    const Handle list = findElement(host, state, doc, kNoObject, kTagColorList, kWildcard, kWildcard, "");
    std::vector<std::string> choices = list == kNoObject ? std::vector<std::string>{}
                                                         : readList(host, doc, list, kAttrNames, false);
    if (withSpecials) {
        choices.push_back(kSkipName);
        choices.push_back(kRefreshEddName);
    }
    if (withPlaceholder) choices.push_back("Placeholder");
    return choices;
}

int EditMasterColorList(Host& host, PluginState& state) {
    const Handle doc = state.mainSettingsDoc != kNoObject ? state.mainSettingsDoc : openMaster(host, state, 1);
    if (doc == kNoObject) {
        showMainSettingsOpenError(host);
        return 0;
    }
    const Handle list = findElement(host, state, doc, kNoObject, kTagColorList, kWildcard, kWildcard, "");
    if (list == kNoObject) {
        showMainSettingsReadError(host, "color list information");
        closeHeldMainSettings(host, state);
        return 0;
    }
    int saved = 0;
    showStringsListEditor(host, state, kListEditorDialogNumber, "Master Color List", readList(host, doc, list, kAttrNames, false),
                          false, "New color?", "New color name?");
    if (state.dialogs.listAccepted) {
        writeList(host, state, doc, list, kAttrNames, state.dialogs.editedList);
        saved = host.simpleSave(doc, host.path(doc), false) != kNoObject ? 1 : 0;
    }
    closeHeldMainSettings(host, state);
    return saved;
}

}  // namespace voka
