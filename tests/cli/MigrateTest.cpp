// voka migrate as a Quorvane user runs it: the shipped example into a new
// category, numbered names on later runs, the library merge, and refusals
// that leave the main settings byte for byte as they were.
#include "Cli.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace voka::test {
namespace {

std::string siblingExample() { return sourceDirectory() + "/resources/example/Quorvane_MasterSettings.fm"; }

constexpr const char* kCounts = "Migration complete.  Schemes migrated:\n\nFilter:  %F\nColoring:  %C\nValidation:  %V\n\n"
                                "Master attributes migrated:  %A\n\n";

std::string counts(int filter, int coloring, int validation, int attributes) {
    std::string text = kCounts;
    for (const auto& [mark, n] : {std::pair{"%F", filter}, {"%C", coloring}, {"%V", validation}, {"%A", attributes}})
        text.replace(text.find(mark), 2, std::to_string(n));
    return text;
}

TEST(VokaMigrate, TheShippedExampleBecomesACategoryEachRunANewOne) {
    ScratchFolder scratch;
    const std::string home = scratch / "home";
    ASSERT_EQ("", installHome(home));
    const std::string settings = home + "/Brindel/VOKA_MainSettings_LocalCopy.fm";
    const std::string shipped = readFile(siblingExample());

    // A source lacking the marker element, and one without colouring schemes.
    const std::string noMarker = scratch / "not-quorvane.fm";
    std::string text = shipped;
    for (std::size_t at; (at = text.find("\"MasterSettings\"")) != std::string::npos;) text.replace(at, 16, "\"OtherSettings\"");
    writeFile(noMarker, text);
    const std::string noColouring = scratch / "no-colouring.fm";
    text = shipped;
    for (std::size_t at; (at = text.find("\"ColorizerSchemes\"")) != std::string::npos;) text.replace(at, 18, "\"SomethingElse\"");
    writeFile(noColouring, text);

    struct Case {
        std::string what;
        std::vector<std::string> args;
        int exit;
        std::string said;        // a part of what is printed on standard error
        bool settingsChange;
        std::string categories;  // as voka schemes lists them afterwards
    } cases[] = {
        {"without --yes nothing happens", {"migrate", siblingExample()}, 5, "[answered No]", false, "Software Hardware "},
        {"a document that is no Quorvane settings", {"migrate", noMarker, "--yes"}, 1,
         "The active document does not appear to be a Quorvane master settings document.", false, "Software Hardware "},
        {"the shipped example", {"migrate", siblingExample(), "--yes"}, 0, counts(1, 1, 1, 3), true,
         "Software Hardware Quorvane "},
        {"a second run", {"migrate", siblingExample(), "--yes"}, 0, counts(1, 1, 1, 3), true,
         "Software Hardware Quorvane Quorvane2 "},
        {"no colouring schemes", {"migrate", noColouring, "--yes"}, 0, counts(1, 0, 1, 3), true,
         "Software Hardware Quorvane Quorvane2 Quorvane3 "},
        {"schemes without the master attributes", {"migrate", siblingExample(), "--yes", "--no-attributes"}, 0,
         "not the master attributes. This is your last chance", true,
         "Software Hardware Quorvane Quorvane2 Quorvane3 Quorvane4 "},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const std::string before = readFile(settings);
        const ProcessResult run = runVoka(home, c.args);
        EXPECT_EQ(c.exit, run.exitCode) << run.err;
        EXPECT_NE(run.err.find(c.said), std::string::npos) << run.err;
        if (c.what == std::string("schemes without the master attributes")) {
            EXPECT_NE(run.err.find(counts(1, 1, 1, 0)), std::string::npos) << run.err;
        }
        EXPECT_EQ(c.settingsChange, readFile(settings) != before) << "the main settings change only when migrated";
        const ProcessResult listed = runVoka(home, {"schemes"});
        std::string categories;
        for (std::size_t at = listed.out.find("category \""); at != std::string::npos; at = listed.out.find("category \"", at + 1))
            categories += listed.out.substr(at + 10, listed.out.find('"', at + 10) - at - 10) + " ";
        EXPECT_EQ(c.categories, categories);
    }
    EXPECT_EQ(shipped, readFile(siblingExample())) << "the source is never changed";

    // The colouring scheme: renumbered rules, "--UNCOLOR--" as <refresh EDD>, every option off.
    const ProcessResult quorvane = runVoka(home, {"schemes", "--category", "Quorvane"});
    EXPECT_NE(quorvane.out.find("  coloring scheme \"Audience from Quorvane\" (no options on)\n"
                                "    rule 1: Red, None: audience = novice\n"
                                "    rule 2: Blue, Underline: audience = expert\n"
                                "    rule 3: <refresh EDD>, Numeric UL: audience = admin\n"),
              std::string::npos)
        << quorvane.out;
    // A source without colouring schemes still gives the category its (empty) container.
    const ProcessResult empty = runVoka(home, {"schemes", "--category", "Quorvane3"});
    EXPECT_NE(empty.out.find("  no coloring schemes\n"), std::string::npos) << empty.out;
    EXPECT_NE(readFile(settings).find("<element tag=\"ColoringSchemes\"/>\n          <element tag=\"ValidationSchemes\">"),
              std::string::npos);

    // The library: a known attribute gains only what it lacked, in its order; a new one comes whole, once.
    const std::string library = readFile(settings);
    EXPECT_NE(library.find("<value>audience</value></attribute>\n          <attribute name=\"Values\"><value>novice</value>"
                           "<value>expert</value><value>admin</value><value>beginner</value></attribute>"),
              std::string::npos);
    std::size_t regions = 0;
    for (std::size_t at = library.find("<value>region</value>"); at != std::string::npos;
         at = library.find("<value>region</value>", at + 1))
        ++regions;
    EXPECT_EQ(1u, regions);

    // A new user colours the example book with the migrated scheme.
    const std::string out = scratch / "out";
    const ProcessResult colour = runVoka(home, {"color", "--category", "Quorvane", "--scheme", "Audience from Quorvane", "-o", out});
    ASSERT_EQ(0, colour.exitCode) << colour.err;
    EXPECT_NE(readFile(out + "/01-overview.xml").find("color=\"Red\""), std::string::npos);
}

}  // namespace
}  // namespace voka::test
