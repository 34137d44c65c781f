// The host interface: every operation the plug-in asks of its host, and the
// callbacks the host makes into the plug-in.
//
// The plug-in sees nothing but this header and the standard library. Two hosts
// implement it: the in-memory headless host (src/host/headless) that `voka` and
// the tests run on, and the FrameMaker binding over the FDK. Both keep the
// host's published numbers (object type codes in the top 8 bits of a handle,
// element types, notification codes, error numbers, property numbers), so the
// plug-in may rely on them.
//
// Failure is told the way the host tells it: a 0 handle, an empty value or a
// negative result, with the error number (`FA_errno`) set to -1, or to -88 when
// the host is busy. Nothing here throws. Every operation given handle 0 or a
// handle of a deleted object fails cleanly.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace voka {

using Handle = std::uint32_t;
constexpr Handle kNoObject = 0;

// Object type codes (FO_*), carried in the top 8 bits of every handle.
enum ObjectType : int {
    kSessionObject = 0,
    kBookObject = 2,
    kBookComponentObject = 3,
    kDocumentObject = 4,
    kMarkerObject = 24,
    kFootnoteObject = 25,
    kXRefObject = 26,
    kFlowObject = 30,
    kConditionFormatObject = 34,
    kColorObject = 35,
    kTableObject = 36,
    kRowObject = 38,
    kCellObject = 39,
    kElementDefinitionObject = 41,
    kElementObject = 42,
    kDialogResourceObject = 43,
    kDialogItemObject = 44,
    kMenuObject = 55,
    kCommandObject = 56,
    kMenuSeparatorObject = 57,
    kMarkerTypeObject = 66,
};

inline int objectType(Handle h) { return static_cast<int>(h >> 24); }

// Error numbers (FA_errno).
constexpr int kErrorNone = 0;
constexpr int kErrorFailed = -1;
constexpr int kErrorBusy = -88;
constexpr int kErrorNotFound = -95;

// Element types (FV_FO_*), as reported for an element and its definition.
enum ElementType : int {
    kElementUnspecified = 0,
    kElementContainer = 1,
    kElementSystemVariable = 2,
    kElementXRef = 3,
    kElementMarker = 4,
    kElementFootnote = 5,
    kElementGraphic = 6,
    kElementEquation = 7,
    kElementTable = 8,
    kElementTableTitle = 9,
    kElementTableHeading = 10,
    kElementTableBody = 11,
    kElementTableFooting = 12,
    kElementTableRow = 13,
    kElementTableCell = 14,
};

// Notification codes (FA_Note_*) the plug-in asks for or receives.
enum NotificationCode : int {
    kNotePreQuitDoc = 11,
    kNoteClientCall = 13,
    kNotePreQuitSession = 26,
    kNotePostQuitDoc = 40,
    kNotePostInsertElement = 53,
    kNotePostChangeElement = 55,
    kNotePostWrapElement = 57,
    kNotePostDragElement = 59,
    kNotePostSetAttrValue = 63,
};

// Integer and string properties the plug-in names by number and only passes
// through (FP_*). The headless host keeps any other number as plain storage.
enum PropertyNumber : int {
    kPropUserString = 22,      // string: free per-object text (book component marker)
    kPropUnique = 21,          // integer: the object's unique number, 0 when gone
    kPropLabel = 30,           // string: a document's window title
    kPropIsInFront = 32,       // integer: bring the window to the front
    kPropScreenX = 33,         // integers: a window's place and size, in the host's units
    kPropScreenY = 34,
    kPropScreenWidth = 35,
    kPropScreenHeight = 36,
    kPropIsOnScreen = 110,     // integer: document shown on screen
    kPropDocIsModified = 131,  // integer, read only
    kPropShowAll = 155,        // integer: show all conditional text
    kPropTblTitlePosition = 1289,
    kPropElementBoundaryDisplay = 1484,
    kPropViewBorders = 382,
    kPropViewRulers = 383,
    kPropViewTextSymbols = 388,
    kPropZoom = 387,
    // Element property whose value 1 moves the start of an element's coloured
    // range one character on (the element begins with an anchor character).
    kPropElementBeginAdjust = 1700,
};

