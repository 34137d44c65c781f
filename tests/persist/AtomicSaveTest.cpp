// Saves replace a file whole or not at all: a failed save leaves the old
// file as it was, names the file, and leaves no temporary file behind.
#include "TestFiles.h"

#include <csignal>
#include <filesystem>
#include <functional>
#include <sys/resource.h>
#include <sys/stat.h>

namespace voka::test {
namespace {

// A real write error halfway: the file-size limit stops the temporary file,
// the way a full disk would.
SaveResult saveWithSizeLimit(const Document& doc, const std::string& path) {
    struct rlimit old {};
    EXPECT_EQ(::getrlimit(RLIMIT_FSIZE, &old), 0);
    auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    struct rlimit limited = old;
    limited.rlim_cur = 1 << 20;
    EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &limited), 0);
    SaveResult saved = saveDocument(doc, path);
    ::setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, oldHandler);
    return saved;
}

TEST(AtomicSave, ReplacesTheFileWholeOrNotAtAll) {
    ScratchFolder folder;
    const std::string path = folder.write("doc.xml", "<old/>");
    ::chmod(path.c_str(), 0640);
    EXPECT_THAT(savedText(folder, *richDocument(), "doc.xml"), HasSubstr("<voka-document"));
    struct stat info {};
    ASSERT_EQ(::stat(path.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0640u);  // the permissions stay
    const std::string old = readFile(path);

    Document rootless;  // a content-form document with nothing to write
    rootless.flows.push_back(Flow{});
    auto big = richDocument();
    big->flows[0].text.append(4 << 20, 'x');
    big->elements[big->flows[0].root].end = static_cast<std::uint32_t>(big->flows[0].text.size());
    Book book;
    book.components.push_back(BookComponent{folder.file("ch1.xml"), "", 1, true});
    struct Case {
        const char* name;
        std::string target;
        const char* reason;
        std::function<SaveResult(const std::string&)> save;
    };
    auto saveRootless = [&](const std::string& target) { return saveDocument(rootless, target); };
    const Case cases[] = {
        {"nothing to write", path, "has no root element", saveRootless},
        {"a folder in the way", folder.path(), "it is a folder", saveRootless},
        {"a missing folder", folder.file("no/such/doc.xml"), "No such file or directory", saveRootless},
        {"a write error", path, "File too large", [&](const std::string& t) { return saveWithSizeLimit(*big, t); }},
        {"a book", folder.file("missing/my.book"), "No such file or directory",
         [&](const std::string& t) { return saveBook(book, t); }},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        SaveResult saved = c.save(c.target);
        EXPECT_FALSE(saved.ok);
        EXPECT_THAT(saved.error, HasSubstr("\"" + c.target + "\""));
        EXPECT_THAT(saved.error, HasSubstr(c.reason));
        EXPECT_EQ(readFile(path), old);
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);  // no temporary left
    }
}

}  // namespace
}  // namespace voka::test
