#include "cli/DitavalImport.h"

#include "host/headless/HostPaths.h"
#include "schemes/NameLists.h"
#include "schemes/SchemeSchema.h"
#include "settings/SettingsDocument.h"

#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xmlerror.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace voka::cli {
namespace {

// A DITAVAL file is a page of rules: anything bigger is refused before it is
// held in memory.
constexpr std::size_t kMaxDitavalBytes = std::size_t{16} << 20;

// What `<prop action="exclude"/>` without att applies to besides the attributes the file names.
const char* const kConditionalAttributes[] = {"audience", "platform", "product", "props", "otherprops", "deliveryTarget"};

enum class Decision { Include, Exclude };

struct AttributeDecisions {
    std::string name;
    std::optional<Decision> fallback;                      // <prop att="A" action="..."/>
    std::vector<std::pair<std::string, Decision>> values;  // <prop att="A" val="V" .../>, in file order
};

struct Ditaval {
    std::optional<Decision> fallback;            // <prop action="..."/>
    std::vector<AttributeDecisions> attributes;  // in the order the file first names them
};

using Warnings = std::vector<std::string>;

const char* str(const xmlChar* text) { return reinterpret_cast<const char*>(text); }

bool hasBlank(const std::string& text) { return text.find_first_of(" \t\r\n") != std::string::npos; }

std::string joined(const std::vector<std::string>& values) {
    std::string text;
    for (const std::string& value : values) text += (text.empty() ? "" : ", ") + value;
    return text;
}

// --- Reading the DITAVAL file ------------------------------------------------

bool readWhole(const std::string& path, std::string& bytes, std::string& error) {
    // Non-blocking, so that a FIFO named by mistake cannot stall the open.
    const int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) {
        error = "cannot open " + path + ": " + std::strerror(errno);
        return false;
    }
    struct stat info {};
    if (::fstat(fd, &info) != 0 || !S_ISREG(info.st_mode)) {
        error = "cannot open " + path + ": " + (S_ISDIR(info.st_mode) ? "it is a folder" : "it is not a regular file");
    } else if (static_cast<std::size_t>(info.st_size) > kMaxDitavalBytes) {
        error = "cannot read " + path + ": " + std::to_string(info.st_size) + " bytes is more than a DITAVAL file holds (" +
                std::to_string(kMaxDitavalBytes >> 20) + " MB at most)";
    } else {
        // The size is checked again as it is read: the file may be growing.
        char chunk[64 * 1024];
        for (;;) {
            const ssize_t n = ::read(fd, chunk, sizeof chunk);
            if (n < 0 && errno == EINTR) continue;
            if (n < 0) error = "cannot read " + path + ": " + std::strerror(errno);
            if (n <= 0) break;
            bytes.append(chunk, static_cast<std::size_t>(n));
            if (bytes.size() > kMaxDitavalBytes) {
                error = "cannot read " + path + ": it grew past " + std::to_string(kMaxDitavalBytes >> 20) + " MB";
                break;
            }
        }
    }
    ::close(fd);
    return error.empty();
}

#if LIBXML_VERSION >= 21200
using ErrorPointer = const xmlError*;
#else
using ErrorPointer = xmlErrorPtr;
#endif

// For the length of one parse, libxml2's messages come here instead of
// stderr, and nothing outside the file (DTD, external entity) is ever read.
class ParseGuard {
public:
    explicit ParseGuard(const std::string& path)
        : path_(path),
          generic_(xmlGenericError),
          genericContext_(xmlGenericErrorContext),
          structured_(xmlStructuredError),
          structuredContext_(xmlStructuredErrorContext),
          loader_(xmlGetExternalEntityLoader()) {
        xmlSetGenericErrorFunc(this, &ParseGuard::ignore);
        xmlSetStructuredErrorFunc(this, &ParseGuard::collect);
        xmlSetExternalEntityLoader(&ParseGuard::refuse);
    }
    ~ParseGuard() {
        xmlSetGenericErrorFunc(genericContext_, generic_);
        xmlSetStructuredErrorFunc(structuredContext_, structured_);
        xmlSetExternalEntityLoader(loader_);
    }
    ParseGuard(const ParseGuard&) = delete;
    ParseGuard& operator=(const ParseGuard&) = delete;

