// voka import-ditaval as a user runs it: the scheme it adds keeps and drops
// what the DITAVAL file does, says what it cannot express, and a file or a
// name it cannot use leaves the main settings as they were.
#include "Cli.h"

#include <gtest/gtest.h>

namespace voka::test {
namespace {

// {attributes, text}: one paragraph for each case a rule set tells apart.
const char* const kParagraphs[][2] = {
    {"", "plain"},
    {" audience=\"novice\"", "novice"},
    {" audience=\"expert\"", "expert"},
    {" audience=\"novice expert\"", "both"},
    {" audience=\"admin\"", "admin"},
    {" audience=\"beginner\"", "beginner"},  // a value the attribute library does not list
    {" audience=\"\"", "empty"},
    {" platform=\"linux\"", "linux"},
    {" platform=\"windows\"", "windows"},
    {" product=\"pro\"", "pro"},
};

class VokaImportDitaval : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ("", installHome(home)); }
    std::string ditaval(const std::string& name, const std::string& rules) {
        const std::string file = scratch / (name + ".ditaval");
        writeFile(file, "<?xml version=\"1.0\"?>\n<val>\n" + rules + "\n</val>\n");
        return file;
    }
    ScratchFolder scratch;
    const std::string home = scratch / "home";
    const std::string settings = home + "/Brindel/VOKA_MainSettings_LocalCopy.fm";
};

TEST_F(VokaImportDitaval, TheImportedSchemeFiltersAsTheDitavalFileDoes) {
    std::string chapter = "<?xml version=\"1.0\"?>\n<chapter>";
    for (const auto& p : kParagraphs) chapter += std::string("<p") + p[0] + ">" + p[1] + "</p>";
    writeFile(scratch / "doc.xml", chapter + "</chapter>\n");
    struct Case {
        const char* name;  // of the file, and so of the scheme
        const char* rules;
        const char* kept;
        std::vector<std::string> warnings;  // none: nothing on stderr
    } cases[] = {
        {"one-value", R"(<prop att="audience" val="expert" action="exclude"/>)",
         "plain novice both admin empty linux windows pro",
         {"audience: the scheme keeps novice, admin (the attribute library's values not excluded)"}},
        {"all-values", R"(<prop att="audience" val="novice" action="exclude"/>
                          <prop att="audience" val="expert" action="exclude"/>)",
         "plain admin empty linux windows pro", {"audience: the scheme keeps admin"}},
        {"attribute-default", R"(<prop att="platform" action="exclude"/>
                                 <prop att="platform" val="windows" action="include"/>)",
         "plain novice expert both admin beginner empty windows pro", {}},
        {"global-default", R"(<prop action="exclude"/>
                              <prop att="audience" val="novice" action="include"/>
                              <prop att="product" action="include"/>)",
         "plain novice both empty pro", {}},
        {"flags", R"(<prop att="audience" action="exclude"/>
                     <prop att="audience" val="expert" action="flag" color="red"/>
                     <prop att="audience" val="admin" action="passthrough"/>
                     <revprop val="2.0" action="flag"/>)",
         "plain expert both admin empty linux windows pro",
         {":4: action=\"flag\" for audience=\"expert\"", ":5: action=\"passthrough\" for audience=\"admin\"",
          ":6: <revprop>"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const std::string file = ditaval(c.name, c.rules);
        const ProcessResult added = runVoka(home, {"import-ditaval", file});
        ASSERT_EQ(0, added.exitCode) << added.err;
        EXPECT_EQ("added filter scheme \"" + std::string(c.name) + "\" to category \"Software\" in " + settings + "\n",
                  added.out);
        if (c.warnings.empty()) {
            EXPECT_EQ("", added.err);
        }
        for (const std::string& warning : c.warnings)
            EXPECT_NE(std::string::npos, added.err.find("voka: warning: " + (warning[0] == ':' ? file : "") + warning))
                << added.err;

        const std::string out = scratch / (std::string("out-") + c.name);
        const ProcessResult filtered = runVoka(home, {"filter", scratch / "doc.xml", "--category", "Software", "--scheme",
                                                      c.name, "--type", "duplicate", "--out", out});
        ASSERT_EQ(0, filtered.exitCode) << filtered.err;
        const std::string written = readFile(out + "/doc.xml");
        std::string kept;
        for (const auto& p : kParagraphs)
            if (written.find(std::string(">") + p[1] + "</p>") != std::string::npos) kept += (kept.empty() ? "" : " ") + std::string(p[1]);
        EXPECT_EQ(c.kept, kept);
    }
}

TEST_F(VokaImportDitaval, WhatCannotBeImportedChangesNothing) {
    const std::string exclude = R"(<prop att="audience" val="expert" action="exclude"/>)";
    std::string bomb = "<?xml version=\"1.0\"?>\n<!DOCTYPE val [\n<!ENTITY a \"aaaaaaaaaaaaaaaaaaaa\">\n";
    for (char e = 'b'; e <= 'h'; ++e) {  // each entity twenty of the one before: 20^7 bytes in all
        bomb += std::string("<!ENTITY ") + e + " \"";
        for (int i = 0; i < 20; ++i) bomb += std::string("&") + char(e - 1) + ";";
        bomb += "\">\n";
    }
    writeFile(scratch / "bomb.ditaval", bomb + "]>\n<val><prop att=\"audience\" val=\"&h;\" action=\"exclude\"/></val>\n");
    struct Case {
        std::string file;
        std::vector<std::string> options;
        int exitCode;
        std::string said;
    } cases[] = {
        {ditaval("broken", "<prop att=\"audience\" val=\"x\" action=\"exclude\">"), {}, 4, "broken.ditaval:4:"},
        {scratch / "bomb.ditaval", {}, 4, "bomb.ditaval:"},
        {scratch / "missing.ditaval", {}, 4, "cannot open"},
        {ditaval("existing", exclude), {"--scheme", "Novice on Windows"}, 1, "has a filter scheme \"Novice on Windows\" already"},
        {ditaval("nowhere", exclude), {"--category", "Firmware"}, 1, "the categories are \"Software\", \"Hardware\""},
        {ditaval("flags-only", R"(<prop att="audience" val="expert" action="flag"/>)"), {}, 1, "excludes nothing"},
    };
    const std::string before = readFile(settings);
    ASSERT_FALSE(before.empty());
    for (const Case& c : cases) {
        SCOPED_TRACE(c.file);
        std::vector<std::string> args{"import-ditaval", c.file};
        args.insert(args.end(), c.options.begin(), c.options.end());
        const ProcessResult run = runVoka(home, args);
        EXPECT_EQ(c.exitCode, run.exitCode) << run.err;
        EXPECT_NE(std::string::npos, run.err.find(c.said)) << run.err;
        EXPECT_EQ("", run.out);
        EXPECT_TRUE(before == readFile(settings)) << "the main settings changed";
    }
}

}  // namespace
}  // namespace voka::test
