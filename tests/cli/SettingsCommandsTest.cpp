// voka check-settings and voka schemes as a user who edits the main settings
// by hand runs them: each mistake is named at its line, the shipped example
// is clean, and the minimal file of docs/settings.md works as it says.
#include "Cli.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

namespace voka::test {
namespace {

std::string exampleSettings() { return sourceDirectory() + "/resources/example/VOKA_MainSettings.fm"; }

// The text between `begin` and the next "```" after the first "```xml" line
// that follows `from`; "" when the document lacks it.
std::string xmlBlockAfter(const std::string& text, const std::string& from) {
    const std::size_t marker = text.find(from);
    if (marker == std::string::npos) return "";
    const std::size_t fence = text.find("```xml\n", marker);
    if (fence == std::string::npos) return "";
    const std::size_t begin = fence + 7;
    const std::size_t end = text.find("```", begin);
    return end == std::string::npos ? "" : text.substr(begin, end - begin);
}

int lineOf(const std::string& text, const std::string& needle) {
    const std::size_t at = text.find(needle);
    if (at == std::string::npos) return -1;
    return 1 + static_cast<int>(std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(at), '\n'));
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

// One per-user folder for the suite, set up as on first use.
class VokaSettings : public testing::Test {
protected:
    static void SetUpTestSuite() {
        scratch = new ScratchFolder;
        installed = installHome(home());
    }
    static void TearDownTestSuite() { delete scratch; }
    void SetUp() override { ASSERT_EQ("", installed); }

