// Everything the plug-in remembers for the length of a host session, in one
// object. The plug-in instance owns it and hands it by reference to every
// subsystem; there are no other mutable globals, so a test may run as many
// plug-ins side by side as it likes.
//
// This header holds plain records only. Each subsystem owns the meaning of
// its fields; startingState() gives every field its value at start-up.
#pragma once

#include "host/Host.h"

#include <string>
#include <vector>

namespace voka {

inline constexpr const char* kNone = "<none>";
inline constexpr const char* kNothingName = "NihilNadaNothing";
inline constexpr const char* kMissingValue = "ThisIsAnERROR";

// Colour-id markers of a coloring rule; never valid colour handles.
inline constexpr Handle kRefreshEddColor = 666;
inline constexpr Handle kSkipColor = 667;

// One loaded coloring rule, in scheme order.
struct ColorRule {
    std::string colorName;
    Handle colorId = 0;  // resolved per document; 666, 667 or 0 as markers
    int style = 0;
    int override = 0;
    int matchAll = 0;
    Attributes conditions;  // attribute name and the values to match
};

struct SchemeOptions {
    int includeEddDefaults = 0;
    int spaceDelimited = 0;
    int ignoreCase = 0;
    int processAllFlows = 0;
};

struct ColoringScheme {
    SchemeOptions options;
    std::vector<ColorRule> rules;
    bool loaded = false;
};

// One condition of the loaded filter scheme: an element that has the
// attribute must carry one of the values (or a keyword that holds) to stay.
struct FilterRule {
    std::string attribute;
    std::vector<std::string> values;  // may hold "<no value>" and "<any value>"
};

struct FilterScheme {
    SchemeOptions options;
    std::vector<FilterRule> rules;
};

// A validation scheme: the attributes it checks, each with its valid values
// (which may hold "<no value>").
struct ValidationRule {
    std::string attribute;
    std::vector<std::string> values;
};

struct ValidationScheme {
    SchemeOptions options;
    std::vector<ValidationRule> rules;
};

// One error a validation run wrote into the report, kept beside it for a
// driver that prints findings (voka validate): the rule (1 to 4), where, and
// the report's message for it.
struct ValidationFinding {
    int rule = 0;
    Handle doc = kNoObject;
    Handle element = kNoObject;
    std::string attribute;
    std::string value;  // the offending value; "" for rules 3 and 4
    std::string message;
};

// Positions in PluginState::filteringOptions, in the order external calls
// name them: save the originals first, remove the colouring, world peace.
inline constexpr int kFilterSaveFirstOption = 0;
inline constexpr int kFilterRemoveColoringOption = 1;
inline constexpr int kFilterWorldPeaceOption = 2;

// Filter types: hide in the source file, or delete in a duplicate.
inline constexpr int kFilterSourceFile = 1;
inline constexpr int kFilterDuplicateFile = 2;

// What a filter works on: a document or a book.
inline constexpr int kFilterScopeDocument = 3;
inline constexpr int kFilterScopeBook = 4;

// What a filter run works on, set before it starts.
struct FilterRunSettings {
    Handle target = kNoObject;  // the document or book; replaced by the saved, duplicated or moved one
    int scope = kFilterScopeDocument;
    std::string bookFolder = kNone;  // a duplicate book's destination, ending with "\"
    std::string originalBookPath;
    Handle dialog = kNoObject;  // the filter dialog while it is up
    bool runRequested = false;  // the dialog was left through OK
};

// The pre-order walk shared by settings lookups, colouring, filtering and
// validation; it must not be interleaved.
enum class WalkDirection { Down, Across, Up };

struct WalkState {
    WalkDirection direction = WalkDirection::Down;
    int enabled = 1;
};

struct Paths {
    std::string folder;               // "<session dir>Brindel\"
    std::string sharedSettings;       // BR_Settings.fm
    std::string tempSharedSettings;   // BR_Settings_TEMPVOKA.fm
    std::string localCopy;            // VOKA_MainSettings_LocalCopy.fm
    std::string reportTemplate;       // BR_Plugin_Report_Template.fm
    std::string report;               // VOKA_Plugin_Report.fm
};

struct Preferences {
    std::string masterPath = kMissingValue;
    std::string pendingMasterPath = kNothingName;
    std::string externalCallDelimiter;
    std::string extra101;
    int extra102 = 0;
    int autoValidate = 0;
    int applyStrikethrough = 0;
    int validationRuleActive[4] = {0, 0, 0, 0};
    int filterType = 2;
};

struct ActiveNames {
    std::string category = kNone;
    std::string coloringScheme = kNone;
    std::string validationScheme = kNone;
    std::string filterScheme = kNone;
    std::string filterName2 = kNone;
    std::string filterName3 = kNone;
};

struct ColoringOptions {
    int warnMissingColors = 1;
    int saveView = 0;
    int diagnostics = 0;
};

struct SchemeDialogOptions {
    int showBeforeColoring = 1;
    int showBeforeValidation = 1;
};

// The generic dialogs leave their results here for the caller.
struct DialogState {
    Handle status = kNoObject;  // the open status dialog, if any
    Handle choice = kNoObject;  // the open one- or two-choice dialog
    bool accepted = false;      // the last modal generic dialog ended with OK
    bool listAccepted = false;
    std::vector<std::string> editedList;
    // Drop-down dialogs and list editors take the caller's dialog number;
    // it is kept so that their OK and Cancel still reach the generic handler.
    int dropDownNumber = 0;
    Handle listEditor = kNoObject;  // the list editor being run, if any
    int listEditorNumber = 0;
    std::string listAddPrompt, listRenamePrompt;  // what its Add and Rename buttons ask
    Handle preferences = kNoObject;  // the preferences dialog while it runs
};

// The attribute library editor while it runs: its dialog, the main settings
// it edits, and the selections of its two lists (-1 for none).
struct LibraryEditorState {
    Handle dialog = kNoObject;
    Handle doc = kNoObject;
    int attribute = 0;
    int value = 0;
    bool saved = false;
};

struct PluginState;

// Entry points of subsystems that sit above their callers (the active scheme
// dialog is shown before colouring and validation, and loads validation
// schemes). The plug-in sets them at start-up; null means not available.
struct LateBoundCalls {
    int (*showActiveSchemeDialog)(Host& host, PluginState& state, int code) = nullptr;
    int (*readValidationScheme)(Host& host, PluginState& state, const std::string& category,
                                const std::string& scheme, int interactive) = nullptr;
};

struct PluginState {
    // About box and debugging.
    std::string compileDate;
    std::string version;
    int debugLevel = 3;
    int itemHidingSwitch = 0;
    int filterPassFlag = 0;

