// The bundled example must load as it ships: every command of `voka` is run
// on it, so a file that no longer loads, or a main settings document that
// lost part of its skeleton, breaks the product's first use.
#include "host/headless/persist/Persist.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

namespace voka::headless {
namespace {

const std::string kExampleDir = std::string(VOKA_RESOURCE_DIR) + "/example/";
const std::string kBookDir = kExampleDir + "book/";

std::vector<Index> childrenOf(const Document& doc, Index parent) {
    std::vector<Index> out;
    for (Index c = doc.elements[parent].firstChild; c != kNil; c = doc.elements[c].nextSibling)
        out.push_back(c);
    return out;
}

const std::string& tagOf(const Document& doc, Index element) {
    return doc.definitions[doc.elements[element].definition].tag;
}

std::vector<std::string> valuesOf(const Document& doc, Index element, const std::string& name) {
    const Element& e = doc.elements[element];
    const AttributeDefinitions& defs = doc.definitions[e.definition].attributes;
    for (std::uint32_t i = 0; i < e.attributesCount; ++i) {
        const AttributeSlot& slot = doc.attributeSlots[e.attributesBegin + i];
        if (defs[slot.position].name == name) return doc.values.get(slot.values);
    }
    return {};
}

std::string firstValue(const Document& doc, Index element, const std::string& name) {
    std::vector<std::string> values = valuesOf(doc, element, name);
    return values.empty() ? std::string() : values.front();
}

// The first child with the tag, kNil when there is none.
Index childTagged(const Document& doc, Index parent, const std::string& tag) {
    for (Index c : childrenOf(doc, parent))
        if (tagOf(doc, c) == tag) return c;
    return kNil;
}

Index childNamed(const Document& doc, Index parent, const std::string& tag, const std::string& name) {
    for (Index c : childrenOf(doc, parent))
        if (tagOf(doc, c) == tag && firstValue(doc, c, "Name") == name) return c;
    return kNil;
}

Index mainRoot(const Document& doc) {
    for (const Flow& flow : doc.flows)
        if (flow.main) return flow.root;
    return kNil;
}

void collectTagged(const Document& doc, Index from, const std::string& tag, std::vector<Index>& out) {
    if (tagOf(doc, from) == tag) out.push_back(from);
    for (Index c : childrenOf(doc, from)) collectTagged(doc, c, tag, out);
}

LoadResult loadMainSettings() { return loadFile(kExampleDir + "VOKA_MainSettings.fm"); }

TEST(ExampleFiles, EveryFileLoadsWithoutErrorOrWarning) {
    struct Case {
        std::string file;
        bool isBook;
    };
    const std::vector<Case> cases = {
        {kExampleDir + "VOKA_MainSettings.fm", false}, {kBookDir + "example.book", true},
        {kBookDir + "01-overview.xml", false},        {kBookDir + "02-install.xml", false},
        {kBookDir + "03-configure.xml", false},       {kBookDir + "04-release-notes.xml", false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.file);
        LoadResult result = loadFile(c.file);
        EXPECT_EQ(result.error, "");
        EXPECT_TRUE(result.warnings.empty()) << result.warnings.front();
        EXPECT_EQ(result.book != nullptr, c.isBook);
        EXPECT_EQ(result.document != nullptr, !c.isBook);
    }
}

TEST(ExampleFiles, BookComponentsAreTheChaptersInOrder) {
    LoadResult result = loadFile(kBookDir + "example.book");
    ASSERT_TRUE(result.book) << result.error;
    std::vector<std::string> names;
    for (const BookComponent& component : result.book->components) {
        const std::string& path = component.path;
        names.push_back(path.substr(path.find_last_of("\\/") + 1));
    }
    EXPECT_EQ(names, (std::vector<std::string>{"01-overview.xml", "02-install.xml", "03-configure.xml",
                                               "04-release-notes.xml"}));
}

TEST(ExampleFiles, MainSettingsHasTheSkeletonInEveryCategory) {
    LoadResult result = loadMainSettings();
    ASSERT_TRUE(result.document) << result.error;
    const Document& doc = *result.document;
    const Index root = mainRoot(doc);
    ASSERT_NE(root, kNil);
    EXPECT_EQ(tagOf(doc, root), "VKP_MainSettings");
    EXPECT_NE(childTagged(doc, root, "ColorList"), kNil);
    EXPECT_NE(childTagged(doc, root, "AttributeList"), kNil);

    const Index categories = childTagged(doc, root, "SchemeCategories");
    ASSERT_NE(categories, kNil);
    // The shipped preferences name the first category and its default schemes.
    const std::vector<Index> all = childrenOf(doc, categories);
    ASSERT_FALSE(all.empty());
    EXPECT_EQ(firstValue(doc, all.front(), "Name"), "Software");
    for (const std::string name : {"Software", "Hardware"}) {
        SCOPED_TRACE(name);
        const Index category = childNamed(doc, categories, "SchemeCategory", name);
        ASSERT_NE(category, kNil);
        for (const std::string container : {"FilterSchemes", "ColoringSchemes", "ValidationSchemes"}) {
            const Index schemes = childTagged(doc, category, container);
            ASSERT_NE(schemes, kNil) << container;
            EXPECT_NE(childTagged(doc, schemes, "Scheme"), kNil) << container << " is empty";
        }
    }
    const Index software = childNamed(doc, categories, "SchemeCategory", "Software");
    EXPECT_NE(childNamed(doc, childTagged(doc, software, "ColoringSchemes"), "Scheme", "By audience"), kNil);
    EXPECT_NE(childNamed(doc, childTagged(doc, software, "ValidationSchemes"), "Scheme", "Audience check"), kNil);
}

TEST(ExampleFiles, RulesUseEveryStyleAndNumberTheirNames) {
    LoadResult result = loadMainSettings();
    ASSERT_TRUE(result.document) << result.error;
    const Document& doc = *result.document;
    std::vector<Index> schemes;
    collectTagged(doc, mainRoot(doc), "Scheme", schemes);

    std::set<std::string> styles;
    for (Index scheme : schemes) {
        unsigned position = 0;
        for (Index rule : childrenOf(doc, scheme)) {
            if (tagOf(doc, rule) != "Rule") continue;
            ++position;
            styles.insert(firstValue(doc, rule, "Style"));
            // Readers drop three characters of prefix to get the colour name.
            const std::string name = firstValue(doc, rule, "Name");
            const std::string prefix = std::to_string(position) + (position < 10 ? "  " : " ");
            EXPECT_EQ(name.substr(0, 3), prefix) << name;
        }
    }
    EXPECT_EQ(styles, (std::set<std::string>{"0", "1", "2", "3", "4", "5", "6", "7"}));
}

TEST(ExampleFiles, OnlyOneRuleColourIsMissingFromTheCatalogue) {
    LoadResult result = loadMainSettings();
    ASSERT_TRUE(result.document) << result.error;
    const Document& doc = *result.document;
    std::set<std::string> catalogue;
    for (const Color& color : doc.colors) catalogue.insert(color.name);
    const std::vector<std::string> colorList = valuesOf(doc, childTagged(doc, mainRoot(doc), "ColorList"), "Names");

    std::vector<Index> rules;
    collectTagged(doc, mainRoot(doc), "Rule", rules);
    std::set<std::string> missing;
    for (Index rule : rules) {
        const std::string color = firstValue(doc, rule, "Name").substr(3);
        if (color == "<skip>" || color == "<refresh EDD>") continue;
        EXPECT_TRUE(std::find(colorList.begin(), colorList.end(), color) != colorList.end())
            << color << " is not in the master colour list";
        if (!catalogue.count(color)) missing.insert(color);
    }
    EXPECT_EQ(missing, (std::set<std::string>{"Orange"}));
}

// The chapters' DTD must resolve from the book folder: without it the
// declared defaults and the table, footnote and cross-reference kinds vanish.
TEST(ExampleFiles, ChaptersGetDefaultsAndKindsFromTheirDtd) {
    struct Case {
        std::string tag;
        int type;
        std::string attribute;  // "" when the case checks no default
        std::string defaultValue;
    };
    const std::vector<Case> cases = {
        {"codeblock", kElementContainer, "audience", "expert"},
        {"fn", kElementFootnote, "otherprops", "print"},
        {"xref", kElementXRef, "", ""},
        {"table", kElementTable, "", ""},
        {"caption", kElementTableTitle, "", ""},
        {"thead", kElementTableHeading, "", ""},
        {"tbody", kElementTableBody, "", ""},
        {"tr", kElementTableRow, "", ""},
        {"td", kElementTableCell, "", ""},
    };
    for (const std::string chapter : {"01-overview.xml", "02-install.xml", "03-configure.xml", "04-release-notes.xml"}) {
        LoadResult result = loadFile(kBookDir + chapter);
        ASSERT_TRUE(result.document) << result.error;
        const Document& doc = *result.document;
        for (const Case& c : cases) {
            SCOPED_TRACE(chapter + " " + c.tag);
            auto found = doc.definitionByTag.find(c.tag);
            ASSERT_NE(found, doc.definitionByTag.end());
            const ElementDefinition& definition = doc.definitions[found->second];
            EXPECT_EQ(definition.type, c.type);
            if (c.attribute.empty()) continue;
            auto attribute = std::find_if(definition.attributes.begin(), definition.attributes.end(),
                                          [&](const AttributeDefinition& a) { return a.name == c.attribute; });
            ASSERT_TRUE(attribute != definition.attributes.end()) << "no attribute " << c.attribute;
            EXPECT_EQ(attribute->defaults, std::vector<std::string>{c.defaultValue});
        }
    }
}

}  // namespace
}  // namespace voka::headless
