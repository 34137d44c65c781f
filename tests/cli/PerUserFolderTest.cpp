// The per-user folder voka runs in: set up on the first run with a welcome,
// reused quietly after; a folder voka cannot use stops the plug-in with its
// own message and leaves nothing behind.
#include "Cli.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace voka::test {
namespace {
namespace fs = std::filesystem;

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
    EXPECT_NE("", second.out);
}

TEST(PerUserFolder, AnUnusableOneStopsThePluginWithItsMessageAndCreatesNothing) {
    struct Case {
        const char* name;
        bool create;  // false: the folder does not exist; true: it is read-only
        std::string firstLine;
    };
    for (const Case& c : {Case{"missing", false, " does not exist\n"}, Case{"read-only", true, ": Permission denied\n"}}) {
        SCOPED_TRACE(c.name);
        ScratchFolder scratch;
        const std::string home = scratch / "home";
        RunOptions options;
        if (c.create) {
            ASSERT_EQ(0, mkdir(home.c_str(), 0555));
            // Permission bits do not stop root: voka runs as nobody, who must reach the folder.
            options.asNobody = geteuid() == 0;
            chmod(scratch.path.c_str(), 0755);
        }
        ProcessResult run = runVoka(home, {"menus"}, options);
        if (options.asNobody && (run.exitCode == 126 || run.exitCode == 127) && run.err.empty())
            GTEST_SKIP() << "running as root, and voka cannot be run as the user nobody, so a read-only folder "
                            "cannot be made";

        EXPECT_EQ(3, run.exitCode);
        EXPECT_EQ((c.create ? "voka: cannot write into " + home : "voka: the folder " + home) + c.firstLine +
                      pluginMessage("A critical error occurred while attempting to open your local settings "
                                    "document. Make sure that the file exists, is named correctly, and is not "
                                    "corrupt.\n\nVOKA is unable to initialize.") +
                      "voka: the plug-in did not start in " + home + " (see its messages above)\n",
                  run.err);
        EXPECT_EQ("", run.out) << "no menus without a started plug-in";
        EXPECT_EQ(c.create, fs::exists(home));
        EXPECT_EQ("", fileListing(home));
    }
}

}  // namespace
}  // namespace voka::test
