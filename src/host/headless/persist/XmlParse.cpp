#include "host/headless/persist/XmlParse.h"

#include "host/headless/persist/ExternalResources.h"

#include <libxml/SAX2.h>
#include <libxml/catalog.h>
#include <libxml/encoding.h>
#include <libxml/entities.h>
#include <libxml/hash.h>
#include <libxml/uri.h>
#include <libxml/parserInternals.h>
#include <libxml/xmlerror.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <climits>
#include <cstring>
#include <filesystem>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace voka::headless {

namespace {

constexpr std::size_t kChunkSize = 256 * 1024;
constexpr std::size_t kMaxMessages = 50;  // a broken file must not bury the first message

const char* str(const xmlChar* s) { return reinterpret_cast<const char*>(s); }

std::string trimmed(const char* message) {
    std::string s = message ? message : "";
    while (!s.empty() && (s.back() == '\n' || s.back() == ' ')) s.pop_back();
    return s;
}

void addMessage(std::vector<std::string>& list, std::string message) {
    if (list.size() < kMaxMessages) list.push_back(std::move(message));
}

}  // namespace

// --- StartTag ----------------------------------------------------------------

std::string StartTag::qualifiedName() const {
    if (!prefix) return str(local);
    return std::string(str(prefix)) + ":" + str(local);
}

std::string StartTag::namespaceName(int i) const {
    const xmlChar* p = namespaces[2 * i];
    return p ? std::string("xmlns:") + str(p) : std::string("xmlns");
}

std::string_view StartTag::namespaceUri(int i) const {
    const xmlChar* uri = namespaces[2 * i + 1];
    return uri ? std::string_view(str(uri)) : std::string_view();
}

std::string StartTag::attributeName(int i) const {
    const xmlChar* const* a = attributes + 5 * i;
    if (!a[1]) return str(a[0]);
    return std::string(str(a[1])) + ":" + str(a[0]);
}

std::string_view StartTag::attributeValue(int i) const {
    const xmlChar* const* a = attributes + 5 * i;
    return std::string_view(str(a[3]), static_cast<std::size_t>(a[4] - a[3]));
}

bool StartTag::find(std::string_view name, std::string_view& value) const {
    for (int i = 0; i < attributeCount; ++i) {
        const xmlChar* const* a = attributes + 5 * i;
        if (a[1] == nullptr && name == str(a[0])) {
            value = attributeValue(i);
            return true;
        }
    }
    return false;
}

// --- ParseContext --------------------------------------------------------------

ParseContext::ParseContext(const std::string& path, ParseHandler& handler) : path_(path), handler_(&handler) {}

int ParseContext::line() const { return parser_ ? xmlSAX2GetLineNumber(parser_) : 0; }

int ParseContext::column() const { return parser_ ? xmlSAX2GetColumnNumber(parser_) : 0; }

bool ParseContext::inDtd() const { return parser_ && parser_->inSubset != 0; }

std::size_t ParseContext::consumed() const {
    long n = parser_ ? xmlByteConsumed(parser_) : -1;
    return n < 0 ? 0 : static_cast<std::size_t>(n);
}

bool ParseContext::converted() const {
    return parser_ && parser_->input && parser_->input->buf && parser_->input->buf->encoder;
}

bool ParseContext::readPrefix(std::size_t end, std::string& bytes) const {
    bytes.assign(end, '\0');
    std::size_t done = 0;
    while (done < end) {
        ssize_t n = ::pread(fd_, bytes.data() + done, end - done, static_cast<off_t>(done));
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        done += static_cast<std::size_t>(n);
    }
    return true;
}

std::string ParseContext::location() const {
    const std::string place = ":" + std::to_string(line()) + ":" + std::to_string(column());
    return (inDocument() ? path_ : displayLocation(parser_->input->filename)) + place;
}

bool ParseContext::inDocument() const {
    // While the DTD is read, libxml2 sets the document's input aside; the file name tells.
    return !parser_ || !parser_->input || !parser_->input->filename || uri_ == parser_->input->filename;
}

