// The headless host: a real, in-memory host of the plug-in. It keeps
// documents and books (read from and written to XML files), their element
// trees, text with format overrides and conditions, menus, commands and
// dialogs, and hands everything a person would see or answer to a user
// agent. `voka` and the tests run the plug-in on it.
//
// Beside the host interface it offers what a driver needs: attaching and
// starting the client, invoking commands, delivering notifications and calls
// from other clients, listing the menus the plug-in built, the documents
// themselves for renderers and tests, and dialogs as a user sees them.
//
// Every operation given handle 0 or a handle of a deleted or closed object
// fails with error -1. The error number is kept until the next failure or
// clearError(). A test may make the Nth mutating call fail (failMutation), or
// derive a double from this class and override one operation.
#pragma once

#include "host/Host.h"
#include "host/headless/DialogResource.h"
#include "host/headless/HostObjects.h"
#include "host/headless/Model.h"
#include "host/headless/UserAgent.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <tuple>
#include <unordered_map>
#include <utility>
#include <vector>

#ifndef VOKA_RESOURCE_DIR
#define VOKA_RESOURCE_DIR "resources"
#endif

namespace voka::headless {

struct HostConfig {
    std::string sessionDirectory;  // POSIX folder; the plug-in sees it in host notation
    std::string dialogDirectory = VOKA_RESOURCE_DIR "/dialogs";  // POSIX folder of NAME.xml files
    ValueSeparators valueSeparators;  // over what each vocabulary says
};

// Why the plug-in may not save at a POSIX path, or "" when it may.
using SaveRefusal = std::function<std::string(const std::string& systemPath)>;

// One entry of a menu as the plug-in built it.
struct MenuItem {
    enum class Kind { Menu, Command, Separator };
    Kind kind = Kind::Menu;
    std::string tag;  // menu or command tag, separator name
    std::string label;
    std::string shortcut;
    int number = 0;  // commands
    std::vector<MenuItem> items;  // menus
    bool operator==(const MenuItem&) const = default;
};

struct CommandInfo {
    int number = 0;
    std::string tag;
    std::string label;
    std::string shortcut;
    bool operator==(const CommandInfo&) const = default;
};

// The host's own menus, by the names the plug-in looks them up with.
const std::vector<std::string>& hostMenuNames();

class HeadlessHost : public Host {
public:
    HeadlessHost(HostConfig config, UserAgent& agent);
    ~HeadlessHost() override;
    HeadlessHost(const HeadlessHost&) = delete;
    HeadlessHost& operator=(const HeadlessHost&) = delete;

    // --- Driving the client ---------------------------------------------------
    void attachClient(Client* client) { client_ = client; }
    void startClient();  // initialize(1)
    bool invokeCommand(int number);  // false when no command has that number
    bool invokeCommand(const std::string& tag);
    // Delivers a notification when the client asked for its code; false otherwise.
    bool notifyClient(int code, Handle doc, const std::string& text, int number);
    // Another client calls the plug-in (notification 13); the result is what
    // the plug-in passed to returnValue, or -1 when the call was not delivered.
    int callClientFromOutside(const std::string& message);
    int callClientFromOutside(const std::string& clientName, const std::string& message);
    // Other clients the plug-in may call by name through callClient.
    void registerClient(const std::string& name, Client* client);
    // A refused save fails with a host message, except that saving an
    // unchanged document or book to its own file succeeds without writing:
    // the file already holds it. Without one, every save may happen.
    void setSaveRefusal(SaveRefusal refusal) { saveRefusal_ = std::move(refusal); }
    UserAgent& agent() { return *agent_; }

    // --- What the plug-in defined --------------------------------------------
    // The tree of a host menu ("!MakerMainMenu" ...), or of a menu the plug-in
    // defined, by tag; an empty menu item when there is none.
    MenuItem menu(const std::string& name) const;
    std::vector<CommandInfo> commands() const;  // in definition order
    bool notificationRequested(int code) const { return notifications_.count(code) != 0; }
    const std::vector<std::pair<int, bool>>& notificationRequests() const { return notificationLog_; }

