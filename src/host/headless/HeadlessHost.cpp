#include "host/headless/HeadlessHost.h"

#include "host/headless/HostPaths.h"
#include "host/headless/persist/Persist.h"

#include "host/headless/Handles.h"

namespace voka::headless {

const std::vector<std::string>& hostMenuNames() {
    static const std::vector<std::string> names = {"!MakerMainMenu", "!BookMainMenu", "!StructureContextMenu",
                                                   "!TableTextContextMenu", "!StructuredTextContextMenu"};
    return names;
}

HeadlessHost::HeadlessHost(HostConfig config, UserAgent& agent) : config_(std::move(config)), agent_(&agent) {
    for (const std::string& name : hostMenuNames()) {
        MenuObject menu;
        menu.tag = name;
        menu.label = name;
        menu.hostMenu = true;
        menus_.push_back(std::move(menu));
    }
}

HeadlessHost::~HeadlessHost() = default;

void HeadlessHost::failMutation(int nth, int error) {
    mutationCountdown_ = nth;
    mutationError_ = error;
}

bool HeadlessHost::mutationAllowed() {
    if (mutationCountdown_ <= 0) return true;
    if (--mutationCountdown_ > 0) return true;
    error_ = mutationError_;
    return false;
}

// --- Driving the client ------------------------------------------------------

void HeadlessHost::startClient() {
    if (client_) client_->initialize(1);
}

bool HeadlessHost::invokeCommand(int number) {
    if (!client_) return false;
    for (const CommandObject& command : commands_) {
        if (command.number != number) continue;
        client_->command(number);
        return true;
    }
    return false;
}

bool HeadlessHost::invokeCommand(const std::string& tag) {
    for (const CommandObject& command : commands_)
        if (command.tag == tag) return invokeCommand(command.number);
    return false;
}

bool HeadlessHost::notifyClient(int code, Handle doc, const std::string& text, int number) {
    if (!client_ || !notificationRequested(code)) return false;
    client_->notify(code, doc, text, number);
    return true;
}

int HeadlessHost::callClientFromOutside(const std::string& message) {
    if (!client_ || !notificationRequested(kNoteClientCall)) return -1;
    const int saved = returnValue_;
    returnValue_ = 0;
    client_->notify(kNoteClientCall, kNoObject, message, 0);
    const int result = returnValue_;
    returnValue_ = saved;
    return result;
}

int HeadlessHost::callClientFromOutside(const std::string& clientName, const std::string& message) {
    return callClientFromOutside(message);
}

void HeadlessHost::registerClient(const std::string& name, Client* client) { otherClients_[name] = client; }

int HeadlessHost::callClient(const std::string& clientName, const std::string& message) {
    auto found = otherClients_.find(clientName);
    if (found == otherClients_.end() || !found->second) return fail(-1);
    const int saved = returnValue_;
    returnValue_ = 0;
    found->second->notify(kNoteClientCall, kNoObject, message, 0);
    const int result = returnValue_;
    returnValue_ = saved;
    return result;
}

// --- Resolution of handles ----------------------------------------------------

OpenDocument* HeadlessHost::openDocumentSlot(Handle doc) {
    const Index i = handleIndex(doc, kDocumentObject);
    if (i == kNil || i >= documents_.size() || !documents_[i]) return fail<OpenDocument*>(nullptr);
    return documents_[i].get();
}

Document* HeadlessHost::liveDocument(Handle doc) {
    OpenDocument* slot = openDocumentSlot(doc);
    if (!slot) return nullptr;
    if (!slot->givenAway) return slot->doc.get();
    Document& state = *slot->doc;
    LoadOptions options;
    options.valueSeparators = &config_.valueSeparators;
    LoadResult loaded = loadFile(toSystemPath(state.path), options);
    if (!loaded.document) {
        agent_->hostMessage(Said::Error, loaded.error.empty() ? state.path + ": cannot be read again" : loaded.error);
        return fail<Document*>(nullptr);
    }
    prepareDocument(*loaded.document, state.path);
    loaded.document->title = state.title;
    loaded.document->visible = state.visible;
    loaded.document->intProperties = std::move(state.intProperties);
    loaded.document->stringProperties = std::move(state.stringProperties);
    slot->doc = std::move(loaded.document);
    slot->givenAway = false;
    slot->asRead = true;
    return slot->doc.get();
}

Document* HeadlessHost::documentState(Handle doc) {
    OpenDocument* slot = openDocumentSlot(doc);
    return slot ? slot->doc.get() : nullptr;
}

Document* HeadlessHost::settledDocument(Handle doc) {
    Document* d = liveDocument(doc);
    if (d && d->hasPendingCuts()) d->applyCuts();
    return d;
}

OpenBook* HeadlessHost::openBookSlot(Handle book) {
    const Index i = handleIndex(book, kBookObject);
    if (i == kNil || i >= books_.size() || !books_[i]) return fail<OpenBook*>(nullptr);
    return books_[i].get();
}

Index HeadlessHost::liveElement(const Document& doc, Handle element) {
    const Index i = handleIndex(element, kElementObject);
    if (i == kNil || i >= doc.elements.size() || !doc.elements[i].alive) return fail(kNil);
    return i;
}

namespace {

// The element type each formatting object's handle type stands for.
struct FormattingKind {
    int objectType;
    int elementType;
};
constexpr FormattingKind kFormattingKinds[] = {
    {kTableObject, kElementTable},
    {kRowObject, kElementTableRow},
    {kCellObject, kElementTableCell},
    {kFootnoteObject, kElementFootnote},
};

int elementTypeOf(const Document& doc, Index element) {
    const Index def = doc.elements[element].definition;
    return def < doc.definitions.size() ? doc.definitions[def].type : kElementUnspecified;
}

}  // namespace

Index HeadlessHost::elementOfAnyHandle(const Document& doc, Handle object) {
    const int type = objectType(object);
    if (type == kElementObject) return liveElement(doc, object);
    for (const FormattingKind& kind : kFormattingKinds) {
        if (kind.objectType != type) continue;
        const Index i = handleIndex(object, type);
        if (i == kNil || i >= doc.elements.size() || !doc.elements[i].alive) return fail(kNil);
        if (elementTypeOf(doc, i) != kind.elementType) return fail(kNil);
        return i;
    }
    return fail(kNil);
}

Index HeadlessHost::liveIndex(Handle object, int type, std::size_t size) {
    const Index i = handleIndex(object, type);
    if (i == kNil || i >= size) return fail(kNil);
    return i;
}

Index HeadlessHost::liveMarker(const Document& doc, Handle marker) {
    const Index i = liveIndex(marker, kMarkerObject, doc.markers.size());
    if (i == kNil || !doc.markers[i].alive) return fail(kNil);
    return i;
}

Index HeadlessHost::liveXRef(const Document& doc, Handle xref) {
    const Index i = liveIndex(xref, kXRefObject, doc.xrefs.size());
    if (i == kNil || !doc.xrefs[i].alive) return fail(kNil);
    return i;
}

Index HeadlessHost::liveCondition(const Document& doc, Handle condition) {
    return liveIndex(condition, kConditionFormatObject, doc.conditions.size());
}

std::size_t HeadlessHost::liveComponent(OpenBook& book, Handle component) {
    if (objectType(component) != kBookComponentObject) return fail(std::size_t(-1));
    auto found = book.componentPosition.find(handleId(component));
    if (found == book.componentPosition.end()) return fail(std::size_t(-1));
    return found->second;
}

DialogObject* HeadlessHost::liveDialog(Handle dialog) {
    const Index i = handleIndex(dialog, kDialogResourceObject);
    if (i == kNil || i >= dialogs_.size() || !dialogs_[i]) return fail<DialogObject*>(nullptr);
    return dialogs_[i].get();
}

DialogItem* HeadlessHost::liveItem(Handle dialog, Handle item) {
    DialogObject* d = liveDialog(dialog);
    if (!d) return nullptr;
    if (objectType(item) != kDialogItemObject) return fail<DialogItem*>(nullptr);
    const std::uint32_t id = handleId(item);
    if (id < d->firstItemId || id >= d->firstItemId + d->items.size()) return fail<DialogItem*>(nullptr);
    return &d->items[id - d->firstItemId];
}

namespace {

// Objects kept in one vector of the document each, named by index + 1.
struct CatalogueKind {
    int type;
    std::size_t (*size)(const Document&);
};
constexpr CatalogueKind kCatalogues[] = {
    {kFlowObject, [](const Document& d) { return d.flows.size(); }},
    {kColorObject, [](const Document& d) { return d.colors.size(); }},
    {kConditionFormatObject, [](const Document& d) { return d.conditions.size(); }},
    {kMarkerTypeObject, [](const Document& d) { return d.markerTypes.size(); }},
    {kElementDefinitionObject, [](const Document& d) { return d.definitions.size(); }},
};

}  // namespace

// Whether `object` names a live object of `doc`, for the generic properties.
bool HeadlessHost::validObject(Document& doc, Handle object) {
    const int type = objectType(object);
    if (type == kMarkerObject) return liveMarker(doc, object) != kNil;
    if (type == kXRefObject) return liveXRef(doc, object) != kNil;
    for (const CatalogueKind& kind : kCatalogues)
        if (kind.type == type) return liveIndex(object, type, kind.size(doc)) != kNil;
    return elementOfAnyHandle(doc, object) != kNil;
}

}  // namespace voka::headless
