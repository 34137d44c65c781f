// voka filter and voka restore as a user runs them: a duplicate book that
// validates against its DTD and leaves the originals alone, chapters that go
// whole, outputs voka may not write, and a source filter that restore undoes.
#include "Cli.h"

#include "host/headless/persist/Persist.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace voka::test {
namespace {
namespace fs = std::filesystem;

const std::string kNoviceOnWindows[] = {"--category", "Software", "--scheme", "Novice on Windows"};

std::vector<std::string> filterArgs(const std::vector<std::string>& first, const std::vector<std::string>& rest = {}) {
    std::vector<std::string> args{"filter"};
    args.insert(args.end(), first.begin(), first.end());
    args.insert(args.end(), std::begin(kNoviceOnWindows), std::end(kNoviceOnWindows));
    args.insert(args.end(), rest.begin(), rest.end());
    return args;
}

std::string exampleFolder() { return sourceDirectory() + "/resources/example/book"; }

class VokaFilter : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ("", installHome(home)); }
    ScratchFolder scratch;
    const std::string home = scratch / "home", in = scratch / "in", out = scratch / "out";
};

TEST_F(VokaFilter, ADuplicateOfTheExampleBookValidatesAndLeavesTheOriginalsAlone) {
    const auto before = snapshot(exampleFolder());
    const ProcessResult run = runVoka(home, filterArgs({"--type", "duplicate", "--out", out}));
    ASSERT_EQ(0, run.exitCode) << run.err;
    EXPECT_EQ(before, snapshot(exampleFolder())) << "a duplicate filter writes none of its inputs";

    // The DTD that lay beside the chapters comes along, once.
    std::string printed, listing;
    for (const char* chapter : kChapters) {
        printed += out + "/" + chapter + ".xml\n" + (printed.empty() ? out + "/voka-example.dtd\n" : "");
        listing += std::string(chapter) + ".xml\n";
    }
    EXPECT_EQ(printed + out + "/example.book\n", run.out);
    EXPECT_EQ(listing + "example.book\nvoka-example.dtd\n", fileListing(out)) << "the folder the book moved through is gone";
    EXPECT_EQ(6, std::distance(fs::directory_iterator(out), fs::directory_iterator())) << "no folder is left over";

    for (const char* chapter : kChapters) {
        const std::string file = out + "/" + chapter + ".xml";
        const ProcessResult valid =
            runProcess({"/usr/bin/xmllint", "--noout", "--valid", file});
        EXPECT_EQ(0, valid.exitCode) << chapter << ": " << valid.err;
        const headless::LoadResult loaded = headless::loadFile(file);
        EXPECT_TRUE(loaded.document) << loaded.error;
    }
    const headless::LoadResult book = headless::loadFile(out + "/example.book");
    ASSERT_TRUE(book.book) << book.error;
    ASSERT_EQ(4u, book.book->components.size());
    EXPECT_EQ(out + "/01-overview.xml", book.book->components[0].path);

    const std::string install = readFile(out + "/02-install.xml");
    struct Text {
        const char* text;
        bool kept;
        const char* why;
    } texts[] = {
        {"10 and 11, 64-bit", true, "the Windows row of the table"},
        {"Any distribution from 2020 on", false, "the Linux row goes, the table stays"},
        {"12 Monterey", false, "the macOS row"},
        {"Download the installer", true, "inside the novice Windows topic"},
        {"The Home edition needs no licence key", true, "product is not in the scheme"},
        {"Windows may ask whether", false, "\"Windows\" is not \"windows\" in this scheme"},
        {"Installing on Linux", false, "the Linux topic goes with its children"},
        {"winget install", false, "expert by the DTD's default"},
        {"<!DOCTYPE chapter SYSTEM \"voka-example.dtd\">", true, "the prolog is written back"},
    };
    for (const Text& t : texts)
        EXPECT_EQ(t.kept, install.find(t.text) != std::string::npos) << t.text << ": " << t.why;

    const ProcessResult again = runVoka(home, filterArgs({"--type", "duplicate", "--out", out}));
    EXPECT_EQ(0, again.exitCode) << "voka replaces what it wrote itself: " << again.err;
}

// A chapter whose highest-level element fails goes whole: no file, no entry in the book.
TEST_F(VokaFilter, AChapterThatGoesWholeIsLeftOutOfTheBook) {
    fs::create_directories(in);
    writeFile(in + "/keep.xml", "<?xml version=\"1.0\"?>\n<chapter><p>kept</p><p audience=\"expert\">x</p></chapter>\n");
    writeFile(in + "/gone.xml", "<?xml version=\"1.0\"?>\n<chapter audience=\"expert\"><p>gone</p></chapter>\n");
    writeFile(in + "/b.book", "<voka-book version=\"1\"><component path=\"gone.xml\"/><component path=\"keep.xml\"/></voka-book>");
    const ProcessResult run = runVoka(home, filterArgs({in + "/b.book", "--type", "duplicate", "--out", out}));
    ASSERT_EQ(0, run.exitCode) << run.err;
    EXPECT_EQ("b.book\nkeep.xml\n", fileListing(out));
    EXPECT_NE(std::string::npos, run.err.find("  - gone.xml")) << run.err;
    const std::string kept = readFile(out + "/keep.xml");
    EXPECT_NE(std::string::npos, kept.find("<p>kept</p>"));
    EXPECT_EQ(std::string::npos, kept.find("audience")) << kept;
    const headless::LoadResult book = headless::loadFile(out + "/b.book");
    ASSERT_TRUE(book.book) << book.error;
    ASSERT_EQ(1u, book.book->components.size());
    EXPECT_EQ(out + "/keep.xml", book.book->components[0].path);
}

