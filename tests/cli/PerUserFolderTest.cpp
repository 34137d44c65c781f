// The per-user folder voka runs in: set up on the first run with a welcome,
// reused quietly after, and a folder voka cannot use stops the plug-in with
// its own message and leaves nothing behind.
#include "VokaRun.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sys/stat.h>

namespace voka::test {
namespace {
namespace fs = std::filesystem;

const char* const kCannotInitialize =
    "A critical error occurred while attempting to open your local settings document. Make sure that the file "
    "exists, is named correctly, and is not corrupt.\n\nVOKA is unable to initialize.";

TEST(PerUserFolder, FirstRunInstallsAndWelcomesLaterRunsJustWork) {
    ScratchFolder scratch;
    const std::string home = scratch / "home";
    fs::create_directories(home);

    ProcessResult first = runVoka(home, {"menus"});
    EXPECT_EQ(0, first.exitCode);
    EXPECT_EQ(kWelcomeAlert, first.err);
    EXPECT_EQ("Brindel/BR_Plugin_Report_Template.fm\nBrindel/BR_Settings.fm\nBrindel/VOKA_MainSettings_LocalCopy.fm\n",
              fileListing(home));

    ProcessResult second = runVoka(home, {"menus"});
    EXPECT_EQ(0, second.exitCode);
    EXPECT_EQ("", second.err) << "a folder set up before greets no more";
    EXPECT_EQ(first.out, second.out);
    EXPECT_FALSE(second.out.empty());
}

struct UnusableFolder {
    const char* name;     // the test's name
    bool create;          // false: the folder does not exist
    std::string (*firstLine)(const std::string& home);
};

const UnusableFolder kUnusableFolders[] = {
    {"Missing", false, [](const std::string& home) { return "voka: the folder " + home + " does not exist\n"; }},
    {"ReadOnly", true,
     [](const std::string& home) { return "voka: cannot write into " + home + ": Permission denied\n"; }},
};

// Test names in listings show the case, not its bytes.
void PrintTo(const UnusableFolder& c, std::ostream* out) { *out << c.name; }

class UnusableHome : public testing::TestWithParam<UnusableFolder> {};

TEST_P(UnusableHome, StopsThePluginWithItsMessageAndCreatesNothing) {
    const UnusableFolder& folder = GetParam();
    ScratchFolder scratch;
    const std::string home = scratch / "home";
    RunOptions options;
    if (folder.create) {
        ASSERT_EQ(0, mkdir(home.c_str(), 0555));
        // Permission bits do not stop root: run voka as nobody, who must be
        // able to reach the folder to find it read-only.
        options.asNobody = runningAsRoot();
        chmod(scratch.path().c_str(), 0755);
    }

    ProcessResult run = runVoka(home, {"menus"}, options);
    if (options.asNobody && (run.exitCode == 126 || run.exitCode == 127) && run.err.empty())
        GTEST_SKIP() << "running as root, and voka cannot be run as the user nobody (no permission to switch, or "
                        "the build is out of nobody's reach), so a read-only folder cannot be made";

    EXPECT_EQ(3, run.exitCode);
    EXPECT_EQ(folder.firstLine(home) + pluginMessage(kCannotInitialize) + "voka: the plug-in did not start in " +
                  home + " (see its messages above)\n",
              run.err);
    EXPECT_EQ("", run.out) << "no menus without a started plug-in";
    EXPECT_EQ(folder.create, fs::exists(home));
    EXPECT_EQ("", fileListing(home));
}

INSTANTIATE_TEST_SUITE_P(Voka, UnusableHome, testing::ValuesIn(kUnusableFolders),
                         [](const testing::TestParamInfo<UnusableFolder>& info) { return info.param.name; });

}  // namespace
}  // namespace voka::test
