// voka on a DITA map with a nested map and on a DocBook book assembled by
// XInclude (tests/content/): every topic and every chapter is worked on, as
// the chapters of a voka book are.
#include "Cli.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace voka::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* kBlack = "#000000";
constexpr const char* kRed = "#FF0000";
constexpr const char* kGreen = "#00FF00";
constexpr const char* kBlue = "#0000FF";

std::string content(const std::string& name) { return sourceDirectory() + "/tests/content/" + name; }

// The map's reading order: its own topics and those of parts/setup.ditamap, each once.
const std::vector<std::string> kTopics = {"intro", "sensors", "install", "calibrate", "troubleshoot"};
const std::vector<std::string> kChapterFiles = {"chapters/ch01-overview", "chapters/ch02-platforms",
                                                "chapters/ch03-maintenance"};

// "By audience" (novice red; expert blue, underlined; admin green, overlined),
// one look at least in every topic and chapter. The DocBook chapters list
// several values with ';': the first rule any of them matches decides.
const std::vector<ExpectedLook> kLooks = {
    {"intro", "New to weather stations?", {kRed}, "novice"},
    {"intro", "Experienced users can skip", {kBlue, 1}, "expert"},
    {"intro", "This guide walks you", {kBlack}, "no audience"},
    {"sensors", "Mount the wind vane", {kBlue, 1}, "inside the expert section"},
    {"install", "Plug the console", {kRed}, "novice"},
    {"install", "skylark-console --pair all", {kGreen, 0, true}, "admin"},
    {"calibrate", "Compare the barometer", {kBlue, 1}, "expert"},
    {"troubleshoot", "Restart the console service", {kGreen, 0, true}, "admin"},
    {"chapters/ch01-overview", "Start the console from the desktop shortcut", {kRed}, "novice;expert"},
    {"chapters/ch01-overview", "Fleet consoles report", {kBlue, 1}, "admin;expert: the expert rule comes first"},
    {"chapters/ch02-platforms", "runs as a background service", {kBlue, 1}, "expert, on os=\"mac;linux\""},
    {"chapters/ch02-platforms", "Service accounts need no login shell", {kGreen, 0, true}, "admin"},
    {"chapters/ch03-maintenance", "Replace the batteries", {kRed}, "novice"},
    {"chapters/ch03-maintenance", "Rotate the log files", {kRed}, "admin;novice"},
};

class VokaMapBooks : public testing::Test {
protected:
    static void SetUpTestSuite() {
        scratch = new ScratchFolder;
        homeProblem = installHome(home());
    }
    static void TearDownTestSuite() { delete scratch; }
    void SetUp() override { ASSERT_EQ("", homeProblem); }

    static std::string home() { return *scratch / "home"; }
    static inline ScratchFolder* scratch = nullptr;
    static inline std::string homeProblem;
};

TEST_F(VokaMapBooks, ColorColoursEveryTopicOfTheMapAndEveryChapterOfTheXIncludeBook) {
    struct Case {
        std::string input;  // relative to tests/content/
        std::string folder;  // of the components, relative to tests/content/
        std::vector<std::string> components;  // outputs, relative to the book's folder, in book order
    } cases[] = {
        {"dita/guide.ditamap", "dita/", kTopics},
        {"docbook/book.xml", "docbook/", kChapterFiles},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.input);
        const std::string out = *scratch / ("color-" + fs::path(c.input).stem().string());
        const ProcessResult run = runVoka(home(), {"color", content(c.input), "--out", out});
        EXPECT_EQ(0, run.exitCode);
        EXPECT_EQ(pluginMessage("Book coloring complete."), run.err) << "no warning: every file and DTD was read";
        // Each topic in its own form, the DTD beside the topics once; DocBook's DTD comes through the catalog.
        const std::string extension = c.folder == "dita/" ? ".dita" : ".xml";
        std::string printed;
        for (const std::string& component : c.components)
            printed += out + "/" + component + extension + "\n" +
                       (printed.empty() && extension == ".dita" ? out + "/guide-topic.dtd\n" : "") + out + "/" +
                       component + ".html\n";
        EXPECT_EQ(printed + out + "/index.html\n", run.out) << "each component coloured, in the book's order";

        for (const std::string& component : c.components) {
            SCOPED_TRACE(component);
            std::string error;
            auto saved = loadSaved(out + "/" + component + extension, error);
            ASSERT_TRUE(saved) << error;
            auto source = loadSaved(content(c.folder + component + extension), error);
            ASSERT_TRUE(source) << error;
            EXPECT_EQ(source->flows[0].text, saved->flows[0].text) << "the whole file, not a part of it";
            EXPECT_EQ("", savedLookMismatches(*saved, component, kLooks));
            bool coloured = false;
            for (const ExpectedLook& look : kLooks) coloured = coloured || (look.chapter == component && look.look.rgb != kBlack);
            EXPECT_TRUE(coloured) << "the table of looks names a colour in every component";
            const ProcessResult valid = runProcess({"/usr/bin/xmllint", "--noout", "--valid", out + "/" + component + extension});
            EXPECT_EQ(0, valid.exitCode) << "valid as its input is: " << valid.err;
        }
    }
}