// Character properties set over text ranges. The values are the FDK property
// numbers; underlining takes the values of `Underlining`.
enum class TextProperty : int {
    Color = 751,
    Underlining = 608,
    Strikethrough = 609,
    Overline = 610,
    ChangeBar = 611,
};

enum Underlining : int {
    kNoUnderline = 0,
    kSingleUnderline = 1,
    kDoubleUnderline = 2,
    kNumericUnderline = 3,
};

// Attribute kinds of an attribute definition (FV_AT_*).
enum AttributeKind : int {
    kAttrString = 0,
    kAttrStrings = 1,
    kAttrChoices = 2,
    kAttrInteger = 3,
    kAttrIntegers = 4,
    kAttrReal = 5,
    kAttrReals = 6,
    kAttrUniqueId = 7,
    kAttrIdRef = 8,
    kAttrIdRefs = 9,
};

struct Attribute {
    std::string name;
    std::vector<std::string> values;
    bool operator==(const Attribute&) const = default;
};
using Attributes = std::vector<Attribute>;

struct AttributeDefinition {
    std::string name;
    int kind = kAttrString;
    int flags = 0;  // FV_AF_*: 1 read only, 2 hidden, 4 fixed
    std::vector<std::string> choices;
    std::vector<std::string> defaults;
    bool operator==(const AttributeDefinition&) const = default;
};
using AttributeDefinitions = std::vector<AttributeDefinition>;

// A text location names a flow or an element and a byte offset from that
// object's start; kEndOfObject stands for the object's end.
constexpr int kEndOfObject = 0x50000000;

struct TextLocation {
    Handle object = kNoObject;
    int offset = 0;
    bool operator==(const TextLocation&) const = default;
};

struct TextRange {
    TextLocation begin;
    TextLocation end;
    bool operator==(const TextRange&) const = default;
};

// An element location: a position among the children of `parent`, just before
// `child` (0 = after the last child), at `offset` within it.
struct ElementLocation {
    Handle parent = kNoObject;
    Handle child = kNoObject;
    int offset = 0;
    bool operator==(const ElementLocation&) const = default;
};

struct ElementRange {
    ElementLocation begin;
    ElementLocation end;
    bool operator==(const ElementRange&) const = default;
};

// How `open` treats the document (the FDK's open property list, reduced to
// what matters here).
struct OpenParams {
    bool makeVisible = true;   // false: open hidden, as settings documents are
    bool interactive = false;  // false: never ask the user, answer every question with the default
};

// Alert kinds (FF_ALERT_*).
enum AlertKind : int {
    kAlertContinueNote = 2,
    kAlertContinueWarning = 3,  // one Continue button
    kAlertYesDefault = 4,       // Yes/No question: result 0 means Yes
    kAlertNoDefault = 5,
};

// Values a client returns through returnValue (FR_*).
constexpr int kReturnDialogStayUp = -10000;
constexpr int kReturnCancelOperation = -10001;

// Dialog event item numbers below 0 (FV_Dlg*).
constexpr int kDialogEventClose = -1;
// Modifier bit of a dialog event: the item (a scroll list entry) was double-clicked.
constexpr int kEventDoubleClick = 0x100;

// Flags of importElementDefinitions (FF_IED_*) and importFormats (FF_UFF_*).
constexpr int kImportRemoveOverrides = 0x0001;
constexpr int kImportNoNotify = 0x0008;
constexpr int kFormatImportAll = 0xC3FF;

// File chooser modes.
constexpr int kChooseSelect = 0;
constexpr int kChooseOpen = 1;
constexpr int kChooseSave = 2;
constexpr int kChooseOpenDirectory = 3;

constexpr int kCloseModified = 1;  // close even when modified, discarding changes

// The callbacks a host makes into its client, one at a time on its thread.
class Client {
public:
    virtual ~Client() = default;
    virtual void initialize(int initCode) = 0;
    virtual void command(int commandNumber) = 0;
    virtual void notify(int code, Handle document, const std::string& text, int number) = 0;
    virtual void dialogEvent(int dialogNumber, int item, int modifiers) = 0;
};

class Host {
public:
    virtual ~Host() = default;

