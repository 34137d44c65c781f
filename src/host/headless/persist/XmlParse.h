// The one way the headless host reads XML files: libxml2's push parser over
// a file it opens itself, with the safety settings every load needs (no
// network, external entities only through XML catalogs, entity expansion
// limits on), every libxml2 message collected instead of printed, and the
// parse events handed to a ParseHandler.
#pragma once

#include <libxml/parser.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace voka::headless {

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

    // Stops the parse with an error at the current line and column.
    void fail(const std::string& message);
    void warn(const std::string& message);  // at the current line and column
    bool failed() const { return !issues_.error.empty(); }
    int line() const;
    int column() const;
    // True inside the DTD, where comments and instructions belong to the prolog.
    bool inDtd() const;
    // The file's bytes [0, end), for keeping the prolog as it was written.
    bool readPrefix(std::size_t end, std::string& bytes) const;
    // Bytes of the file consumed so far.
    std::size_t consumed() const;
    // True when the input was converted from another encoding to UTF-8.
    bool converted() const;

    ParseIssues& issues() { return issues_; }

private:
    friend ParseIssues parseFile(const std::string& path, ParseHandler& handler);
    friend struct ParseCallbacks;
    std::string path_;
    ParseHandler* handler_;
    xmlParserCtxtPtr parser_ = nullptr;
    int fd_ = -1;
    ParseIssues issues_;
    std::string lastIoMessage_;  // why the last external resource could not be read
    std::string genericMessage_;  // libxml2's unstructured messages, pieced together
    std::vector<std::string> fatalMessages_;
    std::vector<std::string> errorMessages_;
};

// Parses the file; the handler may replace itself (setHandler) at the root.
ParseIssues parseFile(const std::string& path, ParseHandler& handler);

}  // namespace voka::headless
