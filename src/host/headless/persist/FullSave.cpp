#include "host/headless/persist/FullSave.h"

#include "host/headless/persist/Records.h"

#include <algorithm>
#include <vector>

namespace voka::headless {

namespace {

void indent(XmlOut& out, std::size_t depth) {
    static constexpr std::string_view kSpaces = "\n                                                                ";
    std::size_t width = std::min(depth * 2, kSpaces.size() - 1);
    out.raw(kSpaces.substr(0, width + 1));
}

void writeFields(XmlOut& out, const Fields& fields) {
    for (const auto& [name, value] : fields) out.attribute(name, std::string_view(value));
}

void writeDefinitions(XmlOut& out, const Document& doc) {
    std::vector<bool> used(doc.definitions.size(), false);
    for (const Element& e : doc.elements)
        if (e.alive && e.definition < used.size()) used[e.definition] = true;
    out.raw("\n  <element-definitions>");
    for (std::size_t d = 0; d < doc.definitions.size(); ++d) {
        const ElementDefinition& def = doc.definitions[d];
        if (!def.alive || (def.fromExternalDtd && !used[d])) continue;
        out.raw("\n    <element-definition");
        out.attribute("tag", std::string_view(def.tag));
        out.attribute("type", def.type);
        if (def.attributes.empty()) {
            out.raw("/>");
            continue;
        }
        out.raw(">");
        for (const AttributeDefinition& a : def.attributes) {
            out.raw("\n      <attribute-definition");
            out.attribute("name", std::string_view(a.name));
            out.attribute("kind", a.kind);
            out.attribute("flags", a.flags);
            if (a.choices.empty() && a.defaults.empty()) {
                out.raw("/>");
                continue;
            }
            out.raw(">");
            for (const std::string& choice : a.choices) {
                out.raw("\n        <choice>");
                out.text(choice);
                out.raw("</choice>");
            }
            for (const std::string& value : a.defaults) {
                out.raw("\n        <default>");
                out.text(value);
                out.raw("</default>");
            }
            out.raw("\n      </attribute-definition>");
        }
        out.raw("\n    </element-definition>");
    }
    out.raw("\n  </element-definitions>");
}

void writeCatalogues(XmlOut& out, const Document& doc) {
    out.raw("\n  <colors>");
    for (const Color& color : doc.colors) {
        out.raw("\n    <color");
        out.attribute("name", std::string_view(color.name));
        out.attribute("rgb", std::string_view(color.rgb));
        out.raw("/>");
    }
    out.raw("\n  </colors>\n  <condition-formats");
    out.attribute("show-all", doc.showAll ? 1 : 0);
    out.raw(">");
    for (const ConditionFormat& condition : doc.conditions) {
        out.raw("\n    <condition-format");
        out.attribute("name", std::string_view(condition.name));
        out.attribute("shown", condition.shown ? 1 : 0);
        out.raw("/>");
    }
    out.raw("\n  </condition-formats>\n  <marker-types>");
    for (const std::string& type : doc.markerTypes) {
        out.raw("\n    <marker-type");
        out.attribute("name", std::string_view(type));
        out.raw("/>");
    }
    out.raw("\n  </marker-types>");
}

bool alive(const Document& doc, Index element) {
    return element < doc.elements.size() && doc.elements[element].alive;
}

Index nextAlive(const Document& doc, Index element) {
    while (element != kNil && !alive(doc, element)) element = doc.elements[element].nextSibling;
    return element;
}

class TreeWriter {
public:
    TreeWriter(XmlOut& out, const Document& doc, const Flow& flow) : out_(out), doc_(doc), text_(flow.text) {}

    void write(Index root) {
        open(root);
        while (!stack_.empty()) {
            Frame& frame = stack_.back();
            if (frame.child != kNil) {
                const Index child = frame.child;
                const Element& c = doc_.elements[child];
                frame.child = nextAlive(doc_, c.nextSibling);
                writeText(frame, c.begin);
                open(child);
                continue;
            }
            const Element& e = doc_.elements[frame.element];
            writeText(frame, e.end);
            const std::uint32_t end = std::max(frame.position, e.end);
            indent(out_, stack_.size() + 1);
            out_.raw("</element>");
            stack_.pop_back();
            if (!stack_.empty()) stack_.back().position = std::max(stack_.back().position, end);
        }
    }

private:
    struct Frame {
        Index element;
        Index child;
        std::uint32_t position;
    };

    void writeText(Frame& frame, std::uint32_t end) {
        end = std::min<std::uint32_t>(end, static_cast<std::uint32_t>(text_.size()));
        if (frame.position < end) {
            indent(out_, stack_.size() + 2);
            out_.raw("<text>");
            out_.text(std::string_view(text_).substr(frame.position, end - frame.position));
            out_.raw("</text>");
        }
        frame.position = std::max(frame.position, end);
    }

