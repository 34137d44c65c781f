// The bundled example must load as it ships: every command of `voka` is run
// on it, so a file that no longer loads, or a main settings document that
// lost part of its skeleton, breaks the product's first use.
#include "host/headless/persist/Persist.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace voka::headless {
namespace {

const std::string kExampleDir = std::string(VOKA_RESOURCE_DIR) + "/example/";
const std::vector<std::string> kChapters{"01-overview.xml", "02-install.xml", "03-configure.xml", "04-release-notes.xml"};

std::vector<Index> childrenOf(const Document& doc, Index parent) {
    std::vector<Index> out;
    for (Index c = doc.elements[parent].firstChild; c != kNil; c = doc.elements[c].nextSibling) out.push_back(c);
    return out;
}

const std::string& tagOf(const Document& doc, Index e) { return doc.definitions[doc.elements[e].definition].tag; }

std::vector<std::string> valuesOf(const Document& doc, Index element, const std::string& name) {
    const Element& e = doc.elements[element];
    for (std::uint32_t i = 0; i < e.attributesCount; ++i) {
        const AttributeSlot& slot = doc.attributeSlots[e.attributesBegin + i];
        if (doc.definitions[e.definition].attributes[slot.position].name == name) return doc.values.get(slot.values);
    }
    return {};
}

std::string nameOf(const Document& doc, Index e) {
    std::vector<std::string> values = valuesOf(doc, e, "Name");
    return values.empty() ? "" : values.front();
}

// The first child with the tag, kNil when there is none.
Index child(const Document& doc, Index parent, const std::string& tag) {
    for (Index c : childrenOf(doc, parent))
        if (tagOf(doc, c) == tag) return c;
    return kNil;
}

// The book names the chapters in order, by paths relative to its folder that resolve.
TEST(ExampleFiles, EveryFileLoadsWithoutErrorOrWarning) {
    LoadResult book = loadFile(kExampleDir + "book/example.book");
    ASSERT_TRUE(book.book) << book.error;
    EXPECT_TRUE(book.warnings.empty()) << book.warnings.front();
    std::vector<std::string> files{kExampleDir + "VOKA_MainSettings.fm"}, names;
    for (const BookComponent& component : book.book->components) {
        files.push_back(component.path);
        names.push_back(component.path.substr(component.path.find_last_of("\\/") + 1));
    }
    EXPECT_EQ(names, kChapters);
    for (const std::string& file : files) {
        SCOPED_TRACE(file);
        LoadResult result = loadFile(file);
        EXPECT_EQ(result.error, "");
        EXPECT_TRUE(result.document);
        EXPECT_TRUE(result.warnings.empty()) << result.warnings.front();
    }
}

// The skeleton in every category, the shipped preferences' first category
// and default schemes, and rules that use every style, number their names
// and name colours of the master list, all but one in the catalogue.
TEST(ExampleFiles, MainSettingsHasItsSkeletonAndRules) {
    const LoadResult result = loadFile(kExampleDir + "VOKA_MainSettings.fm");
    ASSERT_TRUE(result.document) << result.error;
    const Document& doc = *result.document;
    const Index root = doc.flows.at(0).root;
    EXPECT_EQ(tagOf(doc, root), "VKP_MainSettings");
    EXPECT_NE(child(doc, root, "AttributeList"), kNil);
    const Index colorList = child(doc, root, "ColorList"), categories = child(doc, root, "SchemeCategories");
    ASSERT_NE(colorList, kNil);
    ASSERT_NE(categories, kNil);
    const std::vector<std::string> listed = valuesOf(doc, colorList, "Names");
    std::set<std::string> catalogue, schemes, styles, missing;  // schemes as "category/container/name"
    for (const Color& color : doc.colors) catalogue.insert(color.name);
    for (Index category : childrenOf(doc, categories))
        for (Index container : childrenOf(doc, category))
            for (Index scheme : childrenOf(doc, container)) {
                if (tagOf(doc, scheme) != "Scheme") continue;
                schemes.insert(nameOf(doc, category) + "/" + tagOf(doc, container) + "/" + nameOf(doc, scheme));
                unsigned position = 0;
                for (Index rule : childrenOf(doc, scheme)) {
                    if (tagOf(doc, rule) != "Rule") continue;
                    ++position;
                    styles.insert(valuesOf(doc, rule, "Style").at(0));
                    // Readers drop three characters of prefix to get the colour name.
                    const std::string name = nameOf(doc, rule), color = name.substr(3);
                    EXPECT_EQ(name.substr(0, 3), std::to_string(position) + (position < 10 ? "  " : " ")) << name;
                    if (color == "<skip>" || color == "<refresh EDD>") continue;
                    EXPECT_NE(std::find(listed.begin(), listed.end(), color), listed.end()) << color << " is not listed";
                    if (!catalogue.count(color)) missing.insert(color);
                }
            }
    EXPECT_EQ(nameOf(doc, childrenOf(doc, categories).at(0)), "Software");
    for (const std::string category : {"Software/", "Hardware/"})
        for (const std::string container : {"FilterSchemes/", "ColoringSchemes/", "ValidationSchemes/"}) {
            auto first = schemes.lower_bound(category + container);
            EXPECT_TRUE(first != schemes.end() && first->starts_with(category + container)) << category + container;
        }
    EXPECT_TRUE(schemes.count("Software/ColoringSchemes/By audience"));
    EXPECT_TRUE(schemes.count("Software/ValidationSchemes/Audience check"));
    EXPECT_EQ(styles, (std::set<std::string>{"0", "1", "2", "3", "4", "5", "6", "7"}));
    EXPECT_EQ(missing, (std::set<std::string>{"Orange"}));
}

// The chapters' DTD must resolve from the book folder: without it the
// declared defaults and the table, footnote and cross-reference kinds vanish.
TEST(ExampleFiles, ChaptersGetDefaultsAndKindsFromTheirDtd) {
    const std::pair<std::string, int> kinds[] = {
        {"codeblock", kElementContainer}, {"fn", kElementFootnote},       {"xref", kElementXRef},
        {"table", kElementTable},         {"caption", kElementTableTitle}, {"thead", kElementTableHeading},
        {"tbody", kElementTableBody},     {"tr", kElementTableRow},        {"td", kElementTableCell}};
    const std::pair<std::string, std::string> defaults[] = {{"codeblock audience", "expert"}, {"fn otherprops", "print"}};
    for (const std::string& chapter : kChapters) {
        SCOPED_TRACE(chapter);
        LoadResult result = loadFile(kExampleDir + "book/" + chapter);
        ASSERT_TRUE(result.document) << result.error;
        std::map<std::string, int> typeOf;
        std::map<std::string, std::vector<std::string>> defaultsOf;  // by "tag attribute"
        for (const ElementDefinition& definition : result.document->definitions) {
            typeOf[definition.tag] = definition.type;
            for (const AttributeDefinition& a : definition.attributes) defaultsOf[definition.tag + " " + a.name] = a.defaults;
        }
        for (const auto& [tag, type] : kinds) EXPECT_EQ(typeOf.count(tag) ? typeOf[tag] : -1, type) << tag;
        for (const auto& [attribute, value] : defaults) EXPECT_EQ(defaultsOf[attribute], std::vector{value}) << attribute;
    }
}

}  // namespace
}  // namespace voka::headless
