// Untrusted input: every bad file gives a clear message naming it (with
// line and column where there is one) and no document, quickly, without
// touching the network or printing anything on its own.
#include "TestFiles.h"
#include "host/headless/persist/Persist.h"

#include <gtest/gtest.h>

#include <ostream>

#include <cctype>
#include <sys/stat.h>
#include <unistd.h>

namespace voka::test {
namespace {

using namespace voka::headless;

std::string billionLaughs() {
    std::string xml = "<?xml version=\"1.0\"?>\n<!DOCTYPE lolz [\n<!ENTITY lol0 \"lol\">\n";
    for (int i = 1; i <= 9; ++i) {
        xml += "<!ENTITY lol" + std::to_string(i) + " \"";
        for (int j = 0; j < 10; ++j) xml += "&lol" + std::to_string(i - 1) + ";";
        xml += "\">\n";
    }
    return xml + "]>\n<lolz>&lol9;</lolz>\n";
}

struct BadInputCase {
    const char* name;
    std::string content;     // written to the file; empty: the case makes its own path
    const char* expected;    // in the error, or in the warning when a document loads
    const char* location;    // ":line:col:" the message must carry, "" when there is none
    bool loads;              // true: a document with a warning
};

const BadInputCase kBadInputCases[] = {
    {"malformed XML", "<doc>\n  <p>\n</doc>\n", "Opening and ending tag mismatch", ":3:", false},
    {"an empty file", "", "the file is empty", "", false},
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
    {"a full-form file cut short", "<voka-document version=\"1\"><flow name=\"A\"><element tag=\"x\">",
     "the file ends inside <element>, which is not closed", ":1:", false},
};

// Test names and failure messages show the case by its name.
void PrintTo(const BadInputCase& c, std::ostream* out) { *out << c.name; }

class BadInput : public testing::TestWithParam<BadInputCase> {};

TEST_P(BadInput, GivesAClearMessageAndNoDocument) {
    const BadInputCase& c = GetParam();
    ScratchFolder folder;
    const std::string path = folder.write("input.xml", c.content);
    testing::internal::CaptureStderr();
    LoadResult loaded = loadFile(path);
    const std::string printed = testing::internal::GetCapturedStderr();
    EXPECT_EQ(printed, "") << "libxml2 printed on its own";

    const std::string message = c.loads ? (loaded.warnings.empty() ? "" : loaded.warnings.front()) : loaded.error;
    EXPECT_EQ(static_cast<bool>(loaded.document), c.loads) << loaded.error;
    EXPECT_FALSE(loaded.book);
    EXPECT_EQ(message.rfind(path, 0), 0u) << message;  // names the file first
    EXPECT_NE(message.find(c.expected), std::string::npos) << message;
    if (*c.location) EXPECT_NE(message.find(path + c.location), std::string::npos) << message;
    if (c.loads) EXPECT_EQ(loaded.warnings.size(), 1u);
}

INSTANTIATE_TEST_SUITE_P(Cases, BadInput, testing::ValuesIn(kBadInputCases), [](const auto& info) {
    std::string name;
    for (const char* p = info.param.name; *p; ++p) name += std::isalnum(static_cast<unsigned char>(*p)) ? *p : '_';
    return name;
});

TEST(BadInput, FilesThatCannotBeReadAreNamed) {
    ScratchFolder folder;
    struct Case {
        std::string path;
        const char* reason;
    };
    std::vector<Case> cases{{folder.file("missing.xml"), "No such file or directory"}, {folder.path(), "it is a folder"}};
    const std::string fifo = folder.file("pipe.xml");
    if (::mkfifo(fifo.c_str(), 0600) == 0) cases.push_back({fifo, "it is not a regular file"});
    // Permissions do not stop the superuser, who can read anything.
    if (::geteuid() != 0) {
        const std::string locked = folder.write("locked.xml", "<doc/>");
        ::chmod(locked.c_str(), 0);
        cases.push_back({locked, "Permission denied"});
    }
    for (const Case& c : cases) {
        LoadResult loaded = loadFile(c.path);
        EXPECT_FALSE(loaded.document);
        EXPECT_EQ(loaded.error, "Cannot open \"" + c.path + "\": " + c.reason);
    }
}

}  // namespace
}  // namespace voka::test
