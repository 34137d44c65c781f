// Session, documents, books and their components, flows.
#include "host/headless/Handles.h"
#include "host/headless/HeadlessHost.h"
#include "host/headless/HostPaths.h"
#include "host/headless/persist/Persist.h"

#include <filesystem>
#include <system_error>

namespace voka::headless {

// --- The model for drivers ---------------------------------------------------

const Document* HeadlessHost::document(Handle doc) { return settledDocument(doc); }

Document* HeadlessHost::mutableDocument(Handle doc) { return settledDocument(doc); }

const Book* HeadlessHost::book(Handle book) {
    OpenBook* slot = openBookSlot(book);
    return slot ? slot->book.get() : nullptr;
}

void HeadlessHost::prepareDocument(Document& doc, const std::string& path) {
    doc.path = path;
    doc.title = path.empty() ? "Untitled" + std::to_string(++untitled_) : fileNameOf(path);
    doc.rebuildIndexes();
    doc.ensureStandardCatalogue();
    for (std::size_t i = 0; i < doc.elements.size(); ++i) {
        Element& e = doc.elements[i];
        e.handleId = static_cast<std::uint32_t>(i + 1);
        if (e.unique == 0) e.unique = e.handleId;
    }
    doc.modified = false;
}

void HeadlessHost::prepareBook(Book& book, const std::string& path) {
    book.path = path;
    const std::string folder = folderOf(path);
    for (BookComponent& component : book.components) {
        std::string p = toHostPath(component.path);
        if (!p.empty() && p.front() != '\\' && !folder.empty()) p = folder + p;
        component.path = normalHostPath(p);
        component.handleId = book.nextComponentId++;
    }
    book.modified = false;
}

void HeadlessHost::indexComponents(OpenBook& book) {
    book.componentPosition.clear();
    for (std::size_t i = 0; i < book.book->components.size(); ++i)
        book.componentPosition.emplace(book.book->components[i].handleId, i);
}

Handle HeadlessHost::registerDocument(std::unique_ptr<Document> doc, bool visible) {
    const std::uint64_t id = documents_.size() + 1;
    if (!idFits(id)) return fail(kNoObject);
    doc->visible = visible;
    auto slot = std::make_unique<OpenDocument>();
    slot->doc = std::move(doc);
    slot->order = ++openings_;
    documentOrder_.emplace(slot->order, static_cast<std::uint32_t>(id));
    documents_.push_back(std::move(slot));
    const Handle handle = makeHandle(kDocumentObject, static_cast<std::uint32_t>(id));
    if (visible) bringToFront(handle);
    return handle;
}

Handle HeadlessHost::registerBook(std::unique_ptr<Book> book, bool visible) {
    const std::uint64_t id = books_.size() + 1;
    if (!idFits(id)) return fail(kNoObject);
    book->visible = visible;
    auto slot = std::make_unique<OpenBook>();
    slot->book = std::move(book);
    slot->order = ++openings_;
    indexComponents(*slot);
    bookOrder_.emplace(slot->order, static_cast<std::uint32_t>(id));
    books_.push_back(std::move(slot));
    const Handle handle = makeHandle(kBookObject, static_cast<std::uint32_t>(id));
    if (visible) bringToFront(handle);
    return handle;
}

Handle HeadlessHost::adoptDocument(std::unique_ptr<Document> doc, const std::string& path) {
    if (!doc) return fail(kNoObject);
    prepareDocument(*doc, path.empty() ? path : normalHostPath(path));
    return registerDocument(std::move(doc), true);
}

Handle HeadlessHost::adoptBook(std::unique_ptr<Book> book, const std::string& path) {
    if (!book) return fail(kNoObject);
    prepareBook(*book, path.empty() ? path : normalHostPath(path));
    return registerBook(std::move(book), true);
}

Handle HeadlessHost::findOpenDocument(const std::string& path) {
    if (path.empty()) return kNoObject;
    for (const auto& [order, id] : documentOrder_)
        if (documents_[id - 1]->doc->path == path) return makeHandle(kDocumentObject, id);
    return kNoObject;
}

Handle HeadlessHost::findOpenBook(const std::string& path) {
    if (path.empty()) return kNoObject;
    for (const auto& [order, id] : bookOrder_)
        if (books_[id - 1]->book->path == path) return makeHandle(kBookObject, id);
    return kNoObject;
}

// --- Session -----------------------------------------------------------------

Handle HeadlessHost::activeDocument() { return activeDocument_; }

Handle HeadlessHost::activeBook() { return activeBook_; }

bool HeadlessHost::setActiveDocument(Handle doc) {
    if (!openDocumentSlot(doc)) return false;
    bringToFront(doc);
    return true;
}

bool HeadlessHost::setActiveBook(Handle book) {
    if (!openBookSlot(book)) return false;
    bringToFront(book);
    return true;
}

std::string HeadlessHost::sessionDirectory() {
    std::string dir = toHostPath(config_.sessionDirectory);
    if (dir.empty() || dir.back() != '\\') dir += '\\';
    return dir;
}

Handle HeadlessHost::firstOpenDocument() {
    if (documentOrder_.empty()) return kNoObject;
    return makeHandle(kDocumentObject, documentOrder_.begin()->second);
}

Handle HeadlessHost::nextOpenDocument(Handle doc) {
    OpenDocument* slot = openDocumentSlot(doc);
    if (!slot) return kNoObject;
    auto next = documentOrder_.upper_bound(slot->order);
    return next == documentOrder_.end() ? kNoObject : makeHandle(kDocumentObject, next->second);
}

Handle HeadlessHost::firstOpenBook() {
    if (bookOrder_.empty()) return kNoObject;
    return makeHandle(kBookObject, bookOrder_.begin()->second);
}

Handle HeadlessHost::nextOpenBook(Handle book) {
    OpenBook* slot = openBookSlot(book);
    if (!slot) return kNoObject;
    auto next = bookOrder_.upper_bound(slot->order);
    return next == bookOrder_.end() ? kNoObject : makeHandle(kBookObject, next->second);
}

// --- Opening, saving, closing ---------------------------------------------------

Handle HeadlessHost::openFile(const std::string& path, bool visible, bool asNew) {
    if (path.empty()) return fail(kNoObject);
    const std::string normal = normalHostPath(path);
    if (!asNew) {
        // An open file is not read again: the host hands out the open one.
        if (Handle doc = findOpenDocument(normal)) {
            Document& d = *documents_[handleId(doc) - 1]->doc;
            if (visible) {
                d.visible = true;
                bringToFront(doc);
            }
            return doc;
        }
        if (Handle book = findOpenBook(normal)) {
            if (visible) {
                books_[handleId(book) - 1]->book->visible = true;
                bringToFront(book);
            }
            return book;
        }
    }
    if (asNew) {
        if (std::unique_ptr<Document> model = giveAwayModel(normal)) {
            prepareDocument(*model, std::string());
            return registerDocument(std::move(model), visible);
        }
    }
    const std::string system = toSystemPath(normal);
    // A missing file is for the caller to mention; anything else the loader
    // refuses (a folder, a FIFO, bad XML) is said here, with the reason.
    std::error_code error;
    if (!std::filesystem::exists(system, error)) return fail(kNoObject);
    LoadOptions options;
    options.valueSeparators = &config_.valueSeparators;
    LoadResult loaded = loadFile(system, options);
    for (const std::string& warning : loaded.warnings) agent_->hostMessage(Said::Warning, warning);
    // A document assembled by XInclude is a book when opened on its own, and
    // a document when opened as a new one or as the component of an open book.
    if (loaded.book && loaded.document && (asNew || isOpenComponent(normal))) loaded.book.reset();
    if (loaded.book) {
        if (asNew) return fail(kNoObject);
        prepareBook(*loaded.book, normal);
        return registerBook(std::move(loaded.book), visible);
    }
    if (!loaded.document) {
        agent_->hostMessage(Said::Error, loaded.error.empty() ? system + ": cannot be read" : loaded.error);
        return fail(kNoObject);
    }
    prepareDocument(*loaded.document, asNew ? std::string() : normal);
    const Handle doc = registerDocument(std::move(loaded.document), visible);
    if (doc != kNoObject && !asNew) documents_[handleId(doc) - 1]->asRead = true;
    return doc;
}

bool HeadlessHost::isOpenComponent(const std::string& normalPath) {
    for (const auto& [order, id] : bookOrder_)
        for (const BookComponent& component : books_[id - 1]->book->components)
            if (component.alive && component.path == normalPath) return true;
    return false;
}

std::unique_ptr<Document> HeadlessHost::giveAwayModel(const std::string& normalPath) {
    const Handle original = findOpenDocument(normalPath);
    if (original == kNoObject) return nullptr;
    OpenDocument& slot = *documents_[handleId(original) - 1];
    // Read and unchanged, the model is what the file says, but for what the
    // host keeps beside it: a fresh read would give the same. A document
    // built in memory or saved since may differ from its file in small ways.
    if (slot.givenAway || !slot.asRead || slot.doc->modified || slot.doc->hasPendingCuts()) return nullptr;
    auto state = std::make_unique<Document>();
    Document& d = *slot.doc;
    state->path = d.path;
    state->title = d.title;
    state->visible = d.visible;
    state->contentForm = d.contentForm;
    state->intProperties = std::move(d.intProperties);
    state->stringProperties = std::move(d.stringProperties);
    d.intProperties.clear();
    d.stringProperties.clear();
    std::unique_ptr<Document> model = std::move(slot.doc);
    slot.doc = std::move(state);
    slot.givenAway = true;
    slot.selection = Selection{};
    return model;
}

Handle HeadlessHost::open(const std::string& path, const OpenParams& params) {
    return openFile(path, params.makeVisible, false);
}

Handle HeadlessHost::simpleOpen(const std::string& path, bool interactive) { return openFile(path, true, false); }

Handle HeadlessHost::openAsNewDocument(const std::string& path) { return openFile(path, true, true); }

int HeadlessHost::refuseSave(const std::string& target, bool unchangedInPlace) {
    if (!saveRefusal_) return 0;
    const std::string problem = saveRefusal_(toSystemPath(target));
    if (problem.empty()) return 0;
    if (unchangedInPlace) return 1;
    agent_->hostMessage(Said::Error, problem);
    return -1;
}

Handle HeadlessHost::saveDocumentAs(Handle doc, const std::string& path) {
    Document* d = settledDocument(doc);
    if (!d) return kNoObject;
    if (!mutationAllowed()) return kNoObject;
    const std::string target = path.empty() ? d->path : normalHostPath(path);
    if (target.empty()) return fail(kNoObject);
    const Handle other = findOpenDocument(target);
    if (other != kNoObject && other != doc) return fail(kNoObject);  // another open document has that file
    if (const int refused = refuseSave(target, !d->modified && target == d->path)) return refused < 0 ? fail(kNoObject) : doc;
    const SaveResult saved = saveDocument(*d, toSystemPath(target));
    if (!saved.ok) {
        agent_->hostMessage(Said::Error, saved.error);
        return fail(kNoObject);
    }
    openDocumentSlot(doc)->asRead = false;
    if (target != d->path) {
        d->path = target;
        d->title = fileNameOf(target);
    }
    d->modified = false;
    return doc;
}

Handle HeadlessHost::saveBookAs(Handle book, const std::string& path) {
    OpenBook* slot = openBookSlot(book);
    if (!slot) return kNoObject;
    if (!mutationAllowed()) return kNoObject;
    Book& b = *slot->book;
    const std::string target = path.empty() ? b.path : normalHostPath(path);
    if (target.empty()) return fail(kNoObject);
    const Handle other = findOpenBook(target);
    if (other != kNoObject && other != book) return fail(kNoObject);
    // A map or an XInclude document is the writer's own file, which a voka
    // book file must never replace: unchanged, it holds the book already.
    if (b.source != BookSource::VokaBook && target == b.path) {
        if (!b.modified) return book;
        agent_->hostMessage(Said::Error, toSystemPath(target) + " is " +
                                             (b.source == BookSource::DitaMap ? "a DITA map" : "a document assembled by XInclude") +
                                             ": the book's changes are not written into it; save the book under another name");
        return fail(kNoObject);
    }
    if (const int refused = refuseSave(target, !b.modified && target == b.path)) return refused < 0 ? fail(kNoObject) : book;
    const SaveResult saved = saveBook(b, toSystemPath(target));
    if (!saved.ok) {
        agent_->hostMessage(Said::Error, saved.error);
        return fail(kNoObject);
    }
    b.path = target;
    b.source = BookSource::VokaBook;  // the book is now that voka book file
    b.modified = false;
    return book;
}

Handle HeadlessHost::simpleSave(Handle docOrBook, const std::string& path, bool interactive) {
    if (objectType(docOrBook) == kBookObject) return saveBookAs(docOrBook, path);
    return saveDocumentAs(docOrBook, path);
}

int HeadlessHost::close(Handle object, int flags) {
    const int type = objectType(object);
    if (type == kDialogResourceObject) return closeDialog(object) ? 0 : -1;
    if (type == kBookObject) {
        OpenBook* slot = openBookSlot(object);
        if (!slot) return -1;
        if (slot->book->modified && !(flags & kCloseModified)) return fail(-1);
        bookOrder_.erase(slot->order);
        books_[handleId(object) - 1].reset();
        if (activeBook_ == object) activeBook_ = kNoObject;
        return 0;
    }
    OpenDocument* slot = openDocumentSlot(object);
    if (!slot) return -1;
    if (slot->doc->modified && !(flags & kCloseModified)) return fail(-1);
    documentOrder_.erase(slot->order);
    documents_[handleId(object) - 1].reset();
    if (activeDocument_ == object) activeDocument_ = kNoObject;
    return 0;
}

std::string HeadlessHost::path(Handle docOrBook) {
    if (objectType(docOrBook) == kBookObject) {
        OpenBook* slot = openBookSlot(docOrBook);
        return slot ? slot->book->path : std::string();
    }
    Document* d = documentState(docOrBook);
    return d ? d->path : std::string();
}

std::string HeadlessHost::title(Handle docOrBook) {
    if (objectType(docOrBook) == kBookObject) {
        OpenBook* slot = openBookSlot(docOrBook);
        return slot ? fileNameOf(slot->book->path) : std::string();
    }
    Document* d = documentState(docOrBook);
    return d ? d->title : std::string();
}

bool HeadlessHost::isModified(Handle docOrBook) {
    if (objectType(docOrBook) == kBookObject) {
        OpenBook* slot = openBookSlot(docOrBook);
        return slot && slot->book->modified;
    }
    Document* d = documentState(docOrBook);
    return d && d->modified;
}

bool HeadlessHost::setVisible(Handle docOrBook, bool onScreen) {
    if (objectType(docOrBook) == kBookObject) {
        OpenBook* slot = openBookSlot(docOrBook);
        if (!slot) return false;
        slot->book->visible = onScreen;
        return true;
    }
    Document* d = documentState(docOrBook);
    if (!d) return false;
    d->visible = onScreen;
    return true;
}

bool HeadlessHost::isVisible(Handle docOrBook) {
    if (objectType(docOrBook) == kBookObject) {
        OpenBook* slot = openBookSlot(docOrBook);
        return slot && slot->book->visible;
    }
    Document* d = documentState(docOrBook);
    return d && d->visible;
}

void HeadlessHost::redisplay(Handle doc) { liveDocument(doc); }

void HeadlessHost::scrollTo(Handle doc, const TextRange& range) {
    Document* d = settledDocument(doc);
    Position begin, end;
    if (d) resolveRange(*d, range, begin, end);
}

// --- Book components -----------------------------------------------------------

Handle HeadlessHost::firstComponent(Handle book) {
    OpenBook* slot = openBookSlot(book);
    if (!slot || slot->book->components.empty()) return kNoObject;
    return makeHandle(kBookComponentObject, slot->book->components.front().handleId);
}

Handle HeadlessHost::nextComponent(Handle book, Handle component) {
    OpenBook* slot = openBookSlot(book);
    if (!slot) return kNoObject;
    const std::size_t position = liveComponent(*slot, component);
    if (position == std::size_t(-1)) return kNoObject;
    if (position + 1 >= slot->book->components.size()) return kNoObject;
    return makeHandle(kBookComponentObject, slot->book->components[position + 1].handleId);
}

std::string HeadlessHost::componentPath(Handle book, Handle component) {
    OpenBook* slot = openBookSlot(book);
    if (!slot) return {};
    const std::size_t position = liveComponent(*slot, component);
    if (position == std::size_t(-1)) return {};
    return slot->book->components[position].path;
}

bool HeadlessHost::setComponentPath(Handle book, Handle component, const std::string& path) {
    OpenBook* slot = openBookSlot(book);
    if (!slot) return false;
    const std::size_t position = liveComponent(*slot, component);
    if (position == std::size_t(-1) || path.empty()) return fail(false);
    if (!mutationAllowed()) return false;
    slot->book->components[position].path = normalHostPath(path);
    slot->book->modified = true;
    return true;
}

Handle HeadlessHost::newComponent(Handle book, Handle after, const std::string& path) {
    OpenBook* slot = openBookSlot(book);
    if (!slot) return kNoObject;
    std::size_t position = 0;
    if (after != kNoObject) {
        const std::size_t previous = liveComponent(*slot, after);
        if (previous == std::size_t(-1)) return kNoObject;
        position = previous + 1;
    }
    if (path.empty() || !idFits(slot->book->nextComponentId)) return fail(kNoObject);
    if (!mutationAllowed()) return kNoObject;
    BookComponent component;
    component.path = normalHostPath(path);
    component.handleId = slot->book->nextComponentId++;
    auto& components = slot->book->components;
    components.insert(components.begin() + static_cast<std::ptrdiff_t>(position), component);
    indexComponents(*slot);
    slot->book->modified = true;
    return makeHandle(kBookComponentObject, component.handleId);
}

int HeadlessHost::updateBook(Handle book) {
    OpenBook* slot = openBookSlot(book);
    if (!slot) return -1;
    return 0;
}

// --- Flows ---------------------------------------------------------------------

Handle HeadlessHost::mainFlow(Handle doc) {
    Document* d = liveDocument(doc);
    if (!d) return kNoObject;
    for (std::size_t i = 0; i < d->flows.size(); ++i)
        if (d->flows[i].main) return indexHandle(kFlowObject, static_cast<Index>(i));
    return d->flows.empty() ? kNoObject : indexHandle(kFlowObject, 0);
}

Handle HeadlessHost::firstFlow(Handle doc) {
    Document* d = liveDocument(doc);
    if (!d || d->flows.empty()) return kNoObject;
    return indexHandle(kFlowObject, 0);
}

Handle HeadlessHost::nextFlow(Handle doc, Handle flow) {
    Document* d = liveDocument(doc);
    if (!d) return kNoObject;
    const Index i = liveIndex(flow, kFlowObject, d->flows.size());
    if (i == kNil || i + 1 >= d->flows.size()) return kNoObject;
    return indexHandle(kFlowObject, i + 1);
}

std::string HeadlessHost::flowName(Handle doc, Handle flow) {
    Document* d = liveDocument(doc);
    if (!d) return {};
    const Index i = liveIndex(flow, kFlowObject, d->flows.size());
    return i == kNil ? std::string() : d->flows[i].name;
}

Handle HeadlessHost::highestLevelElement(Handle doc, Handle flow) {
    Document* d = liveDocument(doc);
    if (!d) return kNoObject;
    const Index i = liveIndex(flow, kFlowObject, d->flows.size());
    if (i == kNil || d->flows[i].root == kNil) return kNoObject;
    return elementHandle(d->flows[i].root);
}

}  // namespace voka::headless
