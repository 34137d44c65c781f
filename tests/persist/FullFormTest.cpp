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
    const std::pair<const char*, const char*> cases[] = {  // body inside <voka-document>, lines its dump must hold
        {R"(<flow name="A" main="1"><element tag="Doc"><text>x</text></element></flow>)",
         "color Black #000000\ncolor Yellow #FFFF00\nflow A main 1"},  // colours default to the standard catalogue
        {R"(<flow name="A" main="1"><element tag="Doc"><text>  two blanks before</text>
              <element tag="P"><text>inner </text></element></element></flow>)",
         "  text [  two blanks beforeinner ]\n  <Doc> 0-25\n    <P> 19-25"},  // only text elements carry text
        {R"(<element-definitions><element-definition tag="Doc" type="1">
              <attribute-definition name="Names" kind="1" flags="0"><choice>a</choice><default>b</default></attribute-definition>
            </element-definition></element-definitions>
            <flow name="A" main="1"><element tag="Doc"><attribute name="Names"><value>b</value><value></value><value>a</value></attribute></element></flow>)",
         "  attribute Names kind 1 flags 0 choices [a] defaults [b]\n  <Doc> 0-0 Names=[b||a]"},
        {R"(<condition-formats show-all="0"><condition-format name="Hidden" shown="0"/></condition-formats>
            <flow name="A" main="1"><element tag="Row" conditions="Hidden"/></flow>)",
         "show-all 0\ncondition Hidden shown 0\n  <Row> 0-0 row-conditions=Hidden"},
    };
    ScratchFolder folder;
    for (const auto& [body, expectedLines] : cases) {
        SCOPED_TRACE(body);
        LoadResult loaded = loadFile(folder.write(
            "doc.fm", std::string("<?xml version=\"1.0\"?>\n<voka-document version=\"1\">") + body + "</voka-document>\n"));
        ASSERT_TRUE(loaded.document) << loaded.error;
        EXPECT_TRUE(loaded.warnings.empty()) << loaded.warnings.front();
        const std::string dump = canonicalDump(*loaded.document);
        std::istringstream lines(expectedLines);
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