bool ParseContext::readPrefixAsUtf8(std::size_t end, std::string& text) const {
    std::string bytes;
    if (!converted() || !readPrefix(end, bytes)) return false;
    // A handler of its own, so that the parser's conversion state is left alone.
    xmlCharEncodingHandlerPtr handler = xmlFindCharEncodingHandler(parser_->input->buf->encoder->name);
    if (!handler) return false;
    xmlBufferPtr in = xmlBufferCreate();
    xmlBufferPtr out = xmlBufferCreate();
    bool ok = in && out && xmlBufferAdd(in, reinterpret_cast<const xmlChar*>(bytes.data()), static_cast<int>(bytes.size())) == 0 &&
              xmlCharEncInFunc(handler, out, in) >= 0 && xmlBufferLength(in) == 0;
    if (ok) text.assign(reinterpret_cast<const char*>(xmlBufferContent(out)), static_cast<std::size_t>(xmlBufferLength(out)));
    if (in) xmlBufferFree(in);
    if (out) xmlBufferFree(out);
    xmlCharEncCloseFunc(handler);
    return ok;
}

void ParseContext::fail(const std::string& message) {
    if (failed()) return;
    issues_.error = location() + ": " + message;
    if (!inDocument()) issues_.error += " (read for " + path_ + ")";
    if (parser_) xmlStopParser(parser_);
}

void ParseContext::warn(const std::string& message) {
    addMessage(issues_.warnings,
               path_ + ":" + std::to_string(line()) + ":" + std::to_string(column()) + ": " + message);
}

// --- libxml2 callbacks -----------------------------------------------------------

struct ParseCallbacks {
    static ParseContext& of(void* ctx) {
        return *static_cast<ParseContext*>(static_cast<xmlParserCtxtPtr>(ctx)->_private);
    }

    // Entities may multiply the text; what reaches the loaders is bounded by
    // what was read, so a small file cannot ask for gigabytes.
    static bool deliver(ParseContext& c, std::size_t bytes) {
        c.delivered_ += bytes;
        const std::size_t limit = c.inputBytes_ * kMaxExpansionFactor + kExpansionAllowance;
        if (c.delivered_ <= limit) return true;
        c.fail("entities expand the document to more than " + std::to_string(limit) + " bytes (" +
               std::to_string(kMaxExpansionFactor) + " times the " + std::to_string(c.inputBytes_) +
               " bytes read, plus " + std::to_string(kExpansionAllowance >> 20) +
               " MB): the limit on entity expansion");
        return false;
    }

    static void startElement(void* ctx, const xmlChar* local, const xmlChar* prefix, const xmlChar*,
                             int namespaceCount, const xmlChar** namespaces, int attributeCount,
                             int defaulted, const xmlChar** attributes) {
        ParseContext& c = of(ctx);
        if (c.failed()) return;
        if (++c.depth_ > kMaxElementDepth) {
            c.fail("elements nested more than " + std::to_string(kMaxElementDepth) +
                   " deep: the limit on element depth");
            return;
        }
        // Defaulted attributes come last; the model keeps only what the file says.
        StartTag tag{prefix, local, namespaceCount, namespaces, attributeCount - defaulted, attributes};
        std::size_t bytes = 0;
        for (int i = 0; i < tag.attributeCount; ++i) bytes += tag.attributeValue(i).size();
        if (!deliver(c, bytes)) return;
        c.handler_->startElement(c, tag);
    }

    static void endElement(void* ctx, const xmlChar*, const xmlChar*, const xmlChar*) {
        ParseContext& c = of(ctx);
        --c.depth_;
        if (!c.failed()) c.handler_->endElement(c);
    }

    static void characters(void* ctx, const xmlChar* ch, int len) {
        ParseContext& c = of(ctx);
        if (c.failed() || !deliver(c, static_cast<std::size_t>(len))) return;
        c.handler_->characters(c, std::string_view(str(ch), static_cast<std::size_t>(len)));
    }

    static void comment(void* ctx, const xmlChar* value) {
        ParseContext& c = of(ctx);
        if (!c.failed() && !c.inDtd()) c.handler_->comment(c, str(value));
    }

    static void instruction(void* ctx, const xmlChar* target, const xmlChar* data) {
        ParseContext& c = of(ctx);
        if (!c.failed() && !c.inDtd()) c.handler_->instruction(c, str(target), data ? str(data) : "");
    }

