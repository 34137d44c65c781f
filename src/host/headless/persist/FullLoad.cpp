#include "host/headless/persist/FullLoad.h"

#include "host/headless/persist/Records.h"

#include <algorithm>
#include <array>
#include <limits>

namespace voka::headless {

namespace {

// What each element of the vocabulary is; where it may stand and what
// reading it does is FullLoader's rule table.
enum class Node {
    Top,
    Document,
    Definitions,
    Definition,
    AttributeDefinition,
    Choice,
    Default,
    Colors,
    Color,
    ConditionFormats,
    ConditionFormat,
    MarkerTypes,
    MarkerType,
    Flow,
    Element,
    Attribute,
    Value,
    Text,
    Format,
    Conditions,
    Marker,
    XRef,
    Ignored,
};

// Nodes whose character data is content; elsewhere only blanks may stand.
bool collectsText(Node node) {
    return node == Node::Choice || node == Node::Default || node == Node::Value || node == Node::Marker;
}

bool isBlank(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; });
}

Fields fieldsOf(const StartTag& tag) {
    Fields fields;
    fields.reserve(static_cast<std::size_t>(tag.attributeCount));
    for (int i = 0; i < tag.attributeCount; ++i) fields.emplace_back(tag.attributeName(i), tag.attributeValue(i));
    return fields;
}

class FullLoader final : public ParseHandler {
public:
    explicit FullLoader(Document& doc) : doc_(doc) {
        doc_.contentForm = false;
        if (doc_.conditionSets.empty()) doc_.conditionSets.emplace_back();
    }

    void startElement(ParseContext& context, const StartTag& tag) override {
        const Node parent = stack_.empty() ? Node::Top : stack_.back().node;
        if (parent == Node::Ignored) {
            stack_.push_back(Frame{Node::Ignored});
            return;
        }
        const Rule* rule = ruleFor(parent, tag);
        if (!rule) {
            context.warn("ignored unknown element <" + tag.qualifiedName() + ">");
            stack_.push_back(Frame{Node::Ignored});
            return;
        }
        Frame frame{rule->node};
        frame.rule = rule;
        if (rule->begin) (this->*rule->begin)(context, tag, frame);
        stack_.push_back(std::move(frame));
    }

    void endElement(ParseContext&) override {
        if (stack_.empty()) return;
        Frame frame = std::move(stack_.back());
        stack_.pop_back();
        if (frame.rule && frame.rule->end) (this->*frame.rule->end)(frame);
    }

    void characters(ParseContext& context, std::string_view text) override {
        if (stack_.empty()) return;
        Frame& frame = stack_.back();
        if (frame.node == Node::Text) {
            appendText(context, text);
            return;
        }
        if (collectsText(frame.node)) {
            frame.text.append(text);
            return;
        }
        if (frame.node != Node::Ignored && !warnedText_ && !isBlank(text)) {
            warnedText_ = true;
            context.warn("ignored text outside <text>");
        }
    }

    // A file without a colour catalogue has the one every document starts with.
    void finish(ParseContext&) override {
        if (sawColors_) return;
        for (const StandardColor& color : standardColors()) doc_.colors.push_back(Color{color.name, color.rgb});
    }

private:
    struct Rule;

    struct Frame {
        explicit Frame(Node n) : node(n) {}
        Node node;
        const Rule* rule = nullptr;
        Index index = kNil;          // the definition, element or marker being read
        std::uint32_t position = 0;  // attribute definition or attribute
        std::string text;
        std::vector<std::string> values;
    };

    static const Rule* ruleFor(Node parent, const StartTag& tag) {
        if (tag.prefix) return nullptr;
        const std::string_view name = reinterpret_cast<const char*>(tag.local);
        for (const Rule& rule : kRules)
            if (rule.parent == parent && rule.tag == name) return &rule;
        return nullptr;
    }

    Frame* enclosing(Node node) {
        for (auto it = stack_.rbegin(); it != stack_.rend(); ++it)
            if (it->node == node) return &*it;
        return nullptr;
    }