    // The first error says what is wrong; the ones after it follow from it.
    const std::string& firstError() const { return first_; }

private:
    static void ignore(void*, const char*, ...) {}
    static void collect(void* data, ErrorPointer e) {
        auto* guard = static_cast<ParseGuard*>(data);
        if (!e || e->level < XML_ERR_ERROR || !guard->first_.empty()) return;
        std::string message = e->message ? e->message : "not well-formed";
        while (!message.empty() && (message.back() == '\n' || message.back() == ' ')) message.pop_back();
        guard->first_ = guard->path_ + ":" + std::to_string(e->line) + ":" + std::to_string(e->int2) + ": " + message;
    }
    static xmlParserInputPtr refuse(const char*, const char*, xmlParserCtxtPtr) { return nullptr; }

    const std::string& path_;
    std::string first_;
    xmlGenericErrorFunc generic_;
    void* genericContext_;
    xmlStructuredErrorFunc structured_;
    void* structuredContext_;
    xmlExternalEntityLoader loader_;
};

using XmlDocument = std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)>;

XmlDocument parse(const std::string& path, const std::string& bytes, std::string& error) {
    xmlInitParser();
    ParseGuard guard(path);
    XmlDocument doc(nullptr, &xmlFreeDoc);
    xmlParserCtxtPtr parser = xmlNewParserCtxt();
    if (!parser) {
        error = "cannot read " + path + ": out of memory";
        return doc;
    }
    // No NOENT, DTDLOAD or HUGE: entities stay references, the DTD unread, libxml2's limits on.
    int options = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_BIG_LINES;
#if LIBXML_VERSION >= 21300
    options |= XML_PARSE_NO_XXE;
#endif
    doc.reset(xmlCtxtReadMemory(parser, bytes.data(), static_cast<int>(bytes.size()), path.c_str(), nullptr, options));
    const bool wellFormed = parser->wellFormed != 0;
    xmlFreeParserCtxt(parser);
    if (doc && wellFormed) return doc;
    doc.reset();
    error = guard.firstError().empty() ? path + ": not well-formed XML" : guard.firstError();
    return doc;
}

class RuleReader {
public:
    RuleReader(const std::string& path, Ditaval& ditaval, Warnings& warnings)
        : path_(path), ditaval_(ditaval), warnings_(warnings) {}

    std::string at(xmlNodePtr node) const { return path_ + ":" + std::to_string(xmlGetLineNo(node)); }
    const std::string& error() const { return error_; }

    void read(xmlNodePtr child) {
        const std::string tag = str(child->name);
        if (tag == "prop") readProp(child);
        else if (tag == "revprop") warn(child, "<revprop> (flagging by rev) cannot be expressed in a filter scheme; ignored");
        else if (tag == "style-conflict") warn(child, "<style-conflict> is about flags, which a filter scheme does not set; ignored");
        else warn(child, "<" + tag + "> is not a DITAVAL element; ignored");
    }

private:
    void warn(xmlNodePtr node, const std::string& text) { warnings_.push_back(at(node) + ": " + text); }

    // The attribute as the file writes it. A reference to an entity the file
    // declares is refused rather than expanded.
    std::optional<std::string> attribute(xmlNodePtr node, const char* name) {
        for (xmlAttrPtr a = node->properties; a; a = a->next) {
            if (a->ns || std::strcmp(str(a->name), name) != 0) continue;
            std::string text;
            for (xmlNodePtr part = a->children; part; part = part->next) {
                if (part->type == XML_TEXT_NODE && part->content) text += str(part->content);
                else if (part->type == XML_ENTITY_REF_NODE && error_.empty())
                    error_ = at(node) + ": " + name + " refers to the entity &" + str(part->name) +
                             ";, which voka does not expand in a DITAVAL file";
            }
            return text;
        }
        return std::nullopt;
    }

    AttributeDecisions& decisionsFor(const std::string& name) {
        for (AttributeDecisions& a : ditaval_.attributes)
            if (a.name == name) return a;
        ditaval_.attributes.push_back(AttributeDecisions{name, std::nullopt, {}});
        return ditaval_.attributes.back();
    }

    // As in DITAVAL processors, the first rule for a value (or a default) holds.
    void decide(xmlNodePtr node, std::optional<Decision>& slot, Decision decision, const std::string& what) {
        if (slot && *slot != decision) warn(node, "a second, different rule for " + what + "; the first one holds");
        if (!slot) slot = decision;
    }

