#include "editors/ActiveSchemeDialog.h"

#include "frame/Alerts.h"
#include "frame/Dialogs.h"
#include "schemes/ColoringSchemeReader.h"
#include "schemes/NameLists.h"
#include "schemes/SchemeSchema.h"
#include "settings/MainSettings.h"

#include <array>
#include <string>
#include <vector>

namespace voka {

namespace {

constexpr int kCategoryPopup = 3;
constexpr int kSchemeLabel = 4;
constexpr int kSchemePopup = 6;
constexpr int kCheckBox = 7;

constexpr const char* kCategoryLabel = "Scheme category";
constexpr const char* kColoringLabel = "Coloring scheme";
constexpr const char* kValidationLabel = "Validation scheme";

struct DialogCode {
    int code;
    const char* title;
    bool coloring;
};

constexpr std::array<DialogCode, 6> kCodes = {{
    {13, "Color Document", true},
    {14, "Color Book", true},
    {17, "Set Active Coloring Scheme", true},
    {22, "Validate Document", false},
    {23, "Validate Book", false},
    {24, "Set Active Validation Scheme", false},
}};

const DialogCode* findCode(int code) {
    for (const DialogCode& entry : kCodes) {
        if (entry.code == code) return &entry;
    }
    return nullptr;
}

SchemeKind kindOf(bool coloring) { return coloring ? SchemeKind::Coloring : SchemeKind::Validation; }

std::string& currentScheme(PluginState& state, bool coloring) {
    return coloring ? state.active.coloringScheme : state.active.validationScheme;
}

// The scheme pop-up shows "<none>" for a category without schemes.
std::vector<std::string> schemeChoices(Host& host, PluginState& state, const std::string& category, bool coloring) {
    std::vector<std::string> names = schemeNames(host, state, state.mainSettingsDoc, category, kindOf(coloring));
    if (names.empty()) names.emplace_back(kNone);
    return names;
}

// The current scheme when the list has it, else the first entry.
int schemeSelection(const std::vector<std::string>& choices, const std::string& current) {
    int index = findInList(choices, current, true);
    return index < 0 ? 0 : index;
}

std::string chosenLabel(Host& host, Handle dialog, int item) {
    Handle popup = host.dialogItem(dialog, item);
    std::vector<std::string> labels = host.itemLabels(dialog, popup);
    int index = host.itemState(dialog, popup);
    if (index < 0 || index >= static_cast<int>(labels.size())) return kNone;
    return labels[static_cast<std::size_t>(index)];
}

// Fills the generic dialog with both pop-ups' entries chosen and runs it.
int runDialog(Host& host, PluginState& state, TwoChoiceDialog contents, int categoryIndex, int schemeIndex) {
    contents.select3 = categoryIndex;
    contents.select6 = schemeIndex;
    return showTwoChoiceDialog(host, state, 1, contents);
}

int chooseAndLoad(Host& host, PluginState& state, const DialogCode& code) {
    Handle doc = state.mainSettingsDoc;
    std::vector<std::string> categories;
    // Without categories there is nothing to choose from: the dialog is not opened.
    if (!categoryNames(host, state, doc, categories)) return 0;
    int categoryIndex = findInList(categories, state.active.category, true);
    if (categoryIndex < 0 && !categories.empty()) {
        // The active category was renamed or deleted: fall back to the first.
        state.active.category = categories.front();
        categoryIndex = 0;
    }
    std::vector<std::string> schemes = schemeChoices(host, state, state.active.category, code.coloring);

    TwoChoiceDialog contents;
    contents.title = code.title;
    contents.label1 = kCategoryLabel;
    contents.choices3 = categories;
    contents.label4 = code.coloring ? kColoringLabel : kValidationLabel;
    contents.choices6 = schemes;
    // Both kinds start from the colouring flag; validation stores into its own.
    contents.checkState7 = state.schemeDialog.showBeforeColoring;
    contents.checkLabel7 = code.coloring ? "Show this dialog before coloring actions"
                                         : "Show this dialog before validation actions";

    int shown = runDialog(host, state, contents, categoryIndex,
                          schemeSelection(schemes, currentScheme(state, code.coloring)));
    if (shown != 1) return shown;
    if (!state.dialogs.accepted) return 0;

    Handle dialog = openChoiceDialog(state);
    state.active.category = chosenLabel(host, dialog, kCategoryPopup);
    std::string scheme = chosenLabel(host, dialog, kSchemePopup);
    currentScheme(state, code.coloring) = scheme;
    int checked = host.itemState(dialog, host.dialogItem(dialog, kCheckBox));
    if (code.coloring) {
        state.schemeDialog.showBeforeColoring = checked;
        return ReadColoringScheme(host, state, state.active.category, scheme, 1);
    }
    state.schemeDialog.showBeforeValidation = checked;
    if (state.calls.readValidationScheme == nullptr) return kSchemeLoaded;
    return state.calls.readValidationScheme(host, state, state.active.category, scheme, 1);
}

}  // namespace

int showActiveSchemeDialog(Host& host, PluginState& state, int code) {
    const DialogCode* entry = findCode(code);
    if (entry == nullptr) return 0;
    bool opened = false;
    if (state.mainSettingsDoc == kNoObject) {
        if (openLocalCopy(host, state) == kNoObject) {
            showMainSettingsOpenError(host);
            state.cancel = 1;
            return 0;
        }
        opened = true;
    }
    int result = chooseAndLoad(host, state, *entry);
    if (opened) closeHeldMainSettings(host, state);
    return result;
}

void activeSchemeCategoryChanged(Host& host, PluginState& state) {
    Handle dialog = openChoiceDialog(state);
    if (dialog == kNoObject) return;
    const bool coloring = host.itemLabel(dialog, host.dialogItem(dialog, kSchemeLabel)) == kColoringLabel;
    std::string category = chosenLabel(host, dialog, kCategoryPopup);
    std::vector<std::string> schemes = schemeChoices(host, state, category, coloring);
    Handle popup = host.dialogItem(dialog, kSchemePopup);
    host.setItemLabels(dialog, popup, schemes);
    host.setItemState(dialog, popup, schemeSelection(schemes, currentScheme(state, coloring)));
}

void installActiveSchemeDialog(PluginState& state) { state.calls.showActiveSchemeDialog = &showActiveSchemeDialog; }

}  // namespace voka
