// The host's full form and books: what is saved comes back exactly.
#include "SampleDocuments.h"
#include "TestFiles.h"
#include "host/headless/persist/Persist.h"
#include "support/ModelEquality.h"

#include <gtest/gtest.h>

#include <ostream>

#include <algorithm>
#include <cctype>
#include <sstream>

namespace voka::test {
namespace {

using namespace voka::headless;

TEST(FullForm, SavedDocumentLoadsBackEqual) {
    ScratchFolder folder;
    auto original = richDocument();
    const std::string path = folder.file("rich.fm");
    SaveResult saved = saveDocument(*original, path);
    ASSERT_TRUE(saved.ok) << saved.error;

    LoadResult loaded = loadFile(path);
    ASSERT_TRUE(loaded.document) << loaded.error;
    EXPECT_TRUE(loaded.warnings.empty()) << loaded.warnings.front();
    EXPECT_FALSE(loaded.document->contentForm);
    EXPECT_EQ(firstDifference(*original, *loaded.document), "");

    // Saving what was loaded writes the same bytes: nothing drifts per save.
    const std::string again = folder.file("again.fm");
    ASSERT_TRUE(saveDocument(*loaded.document, again).ok);
    EXPECT_EQ(readFile(path), readFile(again));
}

TEST(FullForm, ShippedMainSettingsLoadsAndSavesUnchanged) {
    ScratchFolder folder;
    LoadResult loaded = loadFile(VOKA_SOURCE_DIR "/resources/example/VOKA_MainSettings.fm");
    ASSERT_TRUE(loaded.document) << loaded.error;
    EXPECT_TRUE(loaded.warnings.empty());
    const std::string path = folder.file("VOKA_MainSettings.fm");
    ASSERT_TRUE(saveDocument(*loaded.document, path).ok);
    LoadResult reloaded = loadFile(path);
    ASSERT_TRUE(reloaded.document) << reloaded.error;
    EXPECT_EQ(firstDifference(*loaded.document, *reloaded.document), "");
}

struct FullFormCase {
    const char* name;
    const char* body;            // inside <voka-document version="1">
    const char* expectedLines;   // lines the canonical dump must hold, "\n"-separated
    const char* expectedProblem; // in the error, or in a warning when the load succeeds
    bool fails;
};

const FullFormCase kFullFormCases[] = {
    {"colours default to the standard catalogue",
     R"(<flow name="A" main="1"><element tag="Doc"><text>x</text></element></flow>)",
     "color Black #000000\ncolor Yellow #FFFF00\nflow A main 1", "", false},
    {"only text elements carry text, blanks and all",
     R"(<flow name="A" main="1">
          <element tag="Doc">
            <text>  two blanks before</text>
            <element tag="P"><text>inner </text></element>
          </element>
        </flow>)",
     "  text [  two blanks beforeinner ]\n  <Doc> 0-25\n    <P> 19-25", "", false},
    {"an attribute holds every value in order, an empty value included",
     R"(<element-definitions><element-definition tag="Doc" type="1">
          <attribute-definition name="Names" kind="1" flags="0"><choice>a</choice><default>b</default></attribute-definition>
        </element-definition></element-definitions>
        <flow name="A" main="1"><element tag="Doc"><attribute name="Names"><value>b</value><value></value><value>a</value></attribute></element></flow>)",
     "  attribute Names kind 1 flags 0 choices [a] defaults [b]\n  <Doc> 0-0 Names=[b||a]", "", false},
    {"a row's conditions name condition formats",
     R"(<condition-formats show-all="0"><condition-format name="Hidden" shown="0"/></condition-formats>
        <flow name="A" main="1"><element tag="Row" conditions="Hidden"/></flow>)",
     "show-all 0\ncondition Hidden shown 0\n  <Row> 0-0 row-conditions=Hidden", "", false},
    {"an unknown element is skipped with a warning",
     R"(<flow name="A" main="1"><element tag="Doc"><sparkle><text>no</text></sparkle><text>yes</text></element></flow>)",
     "  text [yes]", "ignored unknown element <sparkle>", false},
    {"a format naming a missing colour is dropped with a warning",
     R"(<flow name="A" main="1"><element tag="Doc"><text>abc</text></element><format start="0" end="2" color="Mauve"/></flow>)",
     "  text [abc]", "unknown colour \"Mauve\"", false},
    {"a run past the text is dropped with a warning",
     R"(<flow name="A" main="1"><element tag="Doc"><text>abc</text></element><conditions start="1" end="9" names="X"/></flow>)",
     "  text [abc]", "bad range", false},
    {"an element without a tag is an error with its line",
     "\n<flow name=\"A\" main=\"1\"><element/></flow>", "", ":3:", true},
    {"two highest-level elements in one flow are an error",
     R"(<flow name="A" main="1"><element tag="A"/><element tag="B"/></flow>)", "", "one highest-level element", true},
};