    void readProp(xmlNodePtr node) {
        const auto att = attribute(node, "att"), val = attribute(node, "val"), action = attribute(node, "action");
        if (!error_.empty()) return;
        const std::string what = !att ? "every attribute" : !val ? "every value of " + *att : *att + "=\"" + *val + "\"";
        if (!action) return warn(node, "<prop> for " + what + " has no action; ignored");
        Decision decision = Decision::Include;
        if (*action == "exclude") decision = Decision::Exclude;
        else if (*action == "flag")
            warn(node, "action=\"flag\" for " + what + " cannot be expressed in a filter scheme, which flags nothing; "
                       "kept as include, as DITAVAL keeps what it flags");
        else if (*action == "passthrough")
            warn(node, "action=\"passthrough\" for " + what + " cannot be expressed in a filter scheme, which passes "
                       "no attribute to the output; kept as include");
        else if (*action != "include")
            return warn(node, "action=\"" + *action + "\" for " + what + " is not a DITAVAL action; ignored");

        if (!att) {
            if (val) return warn(node, "<prop val=\"" + *val + "\"> names no att; ignored");
            return decide(node, ditaval_.fallback, decision, what);
        }
        if (att->empty() || hasBlank(*att)) return warn(node, "att=\"" + *att + "\" is not an attribute name; ignored");
        if (!val) return decide(node, decisionsFor(*att).fallback, decision, what);
        if (val->find_first_of("()") != std::string::npos)
            return warn(node, what + ": group syntax such as product(a b) in props and otherprops cannot be expressed "
                              "in a filter scheme; ignored");
        if (val->empty() || hasBlank(*val))
            return warn(node, what + " is not one value, and values are compared word by word; ignored");
        auto& values = decisionsFor(*att).values;
        auto found = std::find_if(values.begin(), values.end(), [&](const auto& v) { return v.first == *val; });
        if (found == values.end()) values.emplace_back(*val, decision);
        else if (found->second != decision) warn(node, "a second, different rule for " + what + "; the first one holds");
    }

    const std::string& path_;
    Ditaval& ditaval_;
    Warnings& warnings_;
    std::string error_;
};

// The file's rules; false with `error` when it is no DITAVAL file voka can read.
bool readDitaval(const std::string& path, Ditaval& ditaval, Warnings& warnings, std::string& error) {
    std::string bytes;
    if (!readWhole(path, bytes, error)) return false;
    const XmlDocument doc = parse(path, bytes, error);
    if (!doc) return false;
    RuleReader reader(path, ditaval, warnings);
    const xmlNodePtr root = xmlDocGetRootElement(doc.get());
    if (!root || std::strcmp(str(root->name), "val") != 0) {
        error = (root ? reader.at(root) : path) + ": the root element is not <val>: this is no DITAVAL file";
        return false;
    }
    for (xmlNodePtr child = root->children; child && reader.error().empty(); child = child->next)
        if (child->type == XML_ELEMENT_NODE) reader.read(child);
    error = reader.error();
    return error.empty();
}

// --- The scheme -----------------------------------------------------------------

struct SchemeRule {
    std::string attribute;
    std::vector<std::string> values;
};

// The attribute library of the main settings: each attribute with its known values.
using Library = std::vector<std::pair<std::string, std::vector<std::string>>>;

