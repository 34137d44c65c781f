// Untrusted input: every bad file gives a clear message naming it (with
// line and column where there is one) and no document, quickly, without
// touching the network or printing anything on its own. What can be skipped
// is skipped with one warning in the same form.
#include "TestFiles.h"

#include <sys/stat.h>
#include <unistd.h>

namespace voka::test {
namespace {

std::string billionLaughs() {
    std::string xml = "<?xml version=\"1.0\"?>\n<!DOCTYPE lolz [\n<!ENTITY lol0 \"lol\">\n";
    for (int i = 1; i <= 9; ++i) {
        xml += "<!ENTITY lol" + std::to_string(i) + " \"";
        for (int j = 0; j < 10; ++j) xml += "&lol" + std::to_string(i - 1) + ";";
        xml += "\">\n";
    }
    return xml + "]>\n<lolz>&lol9;</lolz>\n";
}

std::string fullForm(const char* body) {
    return std::string("<?xml version=\"1.0\"?>\n<voka-document version=\"1\">") + body + "</voka-document>\n";
}

TEST(BadInput, GivesAClearMessageAndNoDocument) {
    struct Case {
        const char* name;
        std::string content;
        const char* expected;  // in the error, or in the warning when a document loads
        const char* location;  // ":line:" the message must carry after the path, "" when there is none
        bool loads;            // true: a document with one warning
    };
    const Case cases[] = {
        {"malformed XML", "<doc>\n  <p>\n</doc>\n", "Opening and ending tag mismatch", ":3:", false},
        {"an empty file", "", "the file is empty", "", false},
        {"four bytes in an encoding libxml2 cannot read", std::string("\0\0<\0", 4), "", "", false},
        {"the other such byte order", std::string("\0<\0\0", 4), "", "", false},
        {"text after the root", "<doc/>\ntrailing", "Extra content at the end of the document", ":2:", false},
        {"a billion laughs", billionLaughs(), "entity reference loop", ":14:", false},
        {"an external entity on the network",
         "<!DOCTYPE doc [<!ENTITY remote SYSTEM \"http://example.com/x.xml\">]>\n<doc>&remote;</doc>",
         "\"remote\" (http://example.com/x.xml) is not read", ":2:", false},
        {"an external entity naming a local file",
         "<!DOCTYPE doc [<!ENTITY secret SYSTEM \"/etc/passwd\">]>\n<doc>x &secret;</doc>",
         "\"secret\" (/etc/passwd) is not read", ":2:", false},
        {"a DOCTYPE naming a DTD on the network",
         "<!DOCTYPE doc PUBLIC \"-//X//DTD Doc//EN\" \"http://example.com/doc.dtd\">\n<doc>fine</doc>",
         "the DTD \"http://example.com/doc.dtd\" could not be read", "", true},
        {"a DOCTYPE naming a missing DTD", "<!DOCTYPE doc SYSTEM \"nowhere.dtd\">\n<doc>fine</doc>",
         "defaults it declares are unavailable", "", true},
        {"a content-form instruction past the text", "<doc>text</doc>\n<?voka-format start=\"3\" end=\"99\" color=\"Red\"?>",
         "voka-format", ":2:", true},
        {"an instruction with a character XML cannot hold",
         "<doc>text</doc>\n<?voka-marker-type name=\"Index&#8;\"?>", "voka-marker-type", ":2:", true},
        {"an unknown content-form instruction", "<doc>text</doc>\n\n<?voka-sparkle on=\"1\"?>", "voka-sparkle", ":3:", true},
        {"a full-form file cut short", "<voka-document version=\"1\"><flow name=\"A\"><element tag=\"x\">",
         "the file ends inside <element>, which is not closed", ":1:", false},
        {"a full-form element without a tag", fullForm("\n<flow name=\"A\" main=\"1\"><element/></flow>"), "", ":3:", false},
        {"two highest-level elements in one flow",
         fullForm(R"(<flow name="A" main="1"><element tag="A"/><element tag="B"/></flow>)"), "one highest-level element",
         "", false},
        {"an unknown full-form element",
         fullForm(R"(<flow name="A" main="1"><element tag="Doc"><sparkle><text>no</text></sparkle><text>yes</text></element></flow>)"),
         "ignored unknown element <sparkle>", "", true},
        {"a format naming a missing colour",
         fullForm(R"(<flow name="A" main="1"><element tag="Doc"><text>abc</text></element><format start="0" end="2" color="Mauve"/></flow>)"),
         "unknown colour \"Mauve\"", "", true},
        {"a condition run past the text",
         fullForm(R"(<flow name="A" main="1"><element tag="Doc"><text>abc</text></element><conditions start="1" end="9" names="X"/></flow>)"),
         "bad range", "", true},
    };
    ScratchFolder folder;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const std::string path = folder.write("input.xml", c.content);
        testing::internal::CaptureStderr();
        LoadResult loaded = loadFile(path);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << "libxml2 printed on its own";
        EXPECT_EQ(static_cast<bool>(loaded.document), c.loads) << loaded.error;
        EXPECT_FALSE(loaded.book);
        EXPECT_EQ(loaded.warnings.size(), c.loads ? 1u : 0u);
        const std::string message = c.loads ? (loaded.warnings.empty() ? "" : loaded.warnings.front()) : loaded.error;
        EXPECT_EQ(message.rfind(path + c.location, 0), 0u) << message;  // names the file first
        EXPECT_THAT(message, HasSubstr(c.expected));
        // What is dropped is dropped whole; the rest of the file still loads.
        if (!loaded.document) continue;
        EXPECT_TRUE(loaded.document->flows[0].formats.empty());
        EXPECT_TRUE(loaded.document->flows[0].conditions.empty());
        EXPECT_THAT(loaded.document->flows[0].text, Not(HasSubstr("no")));
    }
}

TEST(BadInput, FilesThatCannotBeReadAreNamed) {
    ScratchFolder folder;
    std::vector<std::pair<std::string, const char*>> cases{{folder.file("missing.xml"), "No such file or directory"},
                                                           {folder.path(), "it is a folder"}};
    if (::mkfifo(folder.file("pipe.xml").c_str(), 0600) == 0)
        cases.emplace_back(folder.file("pipe.xml"), "it is not a regular file");
    if (::geteuid() != 0) {  // permissions do not stop the superuser
        ::chmod(folder.write("locked.xml", "<doc/>").c_str(), 0);
        cases.emplace_back(folder.file("locked.xml"), "Permission denied");
    }
    for (const auto& [path, reason] : cases) {
        LoadResult loaded = loadFile(path);
        EXPECT_FALSE(loaded.document);
        EXPECT_EQ(loaded.error, "Cannot open \"" + path + "\": " + reason);
    }
}

}  // namespace
}  // namespace voka::test