    // --- The model, for renderers, tests and the tree builder ------------------
    const Document* document(Handle doc);
    Document* mutableDocument(Handle doc);
    const Book* book(Handle book);
    // Takes a document built in memory as if it had been opened from `path`
    // (host notation; "" for an untitled document). It becomes visible and active.
    Handle adoptDocument(std::unique_ptr<Document> doc, const std::string& path);
    Handle adoptBook(std::unique_ptr<Book> book, const std::string& path);

    // --- Dialogs as a user sees them -------------------------------------------
    std::vector<Handle> shownDialogs() const;
    Handle shownDialog(const std::string& name) const;  // 0 when none is shown
    std::unique_ptr<DialogUser> dialogUser(Handle dialog);

    // --- Faults for tests -------------------------------------------------------
    // The nth mutating call from now (1 = the next) fails with `error`.
    void failMutation(int nth, int error = kErrorBusy);

    // --- Host interface ----------------------------------------------------------
    int errorNumber() const override { return error_; }
    void clearError() override { error_ = kErrorNone; }

    Handle activeDocument() override;
    Handle activeBook() override;
    bool setActiveDocument(Handle doc) override;
    bool setActiveBook(Handle book) override;
    std::string sessionDirectory() override;
    Handle firstOpenDocument() override;
    Handle nextOpenDocument(Handle doc) override;
    Handle firstOpenBook() override;
    Handle nextOpenBook(Handle book) override;

    Handle open(const std::string& path, const OpenParams& params) override;
    Handle simpleOpen(const std::string& path, bool interactive) override;
    Handle openAsNewDocument(const std::string& path) override;
    Handle simpleSave(Handle docOrBook, const std::string& path, bool interactive) override;
    int close(Handle object, int flags) override;
    std::string path(Handle docOrBook) override;
    std::string title(Handle docOrBook) override;
    bool isModified(Handle docOrBook) override;
    bool setVisible(Handle docOrBook, bool onScreen) override;
    bool isVisible(Handle docOrBook) override;
    void redisplay(Handle doc) override;
    void scrollTo(Handle doc, const TextRange& range) override;

    int intProperty(Handle doc, Handle object, int property) override;
    bool setIntProperty(Handle doc, Handle object, int property, int value) override;
    std::string stringProperty(Handle doc, Handle object, int property) override;
    bool setStringProperty(Handle doc, Handle object, int property, const std::string& value) override;

    Handle firstComponent(Handle book) override;
    Handle nextComponent(Handle book, Handle component) override;
    std::string componentPath(Handle book, Handle component) override;
    bool setComponentPath(Handle book, Handle component, const std::string& path) override;
    Handle newComponent(Handle book, Handle after, const std::string& path) override;
    int updateBook(Handle book) override;

    Handle mainFlow(Handle doc) override;
    Handle firstFlow(Handle doc) override;
    Handle nextFlow(Handle doc, Handle flow) override;
    std::string flowName(Handle doc, Handle flow) override;
    Handle highestLevelElement(Handle doc, Handle flow) override;

    Handle firstChild(Handle doc, Handle element) override;
    Handle lastChild(Handle doc, Handle element) override;
    Handle nextSibling(Handle doc, Handle element) override;
    Handle previousSibling(Handle doc, Handle element) override;
    Handle parent(Handle doc, Handle element) override;
    Handle elementDefinition(Handle doc, Handle element) override;
    bool setElementDefinition(Handle doc, Handle element, Handle definition) override;
    int elementType(Handle doc, Handle element) override;
    TextRange elementTextRange(Handle doc, Handle element) override;
    TextLocation toTextLocation(Handle doc, const ElementLocation& location) override;
    Handle formattingObject(Handle doc, Handle element) override;
    Handle firstParagraph(Handle doc, Handle object) override;
    Handle lastParagraph(Handle doc, Handle object) override;
    Handle elementOfObject(Handle doc, Handle object) override;

