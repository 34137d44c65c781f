#include "settings/Preferences.h"

#include "frame/Alerts.h"
#include "frame/Strings.h"
#include "settings/SettingsDocument.h"

#include <string>

namespace voka {

namespace {

enum class KeyKind { MasterPath, Text, Number, FilterType };

struct PreferenceKey {
    const char* key;
    KeyKind kind;
    const char* fallback;  // text keys: the value when unset
    int item;              // dialog item, 0 when the dialog shows it otherwise
    bool everyRead;        // false: the state follows only at start-up
    bool hideable;         // skipped while the item-hiding switch is on
    void (*apply)(PluginState&, const std::string& text, int number);
};

constexpr PreferenceKey kKeys[] = {
    {"MainSettingsDocPath", KeyKind::MasterPath, "", 0, true, false,
     [](PluginState& s, const std::string& t, int) { s.prefs.masterPath = s.prefs.pendingMasterPath = t; }},
    {"DefaultCategory", KeyKind::Text, kNone, 7, false, false,
     [](PluginState& s, const std::string& t, int) { s.active.category = s.editorCategory = t; }},
    {"ExternalCallDelimiter", KeyKind::Text, "---", 10, false, false,
     [](PluginState& s, const std::string& t, int) { s.prefs.externalCallDelimiter = t; }},
    {"DefaultValidationScheme", KeyKind::Text, kNone, 14, false, false,
     [](PluginState& s, const std::string& t, int) { s.active.validationScheme = t; }},
    {"AutoValidateAttrs", KeyKind::Number, "", 16, true, false,
     [](PluginState& s, const std::string&, int n) { s.prefs.autoValidate = n; }},
    {"ApplyStrikethroughText", KeyKind::Number, "", 17, true, false,
     [](PluginState& s, const std::string&, int n) { s.prefs.applyStrikethrough = n; }},
    {"ValRule1Active", KeyKind::Number, "", 19, true, false,
     [](PluginState& s, const std::string&, int n) { s.prefs.validationRuleActive[0] = n; }},
    {"ValRule2Active", KeyKind::Number, "", 20, true, false,
     [](PluginState& s, const std::string&, int n) { s.prefs.validationRuleActive[1] = n; }},
    {"ValRule3Active", KeyKind::Number, "", 21, true, false,
     [](PluginState& s, const std::string&, int n) { s.prefs.validationRuleActive[2] = n; }},
    {"ValRule4Active", KeyKind::Number, "", 22, true, false,
     [](PluginState& s, const std::string&, int n) { s.prefs.validationRuleActive[3] = n; }},
    {"DefaultFilterType", KeyKind::FilterType, "", kPrefsFilterTypeSourceItem, false, false,
     [](PluginState& s, const std::string&, int n) { s.prefs.filterType = n; }},
    {"DefaultColoringScheme", KeyKind::Text, kNone, 34, false, false,
     [](PluginState& s, const std::string& t, int) { s.active.coloringScheme = t; }},
    {"Extra101", KeyKind::Text, "", 39, true, true,
     [](PluginState& s, const std::string& t, int) { s.prefs.extra101 = t; }},
    {"Extra102", KeyKind::Number, "", 41, true, true,
     [](PluginState& s, const std::string&, int n) { s.prefs.extra102 = n; }},
};

constexpr int kFirstHiddenItem = 36, kLastHiddenItem = 41;

Handle settingsGroup(Host& host, PluginState& state, Handle doc) {
    return findElement(host, state, doc, kNoObject, kSettingsGroupTag, kWildcard, kWildcard, "Main");
}

Handle item(Host& host, Handle dialog, int number) { return host.dialogItem(dialog, number); }

void readKey(Host& host, PluginState& state, Handle doc, Handle group, const PreferenceKey& key, Handle dialog,
             bool fillDialog, bool setGlobals) {
    std::string text;
    int number = 0;
    if (key.kind == KeyKind::Number || key.kind == KeyKind::FilterType) {
        number = readNumber(host, state, doc, group, key.key);
        if (key.kind == KeyKind::FilterType) number = number == 1 ? 1 : 2;
    } else {
        readString(host, state, doc, group, key.key, text);
        if (key.kind == KeyKind::Text && text == kMissingValue) text = key.fallback;
        if (key.kind == KeyKind::MasterPath && equalsIgnoreCase(text, "<None>")) text = state.paths.localCopy;
    }
    if (key.everyRead || setGlobals) key.apply(state, text, number);
    if (!fillDialog || key.item == 0) return;
    if (key.kind == KeyKind::Text) host.setItemText(dialog, item(host, dialog, key.item), text);
    if (key.kind == KeyKind::Number) host.setItemState(dialog, item(host, dialog, key.item), number != 0 ? 1 : 0);
    if (key.kind == KeyKind::FilterType) {
        host.setItemState(dialog, item(host, dialog, kPrefsFilterTypeSourceItem), number == 1 ? 1 : 0);
        host.setItemState(dialog, item(host, dialog, kPrefsFilterTypeDuplicateItem), number == 2 ? 1 : 0);
    }
}

std::string keyValueFromDialog(Host& host, PluginState& state, Handle dialog, const PreferenceKey& key) {
    if (key.kind == KeyKind::MasterPath) return state.prefs.masterPath;
    if (key.kind == KeyKind::Text) return host.itemText(dialog, item(host, dialog, key.item));
    if (key.kind == KeyKind::Number) return host.itemState(dialog, item(host, dialog, key.item)) == 1 ? "1" : "0";
    return host.itemState(dialog, item(host, dialog, kPrefsFilterTypeSourceItem)) == 1 ? "1" : "2";
}

void closeDiscarding(Host& host, Handle& doc) {
    if (doc != kNoObject) host.close(doc, kCloseModified);
    doc = kNoObject;
}

}  // namespace

Handle openSharedSettings(Host& host, PluginState& state) {
    state.sharedSettingsDoc = openSettingsInvisibly(host, state.paths.sharedSettings);
    return state.sharedSettingsDoc;
}

bool readPreferences(Host& host, PluginState& state, Handle doc, Handle dialog, bool fillDialog, bool setGlobals) {
    const Handle group = settingsGroup(host, state, doc);
    if (group == kNoObject) {
        showMessage(host, "A critical error occurred while reading your local main settings file. Please contact "
                          "Brindel.");
        return false;
    }
    const bool hiding = state.itemHidingSwitch != 0;
    for (const PreferenceKey& key : kKeys) {
        if (hiding && key.hideable) continue;
        readKey(host, state, doc, group, key, dialog, fillDialog, setGlobals);
    }
    if (fillDialog && hiding) {
        for (int i = kFirstHiddenItem; i <= kLastHiddenItem; ++i) host.setItemSensitive(dialog, item(host, dialog, i), false);
    }
    return true;
}

bool writePreferences(Host& host, PluginState& state, Handle doc, Handle dialog) {
    const Handle group = settingsGroup(host, state, doc);
    if (group == kNoObject) {
        showMessage(host, "A critical error occurred while reading your local settings file. Please contact Brindel.");
        return false;
    }
    const bool hiding = state.itemHidingSwitch != 0;
    for (const PreferenceKey& key : kKeys) {
        if (hiding && key.hideable) continue;
        writeString(host, state, doc, group, key.key, keyValueFromDialog(host, state, dialog, key));
    }
    return true;
}

void acceptPreferences(Host& host, PluginState& state, Handle dialog) {
    state.prefs.masterPath = state.prefs.pendingMasterPath;
    state.prefs.pendingMasterPath = kNothingName;
    if (state.mainSettingsDoc != kNoObject) {
        // A newly chosen main settings file becomes the local copy at once.
        const Handle saved = host.simpleSave(state.mainSettingsDoc, state.paths.localCopy, false);
        if (saved != kNoObject) state.mainSettingsDoc = saved;
        closeDiscarding(host, state.mainSettingsDoc);
    }
    writePreferences(host, state, state.sharedSettingsDoc, dialog);
    readPreferences(host, state, state.sharedSettingsDoc, dialog, false, false);
    if (state.sharedSettingsDoc != kNoObject) {
        const Handle saved = host.simpleSave(state.sharedSettingsDoc, state.paths.sharedSettings, false);
        if (saved != kNoObject) state.sharedSettingsDoc = saved;
    }
    closeDiscarding(host, state.sharedSettingsDoc);
}

void cancelPreferences(Host& host, PluginState& state) {
    closeDiscarding(host, state.mainSettingsDoc);
    closeDiscarding(host, state.sharedSettingsDoc);
    state.prefs.pendingMasterPath = kNothingName;
}

}  // namespace voka