    // --- Error number -------------------------------------------------------
    virtual int errorNumber() const = 0;
    virtual void clearError() = 0;

    // --- Session, documents and books --------------------------------------
    virtual Handle activeDocument() = 0;
    virtual Handle activeBook() = 0;
    virtual bool setActiveDocument(Handle doc) = 0;
    virtual bool setActiveBook(Handle book) = 0;
    // The per-user settings directory, in host notation, ending with "\".
    virtual std::string sessionDirectory() = 0;
    virtual Handle firstOpenDocument() = 0;
    virtual Handle nextOpenDocument(Handle doc) = 0;
    virtual Handle firstOpenBook() = 0;
    virtual Handle nextOpenBook(Handle book) = 0;

    // Open a document or a book file; the result's type code tells which.
    virtual Handle open(const std::string& path, const OpenParams& params) = 0;
    virtual Handle simpleOpen(const std::string& path, bool interactive) = 0;
    // A new untitled document with the content of the file (duplicate from file).
    virtual Handle openAsNewDocument(const std::string& path) = 0;
    // Save under `path` (the same path or a new one). Returns the handle the
    // caller keeps from then on (a save under a new name names the new file).
    virtual Handle simpleSave(Handle docOrBook, const std::string& path, bool interactive) = 0;
    // Returns 0 on success; kCloseModified discards unsaved changes.
    // Dialogs are closed the same way with flags 0.
    virtual int close(Handle object, int flags) = 0;
    virtual std::string path(Handle docOrBook) = 0;  // full path, "" for untitled
    virtual std::string title(Handle docOrBook) = 0;
    virtual bool isModified(Handle docOrBook) = 0;
    virtual bool setVisible(Handle docOrBook, bool onScreen) = 0;
    virtual bool isVisible(Handle docOrBook) = 0;
    virtual void redisplay(Handle doc) = 0;
    virtual void scrollTo(Handle doc, const TextRange& range) = 0;

    // Host-numbered properties the plug-in passes through by number.
    virtual int intProperty(Handle doc, Handle object, int property) = 0;
    virtual bool setIntProperty(Handle doc, Handle object, int property, int value) = 0;
    virtual std::string stringProperty(Handle doc, Handle object, int property) = 0;
    virtual bool setStringProperty(Handle doc, Handle object, int property, const std::string& value) = 0;

    // Books and their components.
    virtual Handle firstComponent(Handle book) = 0;
    virtual Handle nextComponent(Handle book, Handle component) = 0;
    virtual std::string componentPath(Handle book, Handle component) = 0;
    virtual bool setComponentPath(Handle book, Handle component, const std::string& path) = 0;
    virtual Handle newComponent(Handle book, Handle after, const std::string& path) = 0;
    virtual int updateBook(Handle book) = 0;  // 0 on success

    // Flows.
    virtual Handle mainFlow(Handle doc) = 0;
    virtual Handle firstFlow(Handle doc) = 0;
    virtual Handle nextFlow(Handle doc, Handle flow) = 0;
    virtual std::string flowName(Handle doc, Handle flow) = 0;
    virtual Handle highestLevelElement(Handle doc, Handle flow) = 0;

    // --- Element tree and attributes ---------------------------------------
    virtual Handle firstChild(Handle doc, Handle element) = 0;
    virtual Handle lastChild(Handle doc, Handle element) = 0;
    virtual Handle nextSibling(Handle doc, Handle element) = 0;
    virtual Handle previousSibling(Handle doc, Handle element) = 0;
    virtual Handle parent(Handle doc, Handle element) = 0;
    virtual Handle elementDefinition(Handle doc, Handle element) = 0;
    // Re-assigning an element its own definition makes the host format it
    // from the definition again, dropping character overrides on its text.
    virtual bool setElementDefinition(Handle doc, Handle element, Handle definition) = 0;
    virtual int elementType(Handle doc, Handle element) = 0;
    virtual TextRange elementTextRange(Handle doc, Handle element) = 0;
    virtual TextLocation toTextLocation(Handle doc, const ElementLocation& location) = 0;
    // The object that formats an element (a table, row, cell or footnote has
    // its own, with handle type 36, 38, 39 or 25), and its first and last
    // paragraph as text-location objects.
    virtual Handle formattingObject(Handle doc, Handle element) = 0;
    virtual Handle firstParagraph(Handle doc, Handle object) = 0;
    virtual Handle lastParagraph(Handle doc, Handle object) = 0;
    virtual Handle elementOfObject(Handle doc, Handle object) = 0;