    static void noteExternal(ParseContext& c, xmlEntityPtr entity, const char* sigil) {
        if (!entity || !entity->SystemID) return;
        c.entity_ = "\"" + std::string(sigil) + str(entity->name) + "\" (" + str(entity->SystemID) + ")";
    }

    // The entity a reference names, remembered so that a refusal to read it
    // can say which it was.
    static xmlEntityPtr getEntity(void* ctx, const xmlChar* name) {
        xmlEntityPtr entity = xmlSAX2GetEntity(ctx, name);
        if (entity && entity->etype == XML_EXTERNAL_GENERAL_PARSED_ENTITY) noteExternal(of(ctx), entity, "");
        return entity;
    }

    static xmlEntityPtr getParameterEntity(void* ctx, const xmlChar* name) {
        xmlEntityPtr entity = xmlSAX2GetParameterEntity(ctx, name);
        if (entity && entity->etype == XML_EXTERNAL_PARAMETER_ENTITY) noteExternal(of(ctx), entity, "%");
        return entity;
    }

    // The nearest input with a file name: relative references resolve against it.
    static const char* baseOf(xmlParserCtxtPtr parser) {
        for (int i = parser->inputNr - 1; i >= 0; --i)
            if (parser->inputTab[i] && parser->inputTab[i]->filename) return parser->inputTab[i]->filename;
        return nullptr;
    }

    static xmlChar* resolvedUri(xmlParserCtxtPtr parser, const xmlChar* systemId) {
        const std::string reference = escapedReference(str(systemId));
        xmlChar* uri = xmlBuildURI(reinterpret_cast<const xmlChar*>(reference.c_str()),
                                   reinterpret_cast<const xmlChar*>(baseOf(parser)));
        return uri ? uri : xmlStrdup(reinterpret_cast<const xmlChar*>(reference.c_str()));
    }

    // libxml2 resolves a system identifier as a URI, which a blank or a
    // non-ASCII letter in it breaks; the DTD's is resolved here instead.
    static xmlParserInputPtr resolveEntity(void* ctx, const xmlChar* publicId, const xmlChar* systemId) {
        auto* parser = static_cast<xmlParserCtxtPtr>(ctx);
        xmlChar* uri = systemId ? resolvedUri(parser, systemId) : nullptr;
        xmlParserInputPtr input = xmlLoadExternalEntity(str(uri), str(publicId), parser);
        xmlFree(uri);
        return input;
    }

    // The same for external entities: their URI is fixed once, when declared.
    static void entityDecl(void* ctx, const xmlChar* name, int type, const xmlChar* publicId,
                           const xmlChar* systemId, xmlChar* content) {
        auto* parser = static_cast<xmlParserCtxtPtr>(ctx);
        xmlDtdPtr dtd = !parser->myDoc ? nullptr : parser->inSubset == 2 ? parser->myDoc->extSubset : parser->myDoc->intSubset;
        const bool parameter = type == XML_INTERNAL_PARAMETER_ENTITY || type == XML_EXTERNAL_PARAMETER_ENTITY;
        auto table = [&] { return static_cast<xmlHashTablePtr>(!dtd ? nullptr : parameter ? dtd->pentities : dtd->entities); };
        const bool declaredBefore = table() && xmlHashLookup(table(), name);
        xmlSAX2EntityDecl(ctx, name, type, publicId, systemId, content);
        if (declaredBefore || !systemId || !table()) return;  // the first declaration holds
        auto* entity = static_cast<xmlEntityPtr>(xmlHashLookup(table(), name));
        if (!entity) return;
        xmlFree(const_cast<xmlChar*>(entity->URI));
        entity->URI = resolvedUri(parser, systemId);
    }

