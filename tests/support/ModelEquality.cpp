#include "support/ModelEquality.h"

#include <algorithm>
#include <sstream>
#include <vector>

namespace voka::test {

using namespace voka::headless;

namespace {

bool alive(const Document& doc, Index element) {
    return element < doc.elements.size() && doc.elements[element].alive;
}

std::string joined(const std::vector<std::string>& values, const char* separator) {
    std::string out;
    for (std::size_t i = 0; i < values.size(); ++i) out += (i ? separator : "") + values[i];
    return out;
}

std::string conditionList(const Document& doc, const ConditionSet& set) {
    std::vector<std::string> names;
    for (Index c : set) names.push_back(c < doc.conditions.size() ? doc.conditions[c].name : "?");
    std::sort(names.begin(), names.end());
    return joined(names, ";");
}

std::string formatText(const Document& doc, const CharFormat& f) {
    std::ostringstream out;
    if (f.set & CharFormat::kColor) out << " color=" << (f.color < doc.colors.size() ? doc.colors[f.color].name : "?");
    if (f.set & CharFormat::kUnderlining) out << " underlining=" << int(f.underlining);
    if (f.set & CharFormat::kOverline) out << " overline=" << int(f.overline);
    if (f.set & CharFormat::kStrikethrough) out << " strikethrough=" << int(f.strikethrough);
    if (f.set & CharFormat::kChangeBar) out << " change-bar=" << int(f.changeBar);
    return out.str();
}

// Runs with a value, clamped to the text and merged where neighbours agree,
// so that two maps holding the same formatting compare equal.
template <class Value, class Render>
void dumpRuns(std::ostringstream& out, const char* label, const RunMap<Value>& map, std::uint32_t size, Render render) {
    std::vector<std::pair<std::pair<std::uint32_t, std::uint32_t>, std::string>> runs;
    for (std::size_t i = 0; i < map.size(); ++i) {
        std::uint32_t begin = map.key(i);
        std::uint32_t end = i + 1 == map.size() ? size : std::min(map.key(i + 1), size);
        if (begin >= end || map.value(i) == Value{}) continue;
        std::string text = render(map.value(i));
        if (!runs.empty() && runs.back().first.second == begin && runs.back().second == text) {
            runs.back().first.second = end;
            continue;
        }
        runs.push_back({{begin, end}, text});
    }
    for (const auto& [range, text] : runs) out << "  " << label << " " << range.first << "-" << range.second << text << "\n";
}

void dumpTree(std::ostringstream& out, const Document& doc, Index root) {
    std::vector<std::pair<Index, int>> stack{{root, 0}};
    while (!stack.empty()) {
        auto [index, depth] = stack.back();
        stack.pop_back();
        const Element& e = doc.elements[index];
        out << "  " << std::string(static_cast<std::size_t>(depth) * 2, ' ') << "<"
            << (e.definition < doc.definitions.size() ? doc.definitions[e.definition].tag : "?") << "> " << e.begin << "-"
            << e.end;
        if (e.beginAdjust) out << " begin-adjust";
        if (e.titlePosition) out << " title-position=" << int(e.titlePosition);
        auto row = doc.rowConditions.find(index);
        if (row != doc.rowConditions.end() && !row->second.empty())
            out << " row-conditions=" << conditionList(doc, row->second);
        std::vector<std::string> attributes;
        for (std::uint32_t i = 0; i < e.attributesCount; ++i) {
            const AttributeSlot& slot = doc.attributeSlots[e.attributesBegin + i];
            const auto& values = doc.values.get(slot.values);
            if (values.empty()) continue;
            const ElementDefinition& def = doc.definitions[e.definition];
            std::string name = slot.position < def.attributes.size() ? def.attributes[slot.position].name : "?";
            attributes.push_back(name + "=[" + joined(values, "|") + "]");
        }
        std::sort(attributes.begin(), attributes.end());
        for (const auto& a : attributes) out << " " << a;
        out << "\n";
        std::vector<Index> children;
        for (Index c = e.firstChild; c != kNil; c = doc.elements[c].nextSibling)
            if (alive(doc, c)) children.push_back(c);
        for (auto it = children.rbegin(); it != children.rend(); ++it) stack.push_back({*it, depth + 1});
    }
}

std::string differingLine(const std::string& a, const std::string& b) {
    if (a == b) return "";
    std::istringstream left(a), right(b);
    std::string l, r;
    for (int line = 1;; ++line) {
        bool hasLeft = static_cast<bool>(std::getline(left, l));
        bool hasRight = static_cast<bool>(std::getline(right, r));
        if (!hasLeft && !hasRight) return "the dumps differ";
        if (!hasLeft) l = "(end)";
        if (!hasRight) r = "(end)";
        if (l != r || !hasLeft || !hasRight) return "line " + std::to_string(line) + ": \"" + l + "\" vs \"" + r + "\"";
    }
}

}  // namespace

std::string canonicalDump(const Document& doc) {
    std::ostringstream out;
    out << "content-form " << doc.contentForm << "\nshow-all " << doc.showAll << "\n";
    if (doc.contentForm) out << "prolog [" << doc.contentProlog << "]\n";
    for (const ElementDefinition& def : doc.definitions) {
        if (!def.alive) continue;
        out << "definition " << def.tag << " type " << def.type << "\n";
        for (const AttributeDefinition& a : def.attributes)
            out << "  attribute " << a.name << " kind " << a.kind << " flags " << a.flags << " choices ["
                << joined(a.choices, "|") << "] defaults [" << joined(a.defaults, "|") << "]\n";
    }
    for (const Color& c : doc.colors) out << "color " << c.name << " " << c.rgb << "\n";
    for (const ConditionFormat& c : doc.conditions) out << "condition " << c.name << " shown " << c.shown << "\n";
    for (const std::string& t : doc.markerTypes) out << "marker-type " << t << "\n";
    for (std::size_t f = 0; f < doc.flows.size(); ++f) {
        const Flow& flow = doc.flows[f];
        const auto size = static_cast<std::uint32_t>(flow.text.size());
        out << "flow " << flow.name << " main " << flow.main << "\n  text [" << flow.text << "]\n";
        if (alive(doc, flow.root)) dumpTree(out, doc, flow.root);
        dumpRuns(out, "format", flow.formats, size, [&](const CharFormat& v) { return formatText(doc, v); });
        dumpRuns(out, "conditions", flow.conditions, size, [&](std::uint32_t set) {
            return " " + (set < doc.conditionSets.size() ? conditionList(doc, doc.conditionSets[set]) : "?");
        });
        for (const Marker& m : doc.markers)
            if (m.alive && m.flow == f) out << "  marker " << m.offset << " " << m.type << " [" << m.text << "]\n";
        for (const XRef& x : doc.xrefs)
            if (x.alive && x.flow == f) out << "  xref " << x.offset << " " << x.sourceFile << " " << x.format << "\n";
    }
    if (doc.contentForm)
        for (const ContentMarkup& m : doc.contentMarkup)
            out << "markup " << (m.parent == kNil ? "after-root" : "inside") << " +" << m.offset << " " << m.markup << "\n";
    return out.str();
}

std::string canonicalDump(const Book& book) {
    std::ostringstream out;
    for (const BookComponent& c : book.components)
        if (c.alive) out << "component " << c.path << " [" << c.userString << "]\n";
    return out.str();
}

std::string firstDifference(const Document& a, const Document& b) {
    return differingLine(canonicalDump(a), canonicalDump(b));
}

std::string firstDifference(const Book& a, const Book& b) { return differingLine(canonicalDump(a), canonicalDump(b)); }

}  // namespace voka::test
