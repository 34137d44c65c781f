// The content form: any XML instance read into the model and written back
// in its own vocabulary, with what plain XML cannot carry kept beside it.
#include "TestFiles.h"
#include "host/headless/Editing.h"
#include "support/ModelEquality.h"

#include <libxml/catalog.h>

#include <cstdlib>
#include <filesystem>

namespace voka::test {
namespace {

// The tag's kind and its attributes as "name:kind|choice=default!flags ", "?" when undefined.
std::string definitionSummary(const Document& doc, const std::string& tag) {
    auto found = doc.definitionByTag.find(tag);
    if (found == doc.definitionByTag.end()) return "?";
    const ElementDefinition& def = doc.definitions[found->second];
    std::string out = std::to_string(def.type) + " ";
    for (const AttributeDefinition& a : def.attributes) {
        out += a.name + ":" + std::to_string(a.kind);
        for (const auto& c : a.choices) out += "|" + c;
        for (const auto& d : a.defaults) out += "=" + d;
        if (a.flags) out += "!" + std::to_string(a.flags);
        out += " ";
    }
    return out;
}

std::string kind(int type, const char* attributes = "") { return std::to_string(type) + " " + attributes; }

TEST(ContentForm, DefinitionsComeFromTheDtdOrTheInstance) {
    struct Case {
        const char* name;
        const char* xml;
        const char* tag;
        std::string summary;
        bool ownKinds = false;  // load with a kind table mapping note to footnotes only
    };
    const ElementKindTable noteIsFootnote{{"note", kElementFootnote}};
    const Case cases[] = {
        {"without a DTD attributes come in first-seen order as strings",
         "<doc b='1' a='2'><p a='x'/><p c='y' a='z'/></doc>", "p", kind(kElementContainer, "a:0 c:0 ")},
        {"a DTD gives declared attributes in declaration order with defaults and choices",
         "<!DOCTYPE doc [<!ELEMENT doc ANY><!ATTLIST doc z CDATA 'dz' e (one|two) 'two' f CDATA #FIXED 'ff' id ID #IMPLIED>]>"
         "<doc id='i' extra='x'/>",
         "doc", kind(kElementContainer, "z:0=dz e:2|one|two=two f:0=ff!4 id:7 extra:0 ")},
        {"a namespace the DTD declares is a definition's default, not a value",
         "<!DOCTYPE topic [<!ELEMENT topic ANY><!ATTLIST topic xmlns:ditaarch CDATA #FIXED 'urn:arch'>]>"
         "<topic><topic xmlns:ditaarch='urn:arch' xmlns:x='urn:x'/></topic>",
         "topic", kind(kElementContainer, "xmlns:ditaarch:0=urn:arch!4 xmlns:x:0 ")},
        {"a declared but unused element is still defined", "<!DOCTYPE doc [<!ELEMENT doc ANY><!ELEMENT spare EMPTY>]><doc/>",
         "spare", kind(kElementContainer)},
        {"a CALS table cell", "<doc><table><tgroup><tbody><row><entry/></row></tbody></tgroup></table></doc>", "entry",
         kind(kElementTableCell)},
        {"a caption inside a table is its title", "<doc><table><caption/><tr/></table></doc>", "caption",
         kind(kElementTableTitle)},
        {"a title that also heads sections stays a container", "<doc><title/><table><title/></table></doc>", "title",
         kind(kElementContainer)},
        {"a kind table of one's own maps its tag", "<doc><note/><table/></doc>", "note", kind(kElementFootnote), true},
        {"a kind table of one's own replaces the default one", "<doc><note/><table/></doc>", "table",
         kind(kElementContainer), true},
    };
    ScratchFolder folder;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        LoadOptions options;
        if (c.ownKinds) options.elementKinds = &noteIsFootnote;
        LoadResult loaded = loadFile(folder.write("doc.xml", c.xml), options);
        ASSERT_TRUE(loaded.document) << loaded.error;
        EXPECT_TRUE(loaded.document->contentForm);
        EXPECT_EQ(definitionSummary(*loaded.document, c.tag), c.summary);
    }
}

// Character data is the main flow's text; unchanged files are written back
// byte for byte, and files in other encodings as UTF-8.
TEST(ContentForm, TextIsReadAndUnchangedFilesAreWrittenBack) {
    std::string utf16 = "\xff\xfe";  // little-endian, with its byte-order mark
    for (char c : std::string("<?xml version=\"1.0\" encoding=\"UTF-16\"?>\n<doc>caf")) utf16 += {c, '\0'};
    utf16 += std::string("\xe9\0<\0/\0d\0o\0c\0>\0\n\0", 16);
    const std::string book = VOKA_SOURCE_DIR "/resources/example/book/";
    struct Case {
        std::string input;
        const char* text = nullptr;   // the main flow's text, nullptr: not checked
        const char* saved = nullptr;  // nullptr: the input itself, "": not checked
    };
    const Case cases[] = {
        {"<!DOCTYPE a [<!ENTITY co 'Larkfield &amp; Co'>]><a>one <b>two</b> &co;<![CDATA[<raw>]]><c/>\n</a>",
         "one two Larkfield & Co<raw>\n", ""},
        {kChapter}, {readFile(book + "01-overview.xml")}, {readFile(book + "02-install.xml")},
        {readFile(book + "03-configure.xml")}, {readFile(book + "04-release-notes.xml")},
        // Another encoding is saved as UTF-8, the prolog as written but for its declaration.
        {"<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n<!DOCTYPE doc [<!ATTLIST doc a CDATA \"x&amp;\xe9\">]>\n<doc>caf\xe9</doc>\n",
         "caf\xc3\xa9",
         "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE doc [<!ATTLIST doc a CDATA \"x&amp;\xc3\xa9\">]>\n<doc>caf\xc3\xa9</doc>\n"},
        {utf16, "caf\xc3\xa9", "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<doc>caf\xc3\xa9</doc>\n"},
    };
    ScratchFolder folder;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.input.substr(0, 80));
        ASSERT_FALSE(c.input.empty());
        LoadResult loaded = loadFile(folder.write("in.xml", c.input));
        ASSERT_TRUE(loaded.document) << loaded.error;
        const Document& doc = *loaded.document;
        ASSERT_EQ(doc.flows.size(), 1u);
        EXPECT_TRUE(doc.flows[0].main);
        if (c.text) { EXPECT_EQ(doc.flows[0].text, c.text); }
        if (!c.saved || *c.saved) { EXPECT_EQ(savedText(folder, doc), c.saved ? std::string(c.saved) : c.input); }
    }
}

