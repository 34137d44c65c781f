// voka color and voka uncolor on the example book and on single chapters:
// what they print, which files they write, and what the saved documents hold.
#include "ExampleLooks.h"
#include "VokaRun.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace voka::test {
namespace {
namespace fs = std::filesystem;

const char* const kChapters[] = {"01-overview", "02-install", "03-configure", "04-release-notes"};

const char* const kUncolorQuestion =
    "This command has the same effect as refreshing the EDD definitions to remove format overrides. It will remove "
    "all format overrides, whether applied by VOKA or otherwise. Are you sure you want to continue?\n\n If you "
    "choose Yes, this warning will not appear again.\n[answered Yes]";

std::string chapterSource(const std::string& chapter) { return exampleBookDirectory() + "/" + chapter + ".xml"; }

// A book of the given chapter files, written into `folder`.
std::string writeBook(const std::string& path, const std::vector<std::string>& chapters) {
    std::string book = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<voka-book version=\"1\">\n";
    for (const std::string& chapter : chapters) book += "  <component path=\"" + chapter + "\"/>\n";
    writeFile(path, book + "</voka-book>\n");
    return path;
}

std::vector<std::string> allChapters(const std::string& folder, const std::string& suffix) {
    std::vector<std::string> files;
    for (const char* chapter : kChapters) files.push_back(folder + "/" + chapter + suffix);
    return files;
}

class VokaColor : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_FALSE(scratch.path().empty());
        home = scratch / "home";
        std::string problem = installHome(home);
        ASSERT_EQ("", problem);
    }

    ScratchFolder scratch;
    std::string home;
};

struct ColorRun {
    const char* name;
    std::vector<std::string> args;     // after "color"; the output folder is added
    std::vector<std::string> chapters;  // those written
    std::string err;                    // what voka must print on standard error
    const std::vector<ExpectedLook>& (*looks)();
};

const ColorRun kColorRuns[] = {
    {"TheExampleBookWithItsDefaultScheme",
     {},
     {kChapters[0], kChapters[1], kChapters[2], kChapters[3]},
     "-- VOKA plugin message --\n\nBook coloring complete.\n",
     byAudienceLooks},
    {"OneChapterWithAnotherScheme",
     {chapterSource("04-release-notes"), "--scheme", "Release status"},
     {"04-release-notes"},
     "",  // colouring one document says nothing when it goes well
     releaseStatusLooks},
};

// Test names in listings show the case, not its bytes.
void PrintTo(const ColorRun& c, std::ostream* out) { *out << c.name; }

class ColorWrites : public VokaColor, public testing::WithParamInterface<ColorRun> {};

TEST_P(ColorWrites, EveryChapterSavedInFullFormWithItsPageAndAnIndex) {
    const ColorRun& c = GetParam();
    const std::string out = scratch / "out";
    std::vector<std::string> args{"color"};
    args.insert(args.end(), c.args.begin(), c.args.end());
    args.insert(args.end(), {"--out", out});
    ProcessResult run = runVoka(home, args);

    EXPECT_EQ(0, run.exitCode);
    EXPECT_EQ(c.err, run.err);
    std::string printed;
    std::string listing;
    for (const std::string& chapter : c.chapters) {
        printed += out + "/" + chapter + ".voka.xml\n" + out + "/" + chapter + ".html\n";
        listing += chapter + ".html\n" + chapter + ".voka.xml\n";
    }
    EXPECT_EQ(printed + out + "/index.html\n", run.out) << "voka names every file it wrote";
    EXPECT_EQ(listing + "index.html\n", fileListing(out));

    const std::string index = readFile(out + "/index.html");
    for (const std::string& chapter : c.chapters) {
        SCOPED_TRACE(chapter);
        EXPECT_NE(std::string::npos, index.find("<a href=\"" + chapter + ".html\">")) << index;

        std::string error;
        std::unique_ptr<headless::Document> saved = loadSaved(out + "/" + chapter + ".voka.xml", error);
        ASSERT_TRUE(saved) << error;
        EXPECT_FALSE(saved->contentForm) << "the output is the host's full form";
        std::unique_ptr<headless::Document> source = loadSaved(chapterSource(chapter), error);
        ASSERT_TRUE(source) << error;
        ASSERT_EQ(source->flows.size(), saved->flows.size());
        EXPECT_EQ(source->flows[0].text, saved->flows[0].text) << "colouring changes no text";
        EXPECT_EQ(elementsInOrder(*source).size(), elementsInOrder(*saved).size());
        EXPECT_EQ("", savedLookMismatches(*saved, chapter, c.looks()));
    }
}