    static bool required(ParseContext& context, const StartTag& tag, std::string_view name, std::string_view& value) {
        if (tag.find(name, value)) return true;
        context.fail(std::string("<").append(tag.qualifiedName()).append("> needs the attribute ").append(name));
        return false;
    }

    static bool number(ParseContext& context, const StartTag& tag, std::string_view name, std::uint32_t fallback,
                       std::uint32_t& out) {
        std::string_view value;
        out = fallback;
        if (!tag.find(name, value)) return true;
        if (parseNumber(value, out)) return true;
        context.fail("bad " + std::string(name) + " \"" + std::string(value) + "\"");
        return false;
    }

    static bool flag(const StartTag& tag, std::string_view name, bool fallback) {
        std::string_view value;
        if (!tag.find(name, value)) return fallback;
        return value == "1";
    }

    void appendText(ParseContext& context, std::string_view text) {
        std::string& flowText = doc_.flows[flow_].text;
        if (flowText.size() + text.size() > std::numeric_limits<std::uint32_t>::max()) {
            context.fail("the flow's text is longer than 4 GB");
            return;
        }
        flowText.append(text);
    }

    std::uint32_t textSize() const { return static_cast<std::uint32_t>(doc_.flows[flow_].text.size()); }

    void beginDocument(ParseContext& context, const StartTag& tag, Frame&) {
        std::string_view value;
        if (tag.find("version", value) && value != "1")
            context.warn("version " + std::string(value) + " of the full form; read as version 1");
    }

    void beginDefinition(ParseContext& context, const StartTag& tag, Frame& frame) {
        std::string_view value;
        std::uint32_t type = 0;
        if (!required(context, tag, "tag", value) || !number(context, tag, "type", kElementContainer, type)) return;
        frame.index = doc_.definitionFor(std::string(value), static_cast<int>(type));
        doc_.definitions[frame.index].type = static_cast<int>(type);
    }

    void beginAttributeDefinition(ParseContext& context, const StartTag& tag, Frame& frame) {
        std::string_view value;
        Frame* def = enclosing(Node::Definition);
        if (!def || def->index == kNil || !required(context, tag, "name", value)) return;
        std::uint32_t kind = 0, flags = 0;
        if (!number(context, tag, "kind", kAttrString, kind) || !number(context, tag, "flags", 0, flags)) return;
        frame.index = def->index;
        frame.position = doc_.attributePosition(def->index, std::string(value));
        AttributeDefinition& a = doc_.definitions[def->index].attributes[frame.position];
        a.kind = static_cast<int>(kind);
        a.flags = static_cast<int>(flags);
        a.choices.clear();
        a.defaults.clear();
    }

    void beginColors(ParseContext&, const StartTag&, Frame&) { sawColors_ = true; }

    void beginColor(ParseContext& context, const StartTag& tag, Frame&) {
        std::string_view name, rgb;
        if (!required(context, tag, "name", name) || !required(context, tag, "rgb", rgb)) return;
        doc_.colors.push_back(Color{std::string(name), std::string(rgb)});
    }

    void beginConditionFormats(ParseContext&, const StartTag& tag, Frame&) { doc_.showAll = flag(tag, "show-all", true); }

    void beginConditionFormat(ParseContext& context, const StartTag& tag, Frame&) {
        std::string_view name;
        if (!required(context, tag, "name", name)) return;
        const Index condition = names_.condition(doc_, std::string(name));
        doc_.conditions[condition].shown = flag(tag, "shown", true);
    }

    void beginMarkerType(ParseContext& context, const StartTag& tag, Frame&) {
        std::string_view name;
        if (!required(context, tag, "name", name)) return;
        if (doc_.markerTypeByName(name) == kNil) doc_.markerTypes.emplace_back(name);
    }

