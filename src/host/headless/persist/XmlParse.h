// The one way the headless host reads XML files: libxml2's push parser over
// a file it opens itself, with the safety settings every load needs (no
// network; the DTD and external entities only from the document's folder
// tree or an XML catalog, never from special files; entity expansion and
// element depth bounded), every libxml2 message collected instead of
// printed, and the parse events handed to a ParseHandler.
#pragma once

#include <libxml/parser.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace voka::headless {

// What one load may cost, whatever the file says. Each message that reports
// a limit names it.
inline constexpr int kMaxElementDepth = 10000;
// Text and attribute values may come to this many times the bytes read
// (the file, its DTD and external entities), plus the allowance.
inline constexpr std::size_t kMaxExpansionFactor = 10;
inline constexpr std::size_t kExpansionAllowance = std::size_t{16} << 20;
inline constexpr std::size_t kMaxExternalFileBytes = std::size_t{256} << 20;

struct ParseIssues {
    std::string error;  // the first reason the load fails; empty when it does not
    std::vector<std::string> warnings;
};

// A start tag as libxml2 reports it. Names are interned by the parser, so a
// name pointer stands for its string for the length of one parse.
struct StartTag {
    const xmlChar* prefix = nullptr;
    const xmlChar* local = nullptr;
    int namespaceCount = 0;
    const xmlChar** namespaces = nullptr;  // (prefix, URI) pairs
    int attributeCount = 0;                // specified ones; DTD defaults are left out
    const xmlChar** attributes = nullptr;  // (local, prefix, URI, value, end) quintuples

    std::string qualifiedName() const;
    std::string namespaceName(int i) const;  // "xmlns" or "xmlns:p"
    std::string_view namespaceUri(int i) const;
    std::string attributeName(int i) const;  // "p:local" or "local"
    std::string_view attributeValue(int i) const;
    // The value of an unprefixed attribute; false when it is absent.
    bool find(std::string_view name, std::string_view& value) const;
};

class ParseContext;

class ParseHandler {
public:
    virtual ~ParseHandler() = default;
    virtual void startElement(ParseContext& context, const StartTag& tag) = 0;
    virtual void endElement(ParseContext& context) = 0;
    virtual void characters(ParseContext& context, std::string_view text) = 0;
    virtual void comment(ParseContext& context, std::string_view text) {}
    virtual void instruction(ParseContext& context, std::string_view target, std::string_view data) {}
    // After the last event of a well-formed file.
    virtual void finish(ParseContext& context) {}
};

class ParseContext {
public:
    ParseContext(const std::string& path, ParseHandler& handler);
    const std::string& path() const { return path_; }
    xmlParserCtxtPtr parser() const { return parser_; }
    ParseHandler& handler() { return *handler_; }
    void setHandler(ParseHandler& handler) { handler_ = &handler; }

    // Stops the parse with an error at the current line and column (of the
    // DTD or entity being read, when that is where the parse is).
    void fail(const std::string& message);
    void warn(const std::string& message);  // at the current line and column
    bool failed() const { return !issues_.error.empty(); }
    int line() const;
    int column() const;
    // True inside the DTD, where comments and instructions belong to the prolog.
    bool inDtd() const;
    // The file's bytes [0, end), for keeping the prolog as it was written.
    bool readPrefix(std::size_t end, std::string& bytes) const;
    // Bytes of the file consumed so far, and its size.
    std::size_t consumed() const;
    std::size_t fileBytes() const { return fileBytes_; }
    // True when the input was converted from another encoding to UTF-8.
    bool converted() const;
    // The file's bytes [0, end) converted to UTF-8 as the parser converts
    // them; false when they cannot be.
    bool readPrefixAsUtf8(std::size_t end, std::string& text) const;

    ParseIssues& issues() { return issues_; }

private:
    friend ParseIssues parseFile(const std::string& path, ParseHandler& handler);
    friend struct ParseCallbacks;
    std::string path_;
    ParseHandler* handler_;
    xmlParserCtxtPtr parser_ = nullptr;
    int fd_ = -1;
    std::string location() const;
    bool inDocument() const;  // false while the DTD or an external entity is read  // "FILE:LINE:COLUMN" of the current input
    ParseIssues issues_;
    std::string uri_;     // the document as libxml2 knows it
    std::string folder_;  // the document's folder, links resolved: external files must lie in it
    std::size_t inputBytes_ = 0;  // read so far: the file, its DTD and entities
    std::size_t fileBytes_ = 0;
    std::size_t delivered_ = 0;   // text and attribute bytes handed on
    int depth_ = 0;
    bool loadingSubset_ = false;  // the DTD named by the DOCTYPE is being opened
    std::string subsetRefusal_;   // why that DTD was not read
    std::string entity_;          // the entity last referenced, for messages: "name" (system id)
    std::string genericMessage_;  // libxml2's unstructured messages, pieced together
    std::vector<std::string> fatalMessages_;
    std::vector<std::string> errorMessages_;
};

// Parses the file; the handler may replace itself (setHandler) at the root.
ParseIssues parseFile(const std::string& path, ParseHandler& handler);

}  // namespace voka::headless