    // Every external resource comes through here; see ExternalResources.h
    // for what may be read.
    static xmlParserInputPtr loadExternal(const char* url, const char* publicId, xmlParserCtxtPtr parser) {
        ParseContext* c = parser ? static_cast<ParseContext*>(parser->_private) : nullptr;
        if (!c) return xmlNoNetExternalEntityLoader(url, publicId, parser);  // not a document load
        const bool subset = c->loadingSubset_;
        c->loadingSubset_ = false;
        const std::size_t budget = kMaxExternalFileBytes > c->inputBytes_ ? kMaxExternalFileBytes - c->inputBytes_ : 0;
        ExternalFile file = readExternal(c->folder_, url, publicId, budget);
        const std::string what = subset ? "" : c->entity_.empty() ? std::string("\"") + (url ? displayLocation(url) : "") + "\"" : c->entity_;
        if (!file.refusal.empty()) {
            if (subset) c->subsetRefusal_ = file.refusal;
            else c->fail("the external entity " + what + " is not read: " + file.refusal);
            return nullptr;
        }
        if (file.missing) {
            if (subset) c->subsetRefusal_ = "there is no such file";
            else c->warn("the external entity " + what + " is not there");
            return nullptr;
        }
        c->inputBytes_ += file.bytes.size();
        xmlParserInputBufferPtr buffer =
            xmlParserInputBufferCreateMem(file.bytes.data(), static_cast<int>(file.bytes.size()), XML_CHAR_ENCODING_NONE);
        if (!buffer) return nullptr;
        xmlParserInputPtr input = xmlNewIOInputStream(parser, buffer, XML_CHAR_ENCODING_NONE);
        if (!input) {
            xmlFreeParserInputBuffer(buffer);
            return nullptr;
        }
        input->filename = reinterpret_cast<const char*>(xmlStrdup(reinterpret_cast<const xmlChar*>(fileUri(file.path).c_str())));
        return input;
    }

    static void externalSubset(void* ctx, const xmlChar* name, const xmlChar* publicId, const xmlChar* systemId) {
        auto* parser = static_cast<xmlParserCtxtPtr>(ctx);
        ParseContext& c = of(ctx);
        const std::size_t warningsBefore = c.issues_.warnings.size();
        const std::size_t errorsBefore = c.errorMessages_.size();
        const std::size_t genericBefore = c.genericMessage_.size();
        c.loadingSubset_ = true;
        c.subsetRefusal_.clear();
        xmlSAX2ExternalSubset(ctx, name, publicId, systemId);
        c.loadingSubset_ = false;
        if ((!publicId && !systemId) || !parser->myDoc || parser->myDoc->extSubset || !parser->wellFormed) return;
        // Fold libxml2's loader messages into one warning that says what it means.
        std::string reason = c.subsetRefusal_;
        auto take = [&](std::vector<std::string>& list, std::size_t from) {
            for (std::size_t i = from; i < list.size(); ++i) {
                auto colon = list[i].rfind(": ");
                reason += (reason.empty() ? "" : "; ") + (colon == std::string::npos ? list[i] : list[i].substr(colon + 2));
            }
            list.resize(std::min(from, list.size()));
        };
        take(c.issues_.warnings, warningsBefore);
        take(c.errorMessages_, errorsBefore);
        if (c.genericMessage_.size() > genericBefore) {
            reason += (reason.empty() ? "" : "; ") + trimmed(c.genericMessage_.c_str() + genericBefore);
            c.genericMessage_.resize(genericBefore);
        }
        std::string dtd = systemId ? str(systemId) : str(publicId);
        addMessage(c.issues_.warnings, c.path_ + ": the DTD \"" + dtd + "\" could not be read" +
                                           (reason.empty() ? "" : " (" + reason + ")") +
                                           "; the attribute defaults it declares are unavailable (an XML catalog "
                                           "can name it: XML_CATALOG_FILES or /etc/xml/catalog)");
    }

    static void record(ParseContext& c, const xmlError* e) {
        if (!e) return;
        std::string message = trimmed(e->message);
        // The push parser reports a file cut short as extra content at its end.
        if (e->code == XML_ERR_DOCUMENT_END && c.parser_ && c.parser_->nameNr > 0 && c.parser_->name)
            message = std::string("the file ends inside <").append(str(c.parser_->name)).append(">, which is not closed");
        // libxml2's own limit on one piece of markup, in words that say so.
        if (message.size() >= 17 && message.compare(message.size() - 17, 17, "Huge input lookup") == 0)
            message = "more than 10000000 bytes in one piece of markup (a tag, an attribute value, a comment or an "
                      "instruction): the limit on one piece of markup";
        const bool inDocument = !e->file || c.uri_ == e->file;
        // A message about the DTD or an entity file names that file, so that an editor opens it there.
        std::string location = inDocument ? c.path_ : displayLocation(e->file);
        if (e->line > 0) location.append(":").append(std::to_string(e->line)).append(":").append(std::to_string(e->int2));
        std::string text = location + ": " + message;
        if (!inDocument) text += " (read for " + c.path_ + ")";
        if (e->level == XML_ERR_FATAL) {
            // An error inside an entity's text has the entity's line numbers;
            // the report prefers the place in the file itself.
            if (inDocument && e->file && c.fatalMessages_.size() < kMaxMessages)
                c.fatalMessages_.insert(c.fatalMessages_.begin(), text);
            else
                addMessage(c.fatalMessages_, text);
            return;
        }
        if (e->level == XML_ERR_ERROR) {
            addMessage(c.errorMessages_, text);
            return;
        }
        addMessage(c.issues_.warnings, text);
    }