// Test names and failure messages show the case by its name.
void PrintTo(const FullFormCase& c, std::ostream* out) { *out << c.name; }

class FullFormFiles : public testing::TestWithParam<FullFormCase> {};

TEST_P(FullFormFiles, LoadAsDocumented) {
    const FullFormCase& c = GetParam();
    ScratchFolder folder;
    const std::string path = folder.write(
        "doc.fm", std::string("<?xml version=\"1.0\"?>\n<voka-document version=\"1\">") + c.body + "</voka-document>\n");
    LoadResult loaded = loadFile(path);
    if (c.fails) {
        EXPECT_FALSE(loaded.document);
        EXPECT_NE(loaded.error.find(path), std::string::npos) << loaded.error;
        EXPECT_NE(loaded.error.find(c.expectedProblem), std::string::npos) << loaded.error;
        return;
    }
    ASSERT_TRUE(loaded.document) << loaded.error;
    const std::string dump = canonicalDump(*loaded.document);
    std::istringstream lines(c.expectedLines);
    for (std::string line; std::getline(lines, line);) EXPECT_NE(dump.find(line + "\n"), std::string::npos) << line << "\n---\n" << dump;
    std::string warnings;
    for (const auto& w : loaded.warnings) warnings += w + "\n";
    if (*c.expectedProblem) EXPECT_NE(warnings.find(c.expectedProblem), std::string::npos) << warnings;
    else EXPECT_EQ(warnings, "");
}

INSTANTIATE_TEST_SUITE_P(Cases, FullFormFiles, testing::ValuesIn(kFullFormCases),
                         [](const testing::TestParamInfo<FullFormCase>& info) {
                             std::string name;
                             for (const char* p = info.param.name; *p; ++p)
                                 name += std::isalnum(static_cast<unsigned char>(*p)) ? *p : '_';
                             return name;
                         });

TEST(Books, ComponentsAreRelativeToTheBookFolder) {
    ScratchFolder folder;
    Book book;
    book.components.push_back(BookComponent{folder.file("ch1.xml"), "", 1, true});
    book.components.push_back(BookComponent{folder.file("parts/ch2.xml"), "filtered", 2, true});
    book.components.push_back(BookComponent{"/elsewhere/ch3.xml", "", 3, true});
    // The host's own notation, as a book opened through the host holds it.
    std::string hostNotation = folder.file("ch4.xml");
    std::replace(hostNotation.begin(), hostNotation.end(), '/', '\\');
    book.components.push_back(BookComponent{hostNotation, "", 5, true});
    book.components.push_back(BookComponent{folder.file("gone.xml"), "", 4, false});
    const std::string path = folder.file("my.book");
    SaveResult saved = saveBook(book, path);
    ASSERT_TRUE(saved.ok) << saved.error;

    const std::string text = readFile(path);
    EXPECT_NE(text.find("<component path=\"ch1.xml\"/>"), std::string::npos) << text;
    EXPECT_NE(text.find("<component path=\"parts/ch2.xml\" user-string=\"filtered\"/>"), std::string::npos) << text;
    EXPECT_NE(text.find("<component path=\"/elsewhere/ch3.xml\"/>"), std::string::npos) << text;
    EXPECT_NE(text.find("<component path=\"ch4.xml\"/>"), std::string::npos) << text;
    EXPECT_EQ(text.find("gone.xml"), std::string::npos) << text;

    LoadResult loaded = loadFile(path);
    ASSERT_TRUE(loaded.book) << loaded.error;
    EXPECT_FALSE(loaded.document);
    book.components[3].path = folder.file("ch4.xml");
    EXPECT_EQ(firstDifference(book, *loaded.book), "");
}

TEST(Books, ShippedExampleBookNamesItsChapters) {
    LoadResult loaded = loadFile(VOKA_SOURCE_DIR "/resources/example/book/example.book");
    ASSERT_TRUE(loaded.book) << loaded.error;
    ASSERT_EQ(loaded.book->components.size(), 4u);
    for (const BookComponent& component : loaded.book->components) {
        LoadResult chapter = loadFile(component.path);
        EXPECT_TRUE(chapter.document) << component.path << ": " << chapter.error;
    }
}

}  // namespace
}  // namespace voka::test