    void beginFlow(ParseContext& context, const StartTag& tag, Frame&) {
        if (doc_.flows.size() >= std::numeric_limits<std::uint16_t>::max()) {
            context.fail("too many flows");
            return;
        }
        names_.index(doc_);  // the catalogues stand before the flows
        Flow flow;
        std::string_view name;
        if (tag.find("name", name)) flow.name = name;
        flow.main = flag(tag, "main", false);
        flow_ = static_cast<Index>(doc_.flows.size());
        doc_.flows.push_back(std::move(flow));
    }

    void beginAttribute(ParseContext& context, const StartTag& tag, Frame& frame) {
        std::string_view name;
        Frame* element = enclosing(Node::Element);
        if (!element || element->index == kNil || !required(context, tag, "name", name)) return;
        frame.index = element->index;
        frame.position = doc_.attributePosition(doc_.elements[element->index].definition, std::string(name));
    }

    void beginRun(ParseContext& context, const StartTag& tag, Frame& frame) { readRun(context, frame.node, fieldsOf(tag)); }

    void beginElement(ParseContext& context, const StartTag& tag, Frame& frame) {
        std::string_view value;
        if (!required(context, tag, "tag", value)) return;
        Frame* parentFrame = stack_.empty() ? nullptr : &stack_.back();
        const Index parent = parentFrame && parentFrame->node == Node::Element ? parentFrame->index : kNil;
        if (parent == kNil && doc_.flows[flow_].root != kNil) {
            context.fail("a flow holds one highest-level element");
            return;
        }
        const Index definition = doc_.definitionFor(std::string(value));
        const Index index = doc_.appendElement(definition, parent, static_cast<std::uint16_t>(flow_));
        Element& e = doc_.elements[index];
        e.begin = e.end = textSize();
        e.attributesBegin = static_cast<std::uint32_t>(doc_.attributeSlots.size());
        std::uint32_t n = 0;
        if (!number(context, tag, "title-position", 0, n)) return;
        e.titlePosition = static_cast<std::uint8_t>(std::min<std::uint32_t>(n, 2));
        e.beginAdjust = flag(tag, "begin-adjust", false) ? 1 : 0;
        if (tag.find("conditions", value)) {
            ConditionSet set = readConditionList(doc_, names_, value);
            if (!set.empty()) doc_.rowConditions[index] = std::move(set);
        }
        frame.index = index;
    }

    void readRun(ParseContext& context, Node node, const Fields& fields) {
        std::uint32_t begin = 0, end = 0;
        if (!readRange(fields, textSize(), begin, end)) {
            context.warn("ignored a run with a bad range");
            return;
        }
        Flow& flow = doc_.flows[flow_];
        if (node == Node::Conditions) {
            std::string names;
            findField(fields, "names", names);
            flow.conditions.assign(begin, end, readConditionSet(doc_, names_, names));
            return;
        }
        CharFormat format;
        std::string problem;
        if (!readFormat(doc_, names_, fields, format, problem)) {
            context.warn("ignored a format run: " + problem);
            return;
        }
        flow.formats.assign(begin, end, format);
    }

    void beginAnchored(ParseContext& context, const StartTag& tag, Frame& frame) {
        std::uint32_t offset = 0;
        if (!number(context, tag, "offset", 0, offset)) return;
        if (offset > textSize()) {
            context.warn("ignored a record past the end of the flow's text");
            return;
        }
        std::string_view value;
        if (frame.node == Node::Marker) {
            Marker marker;
            marker.flow = flow_;
            marker.offset = offset;
            if (tag.find("type", value)) marker.type = value;
            frame.index = static_cast<Index>(doc_.markers.size());
            doc_.markers.push_back(std::move(marker));
            return;
        }
        XRef xref;
        xref.flow = flow_;
        xref.offset = offset;
        if (tag.find("source-file", value)) xref.sourceFile = value;
        if (tag.find("format", value)) xref.format = value;
        doc_.xrefs.push_back(std::move(xref));
    }