    virtual std::string definitionTag(Handle doc, Handle definition) = 0;
    virtual int definitionType(Handle doc, Handle definition) = 0;
    virtual Handle firstElementDefinition(Handle doc) = 0;
    virtual Handle nextElementDefinition(Handle doc, Handle definition) = 0;
    virtual AttributeDefinitions attributeDefinitions(Handle doc, Handle definition) = 0;

    // Every attribute the element's definition declares, in declaration
    // order, each with its values (empty when unset).
    virtual Attributes attributes(Handle doc, Handle element) = 0;
    virtual bool setAttributes(Handle doc, Handle element, const Attributes& attributes) = 0;
    // The same values without copies, for walks that only compare them: one
    // span per declared attribute, in declaration order, empty when unset.
    // The strings stay the host's and valid until an element, attribute or
    // definition of the document changes or it closes (text and character
    // formats may change meanwhile). False, with `values` empty, when the
    // element is gone.
    virtual bool borrowAttributeValues(Handle doc, Handle element, std::vector<std::span<const std::string>>& values) = 0;

    virtual Handle newElement(Handle doc, Handle definition, const ElementLocation& where) = 0;
    virtual bool deleteObject(Handle doc, Handle object) = 0;
    virtual bool addText(Handle doc, const TextLocation& where, const std::string& text) = 0;
    virtual std::string text(Handle doc, const TextRange& range) = 0;

    virtual ElementRange elementSelection(Handle doc) = 0;
    virtual bool setElementSelection(Handle doc, const ElementRange& range) = 0;
    virtual TextRange textSelection(Handle doc) = 0;
    virtual bool setTextSelection(Handle doc, const TextRange& range) = 0;
    virtual bool clearSelection(Handle doc) = 0;

    // The host's clipboard: copy the selected elements, paste them at the
    // selection (replacing selected elements) or insertion point.
    virtual bool copySelection(Handle doc) = 0;
    virtual bool paste(Handle doc) = 0;

    // Import element definitions (kImportRemoveOverrides drops format
    // overrides in the target) and formats from one document into another.
    virtual int importElementDefinitions(Handle target, Handle source, int flags) = 0;
    virtual int importFormats(Handle target, Handle source, int flags) = 0;

    // --- Text, formats, colours, conditions, markers, tables ---------------
    virtual bool setTextProperty(Handle doc, const TextRange& range, TextProperty property, int value) = 0;
    virtual int textProperty(Handle doc, const TextLocation& at, TextProperty property) = 0;

    // Named objects: colours, condition formats, marker types, element
    // definitions, menus (document 0) and menu separators (document 0).
    virtual Handle namedObject(Handle doc, ObjectType type, const std::string& name) = 0;
    virtual Handle newNamedObject(Handle doc, ObjectType type, const std::string& name) = 0;
    virtual std::string objectName(Handle doc, Handle object) = 0;

    virtual bool conditionShown(Handle doc, Handle condition) = 0;
    virtual bool setConditionShown(Handle doc, Handle condition, bool shown) = 0;
    virtual bool setTextConditions(Handle doc, const TextRange& range, const std::vector<Handle>& conditions) = 0;
    virtual std::vector<Handle> textConditions(Handle doc, const TextLocation& at) = 0;
    // The next range at or after `from` that carries any of the named
    // conditions; an empty range with error kErrorNotFound when there is none.
    virtual TextRange findConditionalText(Handle doc, const TextLocation& from,
                                          const std::vector<std::string>& conditionNames) = 0;

