// The bundled example must load as it ships: every command of `voka` is run
// on it, so a file that no longer loads breaks the product's first use. (Its
// main settings are checked by the command line's check-settings test.)
#include "host/headless/persist/Persist.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace voka::headless {
namespace {

const std::string kExampleDir = std::string(VOKA_RESOURCE_DIR) + "/example/";
const std::vector<std::string> kChapters{"01-overview.xml", "02-install.xml", "03-configure.xml", "04-release-notes.xml"};

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