    static std::string home() { return *scratch / "home"; }
    static inline ScratchFolder* scratch = nullptr;
    static inline std::string installed;
};

TEST_F(VokaSettings, CheckSettingsNamesEachMistakeAtItsLine) {
    const std::string example = readFile(exampleSettings());
    ASSERT_FALSE(example.empty());
    struct Case {
        const char* mistake;
        const char* replaced;  // its first place in the example
        const char* by;
        std::string said;      // in the one line printed
        const char* at = nullptr;  // the text on the line named, when not `by`
    } cases[] = {
        {"rule name without its position", "<value>2  Blue</value>", "<value>Blue</value>",
         "coloring scheme \"By audience\", rule 2: Name \"Blue\" does not start with its position in three characters, "
         "so the plug-in reads the colour \"e\"; write \"2  Blue\""},
        {"the position of another rule", "<value>10 Magenta</value>", "<value>11 Magenta</value>",
         "coloring scheme \"Every value\", rule 10: Name \"11 Magenta\" carries the position of rule 11; write "
         "\"10 Magenta\""},
        {"style outside 0-7", "<attribute name=\"Style\"><value>3</value>", "<attribute name=\"Style\"><value>8</value>",
         "rule 2: Style \"8\" is outside 0 to 7"},
        {"style by its label", "<attribute name=\"Style\"><value>3</value>",
         "<attribute name=\"Style\"><value>Underline</value>",
         "rule 2: Style \"Underline\" is not a number from 0 to 7; the plug-in reads it as 0 (None)"},
        {"match all as a word", "<attribute name=\"MatchAll\"><value>1</value>",
         "<attribute name=\"MatchAll\"><value>True</value>",
         "coloring scheme \"Platform and edition\", rule 1: MatchAll \"True\" is neither 1 nor 0; the plug-in reads "
         "it as 0 (off)"},
        {"unknown option", "<attribute name=\"IgnoreCaseSensitivity\"><value>False</value>",
         "<attribute name=\"IgnoreCase\"><value>False</value>",
         "filter scheme \"Novice on Windows\": \"IgnoreCase\" is not a scheme option, and the plug-in ignores it (did "
         "you mean IgnoreCaseSensitivity?)"},
        {"option neither True nor False", "<attribute name=\"ProcessAllFlows\"><value>False</value>",
         "<attribute name=\"ProcessAllFlows\"><value>No</value>",
         "filter scheme \"Novice on Windows\": ProcessAllFlows \"No\" is neither True nor False; the plug-in reads "
         "it as False"},
        {"colour not in the colour list", "<value>3  Green</value>", "<value>3  Grene</value>",
         "rule 3: the colour \"Grene\" is not in the master colour list (ColorList)"},
        {"attribute not in the library", "<attribute name=\"Name\"><value>audience</value></attribute>",
         "<attribute name=\"Name\"><value>audiance</value></attribute>",
         "filter scheme \"Novice on Windows\": the attribute \"audiance\" is not in the attribute library"},
        {"keyword misspelt", "&lt;no value&gt;", "&lt;none&gt;",
         "filter scheme \"Novice on Windows\": \"<none>\" is not a keyword"},
        {"scheme without a name", "<attribute name=\"Name\"><value>Online help</value></attribute>",
         "<attribute name=\"Name\"><value></value></attribute>",
         "category \"Software\": a filter scheme without a Name cannot be chosen"},
        {"two schemes of one name", "<value>Online help</value>", "<value>Novice on Windows</value>",
         "category \"Software\": a second filter scheme named \"Novice on Windows\", which the plug-in never uses (the "
         "first is at line " + std::to_string(lineOf(example, "<value>Novice on Windows</value>")) + ")",
         "<value>Online help</value>"},
        {"a rule in a filter scheme", "<element tag=\"Attribute\">", "<element tag=\"Rule\">",
         "filter scheme \"Novice on Windows\": <Rule> is not an Attribute, yet the plug-in reads it as one of the "
         "scheme's attributes"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.mistake);
        std::string broken = example;
        const std::size_t at = broken.find(c.replaced);
        ASSERT_NE(std::string::npos, at);
        broken.replace(at, std::string(c.replaced).size(), c.by);
        const std::string file = *scratch / "broken.fm";
        writeFile(file, broken);
        // The line of the change; a second of a name is named where the first one was renamed.
        const int line = lineOf(c.at ? example : broken, c.at ? c.at : c.by);

        const ProcessResult run = runVoka(home(), {"check-settings", file});
        EXPECT_EQ(1, run.exitCode);
        const std::vector<std::string> printed = linesOf(run.out);
        ASSERT_EQ(1u, printed.size()) << run.out;
        EXPECT_EQ(0u, printed[0].find(file + ":" + std::to_string(line) + ": ")) << printed[0];
        EXPECT_NE(std::string::npos, printed[0].find(c.said)) << printed[0];
        EXPECT_EQ("voka: 1 problem in " + file + "\n", run.err);
        EXPECT_EQ(broken, readFile(file)) << "the file checked is never written";
    }
}

TEST_F(VokaSettings, CheckSettingsTellsACleanFileFromOneItCannotRead) {
    const std::string truncated = *scratch / "truncated.fm";
    writeFile(truncated, readFile(exampleSettings()).substr(0, 4000));
    // Lines are matched to elements by their order: where entities make
    // elements, no line is sure and the element's path is named instead.
    const std::string entities = *scratch / "entities.fm";
    std::string withEntity = readFile(exampleSettings());
    withEntity.replace(withEntity.find("<voka-document"), 0,
                       "<!DOCTYPE voka-document [<!ENTITY extra '<element tag=\"Scheme\"/>'>]>\n");
    withEntity.replace(withEntity.find("<element tag=\"FilterSchemes\">") + 29, 0, "&extra;");
    writeFile(entities, withEntity);
    struct Case {
        std::vector<std::string> args;
        int exitCode;
        std::string out, err;  // err: its beginning
    } cases[] = {
        {{"check-settings", exampleSettings()}, 0, exampleSettings() + ": no problems found\n", ""},
        {{"check-settings"}, 0, home() + "/Brindel/VOKA_MainSettings_LocalCopy.fm: no problems found\n", ""},
        {{"check-settings", truncated}, 4, "", "voka: cannot read the main settings: " + truncated + ":"},
        {{"check-settings", *scratch / "missing.fm"}, 4, "", "voka: cannot read the main settings: "},
        {{"check-settings", entities}, 1,
         entities + ": VKP_MainSettings[1]/SchemeCategories[1]/SchemeCategory[1]/FilterSchemes[1]/Scheme[1]: "
                    "category \"Software\": a filter scheme without a Name cannot be chosen\n",
         "voka: 1 problem in " + entities},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.args.back());
        const ProcessResult run = runVoka(home(), c.args);
        EXPECT_EQ(c.exitCode, run.exitCode);
        EXPECT_EQ(c.out, run.out);
        EXPECT_EQ(0u, run.err.find(c.err)) << run.err;
    }
    // A local copy the plug-in cannot start with is still read, without it.
    const std::string localCopy = home() + "/Brindel/VOKA_MainSettings_LocalCopy.fm";
    const std::string good = readFile(localCopy);
    writeFile(localCopy, readFile(truncated));
    const ProcessResult broken = runVoka(home(), {"check-settings"});
    writeFile(localCopy, good);  // the other tests share the folder
    EXPECT_EQ(4, broken.exitCode) << broken.err;
    EXPECT_EQ(0u, broken.err.find("voka: cannot read the main settings: " + localCopy + ":")) << broken.err;
}

TEST_F(VokaSettings, SchemesListsRulesAttributesAndOptionsPerCategory) {
    struct Case {
        std::vector<std::string> args;
        int exitCode;
        std::vector<std::string> shown, notShown;
        std::string err;
    } cases[] = {
        {{"schemes"}, 0,
         {"category \"Software\"\n  coloring scheme \"By audience\" (on: IncludeEDDDefaults, SpaceDelimitedVals)\n"
          "    rule 1: Red, None: audience = novice\n    rule 2: Blue, Underline: audience = expert\n",
          "    rule 1: Red, Strikethrough, override: status = deleted\n",
          "    rule 4: <skip>, Numeric UL: status = unchanged\n",
          "    rule 1: Cyan, Numeric UL, match all: platform = linux; and product = pro\n",
          "    rule 2: Magenta, None: platform = windows, macos\n",
          "  filter scheme \"Novice on Windows\" (on: IncludeEDDDefaults, SpaceDelimitedVals)\n"
          "    audience = novice, <no value>\n    platform = windows, <no value>\n",
          "  validation scheme \"Release check\" (on: IncludeEDDDefaults, SpaceDelimitedVals, IgnoreCaseSensitivity, "
          "ProcessAllFlows)\n",
          "category \"Hardware\"\n"},
         {},
         ""},
        {{"schemes", "--category", "Hardware"}, 0,
         {"category \"Hardware\"\n", "    rule 10: Magenta, Strikethrough: otherprops = internal\n",
          "  filter scheme \"Fleet edition\" (on: SpaceDelimitedVals)\n    product = fleet, <no value>\n"},
         {"Software"},
         ""},
        {{"schemes", "--category", "Firmware"}, 1, {}, {"category"},
         "voka: there is no category \"Firmware\" in " + home() +
             "/Brindel/VOKA_MainSettings_LocalCopy.fm; the categories are \"Software\", \"Hardware\"\n"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.args.back());
        const ProcessResult run = runVoka(home(), c.args);
        EXPECT_EQ(c.exitCode, run.exitCode);
        EXPECT_EQ(c.err, run.err);
        for (const std::string& text : c.shown) EXPECT_NE(std::string::npos, run.out.find(text)) << text << run.out;
        for (const std::string& text : c.notShown) EXPECT_EQ(std::string::npos, run.out.find(text)) << text << run.out;
    }
}

TEST_F(VokaSettings, TheMinimalFileOfTheDocumentationColoursFiltersAndValidates) {
    const std::string guide = readFile(sourceDirectory() + "/docs/settings.md");
    const std::string settings = xmlBlockAfter(guide, "<!-- minimal-settings:begin -->");
    ASSERT_NE(std::string::npos, settings.find("<voka-document")) << "docs/settings.md lost its minimal file";
    ASSERT_NE(std::string::npos, guide.find("<!-- minimal-settings:end -->"));
    // The document the guide tries it on.
    const std::string document = xmlBlockAfter(guide, "<!-- minimal-settings:end -->");
    ASSERT_NE(std::string::npos, document.find("For gurus.")) << "docs/settings.md lost its example document";

    ScratchFolder own;
    const std::string myHome = own / "home";
    ASSERT_EQ("", installHome(myHome));
    writeFile(myHome + "/Brindel/VOKA_MainSettings_LocalCopy.fm", settings);
    const std::string doc = own / "doc.xml";
    writeFile(doc, document);

    struct Case {
        const char* what;
        std::vector<std::string> args;
        int exitCode;
        std::function<std::string(const ProcessResult&)> problems;  // "" when it did what the guide says
    } cases[] = {
        {"check", {"check-settings"}, 0, [](const ProcessResult&) { return std::string(); }},
        {"color", {"color", doc, "--category", "Manuals", "--scheme", "Audience colours", "--out", own / "coloured"}, 0,
         [&](const ProcessResult&) {
             std::string error;
             const auto saved = loadSaved(own / "coloured/doc.xml", error);
             if (!saved) return error;
             const headless::Flow& flow = saved->flows[0];
             std::string problems;
             const std::pair<const char*, Look> looks[] = {
                 {"For beginners.", Look{"#FF0000"}},
                 {"For experts.", Look{"#0000FF", 1}},
                 {"For gurus.", Look{}},
                 {"For everyone.", Look{}},
             };
             for (const auto& [text, look] : looks) {
                 const std::size_t at = flow.text.find(text);
                 if (at == std::string::npos) problems += std::string(text) + " is gone\n";
                 else if (lookAt(*saved, flow, static_cast<std::uint32_t>(at)) != look)
                     problems += std::string(text) + " does not look as expected\n";
             }
             return problems;
         }},
        {"filter", {"filter", doc, "--category", "Manuals", "--scheme", "Beginners only", "--type", "duplicate", "--out",
                    own / "filtered"},
         0,
         [&](const ProcessResult&) {
             const std::string kept = readFile(own / "filtered/doc.xml");
             std::string problems;
             for (const char* text : {"For beginners.", "For everyone."})
                 if (kept.find(text) == std::string::npos) problems += std::string(text) + " was dropped\n";
             for (const char* text : {"For experts.", "For gurus."})
                 if (kept.find(text) != std::string::npos) problems += std::string(text) + " was kept\n";
             return problems;
         }},
        {"validate", {"validate", doc, "--category", "Manuals", "--scheme", "Audience values", "--out", own / "report"}, 1,
         [&](const ProcessResult& run) {
             const std::vector<std::string> findings = linesOf(run.out);
             if (findings.size() != 1 || findings[0].find(":5:") == std::string::npos ||
                 findings[0].find("value \"guru\"") == std::string::npos)
                 return "expected the one finding of \"guru\" on line 5, got:\n" + run.out;
             return std::string();
         }},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const ProcessResult run = runVoka(myHome, c.args);
        EXPECT_EQ(c.exitCode, run.exitCode) << run.err;
        EXPECT_EQ("", c.problems(run));
    }
}

}  // namespace
}  // namespace voka::test