// A DITAVAL rule set drops an element when all its values of one attribute
// are excluded; a filter scheme keeps an element when one of its values of
// every rule's attribute is listed. Where DITAVAL includes by default, the
// values to list can only come from the attribute library.
std::vector<SchemeRule> schemeRules(const Ditaval& ditaval, const Library& library, Warnings& warnings) {
    std::vector<AttributeDecisions> attributes = ditaval.attributes;
    auto add = [&](const std::string& name) {
        for (const AttributeDecisions& a : attributes)
            if (a.name == name) return;
        attributes.push_back(AttributeDecisions{name, std::nullopt, {}});
    };
    if (ditaval.fallback == Decision::Exclude) {
        for (const auto& entry : library) add(entry.first);
        for (const char* name : kConditionalAttributes) add(name);
    }

    std::vector<SchemeRule> rules;
    for (const AttributeDecisions& a : attributes) {
        const Decision fallback = a.fallback.value_or(ditaval.fallback.value_or(Decision::Include));
        std::vector<std::string> included, excluded;
        for (const auto& [value, decision] : a.values) (decision == Decision::Include ? included : excluded).push_back(value);
        SchemeRule rule{a.name, {}};
        if (fallback == Decision::Exclude) {
            rule.values = included;
        } else {
            if (excluded.empty()) continue;  // nothing is dropped by this attribute
            auto listed = std::find_if(library.begin(), library.end(), [&](const auto& entry) { return entry.first == a.name; });
            auto keep = [&](const std::string& value) {
                const bool keyword = namesEqual(value, kNoValue, false) || namesEqual(value, kAnyValue, false);
                if (!keyword && findInList(excluded, value, true) < 0 && findInList(rule.values, value, true) < 0)
                    rule.values.push_back(value);
            };
            if (listed != library.end())
                for (const std::string& value : listed->second) keep(value);
            for (const std::string& value : included) keep(value);
            const std::string kept = rule.values.empty() ? "none of its values" : joined(rule.values);
            warnings.push_back(
                a.name + ": " +
                (listed != library.end() ? "the scheme keeps " + kept + " (the attribute library's values not excluded)"
                                         : "the attribute library does not list " + a.name +
                                               ", so the scheme keeps only the values the file includes (" + kept + ")") +
                " and elements without a value; an element with only other " + a.name +
                " values is dropped, where DITAVAL keeps it");
        }
        rule.values.push_back(kNoValue);
        rules.push_back(std::move(rule));
    }
    return rules;
}

// --- The main settings ----------------------------------------------------------

std::vector<std::string> valuesOf(Host& host, Handle doc, Handle element, const std::string& name) {
    for (const Attribute& attribute : host.attributes(doc, element))
        if (attribute.name == name) return attribute.values;
    return {};
}

std::string nameOf(Host& host, Handle doc, Handle element) {
    const std::vector<std::string> values = valuesOf(host, doc, element, kAttrName);
    return values.empty() ? std::string() : values.front();
}

Library attributeLibrary(Host& host, PluginState& state, Handle doc) {
    Library library;
    const Handle list = findElement(host, state, doc, kNoObject, kTagAttributeList, kWildcard, kWildcard, "");
    for (Handle child = list ? host.firstChild(doc, list) : kNoObject; child != kNoObject; child = host.nextSibling(doc, child)) {
        const std::string name = nameOf(host, doc, child);
        const bool known = std::any_of(library.begin(), library.end(), [&](const auto& entry) { return entry.first == name; });
        if (!name.empty() && !known) library.emplace_back(name, valuesOf(host, doc, child, kAttrValues));
    }
    return library;
}

std::string categoryList(Host& host, PluginState& state, Handle doc) {
    std::string list;
    const Handle categories = findElement(host, state, doc, kNoObject, kTagSchemeCategories, kWildcard, kWildcard, "");
    for (Handle child = categories ? host.firstChild(doc, categories) : kNoObject; child != kNoObject;
         child = host.nextSibling(doc, child))
        list += (list.empty() ? "\"" : ", \"") + nameOf(host, doc, child) + "\"";
    return list.empty() ? "none" : list;
}

Handle definitionOf(Host& host, Handle doc, const std::string& tag) {
    for (Handle d = host.firstElementDefinition(doc); d != kNoObject; d = host.nextElementDefinition(doc, d))
        if (host.definitionTag(doc, d) == tag) return d;
    return kNoObject;
}

Handle appendChild(Host& host, Handle doc, Handle parent, Handle definition, const Attributes& attributes) {
    const Handle element = host.newElement(doc, definition, ElementLocation{parent, kNoObject, 0});
    if (element == kNoObject || !host.setAttributes(doc, element, attributes)) return kNoObject;
    return element;
}

// Only the document in memory changes here; it is saved once whole.
bool appendScheme(Host& host, Handle doc, Handle container, const std::string& name, const std::string& comment,
                  const std::vector<SchemeRule>& rules) {
    const Handle schemeDefinition = definitionOf(host, doc, kTagScheme);
    const Handle ruleDefinition = definitionOf(host, doc, kTagAttribute);
    if (schemeDefinition == kNoObject || ruleDefinition == kNoObject) return false;
    const Handle scheme = appendChild(host, doc, container, schemeDefinition,
                                      {{kAttrName, {name}},
                                       {kAttrIncludeEddDefaults, {"True"}},
                                       {kAttrSpaceDelimited, {"True"}},
                                       {kAttrIgnoreCase, {"False"}},
                                       {kAttrProcessAllFlows, {"False"}},
                                       {kAttrComment, {comment}}});
    if (scheme == kNoObject) return false;
    for (const SchemeRule& rule : rules)
        if (appendChild(host, doc, scheme, ruleDefinition, {{kAttrName, {rule.attribute}}, {kAttrValues, rule.values}}) == kNoObject)
            return false;
    return true;
}

