// The content form: any XML instance read into the model and written back
// in its own vocabulary, with what plain XML cannot carry kept beside it.
#include "SampleDocuments.h"
#include "TestFiles.h"
#include "host/headless/Editing.h"
#include "host/headless/persist/Persist.h"
#include "support/ModelEquality.h"

#include <gtest/gtest.h>

#include <ostream>
#include <libxml/catalog.h>

#include <cctype>
#include <cstdlib>
#include <filesystem>

namespace voka::test {
namespace {

using namespace voka::headless;

std::string testName(const char* text) {
    std::string name;
    for (const char* p = text; *p; ++p) name += std::isalnum(static_cast<unsigned char>(*p)) ? *p : '_';
    return name;
}

const ElementDefinition* definition(const Document& doc, const std::string& tag) {
    auto found = doc.definitionByTag.find(tag);
    return found == doc.definitionByTag.end() ? nullptr : &doc.definitions[found->second];
}

std::string attributeSummary(const ElementDefinition& def) {
    std::string out;
    for (const AttributeDefinition& a : def.attributes) {
        out += a.name + ":" + std::to_string(a.kind);
        for (const auto& c : a.choices) out += "|" + c;
        for (const auto& d : a.defaults) out += "=" + d;
        if (a.flags) out += "!" + std::to_string(a.flags);
        out += " ";
    }
    return out;
}

struct DefinitionCase {
    const char* name;
    const char* xml;
    const char* tag;
    int type;
    const char* attributes;  // attributeSummary of the tag's definition
};

const DefinitionCase kDefinitionCases[] = {
    {"without a DTD attributes come in first-seen order as strings",
     "<doc b='1' a='2'><p a='x'/><p c='y' a='z'/></doc>", "p", kElementContainer, "a:0 c:0 "},
    {"a DTD gives declared attributes in declaration order with defaults and choices",
     "<!DOCTYPE doc [<!ELEMENT doc ANY><!ATTLIST doc z CDATA 'dz' e (one|two) 'two' f CDATA #FIXED 'ff' id ID #IMPLIED>]>"
     "<doc id='i' extra='x'/>",
     "doc", kElementContainer, "z:0=dz e:2|one|two=two f:0=ff!4 id:7 extra:0 "},
    {"a namespace the DTD declares is a definition's default, not a value",
     "<!DOCTYPE topic [<!ELEMENT topic ANY><!ATTLIST topic xmlns:ditaarch CDATA #FIXED 'urn:arch'>]>"
     "<topic><topic xmlns:ditaarch='urn:arch' xmlns:x='urn:x'/></topic>",
     "topic", kElementContainer, "xmlns:ditaarch:0=urn:arch!4 xmlns:x:0 "},
    {"a declared but unused element is still defined", "<!DOCTYPE doc [<!ELEMENT doc ANY><!ELEMENT spare EMPTY>]><doc/>",
     "spare", kElementContainer, ""},
    {"CALS tables map to the table kinds", "<doc><table><tgroup><tbody><row><entry/></row></tbody></tgroup></table></doc>",
     "tbody", kElementTableBody, ""},
    {"a table cell", "<doc><table><tgroup><tbody><row><entry/></row></tbody></tgroup></table></doc>", "entry",
     kElementTableCell, ""},
    {"an HTML row", "<doc><table><tr><td/></tr></table></doc>", "tr", kElementTableRow, ""},
    {"a DITA simple table heading", "<doc><simpletable><sthead><stentry/></sthead></simpletable></doc>", "sthead",
     kElementTableHeading, ""},
    {"a footnote", "<doc><fn/></doc>", "fn", kElementFootnote, ""},
    {"a cross-reference", "<doc><xref href='a.xml'/></doc>", "xref", kElementXRef, "href:0 "},
    {"a caption inside a table is its title", "<doc><table><caption/><tr/></table></doc>", "caption",
     kElementTableTitle, ""},
    {"a title that also heads sections stays a container",
     "<doc><title/><table><title/></table></doc>", "title", kElementContainer, ""},
    {"any other tag is a container", "<doc><para/></doc>", "para", kElementContainer, ""},
};

// Test names and failure messages show the case by its name.
void PrintTo(const DefinitionCase& c, std::ostream* out) { *out << c.name; }

class ContentDefinitions : public testing::TestWithParam<DefinitionCase> {};

TEST_P(ContentDefinitions, ComeFromTheDtdOrTheInstance) {
    const DefinitionCase& c = GetParam();
    ScratchFolder folder;
    LoadResult loaded = loadFile(folder.write("doc.xml", c.xml));
    ASSERT_TRUE(loaded.document) << loaded.error;
    EXPECT_TRUE(loaded.document->contentForm);
    const ElementDefinition* def = definition(*loaded.document, c.tag);
    ASSERT_NE(def, nullptr) << c.tag;
    EXPECT_EQ(def->type, c.type);
    EXPECT_EQ(attributeSummary(*def), c.attributes);
}

INSTANTIATE_TEST_SUITE_P(Cases, ContentDefinitions, testing::ValuesIn(kDefinitionCases),
                         [](const auto& info) { return testName(info.param.name); });

TEST(ContentForm, KindTableCanBeOverridden) {
    ScratchFolder folder;
    ElementKindTable kinds{{"note", kElementFootnote}};
    LoadOptions options;
    options.elementKinds = &kinds;
    LoadResult loaded = loadFile(folder.write("doc.xml", "<doc><note/><table/></doc>"), options);
    ASSERT_TRUE(loaded.document) << loaded.error;
    EXPECT_EQ(definition(*loaded.document, "note")->type, kElementFootnote);
    EXPECT_EQ(definition(*loaded.document, "table")->type, kElementContainer);
}

TEST(ContentForm, CharacterDataIsTheMainFlowText) {
    ScratchFolder folder;
    LoadResult loaded = loadFile(folder.write(
        "doc.xml", "<!DOCTYPE a [<!ENTITY co 'Larkfield &amp; Co'>]><a>one <b>two</b> &co;<![CDATA[<raw>]]><c/>\n</a>"));
    ASSERT_TRUE(loaded.document) << loaded.error;
    const Document& doc = *loaded.document;
    ASSERT_EQ(doc.flows.size(), 1u);
    EXPECT_TRUE(doc.flows[0].main);
    EXPECT_EQ(doc.flows[0].text, "one two Larkfield & Co<raw>\n");
    const Element& a = doc.elements[doc.flows[0].root];
    const Element& b = doc.elements[a.firstChild];
    const Element& c = doc.elements[b.nextSibling];
    EXPECT_EQ(std::make_pair(a.begin, a.end), std::make_pair(0u, 28u));
    EXPECT_EQ(std::make_pair(b.begin, b.end), std::make_pair(4u, 7u));
    EXPECT_EQ(std::make_pair(c.begin, c.end), std::make_pair(27u, 27u));
}

const char* kChapter =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!-- chapter one -->\n"
    "<!DOCTYPE chapter [\n"
    "  <!ELEMENT chapter ANY>\n"
    "  <!ATTLIST chapter audience CDATA #IMPLIED product CDATA 'home' id ID #IMPLIED\n"
    "                    xmlns:ditaarch CDATA #FIXED 'urn:arch'>\n"
    "]>\n"
    "<chapter id=\"c1\" audience=\"novice\">\n"
    "  <title>Pairing <ph product=\"pro fleet\">sensors</ph></title><!-- keep me -->\n"
    "  <p audience=\"\">Hold the button.<?editor mark?></p>\n"
    "  <table><caption>Sizes</caption><tr><td>small</td></tr><tr><td>large</td></tr></table>\n"
    "</chapter>\n"
    "<!-- the end -->\n";

TEST(ContentForm, UnchangedDocumentIsWrittenBackByteForByte) {
    ScratchFolder folder;
    const std::string source = folder.write("chapter.xml", kChapter);
    LoadResult loaded = loadFile(source);
    ASSERT_TRUE(loaded.document) << loaded.error;
    const std::string target = folder.file("saved.xml");
    ASSERT_TRUE(saveDocument(*loaded.document, target).ok);
    EXPECT_EQ(readFile(target), kChapter);

    for (const char* chapter : {"01-overview.xml", "02-install.xml", "03-configure.xml", "04-release-notes.xml"}) {
        const std::string path = std::string(VOKA_SOURCE_DIR "/resources/example/book/") + chapter;
        LoadResult example = loadFile(path);
        ASSERT_TRUE(example.document) << example.error;
        EXPECT_TRUE(example.warnings.empty()) << example.warnings.front();
        ASSERT_TRUE(saveDocument(*example.document, target).ok);
        EXPECT_EQ(readFile(target), readFile(path)) << chapter;
    }
}

TEST(ContentForm, OtherEncodingsAreSavedAsUtf8) {
    ScratchFolder folder;
    struct Case {
        const char* name;
        std::string bytes;
        const char* saved;
    };
    std::string utf16 = "\xff\xfe";  // little-endian, with its byte-order mark
    for (char c : std::string("<?xml version=\"1.0\" encoding=\"UTF-16\"?>\n<doc>caf")) utf16 += {c, '\0'};
    utf16 += std::string("\xe9\0<\0/\0d\0o\0c\0>\0\n\0", 16);
    const std::vector<Case> cases{
        {"Latin-1 with a DTD",
         "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n<!DOCTYPE doc [<!ATTLIST doc a CDATA \"x\">]>\n<doc>caf\xe9</doc>\n",
         "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE doc [\n<!ATTLIST doc a CDATA \"x\">\n]>\n<doc>caf\xc3\xa9</doc>\n"},
        {"UTF-16", utf16, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<doc>caf\xc3\xa9</doc>\n"},
    };
    for (const Case& c : cases) {
        LoadResult loaded = loadFile(folder.write("in.xml", c.bytes));
        ASSERT_TRUE(loaded.document) << c.name << ": " << loaded.error;
        EXPECT_EQ(loaded.document->flows[0].text, "caf\xc3\xa9") << c.name;
        const std::string target = folder.file("out.xml");
        ASSERT_TRUE(saveDocument(*loaded.document, target).ok) << c.name;
        EXPECT_EQ(readFile(target), c.saved) << c.name;
    }
}

TEST(ContentForm, ChangedAttributesAreWrittenInTheirVocabulary) {
    ScratchFolder folder;
    LoadResult loaded = loadFile(folder.write("chapter.xml", kChapter));
    ASSERT_TRUE(loaded.document) << loaded.error;
    Document& doc = *loaded.document;
    const Index chapter = doc.flows[0].root;
    const Index chapterDef = doc.elements[chapter].definition;
    doc.setAttributeValues(chapter, doc.attributePosition(chapterDef, "audience"), doc.values.intern({"novice", "expert"}));
    doc.setAttributeValues(chapter, doc.attributePosition(chapterDef, "id"), 0);
    const std::string target = folder.file("saved.xml");
    ASSERT_TRUE(saveDocument(doc, target).ok);
    const std::string saved = readFile(target);
    // Several values are joined by one blank; an unset attribute is left out;
    // a declared default is not written out as if it were set.
    EXPECT_NE(saved.find("<chapter audience=\"novice expert\">"), std::string::npos) << saved;
    EXPECT_EQ(saved.find("product=\"home\""), std::string::npos) << saved;
}

TEST(ContentForm, DeletedElementsTakeTheirTextAndLeaveTheCommentsAround) {
    ScratchFolder folder;
    LoadResult loaded = loadFile(folder.write("chapter.xml", kChapter));
    ASSERT_TRUE(loaded.document) << loaded.error;
    Document& doc = *loaded.document;
    const Index title = elementAt(doc, 0, {0});  // a comment follows it
    const Index firstRow = elementAt(doc, 0, {2, 1});
    cutElement(doc, title);
    cutElement(doc, firstRow);
    const std::string target = folder.file("saved.xml");
    SaveResult saved = saveDocument(doc, target);
    ASSERT_TRUE(saved.ok) << saved.error;
    const std::string text = readFile(target);
    EXPECT_EQ(text.find("Pairing"), std::string::npos) << text;
    EXPECT_EQ(text.find("small"), std::string::npos) << text;
    EXPECT_NE(text.find("<p audience=\"\">Hold the button.<?editor mark?></p>"), std::string::npos) << text;
    EXPECT_NE(text.find("<!-- keep me -->"), std::string::npos) << text;
    LoadResult reloaded = loadFile(target);
    ASSERT_TRUE(reloaded.document) << reloaded.error;
    EXPECT_EQ(reloaded.document->flows[0].text.find("Pairing"), std::string::npos);
}

TEST(ContentForm, WhatPlainXmlCannotCarryComesBackAfterReload) {
    ScratchFolder folder;
    LoadResult loaded = loadFile(folder.write("chapter.xml", kChapter));
    ASSERT_TRUE(loaded.document) << loaded.error;
    Document& doc = *loaded.document;
    Flow& flow = doc.flows[0];
    doc.colors.push_back(Color{"Orange", "#FF8000"});
    doc.conditions.push_back(ConditionFormat{"Hidden", false});
    doc.conditions.push_back(ConditionFormat{"Draft", true});
    doc.showAll = false;
    doc.markerTypes.push_back("Index");
    CharFormat format;
    format.set = CharFormat::kColor | CharFormat::kUnderlining | CharFormat::kChangeBar;
    format.color = doc.colorByName("Orange");
    format.underlining = kNumericUnderline;
    format.changeBar = 1;
    flow.formats.assign(3, 17, format);
    flow.conditions.assign(20, 30, doc.internConditionSet({0, 1}));
    const Index table = elementAt(doc, 0, {2});
    doc.elements[table].titlePosition = 1;
    doc.elements[elementAt(doc, 0, {1})].beginAdjust = 1;
    doc.rowConditions[elementAt(doc, 0, {2, 2})] = {0};
    doc.markers.push_back(Marker{0, 5, "Hypertext", "openlink \"x.xml\" ?> <tricky>"});
    doc.xrefs.push_back(XRef{0, 9, "\\home\\ann\\ch2.xml", "Heading & Page"});

    const std::string target = folder.file("saved.xml");
    ASSERT_TRUE(saveDocument(doc, target).ok);
    const std::string saved = readFile(target);
    EXPECT_NE(saved.find("</chapter>\n<!-- the end -->\n<?voka-"), std::string::npos) << saved;

    LoadResult reloaded = loadFile(target);
    ASSERT_TRUE(reloaded.document) << reloaded.error;
    EXPECT_TRUE(reloaded.warnings.empty()) << reloaded.warnings.front();
    EXPECT_EQ(firstDifference(doc, *reloaded.document), "");
}

TEST(ContentForm, MalformedInstructionsAreSkippedWithAWarning) {
    ScratchFolder folder;
    LoadResult loaded = loadFile(folder.write("doc.xml",
                                              "<doc>text</doc>\n"
                                              "<?voka-format start=\"3\" end=\"99\" color=\"Red\"?>\n"
                                              "<?voka-sparkle on=\"1\"?>\n"
                                              "<?voka-condition name=\"Hidden\" shown=\"0\"?>\n"));
    ASSERT_TRUE(loaded.document) << loaded.error;
    ASSERT_EQ(loaded.warnings.size(), 2u);
    EXPECT_NE(loaded.warnings[0].find(":2:"), std::string::npos) << loaded.warnings[0];
    EXPECT_NE(loaded.warnings[0].find("voka-format"), std::string::npos) << loaded.warnings[0];
    EXPECT_NE(loaded.warnings[1].find("voka-sparkle"), std::string::npos) << loaded.warnings[1];
    EXPECT_TRUE(loaded.document->flows[0].formats.runs().empty());
    ASSERT_EQ(loaded.document->conditions.size(), 1u);
    EXPECT_FALSE(loaded.document->conditions[0].shown);
}

// Catalogs are read once per process; a test that brings its own resets them.
class CatalogScope {
public:
    explicit CatalogScope(const std::string& files) {
        const char* old = std::getenv("XML_CATALOG_FILES");
        hadOld_ = old != nullptr;
        if (old) old_ = old;
        ::setenv("XML_CATALOG_FILES", files.c_str(), 1);
        xmlCatalogCleanup();
    }
    ~CatalogScope() {
        if (hadOld_) ::setenv("XML_CATALOG_FILES", old_.c_str(), 1);
        else ::unsetenv("XML_CATALOG_FILES");
        xmlCatalogCleanup();
    }

private:
    bool hadOld_ = false;
    std::string old_;
};

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
    CatalogScope catalog(folder.file("catalog.xml"));
    LoadResult loaded = loadFile(folder.write(
        "topic.xml",
        "<!DOCTYPE topic PUBLIC \"-//LARK//DTD Topic//EN\" \"http://lark.example/topic.dtd\" "
        "[<!ENTITY legal SYSTEM \"http://lark.example/legal.xml\">]><topic>&legal;</topic>"));
    ASSERT_TRUE(loaded.document) << loaded.error;
    EXPECT_TRUE(loaded.warnings.empty()) << loaded.warnings.front();
    EXPECT_EQ(attributeSummary(*definition(*loaded.document, "topic")), "audience:0=everyone ");
    EXPECT_EQ(loaded.document->flows[0].text, "Copyright Larkfield");
}

}  // namespace
}  // namespace voka::test