    Paths paths;
    Preferences prefs;
    ActiveNames active;

    // Settings documents held between steps of one command (never between commands).
    Handle sharedSettingsDoc = kNoObject;
    Handle mainSettingsDoc = kNoObject;

    // Last-error code of the settings library and the book transport (200-224).
    int settingsError = 0;
    // The settings library's shared list: typed list reads land here and
    // typed list writes take their values from here.
    std::vector<std::string> settingsList;
    int lastColoringError = 0;

    // Scheme editor names and defaults.
    std::string editorName1 = kNothingName;
    std::string editorName2 = kNothingName;
    std::string editorDefaultName = "Filter";
    // The scheme editor's chosen category: set from the preferences at start
    // together with the active category, then kept apart from it.
    std::string editorCategory = kNone;

    int restoreDocOption = 1;
    int restoreBookOption = 1;
    int overrideWarningPending = 1;
    ColoringOptions coloringOptions;
    int filteringOptions[4] = {1, 0, 0, 0};  // by the kFilter...Option positions
    SchemeDialogOptions schemeDialog;

    std::vector<std::string> schemeEditorList;
    std::vector<std::string> filterFileList;
    std::vector<std::string> validationRuleList;

    ColoringScheme coloring;
    FilterScheme filter;
    ValidationScheme validation;
    Handle report = kNoObject;  // the plug-in report of the validation command running
    std::vector<ValidationFinding> validationFindings;  // of the last validation command, in report order
    FilterRunSettings filterRun;
    int filterDiagnostics = 0;  // off at start-up; no command turns it on
    WalkState walk;
    int cancel = 0;

    DialogState dialogs;
    LibraryEditorState library;

    // The client-call probe keeps its last answers as defaults.
    std::string probeClient;
    std::string probeMessage;

    LateBoundCalls calls;

    // The result code of the last menu command (1 done, 0 nothing done,
    // 102-108 as the colouring commands tell), for a host that reports it.
    int lastCommandResult = 0;
};

}  // namespace voka