INSTANTIATE_TEST_SUITE_P(Voka, ColorWrites, testing::ValuesIn(kColorRuns),
                         [](const testing::TestParamInfo<ColorRun>& info) { return info.param.name; });

TEST_F(VokaColor, ColoringAgainWithAnotherSchemeLeavesOnlyThatSchemesColours) {
    const std::string first = scratch / "by-audience";
    ASSERT_EQ(0, runVoka(home, {"color", "--out", first}).exitCode);
    const std::string coloured =
        writeBook(first + "/coloured.book", allChapters(first, ".voka.xml"));
    const std::string again = scratch / "again";
    ProcessResult recolour = runVoka(home, {"color", coloured, "--scheme", "Release status", "--out", again});
    EXPECT_EQ(0, recolour.exitCode);
    EXPECT_EQ(pluginMessage("Book coloring complete."), recolour.err);

    const std::string direct = scratch / "direct";
    ASSERT_EQ(0, runVoka(home, {"color", "--scheme", "Release status", "--out", direct}).exitCode);

    for (const char* chapter : kChapters) {
        SCOPED_TRACE(chapter);
        std::string error;
        auto recoloured = loadSaved(again + "/" + chapter + ".voka.voka.xml", error);
        ASSERT_TRUE(recoloured) << error;
        auto fresh = loadSaved(direct + "/" + chapter + ".voka.xml", error);
        ASSERT_TRUE(fresh) << error;
        EXPECT_EQ("", lookDifferences(*fresh, *recoloured))
            << "a coloured chapter coloured again must look as the plain chapter coloured once";
        EXPECT_EQ("", savedLookMismatches(*recoloured, chapter, releaseStatusLooks()));
    }
}

struct UncolorRun {
    const char* name;
    bool book;  // the coloured book, or one coloured chapter
};

void PrintTo(const UncolorRun& c, std::ostream* out) { *out << c.name; }

class UncolorRemoves : public VokaColor, public testing::WithParamInterface<UncolorRun> {};

TEST_P(UncolorRemoves, EveryColourAndStyleFromTheColouredOutput) {
    const std::string coloured = scratch / "coloured";
    ASSERT_EQ(0, runVoka(home, {"color", "--out", coloured}).exitCode);
    const std::vector<std::string> chapters =
        GetParam().book ? std::vector<std::string>(std::begin(kChapters), std::end(kChapters))
                        : std::vector<std::string>{"03-configure"};
    std::vector<std::string> files;
    for (const std::string& chapter : chapters) files.push_back(chapter + ".voka.xml");
    const std::string input = GetParam().book ? writeBook(coloured + "/coloured.book", files) : coloured + "/" + files[0];

    const std::string out = scratch / "plain";
    ProcessResult run = runVoka(home, {"uncolor", input, "--out", out});
    EXPECT_EQ(0, run.exitCode);
    EXPECT_EQ(pluginMessage(kUncolorQuestion), run.err);

    for (const std::string& chapter : chapters) {
        SCOPED_TRACE(chapter);
        std::string error;
        auto before = loadSaved(coloured + "/" + chapter + ".voka.xml", error);
        ASSERT_TRUE(before) << error;
        auto after = loadSaved(out + "/" + chapter + ".voka.voka.xml", error);
        ASSERT_TRUE(after) << error;
        ASSERT_EQ(before->flows.size(), after->flows.size());
        for (std::size_t f = 0; f < after->flows.size(); ++f) {
            EXPECT_EQ(before->flows[f].text, after->flows[f].text);
            for (const auto& [offset, format] : after->flows[f].formats.runs())
                EXPECT_EQ(0, format.set) << "a format override is left at " << offset;
        }
        EXPECT_NE("", lookDifferences(*before, *after, 1)) << "the input was coloured to begin with";
    }
}

INSTANTIATE_TEST_SUITE_P(Voka, UncolorRemoves, testing::Values(UncolorRun{"OneChapter", false}, UncolorRun{"ABook", true}),
                         [](const testing::TestParamInfo<UncolorRun>& info) { return info.param.name; });

}  // namespace
}  // namespace voka::test
