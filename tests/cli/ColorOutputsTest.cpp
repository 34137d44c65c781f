// voka color and voka uncolor on the example book and on single chapters:
// what they print, which files they write, and what the saved documents hold.
#include "Cli.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>

namespace voka::test {
namespace {

const std::vector<std::string> kAllChapters(std::begin(kChapters), std::end(kChapters));

std::unique_ptr<headless::Document> load(const std::string& path) {
    std::string error;
    std::unique_ptr<headless::Document> doc = loadSaved(path, error);
    EXPECT_TRUE(doc) << error;
    return doc;
}

// One per-user folder for the suite, and the example book coloured with its default scheme in it.
class VokaColor : public testing::Test {
protected:
    static void SetUpTestSuite() {
        scratch = new ScratchFolder;
        if (colouring.err = installHome(home()); !colouring.err.empty()) return;
        colouring = runVoka(home(), {"color", "--out", coloured()});
        // The coloured chapters as a book of their own.
        std::string book = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<voka-book version=\"1\">\n";
        for (const char* chapter : kChapters) book += "  <component path=\"coloured/" + std::string(chapter) + ".xml\"/>\n";
        writeFile(colouredBook(), book + "</voka-book>\n");
    }
    static void TearDownTestSuite() { delete scratch; }
    void SetUp() override { ASSERT_EQ(0, colouring.exitCode) << colouring.err; }

    static std::string home() { return *scratch / "home"; }
    static std::string coloured() { return *scratch / "coloured"; }
    static std::string colouredBook() { return *scratch / "coloured.book"; }
    static inline ScratchFolder* scratch = nullptr;
    static inline ProcessResult colouring;
};

// Tags and attribute values of every element, in document order: what a round trip must keep.
std::string structureOf(const headless::Document& doc) {
    std::string text;
    for (headless::Index e : elementsInOrder(doc)) {
        const headless::Element& element = doc.elements[e];
        const headless::ElementDefinition& definition = doc.definitions[element.definition];
        // In name order: a reader without the DTD defines attributes in the order it meets them.
        std::map<std::string, std::string> attributes;
        for (std::size_t a = 0; a < definition.attributes.size(); ++a)
            for (const std::string& value : doc.values.get(doc.attributeValues(e, a)))
                attributes[definition.attributes[a].name] += " " + value;
        text += "<" + definition.tag;
        for (const auto& [name, values] : attributes) text += " " + name + "=" + values;
        text += ">";
    }
    return text;
}

TEST_F(VokaColor, WritesEveryChapterInItsOwnFormOrTheFullFormWithItsPageAndAnIndex) {
    const std::string single = *scratch / "single";
    struct Case {
        ProcessResult run;
        std::string out;
        std::vector<std::string> chapters;  // those written
        std::string suffix;                 // of the saved chapters
        std::string err;
        const std::vector<ExpectedLook>& looks;
    } cases[] = {
        {colouring, coloured(), kAllChapters, ".xml", pluginMessage("Book coloring complete."), kByAudienceLooks},
        {runVoka(home(), {"color", chapterSource("04-release-notes"), "--scheme", "Release status", "--form", "full",
                          "--out", single}),
         single, {"04-release-notes"}, ".voka.xml", "" /* colouring one document says nothing when it goes well */,
         kReleaseStatusLooks},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.out);
        EXPECT_EQ(0, c.run.exitCode);
        EXPECT_EQ(c.err, c.run.err);
        // A document in its own form takes along the DTD that lay beside it, once.
        const bool own = c.suffix == ".xml";
        std::string printed, listing;
        for (const std::string& chapter : c.chapters) {
            printed += c.out + "/" + chapter + c.suffix + "\n" + (own && printed.empty() ? c.out + "/voka-example.dtd\n" : "") +
                       c.out + "/" + chapter + ".html\n";
            listing += chapter + ".html\n" + chapter + c.suffix + "\n";
        }
        EXPECT_EQ(printed + c.out + "/index.html\n", c.run.out) << "voka names every file it wrote";
        EXPECT_EQ(listing + "index.html\n" + (own ? "voka-example.dtd\n" : ""), fileListing(c.out));

        const std::string index = readFile(c.out + "/index.html");
        for (const std::string& chapter : c.chapters) {
            SCOPED_TRACE(chapter);
            EXPECT_NE(std::string::npos, index.find("<a href=\"" + chapter + ".html\">")) << index;
            auto saved = load(c.out + "/" + chapter + c.suffix);
            auto source = load(chapterSource(chapter));
            ASSERT_TRUE(saved && source);
            EXPECT_EQ(c.suffix == ".xml", saved->contentForm) << "the document's own form unless --form full";
            ASSERT_EQ(source->flows.size(), saved->flows.size());
            EXPECT_EQ(source->flows[0].text, saved->flows[0].text) << "colouring changes no text";
            EXPECT_EQ(structureOf(*source), structureOf(*saved)) << "colouring changes no element or attribute";
            EXPECT_EQ("", savedLookMismatches(*saved, chapter, c.looks)) << "the colouring comes back on reading";
            if (!saved->contentForm) continue;
            const ProcessResult valid = runProcess({"/usr/bin/xmllint", "--valid", "--noout", c.out + "/" + chapter + c.suffix});
            EXPECT_EQ(0, valid.exitCode) << "valid against the DTD as its input is: " << valid.err;
        }
    }
}

TEST_F(VokaColor, ColoringAgainWithAnotherSchemeLeavesOnlyThatSchemesColours) {
    const std::string again = *scratch / "again", direct = *scratch / "direct";
    ProcessResult recolour = runVoka(home(), {"color", colouredBook(), "--scheme", "Release status", "--out", again});
    EXPECT_EQ(0, recolour.exitCode);
    EXPECT_EQ(pluginMessage("Book coloring complete."), recolour.err);
    ASSERT_EQ(0, runVoka(home(), {"color", "--scheme", "Release status", "--out", direct}).exitCode);

    for (const char* chapter : kChapters) {
        SCOPED_TRACE(chapter);
        // Outputs keep the inputs' places below the book's folder.
        auto recoloured = load(again + "/coloured/" + chapter + ".xml");
        auto fresh = load(direct + "/" + chapter + ".xml");
        ASSERT_TRUE(recoloured && fresh);
        EXPECT_EQ("", lookDifferences(*fresh, *recoloured))
            << "a coloured chapter coloured again must look as the plain chapter coloured once";
        EXPECT_EQ("", savedLookMismatches(*recoloured, chapter, kReleaseStatusLooks));
    }
}

TEST_F(VokaColor, UncolorRemovesEveryColourAndStyleFromAChapterAndABook) {
    struct Case {
        std::string input;
        std::vector<std::string> chapters;
        std::string folder;  // of the outputs, below --out
    };
    for (const Case& c : {Case{coloured() + "/03-configure.xml", {"03-configure"}, ""},
                          Case{colouredBook(), kAllChapters, "/coloured"}}) {
        SCOPED_TRACE(c.input);
        const std::string out = *scratch / ("plain-" + std::to_string(c.chapters.size()));
        ProcessResult run = runVoka(home(), {"uncolor", c.input, "--out", out});
        EXPECT_EQ(0, run.exitCode);
        EXPECT_EQ(pluginMessage("This command has the same effect as refreshing the EDD definitions to remove format "
                                "overrides. It will remove all format overrides, whether applied by VOKA or otherwise. "
                                "Are you sure you want to continue?\n\n If you choose Yes, this warning will not "
                                "appear again.\n[answered Yes]"),
                  run.err);
        for (const std::string& chapter : c.chapters) {
            SCOPED_TRACE(chapter);
            auto before = load(coloured() + "/" + chapter + ".xml");
            auto after = load(out + c.folder + "/" + chapter + ".xml");
            ASSERT_TRUE(before && after);
            ASSERT_EQ(before->flows.size(), after->flows.size());
            for (std::size_t f = 0; f < after->flows.size(); ++f) {
                EXPECT_EQ(before->flows[f].text, after->flows[f].text);
                after->flows[f].formats.forEach([](std::uint32_t offset, const auto& format) {
                    EXPECT_EQ(0, format.set) << "a format override is left at " << offset;
                });
            }
            EXPECT_NE("", lookDifferences(*before, *after, 1)) << "the input was coloured to begin with";
        }
    }
}

// A code block keeps its line breaks, and an element's attributes show when the pointer rests on it.
TEST_F(VokaColor, PagesKeepListingsAndShowAttributes) {
    const std::string page = readFile(coloured() + "/02-install.html");
    EXPECT_NE(std::string::npos, page.find("data-t=codeblock data-ws=pre")) << "codeblock keeps its line breaks";
    EXPECT_NE(std::string::npos, page.find("[data-ws=pre]{white-space:pre-wrap"));
    EXPECT_NE(std::string::npos, page.find("data-t=tr tabindex=0 title=\"platform=windows\"")) << "a row shows its attribute";
    EXPECT_NE(std::string::npos, page.find("title=\"platform=linux\naudience=novice\nproduct=pro fleet\""))
        << "several attributes, one a line, and several values";
}

}  // namespace
}  // namespace voka::test