// DocBook's profiling attributes list values with ';': read as several
// values (what a rule matches one by one), written back as they stood.
TEST(ContentForm, DocBookProfilingValuesAreSeveralValues) {
    const std::string db5 = "<?xml version=\"1.0\"?>\n<article xmlns=\"http://docbook.org/ns/docbook\" version=\"5.0\">";
    const std::string db4 = "<?xml version=\"1.0\"?>\n<!DOCTYPE article PUBLIC \"-//OASIS//DTD DocBook XML V4.5//EN\" "
                            "\"none.dtd\">\n<article>";
    struct Case {
        std::string input;
        std::vector<std::string> values;  // of the para's first attribute
    } cases[] = {
        {db5 + "<para os=\"linux;mac\">x</para></article>\n", {"linux", "mac"}},
        {db4 + "<para condition=\"pro;fleet;home\">x</para></article>\n", {"pro", "fleet", "home"}},
        {db5 + "<para xml:lang=\"en;de\">x</para></article>\n", {"en", "de"}},
        {db5 + "<para remap=\"a;b\">x</para></article>\n", {"a;b"}},            // not a profiling attribute
        {"<?xml version=\"1.0\"?>\n<article><para os=\"linux;mac\">x</para></article>\n", {"linux;mac"}},  // not DocBook
        {db5 + "<para os=\";\">x</para></article>\n", {";"}},                  // separators alone are kept
    };
    ScratchFolder folder;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.input);
        LoadResult loaded = loadFile(folder.write("in.xml", c.input));
        ASSERT_TRUE(loaded.document) << loaded.error;
        const Document& doc = *loaded.document;
        const Index para = elementAt(doc, 0, {0});
        ASSERT_NE(para, kNil);
        ASSERT_GE(doc.elements[para].attributesCount, 1u);
        const std::uint32_t values = doc.attributeSlots[doc.elements[para].attributesBegin].values;
        EXPECT_EQ(doc.values.get(values), c.values);
        EXPECT_EQ(savedText(folder, doc), c.input);
    }
}

