// Golden runs: each folder under golden/ is one run of voka on a new
// per-user folder, with what it must print, the exit code it must end with
// and the files it may write (golden/README.md describes the layout).
#include "Cli.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <sstream>

namespace voka::test {
namespace {
namespace fs = std::filesystem;

const std::string kGolden = sourceDirectory() + "/tests/cli/golden";

std::vector<std::string> goldenCases() {
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(kGolden))
        if (entry.is_directory()) names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

class GoldenRun : public testing::TestWithParam<std::string> {};

TEST_P(GoldenRun, PrintsWritesAndEndsAsItsFolderSays) {
    const std::string folder = kGolden + "/" + GetParam();
    ScratchFolder scratch;
    const std::string home = scratch / "home";
    fs::create_directories(home);
    fs::create_directories(scratch / "work");
    // The case's file with the placeholders filled in, or `absent` when it has none.
    auto expected = [&](const char* name, const std::string& absent = "") {
        if (!fs::exists(folder + "/" + name)) return absent;
        std::string text = readFile(folder + "/" + name);
        const std::pair<const char*, std::string> fills[] = {
            {"@CASE@", folder}, {"@HOME@", home}, {"@OUT@", scratch / "out"}, {"@SOURCE@", sourceDirectory()}};
        for (const auto& [from, to] : fills)
            for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
                text.replace(at, std::strlen(from), to);
        return text;
    };
    std::vector<std::string> args;
    std::istringstream lines(expected("args"));
    for (std::string line; std::getline(lines, line);)
        if (!line.empty()) args.push_back(line);

    // Run in an empty working folder, so that relative output lands where it is seen.
    RunOptions options;
    options.workingDirectory = scratch / "work";
    ProcessResult run = runVoka(home, args, options);

    ASSERT_EQ("", run.failure);
    EXPECT_EQ(expected("stdout"), run.out);
    EXPECT_EQ(expected("stderr"), run.err);
    EXPECT_EQ(std::stoi(expected("exit", "0")), run.exitCode);
    std::string written;  // what the run left beside the per-user folder
    std::istringstream listing(fileListing(scratch.path));
    for (std::string line; std::getline(listing, line);)
        if (line.rfind("home/", 0) != 0) written += line + "\n";
    EXPECT_EQ(expected("written"), written);
}

INSTANTIATE_TEST_SUITE_P(Voka, GoldenRun, testing::ValuesIn(goldenCases()), [](const auto& info) {
    std::string name = info.param;  // the folders' names are of letters and hyphens
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

}  // namespace
}  // namespace voka::test