    std::string definitionTag(Handle doc, Handle definition) override;
    int definitionType(Handle doc, Handle definition) override;
    Handle firstElementDefinition(Handle doc) override;
    Handle nextElementDefinition(Handle doc, Handle definition) override;
    AttributeDefinitions attributeDefinitions(Handle doc, Handle definition) override;

    Attributes attributes(Handle doc, Handle element) override;
    bool setAttributes(Handle doc, Handle element, const Attributes& attributes) override;
    bool borrowAttributeValues(Handle doc, Handle element, std::vector<std::span<const std::string>>& values) override;

    Handle newElement(Handle doc, Handle definition, const ElementLocation& where) override;
    bool deleteObject(Handle doc, Handle object) override;
    bool addText(Handle doc, const TextLocation& where, const std::string& text) override;
    std::string text(Handle doc, const TextRange& range) override;

    ElementRange elementSelection(Handle doc) override;
    bool setElementSelection(Handle doc, const ElementRange& range) override;
    TextRange textSelection(Handle doc) override;
    bool setTextSelection(Handle doc, const TextRange& range) override;
    // Deletes what is selected (the host's Clear): the selected elements, or
    // the selected text with the elements wholly inside it.
    bool clearSelection(Handle doc) override;

    bool copySelection(Handle doc) override;
    bool paste(Handle doc) override;

    int importElementDefinitions(Handle target, Handle source, int flags) override;
    int importFormats(Handle target, Handle source, int flags) override;

    bool setTextProperty(Handle doc, const TextRange& range, TextProperty property, int value) override;
    int textProperty(Handle doc, const TextLocation& at, TextProperty property) override;

    Handle namedObject(Handle doc, ObjectType type, const std::string& name) override;
    Handle newNamedObject(Handle doc, ObjectType type, const std::string& name) override;
    std::string objectName(Handle doc, Handle object) override;

    bool conditionShown(Handle doc, Handle condition) override;
    bool setConditionShown(Handle doc, Handle condition, bool shown) override;
    bool setTextConditions(Handle doc, const TextRange& range, const std::vector<Handle>& conditions) override;
    std::vector<Handle> textConditions(Handle doc, const TextLocation& at) override;
    TextRange findConditionalText(Handle doc, const TextLocation& from,
                                  const std::vector<std::string>& conditionNames) override;

    Handle firstTable(Handle doc) override;
    Handle nextTable(Handle doc, Handle table) override;
    Handle firstRow(Handle doc, Handle table) override;
    Handle nextRow(Handle doc, Handle row) override;
    bool setRowConditions(Handle doc, Handle row, const std::vector<Handle>& conditions) override;
    std::vector<Handle> rowConditions(Handle doc, Handle row) override;
    bool deleteRows(Handle doc, Handle table, Handle firstRow, int count) override;

    Handle newMarker(Handle doc, const TextLocation& at) override;
    bool setMarkerType(Handle doc, Handle marker, Handle markerType) override;
    bool setMarkerText(Handle doc, Handle marker, const std::string& text) override;
    std::string markerText(Handle doc, Handle marker) override;
    Handle firstMarker(Handle doc) override;
    Handle nextMarker(Handle doc, Handle marker) override;

    Handle firstXRef(Handle doc) override;
    Handle nextXRef(Handle doc, Handle xref) override;
    std::string xrefSourceFile(Handle doc, Handle xref) override;
    bool setXRefSourceFile(Handle doc, Handle xref, const std::string& path) override;

    Handle defineCommand(int number, const std::string& tag, const std::string& label,
                         const std::string& shortcut) override;
    Handle defineMenu(const std::string& tag, const std::string& label) override;
    bool addCommandToMenu(Handle menu, Handle commandOrSeparator) override;
    bool addMenuToMenu(Handle menu, Handle submenu) override;
    bool requestNotification(int code, bool on) override;