// Closed on every way out, changes and all: only a save writes them.
struct HeldDocument {
    Host& host;
    Handle doc;
    ~HeldDocument() {
        if (doc != kNoObject) host.close(doc, kCloseModified);
    }
};

}  // namespace

int importDitaval(Session& session, const DitavalRequest& request) {
    Ditaval ditaval;
    Warnings warnings;
    std::string error;
    if (!readDitaval(request.file, ditaval, warnings, error)) {
        std::cerr << "voka: " << error << "\n";
        return kExitBadInput;
    }
    const std::string fileName = std::filesystem::path(request.file).filename().string();
    const std::string schemeName = request.scheme.empty() ? std::filesystem::path(request.file).stem().string() : request.scheme;
    if (schemeName.empty() || isNoneName(schemeName)) {
        std::cerr << "voka: \"" << schemeName << "\" cannot name a scheme; choose another with --scheme\n";
        return kExitUsage;
    }

    Host& host = session.host();
    PluginState& state = session.plugin().state();
    const std::string settingsPath = headless::toSystemPath(state.paths.localCopy);
    // At every start the plug-in copies the main settings file the
    // preferences name over the local copy: a scheme added there would go.
    const std::string& master = state.prefs.masterPath;
    if (host.fileExists(master) && headless::normalHostPath(master) != headless::normalHostPath(state.paths.localCopy)) {
        std::cerr << "voka: the preferences name " << headless::toSystemPath(master)
                  << " as the main settings, which replaces " << settingsPath
                  << " at every start; a scheme imported there would be lost, so nothing was changed\n";
        return kExitFailed;
    }
    HeldDocument settings{host, openSettingsInvisibly(host, state.paths.localCopy)};
    if (settings.doc == kNoObject) {
        std::cerr << "voka: cannot open the main settings " << settingsPath << "\n";
        return kExitBadInput;
    }
    const Handle doc = settings.doc;

    const std::string category = request.category.empty() ? state.active.category : request.category;
    const Handle categoryElement = findCategory(host, state, doc, category);
    if (categoryElement == kNoObject) {
        std::cerr << "voka: there is no category \"" << category << "\" in " << settingsPath
                  << "; the categories are " << categoryList(host, state, doc) << "\n";
        return kExitFailed;
    }
    if (findScheme(host, state, doc, category, SchemeKind::Filter, schemeName) != kNoObject) {
        std::cerr << "voka: the category \"" << category << "\" has a filter scheme \"" << schemeName
                  << "\" already; nothing was changed (choose another name with --scheme)\n";
        return kExitFailed;
    }
    const Handle container = findSchemeContainer(host, state, doc, categoryElement, SchemeKind::Filter);
    if (container == kNoObject) {
        std::cerr << "voka: the category \"" << category << "\" in " << settingsPath << " has no "
                  << schemeContainerTag(SchemeKind::Filter) << " element; nothing was changed\n";
        return kExitFailed;
    }

    const std::vector<SchemeRule> rules = schemeRules(ditaval, attributeLibrary(host, state, doc), warnings);
    for (const std::string& warning : warnings) std::cerr << "voka: warning: " << warning << "\n";
    if (rules.empty()) {
        std::cerr << "voka: " << request.file << " excludes nothing a filter scheme can express; no scheme was added\n";
        return kExitFailed;
    }
    if (!appendScheme(host, doc, container, schemeName, "Imported from " + fileName, rules)) {
        std::cerr << "voka: " << settingsPath << " does not declare the elements and attributes of a filter scheme ("
                  << kTagScheme << ", " << kTagAttribute << "); nothing was changed\n";
        return kExitFailed;
    }
    if (host.simpleSave(doc, state.paths.localCopy, false) == kNoObject) {
        std::cerr << "voka: " << settingsPath << " could not be saved; nothing was changed\n";
        return kExitFailed;
    }
    std::cout << "added filter scheme \"" << schemeName << "\" to category \"" << category << "\" in " << settingsPath
              << "\n";
    return kExitOk;
}

}  // namespace voka::cli