namespace voka::test {
namespace {

// A vocabulary that lists values with commas is read so with --value-separator, and written back as it stood.
TEST_F(VokaColor, ValueSeparatorsOnTheCommandLine) {
    const std::string in = *scratch / "commas", out = *scratch / "commas-out";
    std::filesystem::create_directories(in);
    writeFile(in + "/doc.xml", "<?xml version=\"1.0\"?>\n<doc><p audience=\"expert,novice\">Both.</p></doc>\n");
    struct Case {
        std::vector<std::string> separators;
        bool coloured;
    } cases[] = {{{}, false}, {{"--value-separator", "audience=,"}, true}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.coloured);
        std::vector<std::string> args = c.separators;
        args.insert(args.end(), {"color", in + "/doc.xml", "--out", out});
        const ProcessResult run = runVoka(home(), args);
        ASSERT_EQ(0, run.exitCode) << run.err;
        const std::string saved = readFile(out + "/doc.xml");
        EXPECT_NE(saved.find("audience=\"expert,novice\""), std::string::npos) << saved;
        EXPECT_EQ(c.coloured, saved.find("<?voka-format") != std::string::npos) << saved;
    }
}

// A DTD that makes space significant by default keeps line breaks in the picture, whatever the tag is called.
TEST_F(VokaColor, ADtdDefaultOfPreservedSpaceKeepsLineBreaks) {
    const std::string in = *scratch / "spaces", out = *scratch / "spaces-out";
    std::filesystem::create_directories(in);
    writeFile(in + "/doc.xml", "<?xml version=\"1.0\"?>\n<!DOCTYPE doc [<!ATTLIST verse xml:space (default|preserve) \"preserve\">]>\n"
                               "<doc><verse>one\ntwo</verse><p>three</p></doc>\n");
    ASSERT_EQ(0, runVoka(home(), {"color", in + "/doc.xml", "--out", out}).exitCode);
    const std::string page = readFile(out + "/doc.html");
    EXPECT_NE(page.find("data-t=verse data-ws=pre"), std::string::npos) << page;
    EXPECT_EQ(page.find("data-t=p data-ws=pre"), std::string::npos) << page;
}

}  // namespace
}  // namespace voka::test
