#include "host/headless/DialogResource.h"

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <algorithm>
#include <charconv>
#include <memory>

namespace voka::headless {

namespace {

const std::vector<std::string>& itemKinds() {
    static const std::vector<std::string> kinds = {"label",    "text",  "edit",  "button",
                                                   "checkbox", "radio", "popup", "scrolllist"};
    return kinds;
}

std::string property(xmlNode* node, const char* name, bool& present) {
    xmlChar* value = xmlGetProp(node, reinterpret_cast<const xmlChar*>(name));
    present = value != nullptr;
    if (!value) return {};
    std::string result(reinterpret_cast<const char*>(value));
    xmlFree(value);
    return result;
}

std::string property(xmlNode* node, const char* name) {
    bool present = false;
    return property(node, name, present);
}

bool toInt(const std::string& text, int& value) {
    const char* end = text.data() + text.size();
    auto [stop, error] = std::from_chars(text.data(), end, value);
    return error == std::errc() && stop == end && !text.empty();
}

bool named(xmlNode* node, const char* name) {
    return node->type == XML_ELEMENT_NODE && xmlStrcmp(node->name, reinterpret_cast<const xmlChar*>(name)) == 0;
}

std::string content(xmlNode* node) {
    xmlChar* text = xmlNodeGetContent(node);
    if (!text) return {};
    std::string result(reinterpret_cast<const char*>(text));
    xmlFree(text);
    return result;
}

struct DocFree {
    void operator()(xmlDoc* doc) const { xmlFreeDoc(doc); }
};
struct ParserFree {
    void operator()(xmlParserCtxt* context) const { xmlFreeParserCtxt(context); }
};

DialogLoadResult failure(const std::string& path, const std::string& message) {
    DialogLoadResult result;
    result.error = path + ": " + message;
    return result;
}

bool readItem(xmlNode* node, DialogItemSpec& item, std::string& error) {
    if (!toInt(property(node, "number"), item.number)) {
        error = "item without a valid number (line " + std::to_string(xmlGetLineNo(node)) + ")";
        return false;
    }
    item.kind = property(node, "kind");
    const auto& kinds = itemKinds();
    if (std::find(kinds.begin(), kinds.end(), item.kind) == kinds.end()) {
        error = "item " + std::to_string(item.number) + " has an unknown kind \"" + item.kind + "\"";
        return false;
    }
    item.label = property(node, "label");
    item.text = property(node, "text");
    const bool listLike = item.kind == "popup" || item.kind == "scrolllist";
    item.state = listLike ? -1 : 0;
    bool hasState = false;
    const std::string state = property(node, "state", hasState);
    if (hasState && !toInt(state, item.state)) {
        error = "item " + std::to_string(item.number) + " has a state that is not a number";
        return false;
    }
    item.closes = property(node, "closes") == "1";
    for (xmlNode* child = node->children; child; child = child->next)
        if (named(child, "choice")) item.choices.push_back(content(child));
    return true;
}

}  // namespace

DialogLoadResult loadDialogResource(const std::string& systemPath) {
    std::unique_ptr<xmlParserCtxt, ParserFree> context(xmlNewParserCtxt());
    if (!context) return failure(systemPath, "out of memory");
    std::unique_ptr<xmlDoc, DocFree> doc(
        xmlCtxtReadFile(context.get(), systemPath.c_str(), nullptr, XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING));
    if (!doc) {
        const xmlError* error = xmlCtxtGetLastError(context.get());
        if (!error) return failure(systemPath, "cannot be read");
        std::string message = error->message ? error->message : "malformed";
        while (!message.empty() && message.back() == '\n') message.pop_back();
        return failure(systemPath, "line " + std::to_string(error->line) + ", column " + std::to_string(error->int2) +
                                       ": " + message);
    }
    xmlNode* root = xmlDocGetRootElement(doc.get());
    if (!root || !named(root, "dialog")) return failure(systemPath, "the root element is not <dialog>");

    DialogLoadResult result;
    result.spec.name = property(root, "name");
    result.spec.title = property(root, "title");
    for (xmlNode* node = root->children; node; node = node->next) {
        if (!named(node, "item")) continue;
        DialogItemSpec item;
        std::string error;
        if (!readItem(node, item, error)) return failure(systemPath, error);
        result.spec.items.push_back(std::move(item));
    }
    auto& items = result.spec.items;
    std::stable_sort(items.begin(), items.end(), [](const auto& a, const auto& b) { return a.number < b.number; });
    for (std::size_t i = 1; i < items.size(); ++i)
        if (items[i].number == items[i - 1].number)
            return failure(systemPath, "item " + std::to_string(items[i].number) + " is defined twice");
    result.ok = true;
    return result;
}

int findDialogItem(const std::vector<DialogItemSpec>& items, int number) {
    auto it = std::lower_bound(items.begin(), items.end(), number,
                               [](const DialogItemSpec& item, int n) { return item.number < n; });
    if (it == items.end() || it->number != number) return -1;
    return static_cast<int>(it - items.begin());
}

}  // namespace voka::headless