    virtual Handle firstTable(Handle doc) = 0;
    virtual Handle nextTable(Handle doc, Handle table) = 0;
    virtual Handle firstRow(Handle doc, Handle table) = 0;
    virtual Handle nextRow(Handle doc, Handle row) = 0;
    virtual bool setRowConditions(Handle doc, Handle row, const std::vector<Handle>& conditions) = 0;
    virtual std::vector<Handle> rowConditions(Handle doc, Handle row) = 0;
    virtual bool deleteRows(Handle doc, Handle table, Handle firstRow, int count) = 0;

    virtual Handle newMarker(Handle doc, const TextLocation& at) = 0;
    virtual bool setMarkerType(Handle doc, Handle marker, Handle markerType) = 0;
    virtual bool setMarkerText(Handle doc, Handle marker, const std::string& text) = 0;
    virtual std::string markerText(Handle doc, Handle marker) = 0;
    virtual Handle firstMarker(Handle doc) = 0;
    virtual Handle nextMarker(Handle doc, Handle marker) = 0;

    virtual Handle firstXRef(Handle doc) = 0;
    virtual Handle nextXRef(Handle doc, Handle xref) = 0;
    virtual std::string xrefSourceFile(Handle doc, Handle xref) = 0;
    virtual bool setXRefSourceFile(Handle doc, Handle xref, const std::string& path) = 0;

    // --- Menus, commands, notifications -------------------------------------
    virtual Handle defineCommand(int number, const std::string& tag, const std::string& label,
                                 const std::string& shortcut) = 0;
    virtual Handle defineMenu(const std::string& tag, const std::string& label) = 0;
    virtual bool addCommandToMenu(Handle menu, Handle commandOrSeparator) = 0;
    virtual bool addMenuToMenu(Handle menu, Handle submenu) = 0;
    virtual bool requestNotification(int code, bool on) = 0;

    // --- Dialogs --------------------------------------------------------------
    virtual Handle openDialogResource(const std::string& name) = 0;
    // Runs the dialog; events go to Client::dialogEvent with `dialogNumber`.
    virtual int modalDialog(int dialogNumber, Handle dialog) = 0;
    virtual int modelessDialog(int dialogNumber, Handle dialog) = 0;
    virtual Handle dialogItem(Handle dialog, int itemNumber) = 0;
    virtual std::string dialogTitle(Handle dialog) = 0;
    virtual bool setDialogTitle(Handle dialog, const std::string& title) = 0;
    virtual std::string itemText(Handle dialog, Handle item) = 0;
    virtual bool setItemText(Handle dialog, Handle item, const std::string& text) = 0;
    // Check boxes and radio buttons: 1 on, 0 off. Pop-ups and scroll lists:
    // the selected index, -1 for none.
    virtual int itemState(Handle dialog, Handle item) = 0;
    virtual bool setItemState(Handle dialog, Handle item, int state) = 0;
    virtual std::vector<std::string> itemLabels(Handle dialog, Handle item) = 0;
    virtual bool setItemLabels(Handle dialog, Handle item, const std::vector<std::string>& labels) = 0;
    virtual std::string itemLabel(Handle dialog, Handle item) = 0;
    virtual bool setItemLabel(Handle dialog, Handle item, const std::string& label) = 0;
    virtual bool setItemSensitive(Handle dialog, Handle item, bool sensitive) = 0;

    // --- The user: alerts, prompts, file chooser, Esc -------------------------
    // Continue alerts return 0; questions return 0 for Yes, non-zero for No.
    virtual int alert(const std::string& message, AlertKind kind) = 0;
    // 0 and the answer in `answer`, or non-zero when cancelled.
    virtual int promptString(const std::string& prompt, const std::string& initial, std::string& answer) = 0;
    virtual int chooseFile(const std::string& title, const std::string& directory,
                           const std::string& defaultName, int mode, std::string& chosen) = 0;
    // True when the user pressed Esc since the last poll.
    virtual bool userCancelled() = 0;

    // --- Files (the client library's file utilities) -------------------------
    virtual bool fileExists(const std::string& path) = 0;
    virtual bool isDirectory(const std::string& path) = 0;
    virtual bool deleteFile(const std::string& path) = 0;

    // --- Calls between clients ------------------------------------------------
    virtual void returnValue(int value) = 0;
    virtual int callClient(const std::string& clientName, const std::string& message) = 0;
};

}  // namespace voka
