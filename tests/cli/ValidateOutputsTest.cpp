// voka validate as a user and a build pipeline run it: findings printed at
// the element's start tag, exit codes to gate on, JSON, SARIF that its
// schema accepts, JUnit that parses, and a report whose links land on the
// offending elements in the browser.
#include "Cli.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <array>
#include <map>
#include <regex>
#include <set>
#include <sstream>

namespace voka::test {
namespace {
namespace fs = std::filesystem;

class VokaValidate : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ("", installHome(home)); }
    ScratchFolder scratch;
    const std::string home = scratch / "home", out = scratch / "out";
};

// The line of a file, 1-based.
std::string lineOf(const std::string& text, std::uint32_t line) {
    std::size_t at = 0;
    for (std::uint32_t n = 1; n < line && at != std::string::npos; ++n) {
        at = text.find('\n', at);
        if (at != std::string::npos) ++at;
    }
    return at == std::string::npos ? "" : text.substr(at, text.find('\n', at) - at);
}

// The text from a 1-based column counted in characters.
std::string fromColumn(const std::string& line, std::uint32_t column) {
    std::size_t at = 0;
    for (std::uint32_t c = 1; c < column && at < line.size(); ++c) {
        ++at;
        while (at < line.size() && (static_cast<unsigned char>(line[at]) & 0xC0) == 0x80) ++at;
    }
    return line.substr(std::min(at, line.size()));
}

