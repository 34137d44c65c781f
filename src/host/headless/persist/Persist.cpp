#include "host/headless/persist/Persist.h"

#include "host/headless/persist/AtomicFile.h"
#include "host/headless/persist/BookFile.h"
#include "host/headless/persist/ContentLoad.h"
#include "host/headless/persist/ContentSave.h"
#include "host/headless/persist/FullLoad.h"
#include "host/headless/persist/FullSave.h"
#include "host/headless/persist/MapBook.h"
#include "host/headless/persist/XmlOut.h"
#include "host/headless/persist/XIncludeBook.h"
#include "host/headless/persist/XmlParse.h"

#include <cstring>
#include <functional>

namespace voka::headless {

namespace {

// Chooses the reader by the root element and hands it every event from
// there on; what stands before the root belongs to the prolog.
class RootDispatch final : public ParseHandler {
public:
    RootDispatch(const std::string& path, const ElementKindTable& kinds, const ValueSeparators* separators)
        : path_(path), kinds_(kinds), separators_(separators) {}

    void startElement(ParseContext& context, const StartTag& tag) override {
        const bool plain = tag.prefix == nullptr;
        const char* name = reinterpret_cast<const char*>(tag.local);
        if (plain && std::strcmp(name, "voka-document") == 0) {
            document_ = std::make_unique<Document>();
            reader_ = makeFullLoader(*document_);
        } else if (plain && std::strcmp(name, "voka-book") == 0) {
            book_ = std::make_unique<Book>();
            reader_ = makeBookLoader(*book_, path_);
        } else if (isDitaMapRoot(context, tag)) {
            book_ = std::make_unique<Book>();
            map_ = true;
            reader_ = makeMapReader(mapReferences_, path_);
        } else {
            document_ = std::make_unique<Document>();
            // Set before the reader's own choices, which do not replace them.
            if (separators_) document_->valueSeparators.insert(separators_->begin(), separators_->end());
            reader_ = makeContentLoader(*document_, kinds_);
        }
        context.setHandler(*reader_);
        reader_->startElement(context, tag);
    }

    void endElement(ParseContext&) override {}
    void characters(ParseContext&, std::string_view) override {}

    std::unique_ptr<Document> document_;
    std::unique_ptr<Book> book_;
    bool map_ = false;
    std::vector<MapReference> mapReferences_;  // a map's own, before nested maps are read

private:
    const std::string& path_;
    const ElementKindTable& kinds_;
    const ValueSeparators* separators_;
    std::unique_ptr<ParseHandler> reader_;
};

SaveResult saveAtomically(const std::string& path, const std::function<bool(XmlOut&, std::string&)>& write) {
    SaveResult result;
    AtomicFile file;
    if (!beginAtomicFile(path, file, result.error)) return result;
    XmlOut out(file.fd);
    std::string problem;
    if (!write(out, problem)) {
        abandonAtomicFile(file);
        result.error = "Cannot save \"" + path + "\": " + problem;
        return result;
    }
    if (!out.flush()) {
        abandonAtomicFile(file);
        result.error = "Cannot save \"" + path + "\": " + std::strerror(out.error());
        return result;
    }
    result.ok = commitAtomicFile(file, result.error);
    return result;
}

}  // namespace

LoadResult loadFile(const std::string& systemPath) { return loadFile(systemPath, LoadOptions{}); }

LoadResult loadFile(const std::string& systemPath, const LoadOptions& options) {
    LoadResult result;
    RootDispatch dispatch(systemPath, options.elementKinds ? *options.elementKinds : defaultElementKinds(),
                          options.valueSeparators);
    ParseIssues issues = parseFile(systemPath, dispatch);
    result.warnings = std::move(issues.warnings);
    if (!issues.error.empty()) {
        result.error = std::move(issues.error);
        return result;
    }
    result.document = std::move(dispatch.document_);
    result.book = std::move(dispatch.book_);
    if (dispatch.map_ && result.book)
        gatherMapBook(*result.book, systemPath, std::move(dispatch.mapReferences_), result.warnings);
    if (result.document && result.document->contentForm) {
        auto book = std::make_unique<Book>();
        // The document stays beside its book: opened as a component of another book, it is one.
        if (gatherXIncludeBook(*result.document, systemPath, *book, result.warnings)) result.book = std::move(book);
    }
    if (!result.document && !result.book) result.error = systemPath + ": no root element";
    return result;
}

SaveResult saveDocument(const Document& doc, const std::string& systemPath, SaveForm form) {
    // Offsets are only right once deletions still pending are applied.
    std::unique_ptr<Document> settled;
    const Document* source = &doc;
    if (doc.hasPendingCuts()) {
        settled = std::make_unique<Document>(doc);
        settled->applyCuts();
        source = settled.get();
    }
    return saveAtomically(systemPath, [&](XmlOut& out, std::string& problem) {
        if (form == SaveForm::AsRead && source->contentForm) return writeContentForm(out, *source, problem);
        writeFullForm(out, *source);
        return true;
    });
}

SaveResult saveBook(const Book& book, const std::string& systemPath) {
    return saveAtomically(systemPath, [&](XmlOut& out, std::string&) {
        writeBook(out, book, systemPath);
        return true;
    });
}

}  // namespace voka::headless
