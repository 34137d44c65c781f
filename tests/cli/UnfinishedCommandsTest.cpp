// When the plug-in does not complete a command, voka says why in words and
// what would fix it, and never reports success for work it did not do.
#include "Cli.h"

#include <gtest/gtest.h>

namespace voka::test {
namespace {

TEST(UnfinishedCommands, SaySentencesNotNumbers) {
    ScratchFolder scratch;
    const std::string home = scratch / "home", chapter = chapterSource("01-overview");
    ASSERT_EQ("", installHome(home));
    // A default scheme the main settings do not hold.
    const std::string settings = home + "/Brindel/BR_Settings.fm";
    std::string text = readFile(settings);
    const std::string named = "<value>By audience</value>";
    ASSERT_NE(text.find(named), std::string::npos);
    writeFile(settings, text.replace(text.find(named), named.size(), "<value>Gone</value>"));
    struct Case {
        std::vector<std::string> args;
        int exit;
        std::string said;  // the last line of standard error
    };
    const Case cases[] = {
        {{"uncolor", chapter, "--out", scratch / "a"}, 1,
         "voka: uncoloring " + chapter + " did not complete: no coloring scheme is active: the preferences name \"Gone\" in "
         "the category \"Software\", which the main settings do not hold. Name one with --category and --scheme, or set "
         "DefaultCategory and DefaultColoringScheme in " + settings},
        {{"uncolor", chapter, "--scheme", "By audience", "--out", scratch / "b"}, 0, scratch / "b/index.html"},
        {{"command", "vkp_ColorBook", chapter}, 1,
         "voka: vkp_ColorBook works on a book, and no book is open (" + chapter + " is a document)"},
        {{"command", "vkp_UnColorBook"}, 1, "voka: vkp_UnColorBook works on a book, and no book is open"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.args[0] + " " + c.args[1]);
        ProcessResult run = runVoka(home, c.args);
        EXPECT_EQ(c.exit, run.exitCode) << run.err;
        const std::string& shown = c.exit == 0 ? run.out : run.err;
        std::string last = shown.substr(0, shown.size() - 1);
        last = last.substr(last.rfind('\n') + 1);
        EXPECT_EQ(c.said, last);
        EXPECT_EQ(run.err.find("result 10"), std::string::npos) << "a bare result number";
    }
}

}  // namespace
}  // namespace voka::test