TEST_F(VokaValidate, TheExampleBooksFindingsStandAtTheirStartTagsAndTheReportLinksToThem) {
    const ProcessResult run = runVoka(home, {"validate", "--out", out});
    ASSERT_EQ(1, run.exitCode) << run.err;
    const std::regex shape(R"re(^(.+):(\d+):(\d+): rule ([1-4]) \([^)]+\): element <([\w:.-]+)> attribute ([\w:.-]+): value "([^"]*)": (.+)$)re");
    std::istringstream lines(run.out);
    int count = 0;
    std::set<std::string> seen;
    for (std::string line; std::getline(lines, line); ++count) {
        std::smatch m;
        ASSERT_TRUE(std::regex_match(line, m, shape)) << line;
        const std::string source = readFile(m[1].str());
        ASSERT_FALSE(source.empty()) << "the finding names a file that is there: " << m[1];
        const std::string at = fromColumn(lineOf(source, std::stoul(m[2].str())), std::stoul(m[3].str()));
        EXPECT_EQ(0u, at.rfind("<" + m[5].str(), 0)) << line << "\n  points at: " << at;
        seen.insert(fs::path(m[1].str()).filename().string() + " " + m[4].str() + " " + m[7].str());
    }
    EXPECT_GT(count, 3);
    for (const char* expected : {"04-release-notes.xml 1 beginner", "03-configure.xml 1 administrator",
                                 "02-install.xml 1 Windows"})
        EXPECT_TRUE(seen.count(expected)) << expected << " is among the findings:\n" << run.out;
    EXPECT_TRUE(fs::exists(out + "/index.html"));
    EXPECT_TRUE(fs::exists(out + "/report.voka.xml")) << "the report document is kept when there are findings";

    // Each link of the report, followed in the browser, lands on an element of
    // the tag the finding names, highlighted and showing the failing attribute.
    const std::string index = readFile(out + "/index.html");
    const std::regex link(R"re(<a class="finding" href="([^"#]+)#(el-\d+)">[^<]*</a></td><td>[^<]*</td><td>\d [^<]*</td><td>&lt;([^&]+)&gt;</td><td>([^<]*)</td>)re");
    std::map<std::string, std::vector<std::array<std::string, 3>>> byPage;  // fragment, tag, attribute
    for (auto it = std::sregex_iterator(index.begin(), index.end(), link); it != std::sregex_iterator(); ++it)
        byPage[(*it)[1]].push_back({(*it)[2], (*it)[3], (*it)[4]});
    ASSERT_FALSE(byPage.empty()) << index;
    for (const auto& [page, targets] : byPage) {
        SCOPED_TRACE(page);
        // The page forbids scripts; a copy without that rule follows each fragment and says where it landed.
        std::string text = readFile(out + "/" + page);
        const auto policy = text.find("<meta http-equiv=\"Content-Security-Policy\"");
        ASSERT_NE(policy, std::string::npos);
        text.erase(policy, text.find('>', policy) + 1 - policy);
        std::string fragments;
        for (const auto& t : targets) fragments += (fragments.empty() ? "'" : ",'") + t[0] + "'";
        text += "<script>var lines=[];[" + fragments +
                "].forEach(function(f){location.hash=f;var t=document.querySelector(':target');"
                "lines.push(f+'\\t'+(t?t.getAttribute('data-t'):'')+'\\t'+(t&&t.querySelector('.note')?"
                "t.querySelector('.note').textContent:'')+'\\t'+(t?getComputedStyle(t).outlineStyle:''));});"
                "var p=document.createElement('pre');p.id='voka-links';p.textContent=lines.join('\\n');"
                "document.body.appendChild(p);</script>";
        const std::string copy = scratch / ("copy-" + fs::path(page).filename().string());
        writeFile(copy, text);
        RunOptions options;
        options.home = scratch / "browser";
        fs::create_directories(options.home);
        const ProcessResult browser = runProcess(
            {kChromium, "--headless", "--no-sandbox", "--disable-gpu", "--no-first-run", "--disable-background-networking",
             "--disable-component-update", "--disable-sync", "--user-data-dir=" + options.home + "/profile",
             "--virtual-time-budget=5000", "--dump-dom", copy},
            options);
        ASSERT_EQ(0, browser.exitCode) << browser.err;
        const auto from = browser.out.find("<pre id=\"voka-links\">");
        ASSERT_NE(from, std::string::npos) << "the script ran";
        std::istringstream lines(browser.out.substr(from + 21, browser.out.find("</pre>", from) - from - 21));
        std::size_t i = 0;
        for (std::string line; std::getline(lines, line); ++i) {
            ASSERT_LT(i, targets.size());
            EXPECT_EQ(targets[i][0] + "\t" + targets[i][1], line.substr(0, line.find('\t', line.find('\t') + 1)))
                << "the link lands on an element of the finding's tag";
            EXPECT_NE(std::string::npos, line.find(": " + targets[i][2])) << line << ": the note names the attribute";
            EXPECT_EQ("solid", line.substr(line.rfind('\t') + 1)) << "the element is highlighted";
        }
        EXPECT_EQ(i, targets.size());
    }
}

TEST_F(VokaValidate, ExitCodesAPipelineGatesOn) {
    writeFile(scratch / "clean.xml", "<?xml version=\"1.0\"?>\n<chapter><p audience=\"novice\">fine</p></chapter>\n");
    // A start tag over several lines, and characters of more than one byte before one.
    writeFile(scratch / "spread.xml", "<?xml version=\"1.0\"?>\n<chapter>\n  <p>été <ph\n     audience=\"novice\">a</ph>"
                                      "</p>\n  <p\n   audience=\"beginner\">b</p></chapter>\n");
    struct Case {
        std::vector<std::string> args;
        int exitCode;
        std::string out, err;
    } cases[] = {
        {{scratch / "clean.xml"}, 0, "", ""},
        {{scratch / "missing.xml"}, 4, "", "missing.xml"},
        {{scratch / "spread.xml"}, 1, scratch / "spread.xml:5:3: rule 1 (Invalid syntax): element <p> attribute audience: value \"beginner\"", ""},
        {{scratch / "clean.xml", "--scheme", "No such scheme"}, 1, "", "No such scheme"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.args.front());
        std::vector<std::string> args{"validate"};
        args.insert(args.end(), c.args.begin(), c.args.end());
        args.insert(args.end(), {"--out", out});
        const ProcessResult run = runVoka(home, args);
        EXPECT_EQ(c.exitCode, run.exitCode) << run.err;
        if (c.out.empty()) EXPECT_EQ("", run.out);
        else EXPECT_EQ(0u, run.out.find(c.out)) << run.out;
        EXPECT_NE(std::string::npos, run.err.find(c.err)) << run.err;
    }
}

TEST_F(VokaValidate, JsonSarifAndJunitAreWhatTheirReadersAccept) {
    const std::string schema = sourceDirectory() + "/.cache/sarif-2.1.0-rtm.5.json";
    ASSERT_TRUE(fs::exists(schema)) << "scripts/install-deps fetches the SARIF schema into .cache/";
    struct Case {
        const char* format;
        std::vector<std::string> check;  // a program that reads the output file, appended
    } cases[] = {
        {"json", {"/usr/bin/python3", "-c",
                  "import json,sys\nf=json.load(open(sys.argv[1]))\nassert f and all({'file','line','column','rule',"
                  "'element','attribute','value','message'} <= set(x) for x in f)\nassert all(x['line']>0 and "
                  "1<=x['rule']<=4 for x in f)"}},
        {"sarif", {"/usr/bin/python3", "-c",
                   "import json,sys,jsonschema\nlog=json.load(open(sys.argv[1]))\njsonschema.validate(log, "
                   "json.load(open(sys.argv[2])))\nassert log['runs'][0]['results']",
                   "", schema}},
        {"junit", {"/usr/bin/xmllint", "--noout"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.format);
        const ProcessResult run = runVoka(home, {"validate", "--format", c.format, "--out", out});
        ASSERT_EQ(1, run.exitCode) << run.err;
        const std::string file = scratch / (std::string("findings.") + c.format);
        writeFile(file, run.out);
        std::vector<std::string> check = c.check;
        if (check.size() > 3 && check[3].empty()) check[3] = file;  // the output before the schema
        else check.push_back(file);
        const ProcessResult checked = runProcess(check);
        EXPECT_EQ(0, checked.exitCode) << checked.err << checked.out << "\n" << run.out.substr(0, 2000);
    }
}


}  // namespace
}  // namespace voka::test