// Refused before any work: exit 2, and the output folder as it was.
TEST_F(VokaFilter, OutputsVokaMayNotWriteAreRefusedWithNothingWritten) {
    fs::create_directories(in);
    fs::create_directories(in + "/a");
    fs::create_directories(in + "/b");
    for (const char* name : {"ch.xml", "a/ch.xml", "b/ch.xml"})
        writeFile(in + "/" + name, "<?xml version=\"1.0\"?>\n<chapter><p>text</p></chapter>\n");
    writeFile(in + "/one.book", "<voka-book version=\"1\"><component path=\"ch.xml\"/></voka-book>");
    writeFile(in + "/two.book", "<voka-book version=\"1\"><component path=\"a/ch.xml\"/><component path=\"b/ch.xml\"/></voka-book>");
    const std::string mine = scratch / "mine";
    fs::create_directories(mine);
    writeFile(mine + "/ch.xml", "<chapter>my own work</chapter>\n");
    struct Case {
        std::vector<std::string> args;
        std::string said;
    } cases[] = {
        {{in + "/one.book", "--type", "duplicate", "--out", in}, "it is one of the inputs"},
        {{in + "/one.book", "--type", "duplicate", "--out", mine}, "voka did not write it"},
        {{in + "/ch.xml", "--type", "duplicate", "--out", mine}, "voka did not write it"},
        {{in + "/two.book", "--type", "duplicate", "--out", out}, "two inputs are called ch.xml"},
    };
    const auto inputs = snapshot(in);
    const auto own = snapshot(mine);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.args.front() + " --out " + c.args.back());
        const ProcessResult run = runVoka(home, filterArgs(c.args));
        EXPECT_EQ(2, run.exitCode) << run.err;
        EXPECT_NE(std::string::npos, run.err.find(c.said)) << run.err;
        EXPECT_EQ(inputs, snapshot(in));
        EXPECT_EQ(own, snapshot(mine));
        EXPECT_FALSE(fs::exists(out));
    }
}

// A source filter hides under "Hidden" and its page leaves that out; restore gives the document back whole.
TEST_F(VokaFilter, RestoreUndoesASourceFilter) {
    const std::string hidden = scratch / "hidden", restored = scratch / "restored";
    const ProcessResult filtered =
        runVoka(home, filterArgs({chapterSource("02-install"), "--type", "source", "--out", hidden}));
    ASSERT_EQ(0, filtered.exitCode) << filtered.err;
    EXPECT_EQ(hidden + "/02-install.voka.xml\n" + hidden + "/02-install.html\n" + hidden + "/index.html\n", filtered.out);
    const std::string page = readFile(hidden + "/02-install.html");
    EXPECT_EQ(std::string::npos, page.find("Any distribution")) << "a hidden table row is not shown";
    EXPECT_EQ(std::string::npos, page.find("Installing on Linux")) << "hidden text is not shown";
    EXPECT_NE(std::string::npos, page.find("Download the installer"));
    EXPECT_NE(std::string::npos, page.find("Filter scheme: Software / Novice on Windows"));

    const ProcessResult restore = runVoka(home, {"restore", hidden + "/02-install.voka.xml", "--out", restored});
    ASSERT_EQ(0, restore.exitCode) << restore.err;
    EXPECT_EQ(restored + "/02-install.voka.xml\n" + restored + "/02-install.html\n" + restored + "/index.html\n",
              restore.out) << "a full-form input keeps its name";
    std::string error;
    const auto original = loadSaved(chapterSource("02-install"), error);
    const auto back = loadSaved(restored + "/02-install.voka.xml", error);
    ASSERT_TRUE(original && back) << error;
    ASSERT_EQ(original->flows[0].text, back->flows[0].text);
    const std::vector<headless::Index> a = elementsInOrder(*original), b = elementsInOrder(*back);
    ASSERT_EQ(a.size(), b.size());
    for (std::size_t i = 0; i < a.size(); ++i) {
        const headless::Element &x = original->elements[a[i]], &y = back->elements[b[i]];
        EXPECT_EQ(original->definitions[x.definition].tag, back->definitions[y.definition].tag);
        EXPECT_EQ(x.begin, y.begin);
        EXPECT_EQ(x.end, y.end);
    }
    EXPECT_TRUE(back->rowConditions.empty()) << "no table row stays conditional";
    back->flows[0].conditions.forEach([&](std::uint32_t, const std::uint32_t& set) { EXPECT_EQ(0u, set); });
    const std::string again = readFile(restored + "/02-install.html");
    EXPECT_NE(std::string::npos, again.find("Any distribution"));
    EXPECT_NE(std::string::npos, again.find("Installing on Linux"));
}

}  // namespace
}  // namespace voka::test
