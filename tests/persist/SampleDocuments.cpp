
#include "TestFiles.h"
#include "host/headless/TreeBuilder.h"

namespace voka::test {
Index elementAt(const Document& doc, std::uint16_t flow, std::vector<int> path) {
    Index e = doc.flows[flow].root;
    for (int step : path) {
        e = doc.elements[e].firstChild;
        for (int i = 0; i < step; ++i) e = doc.elements[e].nextSibling;
    }
    return e;
}

void addFormatting(Document& doc) {
    doc.colors.push_back(Color{"Orange", "#FF8000"});
    doc.conditions = {ConditionFormat{"Hidden", false}, ConditionFormat{"Draft", true}};
    doc.showAll = false;
    doc.markerTypes.push_back("Index");
    CharFormat orange;
    orange.set = CharFormat::kColor | CharFormat::kUnderlining;
    orange.color = doc.colorByName("Orange");
    orange.underlining = kDoubleUnderline;
    doc.flows[0].formats.assign(0, 12, orange);
    doc.flows[0].formats.update(6, 20, [](CharFormat& f) {
        f.set |= CharFormat::kStrikethrough | CharFormat::kOverline | CharFormat::kChangeBar;
        f.strikethrough = 1;
        f.overline = 0;  // overridden to off, which is not the same as not set
        f.changeBar = 1;
    });
    doc.flows[0].conditions.assign(3, 9, doc.internConditionSet({0}));
    doc.flows[0].conditions.assign(9, 15, doc.internConditionSet({0, 1}));
    doc.markers.push_back(Marker{0, 4, "Hypertext", "openlink \"ch2.xml\":Heading ?> <tricky>"});
    doc.markers.push_back(Marker{0, 7, "Hypertext", "dead", false});
    doc.xrefs.push_back(XRef{0, 6, "\\home\\ann\\book\\ch2.xml", "Heading & Page"});
}

std::unique_ptr<Document> richDocument() {
    using Values = std::vector<std::string>;
    headless::TreeBuilder b;
    // Definitions first, so that their order and kinds are the document's own.
    b.define("Chapter", kElementContainer,
             {{"Audience", kAttrStrings, 0, {"novice", "expert", "admin"}, {"novice"}},
              {"Id", kAttrUniqueId, 1, {}, {}},
              {"Level", kAttrChoices, 4, {"1", "2"}, {"1"}}});
    for (auto [tag, kind] : {std::pair{"Table", kElementTable}, {"TableTitle", kElementTableTitle},
                             {"Body", kElementTableBody}, {"Row", kElementTableRow}, {"Cell", kElementTableCell},
                             {"Footnote", kElementFootnote}, {"Unused", kElementContainer}})
        b.define(tag, kind);
    b.open("Chapter", {{"Audience", Values{"novice", "expert"}}, {"Id", "c1"}})
        .text("Intro <&> \"quoted\" 'single'\ttab\r\nline ")
        .leaf("Para", {{"Names", Values{"Red", "Blue"}}, {"Empty", ""}}, "caf\xc3\xa9 \xe2\x82\xac \xf0\x9f\x98\x80")
        .text("  ")
        .open("Table").leaf("TableTitle", {}, "Sizes").open("Body")
        .open("Row").leaf("Cell", {}, "small").leaf("Cell").close()
        .open("Row").leaf("Cell", {}, "large").close()
        .close().close().text("\n")
        .open("Para").text("see ").leaf("Footnote", {}, "a note").leaf("Para").close().text(" end")
        .flow("Sidebar").leaf("Sidebar", {{"Audience", "admin"}}, "side text");
    auto doc = b.document();
    doc->contentForm = false;
    doc->elements[elementAt(*doc, 0, {1})].titlePosition = 2;
    doc->elements[elementAt(*doc, 0, {2})].beginAdjust = 1;
    doc->rowConditions[elementAt(*doc, 0, {1, 1, 0})] = {0};
    doc->rowConditions[elementAt(*doc, 0, {1, 1, 1})] = {0, 1};
    addFormatting(*doc);
    CharFormat blue;
    blue.set = CharFormat::kColor;
    blue.color = doc->colorByName("Blue");
    doc->flows[1].formats.assign(0, 4, blue);
    doc->markers.push_back(Marker{1, 2, "Index", "side<entry>"});
    return doc;
}

}  // namespace voka::test
