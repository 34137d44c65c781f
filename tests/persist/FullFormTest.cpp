// The host's full form and books: what is saved comes back exactly.
#include "TestFiles.h"
#include "support/ModelEquality.h"

#include <algorithm>
#include <sstream>

namespace voka::test {
namespace {

TEST(FullForm, SavedDocumentsLoadBackEqual) {
    ScratchFolder folder;
    LoadResult shipped = loadFile(VOKA_SOURCE_DIR "/resources/example/VOKA_MainSettings.fm");
    ASSERT_TRUE(shipped.document) << shipped.error;
    const auto rich = richDocument();
    for (const Document* original : {rich.get(), shipped.document.get()}) {
        const std::string first = savedText(folder, *original, "first.fm");
        LoadResult loaded = loadFile(folder.file("first.fm"));
        ASSERT_TRUE(loaded.document) << loaded.error;
        EXPECT_TRUE(loaded.warnings.empty()) << loaded.warnings.front();
        EXPECT_FALSE(loaded.document->contentForm);
        EXPECT_EQ(firstDifference(*original, *loaded.document), "");
        // Saving what was loaded writes the same bytes: nothing drifts per save.
        EXPECT_EQ(savedText(folder, *loaded.document, "again.fm"), first);
    }
}

TEST(FullForm, FilesLoadAsDocumented) {
    struct Case {
        const char* name;
        const char* body;             // inside <voka-document version="1">
        const char* expectedLines;    // lines the canonical dump must hold, "\n"-separated
        const char* expectedProblem;  // in the error, or in a warning when the load succeeds
        bool fails;
    };
    const Case cases[] = {
        {"colours default to the standard catalogue",
         R"(<flow name="A" main="1"><element tag="Doc"><text>x</text></element></flow>)",
         "color Black #000000\ncolor Yellow #FFFF00\nflow A main 1", "", false},
        {"only text elements carry text, blanks and all",
         R"(<flow name="A" main="1"><element tag="Doc"><text>  two blanks before</text>
              <element tag="P"><text>inner </text></element></element></flow>)",
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
    ScratchFolder folder;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const std::string path = folder.write(
            "doc.fm", std::string("<?xml version=\"1.0\"?>\n<voka-document version=\"1\">") + c.body + "</voka-document>\n");
        LoadResult loaded = loadFile(path);
        std::string problems = loaded.error;
        for (const auto& w : loaded.warnings) problems += w + "\n";
        EXPECT_THAT(problems, HasSubstr(c.expectedProblem));
        EXPECT_EQ(problems.empty(), !*c.expectedProblem) << problems;
        ASSERT_EQ(!loaded.document, c.fails) << loaded.error;
        if (c.fails) {
            EXPECT_THAT(loaded.error, HasSubstr(path));
            continue;
        }
        const std::string dump = canonicalDump(*loaded.document);
        std::istringstream lines(c.expectedLines);
        for (std::string line; std::getline(lines, line);) EXPECT_THAT(dump, HasSubstr(line + "\n"));
    }
}

TEST(Books, ComponentsAreRelativeToTheBookFolder) {
    ScratchFolder folder;
    // ch4 is in the host's own notation, as a book opened through the host holds it.
    std::string hostNotation = folder.file("ch4.xml");
    std::replace(hostNotation.begin(), hostNotation.end(), '/', '\\');
    Book book;
    book.components = {{folder.file("ch1.xml"), "", 1, true},      {folder.file("parts/ch2.xml"), "filtered", 2, true},
                       {"/elsewhere/ch3.xml", "", 3, true},         {hostNotation, "", 5, true},
                       {folder.file("gone.xml"), "", 4, false}};
    const std::string path = folder.file("my.book");
    SaveResult saved = saveBook(book, path);
    ASSERT_TRUE(saved.ok) << saved.error;

    const std::string text = readFile(path);
    for (const char* line : {"<component path=\"ch1.xml\"/>", "<component path=\"parts/ch2.xml\" user-string=\"filtered\"/>",
                             "<component path=\"/elsewhere/ch3.xml\"/>", "<component path=\"ch4.xml\"/>"})
        EXPECT_THAT(text, HasSubstr(line));
    EXPECT_THAT(text, Not(HasSubstr("gone.xml")));

    LoadResult loaded = loadFile(path);
    ASSERT_TRUE(loaded.book) << loaded.error;
    EXPECT_FALSE(loaded.document);
    book.components[3].path = folder.file("ch4.xml");
    EXPECT_EQ(firstDifference(book, *loaded.book), "");
}

}  // namespace
}  // namespace voka::test