TEST_F(VokaMapBooks, ValidateAndDuplicateFilterWorkOnEveryTopicOfTheMap) {
    const std::string map = content("dita/guide.ditamap");
    const auto inputs = snapshot(content("dita"));

    // Every topic has a platform in the wrong case, which "Audience check" finds.
    const std::string report = *scratch / "validate";
    const ProcessResult validate = runVoka(home(), {"validate", map, "--scheme", "Audience check", "--out", report});
    EXPECT_EQ(1, validate.exitCode) << validate.err;
    const std::string index = readFile(report + "/index.html");
    for (const std::string& topic : kTopics) {
        SCOPED_TRACE(topic);
        EXPECT_NE(std::string::npos, validate.out.find(content("dita/" + topic + ".dita") + ":"))
            << "a finding in every topic:\n" << validate.out;
        EXPECT_NE(std::string::npos, index.find("<a href=\"" + topic + ".html\"")) << index;
    }

    // "Novice on Windows" keeps novice and unmarked material; every topic loses something.
    struct Kept {
        std::string topic, kept, dropped;
    } topics[] = {
        {"intro", "New to weather stations?", "Experienced users can skip"},
        {"sensors", "The kit has a thermometer", "Mount the wind vane"},
        {"install", "Plug the console", "skylark-console --pair all"},
        {"calibrate", "Calibrate again after moving", "Compare the barometer"},
        {"troubleshoot", "Check the batteries", "Restart the console service"},
    };
    const std::string filtered = *scratch / "filtered";
    const ProcessResult filter =
        runVoka(home(), {"filter", map, "--type", "duplicate", "--scheme", "Novice on Windows", "--out", filtered});
    ASSERT_EQ(0, filter.exitCode) << filter.err;
    for (const Kept& t : topics) {
        SCOPED_TRACE(t.topic);
        const std::string text = readFile(filtered + "/" + t.topic + ".dita");
        EXPECT_NE(std::string::npos, text.find(t.kept)) << text;
        EXPECT_EQ(std::string::npos, text.find(t.dropped)) << text;
    }
    EXPECT_EQ(inputs, snapshot(content("dita"))) << "nothing in the map's folder is written";

    // The filtered book lists the filtered topics; it must not pass for the map.
    std::vector<std::string> bookFiles;
    for (const auto& [name, text] : snapshot(filtered))
        if (text.find("<voka-book") != std::string::npos) bookFiles.push_back(name);
    ASSERT_EQ(1u, bookFiles.size()) << fileListing(filtered);
    const std::string book = readFile(filtered + "/" + bookFiles.front());
    std::size_t at = 0;
    for (const std::string& topic : kTopics) {
        at = book.find("<component path=\"" + topic + ".dita\"/>", at);
        EXPECT_NE(std::string::npos, at) << topic << " in the book's order:\n" << book;
    }
    EXPECT_EQ("guide.book", bookFiles.front()) << "the book voka writes for a map is not named as a map";
    const ProcessResult valid = runProcess({"/usr/bin/xmllint", "--noout", "--valid", filtered + "/intro.dita"});
    EXPECT_EQ(0, valid.exitCode) << "a filtered topic takes its DTD along: " << valid.err;
}

}  // namespace
}  // namespace voka::test
