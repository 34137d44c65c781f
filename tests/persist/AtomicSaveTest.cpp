// Saves replace a file whole or not at all: a failed save leaves the old
// file as it was, names the file, and leaves no temporary file behind.
#include "SampleDocuments.h"
#include "TestFiles.h"
#include "host/headless/persist/Persist.h"

#include <gtest/gtest.h>

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>

namespace voka::test {
namespace {

using namespace voka::headless;

const char* kOldContent = "<?xml version=\"1.0\"?>\n<old>content</old>\n";

TEST(AtomicSave, ReplacesTheFileAndKeepsItsPermissions) {
    ScratchFolder folder;
    const std::string path = folder.write("doc.fm", kOldContent);
    ::chmod(path.c_str(), 0640);
    auto doc = richDocument();
    SaveResult saved = saveDocument(*doc, path);
    ASSERT_TRUE(saved.ok) << saved.error;
    EXPECT_NE(readFile(path).find("<voka-document"), std::string::npos);
    EXPECT_EQ(folder.listing(), "doc.fm\n");
    struct stat info {};
    ASSERT_EQ(::stat(path.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0640u);
}

TEST(AtomicSave, AFailedSaveLeavesTheOldFile) {
    ScratchFolder folder;
    const std::string path = folder.write("doc.xml", kOldContent);

    struct Case {
        const char* name;
        std::string target;
        const char* reason;
    };
    Document rootless;  // a content-form document with nothing to write
    rootless.flows.push_back(Flow{});
    const std::vector<Case> cases{
        {"nothing to write", path, "has no root element"},
        {"a folder in the way", folder.path(), "it is a folder"},
        {"a missing folder", folder.file("no/such/doc.xml"), "No such file or directory"},
    };
    for (const Case& c : cases) {
        SaveResult saved = saveDocument(rootless, c.target);
        EXPECT_FALSE(saved.ok) << c.name;
        EXPECT_NE(saved.error.find("\"" + c.target + "\""), std::string::npos) << c.name << ": " << saved.error;
        EXPECT_NE(saved.error.find(c.reason), std::string::npos) << c.name << ": " << saved.error;
    }
    EXPECT_EQ(readFile(path), kOldContent);
    EXPECT_EQ(folder.listing(), "doc.xml\n");
}

// A real write error halfway: the file-size limit stops the temporary file,
// the way a full disk would.
TEST(AtomicSave, AWriteErrorLeavesTheOldFile) {
    ScratchFolder folder;
    const std::string path = folder.write("big.fm", kOldContent);
    auto doc = richDocument();
    doc->flows[0].text.append(4 << 20, 'x');
    doc->elements[doc->flows[0].root].end = static_cast<std::uint32_t>(doc->flows[0].text.size());

    struct rlimit old {};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &old), 0);
    auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    struct rlimit limited = old;
    limited.rlim_cur = 1 << 20;
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limited), 0);
    SaveResult saved = saveDocument(*doc, path);
    ::setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, oldHandler);

    EXPECT_FALSE(saved.ok);
    EXPECT_NE(saved.error.find("\"" + path + "\""), std::string::npos) << saved.error;
    EXPECT_NE(saved.error.find("File too large"), std::string::npos) << saved.error;
    EXPECT_EQ(readFile(path), kOldContent);
    EXPECT_EQ(folder.listing(), "big.fm\n");
}

TEST(AtomicSave, BooksAreSavedTheSameWay) {
    ScratchFolder folder;
    Book book;
    book.components.push_back(BookComponent{folder.file("ch1.xml"), "", 1, true});
    SaveResult saved = saveBook(book, folder.file("missing/my.book"));
    EXPECT_FALSE(saved.ok);
    EXPECT_NE(saved.error.find(folder.file("missing/my.book")), std::string::npos) << saved.error;
    ASSERT_TRUE(saveBook(book, folder.file("my.book")).ok);
    EXPECT_EQ(folder.listing(), "my.book\n");
}

}  // namespace
}  // namespace voka::test
