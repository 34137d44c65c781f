#include "host/headless/TreeBuilder.h"

#include "host/headless/HeadlessHost.h"
#include "host/headless/persist/Persist.h"

namespace voka::headless {

TreeBuilder::TreeBuilder() : doc_(std::make_unique<Document>()) {}

TreeBuilder& TreeBuilder::define(const std::string& tag, int type, AttributeDefinitions attributes) {
    const Index def = doc_->definitionFor(tag, type);
    ElementDefinition& d = doc_->definitions[def];
    d.type = type;
    d.attributes = std::move(attributes);
    d.attributeIndex.clear();
    for (std::size_t i = 0; i < d.attributes.size(); ++i)
        d.attributeIndex.emplace(d.attributes[i].name, static_cast<std::uint32_t>(i));
    return *this;
}

TreeBuilder& TreeBuilder::color(const std::string& name, const std::string& rgb) {
    const Index existing = doc_->colorByName(name);
    if (existing == kNil) doc_->colors.push_back(Color{name, rgb});
    else doc_->colors[existing].rgb = rgb;
    return *this;
}

TreeBuilder& TreeBuilder::conditionFormat(const std::string& name, bool shown) {
    const Index existing = doc_->conditionByName(name);
    if (existing == kNil) doc_->conditions.push_back(ConditionFormat{name, shown});
    else doc_->conditions[existing].shown = shown;
    return *this;
}

Flow& TreeBuilder::currentFlow() {
    if (doc_->flows.empty()) {
        Flow main;
        main.name = "A";
        main.main = true;
        doc_->flows.push_back(std::move(main));
        flow_ = 0;
    }
    return doc_->flows[flow_];
}

TreeBuilder& TreeBuilder::flow(const std::string& name) {
    while (!open_.empty()) close();
    currentFlow();
    for (std::size_t i = 0; i < doc_->flows.size(); ++i) {
        if (doc_->flows[i].name != name) continue;
        flow_ = static_cast<std::uint16_t>(i);
        return *this;
    }
    Flow added;
    added.name = name;
    doc_->flows.push_back(std::move(added));
    flow_ = static_cast<std::uint16_t>(doc_->flows.size() - 1);
    return *this;
}

TreeBuilder& TreeBuilder::open(const std::string& tag, std::vector<AttrValue> attributes) {
    Flow& flow = currentFlow();
    const auto& kinds = defaultElementKinds();
    auto kind = kinds.find(tag);
    const Index def = doc_->definitionFor(tag, kind == kinds.end() ? kElementContainer : kind->second);
    const Index parent = open_.empty() ? kNil : open_.back();
    const Index previousTop = flow.root;
    const Index e = doc_->appendElement(def, parent, flow_);
    Element& el = doc_->elements[e];
    el.begin = el.end = static_cast<std::uint32_t>(flow.text.size());
    if (parent == kNil && previousTop != kNil) {
        // Another element at the top of the flow follows the last one there.
        Index last = previousTop;
        while (doc_->elements[last].nextSibling != kNil) last = doc_->elements[last].nextSibling;
        doc_->elements[last].nextSibling = e;
        doc_->elements[e].previousSibling = last;
    }
    for (const AttrValue& attribute : attributes) {
        const std::uint32_t position = doc_->attributePosition(def, attribute.name);
        doc_->setAttributeValues(e, position, doc_->values.intern(attribute.values));
    }
    open_.push_back(e);
    return *this;
}

TreeBuilder& TreeBuilder::text(const std::string& text) {
    currentFlow().text += text;
    return *this;
}

TreeBuilder& TreeBuilder::leaf(const std::string& tag, std::vector<AttrValue> attributes, const std::string& text) {
    return open(tag, std::move(attributes)).text(text).close();
}

TreeBuilder& TreeBuilder::close() {
    if (open_.empty()) return *this;
    doc_->elements[open_.back()].end = static_cast<std::uint32_t>(currentFlow().text.size());
    open_.pop_back();
    return *this;
}

TreeBuilder& TreeBuilder::marker(const std::string& type, const std::string& text) {
    Marker m;
    m.flow = flow_;
    m.offset = static_cast<std::uint32_t>(currentFlow().text.size());
    m.type = type;
    m.text = text;
    doc_->addMarker(std::move(m));
    if (doc_->markerTypeByName(type) == kNil) doc_->markerTypes.push_back(type);
    return *this;
}

TreeBuilder& TreeBuilder::xref(const std::string& sourceFile, const std::string& format) {
    XRef x;
    x.flow = flow_;
    x.offset = static_cast<std::uint32_t>(currentFlow().text.size());
    x.sourceFile = sourceFile;
    x.format = format;
    doc_->xrefs.push_back(std::move(x));
    return *this;
}

std::unique_ptr<Document> TreeBuilder::document() {
    while (!open_.empty()) close();
    currentFlow();
    std::unique_ptr<Document> built = std::move(doc_);
    built->ensureStandardCatalogue();
    doc_ = std::make_unique<Document>();
    flow_ = 0;
    return built;
}

Handle TreeBuilder::build(HeadlessHost& host, const std::string& path) { return host.adoptDocument(document(), path); }

}  // namespace voka::headless