    Handle openDialogResource(const std::string& name) override;
    int modalDialog(int dialogNumber, Handle dialog) override;
    int modelessDialog(int dialogNumber, Handle dialog) override;
    Handle dialogItem(Handle dialog, int itemNumber) override;
    std::string dialogTitle(Handle dialog) override;
    bool setDialogTitle(Handle dialog, const std::string& title) override;
    std::string itemText(Handle dialog, Handle item) override;
    bool setItemText(Handle dialog, Handle item, const std::string& text) override;
    int itemState(Handle dialog, Handle item) override;
    bool setItemState(Handle dialog, Handle item, int state) override;
    std::vector<std::string> itemLabels(Handle dialog, Handle item) override;
    bool setItemLabels(Handle dialog, Handle item, const std::vector<std::string>& labels) override;
    std::string itemLabel(Handle dialog, Handle item) override;
    bool setItemLabel(Handle dialog, Handle item, const std::string& label) override;
    bool setItemSensitive(Handle dialog, Handle item, bool sensitive) override;

    int alert(const std::string& message, AlertKind kind) override;
    int promptString(const std::string& prompt, const std::string& initial, std::string& answer) override;
    int chooseFile(const std::string& title, const std::string& directory, const std::string& defaultName, int mode,
                   std::string& chosen) override;
    bool userCancelled() override;

    bool fileExists(const std::string& path) override;
    bool isDirectory(const std::string& path) override;
    bool deleteFile(const std::string& path) override;

    void returnValue(int value) override { returnValue_ = value; }
    int callClient(const std::string& clientName, const std::string& message) override;

protected:
    // Sets the error number and returns `result`: `return fail(kNoObject);`.
    template <class T>
    T fail(T result, int error = kErrorFailed) {
        error_ = error;
        return result;
    }
    // Counts a mutating call; false (with the error set) when it is the one
    // failMutation chose.
    bool mutationAllowed();

private:
    friend class HostDialogUser;

    // A resolved text location: flow, absolute offset, and the element that
    // holds it (kNil outside any element, or when it was not asked for).
    struct Position {
        std::uint16_t flow = 0;
        std::uint32_t offset = 0;
        Index anchor = kNil;
    };

    // Resolution of handles; each sets the error number when it fails.
    OpenDocument* openDocumentSlot(Handle doc);
    Document* liveDocument(Handle doc);     // pending cuts may remain
    Document* settledDocument(Handle doc);  // pending cuts applied
    OpenBook* openBookSlot(Handle book);
    Index liveElement(const Document& doc, Handle element);
    // An element named by its own handle or its formatting object's.
    Index elementOfAnyHandle(const Document& doc, Handle object);
    Index liveIndex(Handle object, int type, std::size_t size);
    Index liveMarker(const Document& doc, Handle marker);
    Index liveXRef(const Document& doc, Handle xref);
    Index liveCondition(const Document& doc, Handle condition);
    std::size_t liveComponent(OpenBook& book, Handle component);
    DialogObject* liveDialog(Handle dialog);
    DialogItem* liveItem(Handle dialog, Handle item);
    bool validObject(Document& doc, Handle object);

    // Finding the holding element walks children; only insertions need it.
    bool resolve(const Document& doc, const TextLocation& location, Position& position, bool findAnchor = false);
    bool resolveRange(const Document& doc, const TextRange& range, Position& begin, Position& end);
    // The text position an element location stands for; false when invalid.
    bool locate(const Document& doc, const ElementLocation& location, Position& position);
    TextLocation relativeTo(const Document& doc, Index element, std::uint32_t offset) const;
    ElementRange deriveElementRange(const Document& doc, const TextRange& text);
    // The selected sibling elements [first, last] of an element range; false when
    // the range selects no whole element.
    bool selectedElements(const Document& doc, const ElementRange& range, Index& first, Index& last);
    void touch(Document& doc) { doc.modified = true; }

