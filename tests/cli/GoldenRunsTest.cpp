// Golden runs: each folder under golden/ is one run of voka on a new
// per-user folder, with what it must print, the exit code it must end with
// and the files it may write (golden/README.md describes the layout).
#include "VokaRun.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <filesystem>
#include <sstream>

namespace voka::test {
namespace {
namespace fs = std::filesystem;

std::string goldenRoot() { return sourceDirectory() + "/tests/cli/golden"; }

std::vector<std::string> goldenCases() {
    std::vector<std::string> names;
    std::error_code ec;
    for (const fs::directory_entry& entry : fs::directory_iterator(goldenRoot(), ec))
        if (entry.is_directory(ec)) names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

struct Placeholders {
    std::vector<std::pair<std::string, std::string>> values;

    std::string apply(std::string text) const {
        for (const auto& [name, value] : values)
            for (std::size_t at = text.find(name); at != std::string::npos; at = text.find(name, at + value.size()))
                text.replace(at, name.size(), value);
        return text;
    }
};

// The case's file with the placeholders filled in, or `absent` when it has none.
std::string expected(const std::string& folder, const char* name, const Placeholders& placeholders,
                     const std::string& absent = "") {
    std::error_code ec;
    if (!fs::exists(folder + "/" + name, ec)) return absent;
    return placeholders.apply(readFile(folder + "/" + name));
}

std::vector<std::string> argumentLines(const std::string& text) {
    std::vector<std::string> args;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        if (!line.empty()) args.push_back(line);
    return args;
}

// What the run left in the scratch folder, the per-user folder aside.
std::string writtenBesideHome(const std::string& scratch) {
    std::istringstream lines(fileListing(scratch));
    std::string written;
    for (std::string line; std::getline(lines, line);)
        if (line.rfind("home/", 0) != 0) written += line + "\n";
    return written;
}

// The code an `exit` file names; -2, which no process ends with, when it names none.
int exitCodeOf(const std::string& text) {
    int code = -2;
    const char* end = text.data() + text.size();
    auto [stop, error] = std::from_chars(text.data(), end, code);
    bool onlyBlanksAfter = std::all_of(stop, end, [](char c) { return std::isspace(static_cast<unsigned char>(c)); });
    return error == std::errc() && onlyBlanksAfter ? code : -2;
}

class GoldenRun : public testing::TestWithParam<std::string> {};

TEST_P(GoldenRun, PrintsWritesAndEndsAsItsFolderSays) {
    const std::string folder = goldenRoot() + "/" + GetParam();
    ScratchFolder scratch;
    ASSERT_FALSE(scratch.path().empty());
    const std::string home = scratch / "home";
    const std::string work = scratch / "work";
    fs::create_directories(home);
    fs::create_directories(work);
    const Placeholders placeholders{{{"@CASE@", folder},
                                     {"@HOME@", home},
                                     {"@OUT@", scratch / "out"},
                                     {"@SOURCE@", sourceDirectory()}}};

    RunOptions options;
    options.workingDirectory = work;  // so that relative output lands where it is seen
    ProcessResult run = runVoka(home, argumentLines(expected(folder, "args", placeholders)), options);

    ASSERT_TRUE(run.failure.empty()) << run.failure;
    EXPECT_EQ(expected(folder, "stdout", placeholders), run.out);
    EXPECT_EQ(expected(folder, "stderr", placeholders), run.err);
    EXPECT_EQ(exitCodeOf(expected(folder, "exit", placeholders, "0")), run.exitCode);
    EXPECT_EQ(expected(folder, "written", placeholders), writtenBesideHome(scratch.path()));
}

INSTANTIATE_TEST_SUITE_P(Voka, GoldenRun, testing::ValuesIn(goldenCases()),
                         [](const testing::TestParamInfo<std::string>& info) {
                             std::string name = info.param;
                             for (char& c : name)
                                 if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
                             return name;
                         });

}  // namespace
}  // namespace voka::test
