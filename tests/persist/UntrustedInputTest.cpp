// Hostile XML: whatever a document, its DTD or its entities ask for, no file
// outside the document's folder tree (or an XML catalog) is read, no special
// file blocks the load, entities cannot multiply the input without bound and
// nesting is limited; each refusal names the file, line and column, the
// secret planted beside the folder appears in no document and no message.
#include "TestFiles.h"

#include "host/headless/persist/XmlParse.h"

#include <filesystem>
#include <sys/stat.h>

namespace voka::test {
namespace {

constexpr const char* kSecret = "TOP-SECRET-4711";

std::string nested(int depth) {
    std::string xml;
    for (int i = 0; i < depth; ++i) xml += "<e>";
    xml += "x";
    for (int i = 0; i < depth; ++i) xml += "</e>";
    return xml;
}

TEST(UntrustedInput, OnlyTheDocumentsFolderTreeIsReadAndEveryLimitIsNamed) {
    struct Case {
        const char* name;
        std::vector<std::pair<std::string, std::string>> files;  // in the document's folder; "doc.xml" is loaded
        const char* expected;  // in the error, or in the one warning when the document loads
        const char* where;     // the message starts with the folder's path and this
        bool loads;
    };
    const std::string outside = "../secret.txt";
    const std::string expandMe(50000, 'x');
    std::string amplified = "<!DOCTYPE d [<!ENTITY a \"" + expandMe + "\">]><d>";
    for (int i = 0; i < 400; ++i) amplified += "&a;";
    const Case cases[] = {
        {"an external parameter entity in the internal subset",
         {{"doc.xml", "<!DOCTYPE doc [\n<!ENTITY % x SYSTEM \"" + outside + "\">\n%x;\n]>\n<doc/>"}},
         "the external entity \"%x\" (../secret.txt) is not read: it is outside the document's folder", "/doc.xml:3:", false},
        {"a DTD beside the document that pulls a file into an entity",
         {{"evil.dtd", "<!ENTITY % file SYSTEM \"" + outside + "\">\n<!ENTITY % eval \"<!ENTITY leak '%file;'>\">\n%eval;\n"},
          {"doc.xml", "<!DOCTYPE doc SYSTEM \"evil.dtd\">\n<doc>&leak;</doc>"}},
         "\"%file\" (../secret.txt) is not read", "/evil.dtd:2:", false},
        {"a file name put into a URI to leak it in a message",
         {{"doc.xml", "<!DOCTYPE doc [\n<!ENTITY % file SYSTEM \"" + outside + "\">\n<!ENTITY % ext SYSTEM \"sub/x.dtd\">\n%ext;\n]>\n<doc/>"},
          {"sub/x.dtd", "<!ENTITY % e \"<!ENTITY &#x25; exfil SYSTEM 'file:///nonexistent/%file;'>\">\n%e;\n%exfil;\n"}},
         "\"%file\" (../secret.txt) is not read", "/sub/x.dtd:1:", false},
        {"a general entity outside the folder", {{"doc.xml", "<!DOCTYPE doc [<!ENTITY s SYSTEM \"" + outside + "\">]>\n<doc>&s;</doc>"}},
         "\"s\" (../secret.txt) is not read", "/doc.xml:2:", false},
        {"a parameter entity that is a device", {{"doc.xml", "<!DOCTYPE doc [\n<!ENTITY % in SYSTEM \"/dev/stdin\">\n%in;\n]>\n<doc/>"}},
         "(/dev/stdin) is not read", "/doc.xml:3:", false},
        {"a DTD that is a FIFO", {{"doc.xml", "<!DOCTYPE doc SYSTEM \"pipe.dtd\">\n<doc/>"}},
         "the DTD \"pipe.dtd\" could not be read (it is not a regular file)", "/doc.xml", true},
        {"a DTD outside the folder", {{"doc.xml", "<!DOCTYPE doc SYSTEM \"" + outside + "\">\n<doc/>"}},
         "could not be read (it is outside the document's folder and no XML catalog lists it)", "/doc.xml", true},
        {"an entity in the folder tree", {{"doc.xml", "<!DOCTYPE doc [<!ENTITY c SYSTEM \"parts/c.ent\">]>\n<doc>&c;</doc>"}, {"parts/c.ent", "chapter"}},
         "", "", true},
        {"a small file expanding to many megabytes", {{"doc.xml", amplified + "</d>"}}, "the limit on entity expansion", "/doc.xml:1:", false},
        {"elements nested past the limit", {{"doc.xml", nested(kMaxElementDepth + 1)}},
         "elements nested more than 10000 deep: the limit on element depth", "/doc.xml:1:", false},
        {"an attribute value past libxml2's 10 MB", {{"doc.xml", "<d a=\"" + std::string(10000001, 'x') + "\"/>"}},
         "more than 10000000 bytes in one piece of markup", "/doc.xml:1:", false},
        {"an error inside the DTD", {{"bad.dtd", "<!ELEMENT doc ANY>\n<!ATTLIST doc a CDATA \"x\"\n   oops>\n"}, {"doc.xml", "<!DOCTYPE doc SYSTEM \"bad.dtd\">\n<doc/>"}},
         "Space required after the attribute name", "/bad.dtd:3:", false},
    };
    ScratchFolder scratch;
    scratch.write("secret.txt", kSecret);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const std::string folder = scratch.file("case");
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder + "/sub");
        std::filesystem::create_directories(folder + "/parts");
        ::mkfifo((folder + "/pipe.dtd").c_str(), 0600);
        for (const auto& [name, content] : c.files) scratch.write("case/" + name, content);
        testing::internal::CaptureStderr();
        LoadResult loaded = loadFile(folder + "/doc.xml");
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
        ASSERT_EQ(static_cast<bool>(loaded.document), c.loads) << loaded.error;
        std::string messages = loaded.error;
        for (const std::string& warning : loaded.warnings) messages += "\n" + warning;
        EXPECT_THAT(messages, Not(HasSubstr(kSecret)));
        if (loaded.document) {
            EXPECT_THAT(loaded.document->flows[0].text, Not(HasSubstr(kSecret)));
        }
        if (*c.expected == '\0') {
            EXPECT_EQ(messages, "");
            continue;
        }
        const std::string message = c.loads ? (loaded.warnings.empty() ? "" : loaded.warnings.front()) : loaded.error;
        EXPECT_EQ(message.rfind(folder + c.where, 0), 0u) << message;
        EXPECT_THAT(message, HasSubstr(c.expected));
    }
}

// A DTD beside a document is found whatever the folder and file are called.
TEST(UntrustedInput, ADtdBesideTheDocumentIsFoundInAnyFolder) {
    ScratchFolder scratch;
    for (const std::string folder : {"plain", "with blanks", "caf\xc3\xa9 #1", "50%25 off", "a?b"}) {
        SCOPED_TRACE(folder);
        std::filesystem::create_directories(scratch.file(folder));
        scratch.write(folder + "/my dtd.dtd", "<!ATTLIST doc audience CDATA \"expert\">\n");
        LoadResult loaded = loadFile(scratch.write(folder + "/a b#c.xml", "<!DOCTYPE doc SYSTEM \"my dtd.dtd\">\n<doc>x</doc>"));
        ASSERT_TRUE(loaded.document) << loaded.error;
        EXPECT_TRUE(loaded.warnings.empty()) << loaded.warnings.front();
        const Document& doc = *loaded.document;
        ASSERT_EQ(doc.definitions.size(), 1u);
        ASSERT_EQ(doc.definitions[0].attributes.size(), 1u);
        EXPECT_EQ(doc.definitions[0].attributes[0].defaults, std::vector<std::string>{"expert"});
    }
}

}  // namespace
}  // namespace voka::test
