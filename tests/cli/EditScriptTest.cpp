// voka edit --script as docs/editing.md describes it: the example of the page
// does what the page says, and every way a script can go wrong leaves the
// main settings byte for byte as they were.
#include "Cli.h"

#include <gtest/gtest.h>

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