    Handle registerDocument(std::unique_ptr<Document> doc, bool visible);
    Handle registerBook(std::unique_ptr<Book> book, bool visible);
    void prepareDocument(Document& doc, const std::string& path);
    void prepareBook(Book& book, const std::string& path);
    void indexComponents(OpenBook& book);
    Handle openFile(const std::string& path, bool visible, bool asNew);
    Handle findOpenDocument(const std::string& path);
    Handle findOpenBook(const std::string& path);
    bool isOpenComponent(const std::string& normalPath);  // a component of a book open in the host
    Handle saveDocumentAs(Handle doc, const std::string& path);
    // The document as its window knows it, without reading a given-away model back.
    Document* documentState(Handle doc);
    // The model of an unchanged, open document for a copy of its file, or null.
    std::unique_ptr<Document> giveAwayModel(const std::string& normalPath);
    // 0 when saveRefusal_ lets the save happen; 1 when it need not
    // (unchanged, in place); -1 after telling why it may not.
    int refuseSave(const std::string& target, bool unchangedInPlace);
    Handle saveBookAs(Handle book, const std::string& path);
    bool closeDialog(Handle dialog);

    int intElementProperty(Document& doc, Index element, Handle object, int property);
    bool setIntElementProperty(Document& doc, Index element, Handle object, int property, int value);
    bool deleteElement(Document& doc, Index element);
    bool removeRows(Document& doc, Index table, Index first, int count);
    Index tableOfRow(const Document& doc, Index row) const;
    Index nextRowAfter(const Document& doc, Index table, Index row) const;
    Index nextTableAfter(const Document& doc, Index element) const;

    void reportDialogText(const DialogObject& dialog);
    bool pressItem(Handle dialog, int itemNumber, int modifiers = 0);
    void deliverDialogEvent(DialogObject& dialog, Handle dialogHandle, int item, bool& keptUp, int modifiers = 0);

    HostConfig config_;
    SaveRefusal saveRefusal_;
    UserAgent* agent_;
    Client* client_ = nullptr;
    std::unordered_map<std::string, Client*> otherClients_;
    int error_ = kErrorNone;
    int returnValue_ = 0;
    std::uint64_t elementSteps_ = 0;
    // Where the plug-in last stepped, for the progress the agent shows.
    Handle stepDoc_ = kNoObject;
    Index stepElement_ = 0;
    Handle stepTo(Handle doc, Index element);
    int mutationCountdown_ = 0;
    int mutationError_ = kErrorBusy;

    std::vector<std::unique_ptr<OpenDocument>> documents_;  // by id - 1; null once closed
    std::map<std::uint64_t, std::uint32_t> documentOrder_;  // opening order -> id
    std::vector<std::unique_ptr<OpenBook>> books_;
    std::map<std::uint64_t, std::uint32_t> bookOrder_;
    std::uint64_t openings_ = 0;
    // One window is in front: a document's or a book's, never both, so a
    // command that falls back from the document to the book sees which.
    void bringToFront(Handle docOrBook) {
        activeDocument_ = objectType(docOrBook) == kDocumentObject ? docOrBook : kNoObject;
        activeBook_ = objectType(docOrBook) == kBookObject ? docOrBook : kNoObject;
    }
    Handle activeDocument_ = kNoObject;
    Handle activeBook_ = kNoObject;
    int untitled_ = 0;
    // Plain storage of session and book properties by (document or book, object, number).
    std::map<std::tuple<Handle, Handle, int>, int> storedInts_;
    std::map<std::tuple<Handle, Handle, int>, std::string> storedStrings_;
    std::unique_ptr<Document> clipboard_;  // copied elements are the children of its root

    std::vector<MenuObject> menus_;  // by id - 1
    std::vector<CommandObject> commands_;
    std::vector<std::string> separators_;
    std::set<int> notifications_;
    std::vector<std::pair<int, bool>> notificationLog_;

    std::map<std::string, DialogSpec, std::less<>> dialogSpecs_;  // loaded resources by name
    std::vector<std::unique_ptr<DialogObject>> dialogs_;  // by id - 1; null once closed
    std::uint32_t nextItemId_ = 1;
};

}  // namespace voka::headless
