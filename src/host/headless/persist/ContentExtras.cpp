#include "host/headless/persist/ContentExtras.h"

#include <algorithm>
#include <array>

namespace voka::headless {

namespace {

constexpr std::string_view kPrefix = "voka-";

void writeInstruction(XmlOut& out, std::string_view name, const Fields& fields) {
    out.raw("<?voka-");
    out.raw(name);
    out.raw(formatPseudoAttributes(fields));
    out.raw("?>\n");
}

bool isStandardColor(const Color& color) {
    const auto& standard = standardColors();
    return std::any_of(standard.begin(), standard.end(),
                       [&](const StandardColor& s) { return color.name == s.name && color.rgb == s.rgb; });
}

bool readFlag(const Fields& fields, std::string_view name, bool& flag) {
    std::string value;
    if (!findField(fields, name, value)) return false;
    if (value != "0" && value != "1") return false;
    flag = value == "1";
    return true;
}

bool readElement(const Document& doc, const Fields& fields, Index& element, std::string& problem) {
    std::string value;
    std::uint32_t number = 0;
    if (!findField(fields, "element", value) || !parseNumber(value, number) || number >= doc.elements.size()) {
        problem = "no element numbered \"" + value + "\"";
        return false;
    }
    element = number;
    return true;
}

bool readOffset(const Flow& flow, const Fields& fields, std::uint32_t& offset, std::string& problem) {
    std::string value;
    if (!findField(fields, "offset", value) || !parseNumber(value, offset) || offset > flow.text.size()) {
        problem = "bad offset \"" + value + "\"";
        return false;
    }
    return true;
}

struct ExtraContext {
    Document& doc;
    NameCache& names;
    Flow& flow;
    Index flowIndex;
    const Fields& fields;
    std::string& problem;
};

bool applyColor(ExtraContext& c) {
    std::string name, rgb;
    if (!findField(c.fields, "name", name) || !findField(c.fields, "rgb", rgb) || name.empty()) {
        c.problem = "a colour needs a name and an rgb value";
        return false;
    }
    Index found = c.names.color(c.doc, name);
    if (found != kNil) {
        c.doc.colors[found].rgb = rgb;
        return true;
    }
    c.names.colors.emplace(name, static_cast<Index>(c.doc.colors.size()));
    c.doc.colors.push_back(Color{name, rgb});
    return true;
}

bool applyCondition(ExtraContext& c) {
    std::string name;
    bool shown = true;
    if (!findField(c.fields, "name", name) || name.empty() || !readFlag(c.fields, "shown", shown)) {
        c.problem = "a condition needs a name and shown=\"0\" or \"1\"";
        return false;
    }
    c.doc.conditions[c.names.condition(c.doc, name)].shown = shown;
    return true;
}

bool applyShowAll(ExtraContext& c) {
    if (readFlag(c.fields, "value", c.doc.showAll)) return true;
    c.problem = "show-all needs value=\"0\" or \"1\"";
    return false;
}

bool applyMarkerType(ExtraContext& c) {
    std::string name;
    if (!findField(c.fields, "name", name) || name.empty()) {
        c.problem = "a marker type needs a name";
        return false;
    }
    if (c.doc.markerTypeByName(name) == kNil) c.doc.markerTypes.push_back(name);
    return true;
}

bool applyElement(ExtraContext& c) {
    Index element = kNil;
    if (!readElement(c.doc, c.fields, element, c.problem)) return false;
    std::string value;
    std::uint32_t position = 0;
    if (findField(c.fields, "title-position", value)) {
        if (!parseNumber(value, position) || position > 2) {
            c.problem = "bad title-position \"" + value + "\"";
            return false;
        }
        c.doc.elements[element].titlePosition = static_cast<std::uint8_t>(position);
    }
    bool adjust = false;
    if (readFlag(c.fields, "begin-adjust", adjust)) c.doc.elements[element].beginAdjust = adjust ? 1 : 0;
    return true;
}

bool applyRow(ExtraContext& c) {
    Index element = kNil;
    if (!readElement(c.doc, c.fields, element, c.problem)) return false;
    std::string names;
    findField(c.fields, "conditions", names);
    ConditionSet set = readConditionList(c.doc, c.names, names);
    if (set.empty()) c.doc.rowConditions.erase(element);
    else c.doc.rowConditions[element] = std::move(set);
    return true;
}

bool applyFormat(ExtraContext& c) {
    std::uint32_t begin = 0, end = 0;
    if (!readRange(c.fields, static_cast<std::uint32_t>(c.flow.text.size()), begin, end)) {
        c.problem = "bad range";
        return false;
    }
    CharFormat format;
    if (!readFormat(c.doc, c.names, c.fields, format, c.problem)) return false;
    c.flow.formats.assign(begin, end, format);
    return true;
}

bool applyConditions(ExtraContext& c) {
    std::uint32_t begin = 0, end = 0;
    if (!readRange(c.fields, static_cast<std::uint32_t>(c.flow.text.size()), begin, end)) {
        c.problem = "bad range";
        return false;
    }
    std::string names;
    findField(c.fields, "names", names);
    c.flow.conditions.assign(begin, end, readConditionSet(c.doc, c.names, names));
    return true;
}

bool applyMarker(ExtraContext& c) {
    Marker marker;
    marker.flow = c.flowIndex;
    if (!readOffset(c.flow, c.fields, marker.offset, c.problem)) return false;
    findField(c.fields, "type", marker.type);
    findField(c.fields, "text", marker.text);
    c.doc.markers.push_back(std::move(marker));
    return true;
}

bool applyXRef(ExtraContext& c) {
    XRef xref;
    xref.flow = c.flowIndex;
    if (!readOffset(c.flow, c.fields, xref.offset, c.problem)) return false;
    findField(c.fields, "source-file", xref.sourceFile);
    findField(c.fields, "format", xref.format);
    c.doc.xrefs.push_back(std::move(xref));
    return true;
}

struct ExtraKind {
    std::string_view name;  // after "voka-"
    bool (*apply)(ExtraContext&);
};

constexpr std::array<ExtraKind, 10> kExtraKinds{{
    {"color", applyColor},
    {"condition", applyCondition},
    {"show-all", applyShowAll},
    {"marker-type", applyMarkerType},
    {"element", applyElement},
    {"row", applyRow},
    {"format", applyFormat},
    {"conditions", applyConditions},
    {"marker", applyMarker},
    {"xref", applyXRef},
}};

}  // namespace

Index mainFlowOf(const Document& doc) {
    for (std::size_t i = 0; i < doc.flows.size(); ++i)
        if (doc.flows[i].main) return static_cast<Index>(i);
    return doc.flows.empty() ? kNil : 0;
}

bool isContentExtra(std::string_view target) { return target.substr(0, kPrefix.size()) == kPrefix; }

void writeContentExtras(XmlOut& out, const Document& doc, const std::vector<NumberedElement>& numbered) {
    for (const Color& color : doc.colors)
        if (!isStandardColor(color)) writeInstruction(out, "color", {{"name", color.name}, {"rgb", color.rgb}});
    for (const ConditionFormat& condition : doc.conditions)
        writeInstruction(out, "condition", {{"name", condition.name}, {"shown", condition.shown ? "1" : "0"}});
    if (!doc.showAll) writeInstruction(out, "show-all", {{"value", "0"}});
    for (const std::string& type : doc.markerTypes)
        if (type != "Hypertext") writeInstruction(out, "marker-type", {{"name", type}});

    for (const NumberedElement& n : numbered) {
        const Element& e = doc.elements[n.element];
        std::string number = std::to_string(n.number);
        if (e.titlePosition != 0 || e.beginAdjust != 0) {
            Fields fields{{"element", number}};
            if (e.titlePosition != 0) fields.emplace_back("title-position", std::to_string(e.titlePosition));
            if (e.beginAdjust != 0) fields.emplace_back("begin-adjust", "1");
            writeInstruction(out, "element", fields);
        }
        auto row = doc.rowConditions.find(n.element);
        if (row != doc.rowConditions.end() && !row->second.empty())
            writeInstruction(out, "row", {{"element", number}, {"conditions", conditionNames(doc, row->second)}});
    }

    Index flowIndex = mainFlowOf(doc);
    if (flowIndex == kNil) return;
    const Flow& flow = doc.flows[flowIndex];
    const auto size = static_cast<std::uint32_t>(flow.text.size());
    forEachRun(flow.formats, size, [&](std::uint32_t begin, std::uint32_t end, const CharFormat& format) {
        Fields fields{{"start", std::to_string(begin)}, {"end", std::to_string(end)}};
        for (auto& field : formatFields(doc, format)) fields.push_back(std::move(field));
        writeInstruction(out, "format", fields);
    });
    forEachRun(flow.conditions, size, [&](std::uint32_t begin, std::uint32_t end, std::uint32_t set) {
        if (set >= doc.conditionSets.size()) return;
        writeInstruction(out, "conditions",
                         {{"start", std::to_string(begin)},
                          {"end", std::to_string(end)},
                          {"names", conditionNames(doc, doc.conditionSets[set])}});
    });
    for (const Marker& marker : doc.markers) {
        if (!marker.alive || marker.flow != flowIndex) continue;
        writeInstruction(out, "marker",
                         {{"offset", std::to_string(marker.offset)}, {"type", marker.type}, {"text", marker.text}});
    }
    for (const XRef& xref : doc.xrefs) {
        if (!xref.alive || xref.flow != flowIndex) continue;
        writeInstruction(out, "xref",
                         {{"offset", std::to_string(xref.offset)},
                          {"source-file", xref.sourceFile},
                          {"format", xref.format}});
    }
}

ContentExtrasReader::ContentExtrasReader(Document& doc) : doc_(doc) { names_.index(doc); }

bool ContentExtrasReader::apply(std::string_view target, std::string_view data, std::string& problem) {
    std::string_view name = target.substr(kPrefix.size());
    auto kind = std::find_if(kExtraKinds.begin(), kExtraKinds.end(), [&](const ExtraKind& k) { return k.name == name; });
    if (kind == kExtraKinds.end()) {
        problem = "unknown instruction";
        return false;
    }
    Fields fields;
    if (!parsePseudoAttributes(data, fields)) {
        problem = "malformed pseudo-attributes";
        return false;
    }
    Index flowIndex = mainFlowOf(doc_);
    if (flowIndex == kNil) {
        problem = "the document has no flow";
        return false;
    }
    ExtraContext context{doc_, names_, doc_.flows[flowIndex], flowIndex, fields, problem};
    return kind->apply(context);
}

}  // namespace voka::headless
