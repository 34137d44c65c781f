// voka edit --script as docs/editing.md describes it: the example of the page
// does what the page says, and every way a script can go wrong leaves the
// main settings byte for byte as they were.
#include "Cli.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace voka::test {
namespace {

std::string documentedScript() {
    const std::string page = readFile(sourceDirectory() + "/docs/editing.md");
    const std::size_t begin = page.find("```\n", page.find("<!-- edit-script:begin -->")) + 4;
    return page.substr(begin, page.find("```", begin) - begin);
}

TEST(VokaEdit, ScriptsChangeTheMainSettingsOnlyWhenTheySave) {
    struct Case {
        const char* what;
        std::string script;
        int exit;
        std::string said;  // a part of standard error
        std::vector<std::string> added;  // texts the local copy holds afterwards, none when unchanged
    } cases[] = {
        {"the documented example", documentedScript(), 0, "New color? [Teal]",
         {"<value>region</value>", "<value>emea</value><value>apac</value>", "<value>Teal</value>"}},
        {"edits, then Cancel", "command vkp_AttributesListEditor\npress 3\nanswer region\npress 16\n", 1,
         "vkp_AttributesListEditor ended without saving", {}},
        {"the dialog left open", "command vkp_AttributesListEditor\npress 3\nanswer region\n", 1,
         "closed: the script goes on without it", {}},
        {"a prompt the script does not answer", "command vkp_ColorsEditor\npress 3\npress 8\n", 1,
         "New color? [cancelled: the script gives no answer]", {}},
        {"a line voka cannot read", "command vkp_ColorsEditor\npress three\n", 2, "line 2: expected command TAG", {}},
        {"a button with no dialog", "press 3\n", 2, "line 1: no dialog, prompt or question is open for it", {}},
        {"an editor not built yet", "command vkp_SchemeEditor\n", 1, "is not in this version of the plug-in yet", {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        ScratchFolder scratch;
        const std::string home = scratch / "home", script = scratch / "script.txt";
        ASSERT_EQ("", installHome(home));
        const std::string settings = home + "/Brindel/VOKA_MainSettings_LocalCopy.fm";
        const std::string before = readFile(settings);
        writeFile(script, c.script);
        const ProcessResult run = runVoka(home, {"edit", "--script", script});
        EXPECT_EQ(c.exit, run.exitCode) << run.err;
        EXPECT_NE(run.err.find(c.said), std::string::npos) << run.err;
        const std::string after = readFile(settings);
        if (c.added.empty()) {
            EXPECT_EQ(before, after) << "the main settings are as they were";
        }
        for (const std::string& text : c.added) EXPECT_NE(after.find(text), std::string::npos) << text;
    }
}

}  // namespace
}  // namespace voka::test

namespace voka::test {
namespace {

// The preferences dialog keeps what OK accepts and nothing of what Cancel ends, a new main settings file included.
TEST(VokaEdit, PreferencesAsTheDialogLeavesThem) {
    struct Case {
        const char* what;
        std::string script;
        int exit;
        std::vector<std::string> preferences;  // texts BR_Settings.fm holds afterwards; none: unchanged
        bool newLocalCopy;                      // the chosen main settings became the local copy
    } cases[] = {
        {"OK keeps the edits and the pop-ups' choices",
         "command vkp_PreferencesEditor\ntype 10 ###\nselect 8 Hardware\nselect 35 By edition\nchoose 19 0\npress 42\n", 0,
         {"name=\"ExternalCallDelimiter\"><value>###</value>", "name=\"DefaultCategory\"><value>Hardware</value>",
          "name=\"DefaultColoringScheme\"><value>By edition</value>", "name=\"ValRule1Active\"><value>0</value>"},
         false},
        {"Cancel after choosing another main settings file",
         "command vkp_PreferencesEditor\ntype 10 ###\npress 5\nfile @OTHER@\npress 43\n", 1, {}, false},
        {"OK after choosing another main settings file", "command vkp_PreferencesEditor\npress 5\nfile @OTHER@\npress 42\n",
         0, {"name=\"MainSettingsDocPath\"><value>@OTHER@</value>"}, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        ScratchFolder scratch;
        const std::string home = scratch / "home", script = scratch / "script.txt", other = scratch / "other.fm";
        ASSERT_EQ("", installHome(home));
        ASSERT_EQ(0, runVoka(home, {"menus"}).exitCode);  // the first start sets the folder up
        const std::string preferences = home + "/Brindel/BR_Settings.fm";
        const std::string localCopy = home + "/Brindel/VOKA_MainSettings_LocalCopy.fm";
        // Another main settings file: the example's, with a category of its own.
        std::string otherText = readFile(sourceDirectory() + "/resources/example/VOKA_MainSettings.fm");
        otherText.replace(otherText.find("<value>Hardware</value>"), 23, "<value>Elsewhere</value>");
        writeFile(other, otherText);
        const std::string before = readFile(preferences), localBefore = readFile(localCopy);
        std::string text = c.script;
        for (std::size_t at; (at = text.find("@OTHER@")) != std::string::npos;) text.replace(at, 7, other);
        writeFile(script, text);
        const ProcessResult run = runVoka(home, {"edit", "--script", script});
        EXPECT_EQ(c.exit, run.exitCode) << run.err;
        const std::string after = readFile(preferences);
        if (c.preferences.empty()) {
            EXPECT_EQ(before, after) << "the preferences are as they were";
        }
        for (std::string expected : c.preferences) {
            // The preferences keep paths in the host's notation.
            std::string hostPath = other;
            std::replace(hostPath.begin(), hostPath.end(), '/', '\\');
            if (auto at = expected.find("@OTHER@"); at != std::string::npos) expected.replace(at, 7, hostPath);
            EXPECT_NE(after.find(expected), std::string::npos) << expected;
        }
        const std::string local = readFile(localCopy);
        EXPECT_EQ(c.newLocalCopy, local.find("Elsewhere") != std::string::npos);
        if (!c.newLocalCopy) {
            EXPECT_EQ(localBefore, local);
        }
    }
}

}  // namespace
}  // namespace voka::test
