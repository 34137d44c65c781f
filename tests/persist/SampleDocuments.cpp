
#include "TestFiles.h"

namespace voka::test {
Index buildTree(Document& doc, std::uint16_t flow, const ElementNode& node, Index parent) {
    const Index definition = doc.definitionFor(node.tag);
    const Index index = doc.appendElement(definition, parent, flow);
    std::string& text = doc.flows[flow].text;
    doc.elements[index].begin = static_cast<std::uint32_t>(text.size());
    doc.elements[index].attributesBegin = static_cast<std::uint32_t>(doc.attributeSlots.size());
    for (const auto& [name, values] : node.attributes)
        doc.setAttributeValues(index, doc.attributePosition(definition, name), doc.values.intern(values));
    text += node.text;
    for (const ElementNode& child : node.children) {
        buildTree(doc, flow, child, index);
        text += child.tail;
    }
    doc.elements[index].end = static_cast<std::uint32_t>(text.size());
    return index;
}

Index elementAt(const Document& doc, std::uint16_t flow, std::vector<int> path) {
    Index e = doc.flows[flow].root;
    for (int step : path) {
        e = doc.elements[e].firstChild;
        for (int i = 0; i < step; ++i) e = doc.elements[e].nextSibling;
    }
    return e;
}

std::unique_ptr<Document> richDocument() {
    auto doc = std::make_unique<Document>();
    doc->contentForm = false;
    doc->ensureStandardCatalogue();
    doc->colors.push_back(Color{"Orange", "#FF8000"});
    doc->conditions = {ConditionFormat{"Hidden", false}, ConditionFormat{"Draft", true}};
    doc->showAll = false;
    doc->markerTypes.push_back("Index");

    // Definitions first, so that their order and kinds are the document's own.
    const Index root = doc->definitionFor("Chapter");
    doc->definitions[root].attributes = {{"Audience", kAttrStrings, 0, {"novice", "expert", "admin"}, {"novice"}},
                                         {"Id", kAttrUniqueId, 1, {}, {}},
                                         {"Level", kAttrChoices, 4, {"1", "2"}, {"1"}}};
    for (auto [tag, kind] : {std::pair{"Table", kElementTable}, {"TableTitle", kElementTableTitle},
                             {"Body", kElementTableBody}, {"Row", kElementTableRow}, {"Cell", kElementTableCell},
                             {"Footnote", kElementFootnote}, {"Unused", kElementContainer}})
        doc->definitionFor(tag, kind);
    doc->rebuildIndexes();

    doc->flows.resize(2);
    doc->flows[0].name = "A";
    doc->flows[0].main = true;
    doc->flows[1].name = "Sidebar";

    const std::vector<ElementNode> rows{{"Row", {}, "", {{"Cell", {}, "small", {}, ""}, {"Cell", {}, "", {}, ""}}, ""},
                                        {"Row", {}, "", {{"Cell", {}, "large", {}, ""}}, ""}};
    const ElementNode table{"Table", {}, "", {{"TableTitle", {}, "Sizes", {}, ""}, {"Body", {}, "", rows, ""}}, "\n"};
    const ElementNode para{"Para", {{"Names", {"Red", "Blue"}}, {"Empty", {""}}}, "caf\xc3\xa9 \xe2\x82\xac \xf0\x9f\x98\x80", {}, "  "};
    const ElementNode note{"Para", {}, "see ", {{"Footnote", {}, "a note", {}, ""}, {"Para", {}, "", {}, ""}}, " end"};
    buildTree(*doc, 0, {"Chapter", {{"Audience", {"novice", "expert"}}, {"Id", {"c1"}}},
                        "Intro <&> \"quoted\" 'single'\ttab\r\nline ", {para, table, note}, ""});
    buildTree(*doc, 1, ElementNode{"Sidebar", {{"Audience", {"admin"}}}, "side text", {}, ""});

    doc->elements[elementAt(*doc, 0, {1})].titlePosition = 2;
    doc->elements[elementAt(*doc, 0, {2})].beginAdjust = 1;
    doc->rowConditions[elementAt(*doc, 0, {1, 1, 0})] = {0};
    doc->rowConditions[elementAt(*doc, 0, {1, 1, 1})] = {0, 1};

    CharFormat orange;
    orange.set = CharFormat::kColor | CharFormat::kUnderlining;
    orange.color = doc->colorByName("Orange");
    orange.underlining = kDoubleUnderline;
    doc->flows[0].formats.assign(0, 12, orange);
    doc->flows[0].formats.update(6, 20, [](CharFormat& f) {
        f.set |= CharFormat::kStrikethrough | CharFormat::kOverline | CharFormat::kChangeBar;
        f.strikethrough = 1;
        f.overline = 0;  // overridden to off, which is not the same as not set
        f.changeBar = 1;
    });
    CharFormat blue;
    blue.set = CharFormat::kColor;
    blue.color = doc->colorByName("Blue");
    doc->flows[1].formats.assign(0, 4, blue);
    doc->flows[0].conditions.assign(3, 9, doc->internConditionSet({0}));
    doc->flows[0].conditions.assign(9, 15, doc->internConditionSet({0, 1}));

    doc->markers.push_back(Marker{0, 4, "Hypertext", "openlink ch2.xml:Heading"});
    doc->markers.push_back(Marker{1, 2, "Index", "side<entry>"});
    doc->markers.push_back(Marker{0, 7, "Hypertext", "dead", false});
    doc->xrefs.push_back(XRef{0, 6, "\\home\\ann\\book\\ch2.xml", "Heading"});
    return doc;
}

}  // namespace voka::test
