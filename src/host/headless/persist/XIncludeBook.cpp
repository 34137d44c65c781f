#include "host/headless/persist/XIncludeBook.h"

#include "host/headless/persist/FileReferences.h"

#include <filesystem>
#include <unordered_set>

namespace voka::headless {

namespace {

constexpr std::string_view kXIncludeNamespace = "http://www.w3.org/2001/XInclude";

// The element's value of `name`, else the default its definition declares.
bool attributeOf(const Document& doc, Index element, const std::string& name, std::string& value) {
    const ElementDefinition& def = doc.definitions[doc.elements[element].definition];
    const auto found = def.attributeIndex.find(name);
    if (found == def.attributeIndex.end()) return false;
    if (const std::uint32_t values = doc.attributeValues(element, found->second); values != 0) {
        value.clear();
        for (const std::string& piece : doc.values.get(values)) value += (value.empty() ? "" : " ") + piece;
        return true;
    }
    const std::vector<std::string>& defaults = def.attributes[found->second].defaults;
    if (defaults.empty()) return false;
    value = defaults.front();
    return true;
}

// The namespace of a child of the root, from its own declaration or the root's.
std::string namespaceOf(const Document& doc, Index element, Index root) {
    const std::string& tag = doc.definitions[doc.elements[element].definition].tag;
    const std::size_t colon = tag.find(':');
    const std::string declaration = colon == std::string::npos ? "xmlns" : "xmlns:" + tag.substr(0, colon);
    std::string uri;
    if (attributeOf(doc, element, declaration, uri) || attributeOf(doc, root, declaration, uri)) return uri;
    return {};
}

// xml:base on `element` applied to `base`; false when it leads off the file system.
bool applyBase(const Document& doc, Index element, std::string& base) {
    std::string given;
    if (!attributeOf(doc, element, "xml:base", given) || given.empty()) return true;
    std::string resolved;
    if (resolveReference(given, base, resolved) != Reference::File) return false;
    // "chapters/" is a folder; a base without the slash names a file in the folder above, as URIs resolve.
    if (given.back() == '/' && resolved.back() != '/') resolved += '/';
    base = resolved;
    return true;
}

}  // namespace

bool gatherXIncludeBook(const Document& doc, const std::string& path, Book& book, std::vector<std::string>& warnings) {
    // A document with no element named `include` costs one look at its definitions.
    std::vector<bool> named(doc.definitions.size(), false);
    bool any = false;
    for (std::size_t i = 0; i < doc.definitions.size(); ++i) {
        const std::string& tag = doc.definitions[i].tag;
        const std::size_t colon = tag.find(':');
        named[i] = (colon == std::string::npos ? tag : tag.substr(colon + 1)) == "include";
        any = any || named[i];
    }
    if (!any) return false;
    const Flow* main = nullptr;
    for (const Flow& flow : doc.flows)
        if (flow.main) main = &flow;
    if (!main || main->root == kNil) return false;
    const Index root = main->root;

    const std::string file = std::filesystem::absolute(path).lexically_normal().string();
    std::string rootBase = file;
    const bool rootLocal = applyBase(doc, root, rootBase);
    std::unordered_set<std::string> included;
    bool isBook = false;
    for (Index child = doc.elements[root].firstChild; child != kNil; child = doc.elements[child].nextSibling) {
        const Element& element = doc.elements[child];
        if (!element.alive || !named[element.definition] || namespaceOf(doc, child, root) != kXIncludeNamespace) continue;
        std::string parse, href;
        attributeOf(doc, child, "parse", parse);
        if (parse == "text") continue;  // text, not a component
        const std::string place = file + ": the XInclude of \"";
        attributeOf(doc, child, "href", href);
        isBook = true;
        if (parse != "xml" && !parse.empty()) {
            warnings.push_back(place + href + "\" is left out: parse=\"" + parse + "\" is neither xml nor text");
            continue;
        }
        std::string base = rootBase;
        std::string target;
        const Reference reference =
            rootLocal && applyBase(doc, child, base) ? resolveReference(href, base, target) : Reference::Remote;
        if (reference == Reference::Empty) {
            warnings.push_back(place + href + "\" is left out: it includes part of this document, not another file");
            continue;
        }
        if (reference == Reference::Remote) {
            warnings.push_back(place + href + "\" is left out: it is on the network, which voka never reads");
            continue;
        }
        if (!included.insert(target).second) continue;
        if (book.components.size() >= kMaxGatheredComponents) {
            warnings.push_back(place + href + "\" and those after it are left out: a book gathers at most " +
                               std::to_string(kMaxGatheredComponents) + " files");
            break;
        }
        BookComponent component;
        component.path = std::move(target);
        component.handleId = book.nextComponentId++;
        book.components.push_back(std::move(component));
    }
    if (isBook) book.source = BookSource::XInclude;
    return isBook;
}

}  // namespace voka::headless