    void open(Index index) {
        const Element& e = doc_.elements[index];
        const std::size_t depth = stack_.size() + 2;
        indent(out_, depth);
        out_.raw(startTag(e.definition));
        auto row = doc_.rowConditions.find(index);
        if (row != doc_.rowConditions.end() && !row->second.empty())
            out_.attribute("conditions", std::string_view(conditionNames(doc_, row->second)));
        if (e.titlePosition != 0) out_.attribute("title-position", e.titlePosition);
        if (e.beginAdjust != 0) out_.attribute("begin-adjust", 1);
        const bool hasAttributes = writeAttributes(e, depth + 1);
        const Index firstChild = nextAlive(doc_, e.firstChild);
        if (firstChild == kNil && e.begin >= e.end) {
            if (hasAttributes) {
                indent(out_, depth);
                out_.raw("</element>");
            } else {
                out_.raw("/>");
            }
            if (!stack_.empty()) stack_.back().position = std::max(stack_.back().position, e.end);
            return;
        }
        if (!hasAttributes) out_.raw(">");
        stack_.push_back(Frame{index, firstChild, e.begin});
    }

    // Writes the start tag's end and the attribute children; false when
    // there were none and the start tag is still open.
    bool writeAttributes(const Element& e, std::size_t depth) {
        if (e.definition >= doc_.definitions.size()) return false;
        const ElementDefinition& def = doc_.definitions[e.definition];
        bool any = false;
        for (std::uint32_t i = 0; i < e.attributesCount; ++i) {
            const AttributeSlot& slot = doc_.attributeSlots[e.attributesBegin + i];
            if (slot.position >= def.attributes.size() || slot.values >= doc_.values.size()) continue;
            const auto& values = doc_.values.get(slot.values);
            if (values.empty()) continue;
            if (!any) out_.raw(">");
            any = true;
            indent(out_, depth);
            out_.raw(attributeTag(e.definition, slot.position));
            for (const std::string& value : values) {
                out_.raw("<value>");
                out_.text(value);
                out_.raw("</value>");
            }
            out_.raw("</attribute>");
        }
        return any;
    }

    // `<element tag="TAG"`, escaped once per definition.
    const std::string& startTag(Index definition) {
        const std::size_t slot = definition < doc_.definitions.size() ? definition : doc_.definitions.size();
        if (slot >= startTags_.size()) startTags_.resize(slot + 1);
        std::string& tag = startTags_[slot];
        if (tag.empty()) {
            tag = "<element tag=\"";
            tag += escapeAttributeValue(slot < doc_.definitions.size() ? std::string_view(doc_.definitions[slot].tag)
                                                                       : std::string_view("element"));
            tag += "\"";
        }
        return tag;
    }

    // `<attribute name="NAME">`, escaped once per declared attribute.
    const std::string& attributeTag(Index definition, std::uint32_t position) {
        if (definition >= attributeTags_.size()) attributeTags_.resize(definition + 1);
        std::vector<std::string>& tags = attributeTags_[definition];
        if (position >= tags.size()) tags.resize(position + 1);
        std::string& tag = tags[position];
        if (tag.empty()) {
            tag = "<attribute name=\"";
            tag += escapeAttributeValue(doc_.definitions[definition].attributes[position].name);
            tag += "\">";
        }
        return tag;
    }

    XmlOut& out_;
    const Document& doc_;
    const std::string& text_;
    std::vector<Frame> stack_;
    std::vector<std::string> startTags_;                   // by definition, the last for none
    std::vector<std::vector<std::string>> attributeTags_;  // by definition and position
};

void writeFlowRecords(XmlOut& out, const Document& doc, const Flow& flow, Index flowIndex) {
    const auto size = static_cast<std::uint32_t>(flow.text.size());
    forEachRun(flow.formats, size, [&](std::uint32_t begin, std::uint32_t end, const CharFormat& format) {
        out.raw("\n    <format");
        out.attribute("start", begin);
        out.attribute("end", end);
        writeFields(out, formatFields(doc, format));
        out.raw("/>");
    });
    forEachRun(flow.conditions, size, [&](std::uint32_t begin, std::uint32_t end, std::uint32_t set) {
        if (set >= doc.conditionSets.size()) return;
        out.raw("\n    <conditions");
        out.attribute("start", begin);
        out.attribute("end", end);
        out.attribute("names", std::string_view(conditionNames(doc, doc.conditionSets[set])));
        out.raw("/>");
    });
    for (const Marker& marker : doc.markers) {
        if (!marker.alive || marker.flow != flowIndex) continue;
        out.raw("\n    <marker");
        out.attribute("offset", marker.offset);
        out.attribute("type", std::string_view(marker.type));
        out.raw(">");
        out.text(marker.text);
        out.raw("</marker>");
    }
    for (const XRef& xref : doc.xrefs) {
        if (!xref.alive || xref.flow != flowIndex) continue;
        out.raw("\n    <xref");
        out.attribute("offset", xref.offset);
        out.attribute("source-file", std::string_view(xref.sourceFile));
        out.attribute("format", std::string_view(xref.format));
        out.raw("/>");
    }
}

}  // namespace

void writeFullForm(XmlOut& out, const Document& doc) {
    out.raw("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<voka-document version=\"1\">");
    writeDefinitions(out, doc);
    writeCatalogues(out, doc);
    for (std::size_t i = 0; i < doc.flows.size(); ++i) {
        const Flow& flow = doc.flows[i];
        out.raw("\n  <flow");
        out.attribute("name", std::string_view(flow.name));
        if (flow.main) out.attribute("main", 1);
        out.raw(">");
        if (alive(doc, flow.root)) {
            TreeWriter writer(out, doc, flow);
            writer.write(flow.root);
        }
        writeFlowRecords(out, doc, flow, static_cast<Index>(i));
        out.raw("\n  </flow>");
    }
    out.raw("\n</voka-document>\n");
}

}  // namespace voka::headless