    // The first bytes are read while the parser is being made, before it
    // knows its context (an encoding libxml2 cannot read is found there);
    // for that moment the load's routed collector takes the message.
    static void parserError(void* ctx, xmlErrorPtr e) {
        void* own = ctx ? static_cast<xmlParserCtxtPtr>(ctx)->_private : nullptr;
        void* routed = xmlStructuredErrorContext;
        if (own || routed) record(*static_cast<ParseContext*>(own ? own : routed), e);
    }

    static void globalError(void* data, xmlErrorPtr e) { record(*static_cast<ParseContext*>(data), e); }

    static void genericError(void* data, const char* format, ...) {
        auto& c = *static_cast<ParseContext*>(data);
        char piece[1024];
        va_list args;
        va_start(args, format);
        std::vsnprintf(piece, sizeof piece, format, args);
        va_end(args);
        c.genericMessage_ += piece;
        if (c.genericMessage_.size() > 4096) c.genericMessage_.resize(4096);
    }
};

namespace {

// libxml2 reports some messages (catalogs, I/O outside a parser) through its
// per-thread global handlers, which print to stderr by default. For the
// length of one load they are routed to the load's own collector.
class ScopedErrorRouting {
public:
    explicit ScopedErrorRouting(ParseContext& context)
        : generic_(xmlGenericError),
          genericContext_(xmlGenericErrorContext),
          structured_(xmlStructuredError),
          structuredContext_(xmlStructuredErrorContext) {
        xmlSetGenericErrorFunc(&context, &ParseCallbacks::genericError);
        xmlSetStructuredErrorFunc(&context, &ParseCallbacks::globalError);
    }
    ~ScopedErrorRouting() {
        xmlSetGenericErrorFunc(genericContext_, generic_);
        xmlSetStructuredErrorFunc(structuredContext_, structured_);
    }
    ScopedErrorRouting(const ScopedErrorRouting&) = delete;
    ScopedErrorRouting& operator=(const ScopedErrorRouting&) = delete;

private:
    xmlGenericErrorFunc generic_;
    void* genericContext_;
    xmlStructuredErrorFunc structured_;
    void* structuredContext_;
};

xmlSAXHandler makeHandler() {
    xmlSAXHandler sax;
    std::memset(&sax, 0, sizeof sax);
    xmlSAXVersion(&sax, 2);  // the DTD callbacks build the declarations the loaders read
    sax.startElementNs = &ParseCallbacks::startElement;
    sax.endElementNs = &ParseCallbacks::endElement;
    sax.startElement = nullptr;
    sax.endElement = nullptr;
    sax.characters = &ParseCallbacks::characters;
    sax.ignorableWhitespace = &ParseCallbacks::characters;
    sax.cdataBlock = &ParseCallbacks::characters;
    sax.comment = &ParseCallbacks::comment;
    sax.processingInstruction = &ParseCallbacks::instruction;
    sax.getEntity = &ParseCallbacks::getEntity;
    sax.getParameterEntity = &ParseCallbacks::getParameterEntity;
    sax.resolveEntity = &ParseCallbacks::resolveEntity;
    sax.entityDecl = &ParseCallbacks::entityDecl;
    sax.externalSubset = &ParseCallbacks::externalSubset;
    sax.reference = nullptr;
    sax.warning = nullptr;
    sax.error = nullptr;
    sax.fatalError = nullptr;
    sax.serror = &ParseCallbacks::parserError;
    return sax;
}

ssize_t readSome(int fd, char* buffer, std::size_t size) {
    for (;;) {
        ssize_t n = ::read(fd, buffer, size);
        if (n < 0 && errno == EINTR) continue;
        return n;
    }
}

std::string openFailure(const std::string& path, const char* reason) {
    return "Cannot open \"" + path + "\": " + reason;
}

}  // namespace