    void endChoiceOrDefault(Frame& frame) {
        Frame* parent = stack_.empty() ? nullptr : &stack_.back();
        if (!parent || parent->index == kNil) return;
        AttributeDefinition& a = doc_.definitions[parent->index].attributes[parent->position];
        (frame.node == Node::Choice ? a.choices : a.defaults).push_back(std::move(frame.text));
    }

    void endValue(Frame& frame) {
        if (!stack_.empty()) stack_.back().values.push_back(std::move(frame.text));
    }

    void endAttribute(Frame& frame) {
        if (frame.index == kNil || frame.values.empty()) return;
        doc_.setAttributeValues(frame.index, frame.position, doc_.values.intern(frame.values));
    }

    void endElementNode(Frame& frame) {
        if (frame.index != kNil) doc_.elements[frame.index].end = textSize();
    }

    void endMarker(Frame& frame) {
        if (frame.index != kNil) doc_.markers[frame.index].text = std::move(frame.text);
    }

    void endFlow(Frame&) { flow_ = 0; }

    using Begin = void (FullLoader::*)(ParseContext&, const StartTag&, Frame&);
    using End = void (FullLoader::*)(Frame&);

    struct Rule {
        Node parent;
        std::string_view tag;
        Node node;
        Begin begin;
        End end;
    };

    static constexpr std::array<Rule, 22> kRules{{
        {Node::Top, "voka-document", Node::Document, &FullLoader::beginDocument, nullptr},
        {Node::Document, "element-definitions", Node::Definitions, nullptr, nullptr},
        {Node::Definitions, "element-definition", Node::Definition, &FullLoader::beginDefinition, nullptr},
        {Node::Definition, "attribute-definition", Node::AttributeDefinition, &FullLoader::beginAttributeDefinition, nullptr},
        {Node::AttributeDefinition, "choice", Node::Choice, nullptr, &FullLoader::endChoiceOrDefault},
        {Node::AttributeDefinition, "default", Node::Default, nullptr, &FullLoader::endChoiceOrDefault},
        {Node::Document, "colors", Node::Colors, &FullLoader::beginColors, nullptr},
        {Node::Colors, "color", Node::Color, &FullLoader::beginColor, nullptr},
        {Node::Document, "condition-formats", Node::ConditionFormats, &FullLoader::beginConditionFormats, nullptr},
        {Node::ConditionFormats, "condition-format", Node::ConditionFormat, &FullLoader::beginConditionFormat, nullptr},
        {Node::Document, "marker-types", Node::MarkerTypes, nullptr, nullptr},
        {Node::MarkerTypes, "marker-type", Node::MarkerType, &FullLoader::beginMarkerType, nullptr},
        {Node::Document, "flow", Node::Flow, &FullLoader::beginFlow, &FullLoader::endFlow},
        {Node::Flow, "element", Node::Element, &FullLoader::beginElement, &FullLoader::endElementNode},
        {Node::Element, "element", Node::Element, &FullLoader::beginElement, &FullLoader::endElementNode},
        {Node::Element, "attribute", Node::Attribute, &FullLoader::beginAttribute, &FullLoader::endAttribute},
        {Node::Attribute, "value", Node::Value, nullptr, &FullLoader::endValue},
        {Node::Element, "text", Node::Text, nullptr, nullptr},
        {Node::Flow, "format", Node::Format, &FullLoader::beginRun, nullptr},
        {Node::Flow, "conditions", Node::Conditions, &FullLoader::beginRun, nullptr},
        {Node::Flow, "marker", Node::Marker, &FullLoader::beginAnchored, &FullLoader::endMarker},
        {Node::Flow, "xref", Node::XRef, &FullLoader::beginAnchored, nullptr},
    }};

    Document& doc_;
    NameCache names_;
    std::vector<Frame> stack_;
    Index flow_ = 0;
    bool sawColors_ = false;
    bool warnedText_ = false;
};

}  // namespace

std::unique_ptr<ParseHandler> makeFullLoader(Document& doc) { return std::make_unique<FullLoader>(doc); }

}  // namespace voka::headless
