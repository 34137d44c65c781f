#include "editors/AttributeLibraryEditor.h"

#include "frame/Alerts.h"
#include "schemes/SchemeSchema.h"
#include "settings/MainSettings.h"
#include "settings/SettingsDocument.h"

#include <algorithm>

namespace voka {

namespace {

constexpr const char* kExists = "The item you entered already exists. Please choose another.";
constexpr const char* kNewItem = "{new item}";

struct Library {
    Handle list = kNoObject;         // AttributeList
    std::vector<Handle> attributes;  // its Attribute children, in order
    std::vector<std::string> names;
};

Library readLibrary(Host& host, PluginState& state) {
    Library library;
    const Handle doc = state.library.doc;
    library.list = findElement(host, state, doc, kNoObject, kTagAttributeList, kWildcard, kWildcard, "");
    for (Handle a = library.list == kNoObject ? kNoObject : host.firstChild(doc, library.list); a != kNoObject;
         a = host.nextSibling(doc, a)) {
        if (elementTag(host, doc, a) != kTagAttribute) continue;
        std::string name;
        readString(host, state, doc, a, kAttrName, name);
        library.attributes.push_back(a);
        library.names.push_back(name);
    }
    return library;
}

Handle selectedAttribute(const Library& library, const PluginState& state) {
    const int at = state.library.attribute;
    return at >= 0 && at < static_cast<int>(library.attributes.size()) ? library.attributes[static_cast<std::size_t>(at)]
                                                                        : kNoObject;
}

int clamped(int selection, std::size_t count) {
    if (count == 0) return -1;
    return std::clamp(selection, 0, static_cast<int>(count) - 1);
}

void fill(Host& host, PluginState& state) {
    const Handle dialog = state.library.dialog;
    const Library library = readLibrary(host, state);
    if (library.list == kNoObject) {
        showMainSettingsReadError(host, "attribute list information");
        return;
    }
    auto at = [&](int number) { return host.dialogItem(dialog, number); };
    state.library.attribute = clamped(state.library.attribute, library.names.size());
    host.setItemLabels(dialog, at(kLibAttributes), library.names);
    host.setItemState(dialog, at(kLibAttributes), state.library.attribute);
    const Handle selected = selectedAttribute(library, state);
    const std::vector<std::string> values =
        selected == kNoObject ? std::vector<std::string>{} : readList(host, state.library.doc, selected, kAttrValues, false);
    state.library.value = clamped(state.library.value, values.size());
    host.setItemLabels(dialog, at(kLibValues), values);
    host.setItemState(dialog, at(kLibValues), state.library.value);
    const bool hasAttribute = selected != kNoObject, hasValue = state.library.value >= 0;
    for (int number : {kLibAttributeEdit, kLibAttributeDelete, kLibAttributeUp, kLibAttributeDown, kLibValueAdd})
        host.setItemSensitive(dialog, at(number), hasAttribute);
    for (int number : {kLibValueEdit, kLibValueDelete, kLibValueUp, kLibValueDown})
        host.setItemSensitive(dialog, at(number), hasValue);
}

// The user's answer to the prompt, or "" when cancelled or left empty.
std::string ask(Host& host, const std::string& prompt, const std::string& proposed) {
    std::string answer;
    if (host.promptString(prompt, proposed, answer) != 0) return "";
    return answer;
}

Handle appendAttribute(Host& host, Handle doc, Handle list, const Attributes& attributes, Handle before) {
    const Handle definition = host.namedObject(doc, kElementDefinitionObject, kTagAttribute);
    if (definition == kNoObject) return kNoObject;
    const Handle made = host.newElement(doc, definition, ElementLocation{list, before, 0});
    if (made != kNoObject) host.setAttributes(doc, made, attributes);
    return made;
}

void editAttribute(Host& host, PluginState& state, bool add) {
    const Library library = readLibrary(host, state);
    const Handle selected = selectedAttribute(library, state);
    if (library.list == kNoObject || (!add && selected == kNoObject)) return;
    const std::string current = add ? kNewItem : library.names[static_cast<std::size_t>(state.library.attribute)];
    const std::string answer = ask(host, add ? "New attribute?" : "Edit attribute name?", current);
    if (answer.empty()) return;
    if (std::find(library.names.begin(), library.names.end(), answer) != library.names.end()) {
        showMessage(host, kExists);
        return;
    }
    const Handle doc = state.library.doc;
    if (add) {
        appendAttribute(host, doc, library.list, {{kAttrName, {answer}}}, kNoObject);
        state.library.attribute = static_cast<int>(library.names.size());
        state.library.value = 0;
    } else {
        writeString(host, state, doc, selected, kAttrName, answer);
    }
}

void editValue(Host& host, PluginState& state, bool add) {
    const Library library = readLibrary(host, state);
    const Handle selected = selectedAttribute(library, state);
    if (selected == kNoObject) return;
    const Handle doc = state.library.doc;
    std::vector<std::string> values = readList(host, doc, selected, kAttrValues, false);
    const int at = state.library.value;
    if (!add && (at < 0 || at >= static_cast<int>(values.size()))) return;
    const std::string answer =
        ask(host, add ? "New value?" : "Edit current value?", add ? kNewItem : values[static_cast<std::size_t>(at)]);
    if (answer.empty()) return;
    if (std::find(values.begin(), values.end(), answer) != values.end()) {
        showMessage(host, kExists);
        return;
    }
    if (add) {
        values.push_back(answer);
        state.library.value = static_cast<int>(values.size()) - 1;
        writeList(host, state, doc, selected, kAttrValues, values);
        return;
    }
    // The value is replaced in place, and the element's attributes written back whole.
    values[static_cast<std::size_t>(at)] = answer;
    Attributes all = host.attributes(doc, selected);
    for (Attribute& attribute : all)
        if (attribute.name == kAttrValues) attribute.values = values;
    host.setAttributes(doc, selected, all);
}

void deleteAttribute(Host& host, PluginState& state) {
    const Library library = readLibrary(host, state);
    const Handle selected = selectedAttribute(library, state);
    if (selected != kNoObject) host.deleteObject(state.library.doc, selected);
}

void deleteValue(Host& host, PluginState& state) {
    const Library library = readLibrary(host, state);
    const Handle selected = selectedAttribute(library, state);
    if (selected == kNoObject) return;
    std::vector<std::string> values = readList(host, state.library.doc, selected, kAttrValues, false);
    const int at = state.library.value;
    if (at < 0 || at >= static_cast<int>(values.size())) return;
    const std::string text = values[static_cast<std::size_t>(at)];
    values.erase(std::remove(values.begin(), values.end(), text), values.end());
    writeList(host, state, state.library.doc, selected, kAttrValues, values);
}

// An attribute moves one place among its siblings: made again at its new
// place with the same attributes, the old one deleted (it has no children).
void moveAttribute(Host& host, PluginState& state, int step) {
    const Library library = readLibrary(host, state);
    const int at = state.library.attribute, to = at + step;
    if (at < 0 || to < 0 || to >= static_cast<int>(library.attributes.size())) return;
    const Handle doc = state.library.doc, moving = library.attributes[static_cast<std::size_t>(at)];
    const Handle before = step < 0 ? library.attributes[static_cast<std::size_t>(to)]
                                   : host.nextSibling(doc, library.attributes[static_cast<std::size_t>(to)]);
    if (appendAttribute(host, doc, library.list, host.attributes(doc, moving), before) == kNoObject) return;
    host.deleteObject(doc, moving);
    state.library.attribute = to;
}

void moveValue(Host& host, PluginState& state, int step) {
    const Library library = readLibrary(host, state);
    const Handle selected = selectedAttribute(library, state);
    if (selected == kNoObject) return;
    std::vector<std::string> values = readList(host, state.library.doc, selected, kAttrValues, false);
    const int at = state.library.value, to = at + step;
    if (at < 0 || to < 0 || to >= static_cast<int>(values.size())) return;
    std::swap(values[static_cast<std::size_t>(at)], values[static_cast<std::size_t>(to)]);
    writeList(host, state, state.library.doc, selected, kAttrValues, values);
    state.library.value = to;
}

void save(Host& host, PluginState& state) {
    const Handle doc = state.library.doc;
    const bool saved = host.simpleSave(doc, host.path(doc), false) != kNoObject &&
                       host.simpleSave(doc, state.paths.localCopy, false) != kNoObject;
    state.library.saved = saved;
}

}  // namespace

int OpenAttributeLibrary(Host& host, PluginState& state) {
    const Handle doc = state.mainSettingsDoc != kNoObject ? state.mainSettingsDoc : openMaster(host, state, 1);
    if (doc == kNoObject) {
        showMainSettingsOpenError(host);
        return 0;
    }
    const Handle dialog = host.openDialogResource("vkp_Dialog_AttributeList");
    if (dialog == kNoObject) {
        showDialogError(host);
        closeHeldMainSettings(host, state);
        return 0;
    }
    state.library = LibraryEditorState{dialog, doc, 0, 0, false};
    fill(host, state);
    host.modalDialog(kAttributeLibraryDialogNumber, dialog);
    host.close(dialog, 0);
    const bool saved = state.library.saved;
    state.library = LibraryEditorState{};
    // Saved or not, the main settings are released; unsaved edits go with them.
    closeHeldMainSettings(host, state);
    return saved ? 1 : 0;
}

void attributeLibraryEvent(Host& host, PluginState& state, int itemNumber, int modifiers) {
    if (state.library.dialog == kNoObject) return;
    const Handle dialog = state.library.dialog;
    const bool doubleClick = (modifiers & kEventDoubleClick) != 0;
    switch (itemNumber) {
    case kLibAttributes:
        state.library.attribute = host.itemState(dialog, host.dialogItem(dialog, kLibAttributes));
        state.library.value = 0;
        if (doubleClick) editAttribute(host, state, false);
        break;
    case kLibValues:
        state.library.value = host.itemState(dialog, host.dialogItem(dialog, kLibValues));
        if (doubleClick) editValue(host, state, false);
        break;
    case kLibAttributeAdd: editAttribute(host, state, true); break;
    case kLibAttributeEdit: editAttribute(host, state, false); break;
    case kLibAttributeDelete: deleteAttribute(host, state); break;
    case kLibAttributeUp: moveAttribute(host, state, -1); break;
    case kLibAttributeDown: moveAttribute(host, state, 1); break;
    case kLibValueAdd: editValue(host, state, true); break;
    case kLibValueEdit: editValue(host, state, false); break;
    case kLibValueDelete: deleteValue(host, state); break;
    case kLibValueUp: moveValue(host, state, -1); break;
    case kLibValueDown: moveValue(host, state, 1); break;
    case kLibSave: save(host, state); return;
    default: return;  // Cancel and closing: the release follows the modal run
    }
    fill(host, state);
}

}  // namespace voka