ParseIssues parseFile(const std::string& path, ParseHandler& handler) {
    ParseContext context(path, handler);
    // Non-blocking, so that a FIFO given by mistake cannot stall the open.
    int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) {
        context.issues_.error = openFailure(path, std::strerror(errno));
        return context.issues_;
    }
    struct stat info {};
    if (::fstat(fd, &info) != 0 || !S_ISREG(info.st_mode)) {
        ::close(fd);
        context.issues_.error =
            openFailure(path, S_ISDIR(info.st_mode) ? "it is a folder" : "it is not a regular file");
        return context.issues_;
    }
    context.fd_ = fd;
    context.inputBytes_ = context.fileBytes_ = static_cast<std::size_t>(info.st_size);
    // libxml2 is given the file as a URI with everything unusual escaped, so
    // that references relative to it resolve whatever the folder is called.
    std::error_code ec;
    const std::filesystem::path absolute = std::filesystem::absolute(path, ec).lexically_normal();
    context.uri_ = fileUri(absolute.string());
    char real[PATH_MAX];
    if (::realpath(absolute.parent_path().c_str(), real)) context.folder_ = real;

    xmlInitParser();
    xmlSetExternalEntityLoader(&ParseCallbacks::loadExternal);
    ScopedErrorRouting routing(context);
    std::string buffer(kChunkSize, '\0');
    ssize_t n = readSome(fd, buffer.data(), buffer.size());
    if (n < 0) {
        context.issues_.error = "Cannot read \"" + path + "\": " + std::strerror(errno);
        ::close(fd);
        return context.issues_;
    }
    if (n == 0) {
        context.issues_.error = path + ": the file is empty";
        ::close(fd);
        return context.issues_;
    }
    xmlSAXHandler sax = makeHandler();
    xmlParserCtxtPtr parser = xmlCreatePushParserCtxt(&sax, nullptr, buffer.data(), static_cast<int>(n), context.uri_.c_str());
    if (!parser) {
        context.issues_.error = "Cannot read \"" + path + "\": out of memory";
        ::close(fd);
        return context.issues_;
    }
    parser->_private = &context;
    context.parser_ = parser;
    // No XML_PARSE_HUGE: libxml2's limits on entity expansion and depth stay on.
    xmlCtxtUseOptions(parser, XML_PARSE_NONET | XML_PARSE_NOENT | XML_PARSE_DTDLOAD);

    bool ended = false;
    while (!ended && !context.failed() && parser->instate != XML_PARSER_EOF) {
        n = readSome(fd, buffer.data(), buffer.size());
        if (n < 0) {
            context.issues_.error = "Cannot read \"" + path + "\": " + std::strerror(errno);
            break;
        }
        ended = n == 0;
        xmlParseChunk(parser, buffer.data(), static_cast<int>(n), ended ? 1 : 0);
    }

    if (!context.failed()) {
        if (!parser->wellFormed) {
            const auto& reasons = !context.fatalMessages_.empty() ? context.fatalMessages_ : context.errorMessages_;
            context.issues_.error = !reasons.empty()          ? reasons.front()
                                    : !context.genericMessage_.empty() ? path + ": " + trimmed(context.genericMessage_.c_str())
                                                                       : path + ": not well-formed XML";
        } else {
            for (auto& message : context.errorMessages_) addMessage(context.issues_.warnings, message);
            context.handler_->finish(context);
        }
    }
    if (!context.genericMessage_.empty() && context.issues_.error.find(trimmed(context.genericMessage_.c_str())) == std::string::npos)
        addMessage(context.issues_.warnings, path + ": " + trimmed(context.genericMessage_.c_str()));

    if (parser->myDoc) xmlFreeDoc(parser->myDoc);
    parser->myDoc = nullptr;
    xmlFreeParserCtxt(parser);
    context.parser_ = nullptr;
    ::close(fd);
    return context.issues_;
}

}  // namespace voka::headless