// Everything plain XML cannot carry, then changed attributes and deleted elements.
TEST(ContentForm, AnEditedDocumentIsWrittenInItsVocabularyAndReadsBackEqual) {
    ScratchFolder folder;
    LoadResult loaded = loadFile(folder.write("chapter.xml", kChapter));
    ASSERT_TRUE(loaded.document) << loaded.error;
    Document& d = *loaded.document;
    addFormatting(d);
    d.elements[elementAt(d, 0, {2})].titlePosition = 1;
    d.elements[elementAt(d, 0, {1})].beginAdjust = 1;
    d.rowConditions[elementAt(d, 0, {2, 2})] = {0};
    EXPECT_THAT(savedText(folder, d), HasSubstr("</chapter>\n<!-- the end -->\n<?voka-"));
    LoadResult reloaded = loadFile(folder.file("saved.xml"));
    ASSERT_TRUE(reloaded.document) << reloaded.error;
    EXPECT_TRUE(reloaded.warnings.empty()) << reloaded.warnings.front();
    EXPECT_EQ(firstDifference(d, *reloaded.document), "");

    // Several values are joined by one blank; an unset attribute is left out;
    // a declared default is not written out as if it were set. Deleted
    // elements take their text along and leave the comments around them.
    const Index chapter = d.flows[0].root;
    const Index def = d.elements[chapter].definition;
    d.setAttributeValues(chapter, d.attributePosition(def, "audience"), d.values.intern({"novice", "expert"}));
    d.setAttributeValues(chapter, d.attributePosition(def, "id"), 0);
    cutElement(d, elementAt(d, 0, {0}));     // the title, a comment follows it
    cutElement(d, elementAt(d, 0, {1, 1}));  // the table's first row
    const std::string cut = savedText(folder, d);
    for (const char* kept : {"<chapter audience=\"novice expert\">", "<!-- keep me -->",
                             "<p audience=\"\">Hold the button.<?editor mark?></p>"})
        EXPECT_THAT(cut, HasSubstr(kept));
    for (const char* gone : {"product=\"home\"", "Pairing", "small"}) EXPECT_THAT(cut, Not(HasSubstr(gone)));
    reloaded = loadFile(folder.file("saved.xml"));
    ASSERT_TRUE(reloaded.document) << reloaded.error;
    EXPECT_THAT(reloaded.document->flows[0].text, Not(HasSubstr("Pairing")));
}

TEST(ContentForm, DtdAndEntitiesResolveThroughTheCatalog) {
    ScratchFolder folder;
    std::filesystem::create_directory(folder.file("dtd"));
    folder.write("dtd/topic.dtd", "<!ELEMENT topic ANY><!ATTLIST topic audience CDATA 'everyone'>");
    folder.write("dtd/legal.xml", "Copyright Larkfield");
    folder.write("catalog.xml",
                 "<catalog xmlns=\"urn:oasis:names:tc:entity:xmlns:xml:catalog\">\n"
                 "  <public publicId=\"-//LARK//DTD Topic//EN\" uri=\"dtd/topic.dtd\"/>\n"
                 "  <system systemId=\"http://lark.example/legal.xml\" uri=\"dtd/legal.xml\"/>\n"
                 "</catalog>\n");
    // Catalogs are read once per process: this test brings its own, then resets them.
    ::setenv("XML_CATALOG_FILES", folder.file("catalog.xml").c_str(), 1);
    xmlCatalogCleanup();
    LoadResult loaded = loadFile(folder.write(
        "topic.xml",
        "<!DOCTYPE topic PUBLIC \"-//LARK//DTD Topic//EN\" \"http://lark.example/topic.dtd\" "
        "[<!ENTITY legal SYSTEM \"http://lark.example/legal.xml\">]><topic>&legal;</topic>"));
    ::unsetenv("XML_CATALOG_FILES");
    xmlCatalogCleanup();
    ASSERT_TRUE(loaded.document) << loaded.error;
    EXPECT_TRUE(loaded.warnings.empty()) << loaded.warnings.front();
    EXPECT_EQ(definitionSummary(*loaded.document, "topic"), kind(kElementContainer, "audience:0=everyone "));
    EXPECT_EQ(loaded.document->flows[0].text, "Copyright Larkfield");
}

}  // namespace
}  // namespace voka::test
