#include "plugin/CommandTable.h"

#include "coloring/ColoringMenu.h"
#include "editors/ActiveSchemeDialog.h"
#include "editors/AttributeLibraryEditor.h"
#include "editors/ColorListEditor.h"
#include "filtering/FilterDialog.h"
#include "filtering/FilterRun.h"
#include "filtering/SourceFilter.h"
#include "migration/SiblingMigration.h"
#include "settings/PreferencesDialog.h"
#include "plugin/FrameCommands.h"
#include "validation/ValidationCommands.h"

namespace voka {

namespace {

// The colouring commands carry their action and flags in the colouring menu table.
template <int Command>
void coloring(Host& host, PluginState& state) {
    state.lastCommandResult = colorCommandForMenu(host, state, Command);
}

template <int DialogCode>
void activeScheme(Host& host, PluginState& state) {
    state.lastCommandResult = showActiveSchemeDialog(host, state, DialogCode);
}

// A run that filtered something is done; a failed run keeps its code (106, 107).
template <int Scope>
void filter(Host& host, PluginState& state) {
    const int result = FilterCommand(host, state, Scope);
    const bool failed = result == kFilterRunCopyFailed || result == kFilterRunSameFolder;
    state.lastCommandResult = failed ? result : (result != kFilterRunStopped ? 1 : 0);
}

// A validation that ran to its end is done, whatever it found.
template <int Code, int Progress>
void validate(Host& host, PluginState& state) {
    state.lastCommandResult = Validate(host, state, Code, Progress, kNoObject);
}

void editPreferences(Host& host, PluginState& state) { state.lastCommandResult = OpenPreferencesDialog(host, state); }

void editLibrary(Host& host, PluginState& state) { state.lastCommandResult = OpenAttributeLibrary(host, state); }

void editColors(Host& host, PluginState& state) { state.lastCommandResult = EditMasterColorList(host, state); }

void migrate(Host& host, PluginState& state) {
    MigrationCounts counts;
    state.lastCommandResult = MigrateSiblingSettings(host, state, counts);
}

void restoreDocument(Host& host, PluginState& state) { RestoreDocument(host, state, kNoObject, state.restoreDocOption); }

void restoreBook(Host& host, PluginState& state) { RestoreBook(host, state, kNoObject, state.restoreBookOption); }

// Handlers of later subsystems are attached here, one entry each.
constexpr CommandEntry kCommands[] = {
    {1, "vkp_Test", "Test", "", false, runTestCommand},
    {2, "vkp_SchemeEditor", "Schemes...", "", false, nullptr},
    {3, "vkp_AttributesListEditor", "Attribute Library...", "", false, editLibrary},
    {4, "vkp_ColorsEditor", "Colors...", "", false, editColors},
    {15, "vkp_PreferencesEditor", "Local Preferences...", "", false, editPreferences},
    {5, "vkp_ColorSelection", "Color Selection... (Esc 1 1)", "\\!11", false, coloring<5>},
    {6, "vkp_ColorDoc", "Color Document... (Esc 1 2)", "\\!12", false, coloring<6>},
    {7, "vkp_ColorBook", "Color Book...", "", false, coloring<7>},
    {20, "vkp_UnColorDoc", "Uncolor Document... (Esc 1 3)", "\\!13", true, coloring<20>},
    {21, "vkp_UnColorBook", "Uncolor Book...", "", true, coloring<21>},
    {8, "vkp_SetColorScheme", "Set Active Scheme...", "", false, activeScheme<17>},
    {9, "vkp_FilterDoc", "Filter Document...", "", false, filter<kFilterScopeDocument>},
    {10, "vkp_FilterBook", "Filter Book...", "", false, filter<kFilterScopeBook>},
    {11, "vkp_ValidateSelection", "Validate Selection...", "", false, validate<kValidateSelection, 0>},
    {12, "vkp_ValidateDoc", "Validate Document...", "", false, validate<kValidateDocument, 1>},
    {13, "vkp_ValidateBook", "Validate Book...", "", false, validate<kValidateBook, 1>},
    {14, "vkp_SetValScheme", "Set Active Scheme...", "", false, activeScheme<24>},
    {16, "vkp_RestoreDoc", "Restore Document...", "", false, restoreDocument},
    {17, "vkp_RestoreBook", "Restore Book...", "", false, restoreBook},
    {18, "vkp_MigrateQRV", "Migrate Quorvane Settings...", "", false, migrate},
    {19, "vkp_VOKAHelpAbout", "About VOKA...", "", false, showAboutBox},
};

}  // namespace

std::span<const CommandEntry> commandTable() { return kCommands; }

const CommandEntry* findCommand(int number) {
    for (const CommandEntry& entry : kCommands) {
        if (entry.number == number) return &entry;
    }
    return nullptr;
}

void runCommand(Host& host, PluginState& state, int number) {
    const CommandEntry* entry = findCommand(number);
    if (entry == nullptr) return;
    // A command without a result code of its own counts as done.
    state.lastCommandResult = 0;
    if (entry->overrideWarning && !confirmOverrideWarning(host, state)) return;
    // A command whose handler is not built yet did nothing, and says so by its result.
    if (entry->handler == nullptr) return;
    state.lastCommandResult = 1;
    entry->handler(host, state);
}

}  // namespace voka
