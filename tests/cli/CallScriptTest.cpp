// voka call and voka ids as README shows them: its script, read from
// standard input, prints exactly the answers README gives, and the element
// id it uses is the one voka ids prints for that paragraph.
#include "Cli.h"

#include <gtest/gtest.h>

#include <sstream>

namespace voka::test {
namespace {

// README's script (the lines of its here-document) and the answers in the block after it.
struct ReadmeScript {
    std::string script, answers;
};

ReadmeScript readmeScript() {
    const std::string readme = readFile(sourceDirectory() + "/README.md");
    ReadmeScript found;
    const std::size_t marker = readme.find("<!-- The suite runs this script and expects exactly these answers. -->");
    if (marker == std::string::npos) return found;
    const std::size_t start = readme.find("<<'EOF'\n", marker);
    const std::size_t end = readme.find("\nEOF\n", start);
    if (start == std::string::npos || end == std::string::npos) return found;
    found.script = readme.substr(start + 8, end + 1 - start - 8);
    const std::size_t shellEnd = readme.find("```\n", end + 5);
    const std::size_t open = shellEnd == std::string::npos ? shellEnd : readme.find("```\n", shellEnd + 4);
    const std::size_t close = readme.find("```\n", open + 4);
    if (open != std::string::npos && close != std::string::npos && close > open) found.answers = readme.substr(open + 4, close - open - 4);
    return found;
}

TEST(VokaCall, READMEsScriptPrintsTheAnswersItShows) {
    ScratchFolder scratch;
    const std::string home = scratch / "home";
    ASSERT_EQ("", installHome(home));
    const ReadmeScript readme = readmeScript();
    ASSERT_FALSE(readme.script.empty() || readme.answers.empty()) << "README keeps its script and answers";
    writeFile(scratch / "script.txt", readme.script);
    const std::string book = sourceDirectory() + "/resources/example/book/example.book";
    const ProcessResult run = runProcess({"/bin/sh", "-c", "exec \"$0\" --home \"$1\" call --open \"$2\" --out \"$3\" - < \"$4\"",
                                         VOKA_EXE, home, book, scratch / "out", scratch / "script.txt"});
    ASSERT_EQ(0, run.exitCode) << run.err;
    EXPECT_EQ(readme.answers, run.out.substr(0, readme.answers.size())) << run.out;
    EXPECT_NE(std::string::npos, run.out.find(scratch / "out/02-install.voka.xml")) << "--out wrote what changed";

    // The script's element id is the "beginner" paragraph's.
    const ProcessResult ids = runVoka(home, {"ids", sourceDirectory() + "/resources/example/book/04-release-notes.xml"});
    ASSERT_EQ(0, ids.exitCode) << ids.err;
    std::istringstream lines(ids.out);
    std::string idOfBeginner;
    for (std::string line; std::getline(lines, line);)
        if (line.find("\tp\t21:5\t") != std::string::npos) idOfBeginner = line.substr(0, line.find('\t'));
    ASSERT_FALSE(idOfBeginner.empty()) << ids.out;
    EXPECT_NE(std::string::npos, readme.script.find("ValidateElement---04-release-notes.xml---" + idOfBeginner));
    EXPECT_NE(std::string::npos, readFile(sourceDirectory() + "/resources/example/book/04-release-notes.xml")
                                     .find("\n    <p audience=\"beginner\">"));
}

}  // namespace
}  // namespace voka::test
