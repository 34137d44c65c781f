// The user of the command line: the batch agent's answers, what it prints,
// its dialog scripts, and paths in the host's notation.
#include "HostFixture.h"

#include "host/headless/BatchAgent.h"

#include <sstream>
#include <thread>

namespace voka::headless::testing {
namespace {

TEST(BatchAgent, AnswersAsTheCommandLineSaysAndPrintsEverything) {
    for (const bool yes : {false, true}) {
        SCOPED_TRACE(yes ? "--yes" : "default No");
        std::ostringstream out;
        BatchOptions options;
        options.yes = yes;
        options.promptAnswers = {{"Name?", "Draft"}};
        options.fileAnswers = {{"Choose a folder", "/home/ann/out"}};
        BatchAgent agent(out, options);
        EXPECT_EQ(agent.alert("-- VOKA plugin message --\n\nThe file \\home\\ann\\a.xml is done.", kAlertContinueWarning), 0);
        EXPECT_EQ(agent.alert("Continue?", kAlertYesDefault), yes ? 0 : 1);
        std::string answer;
        EXPECT_EQ(agent.promptString("Name?", "", answer), 0);
        EXPECT_EQ(answer, "Draft");
        EXPECT_NE(agent.promptString("Other?", "", answer), 0);
        std::string chosen;
        EXPECT_EQ(agent.chooseFile("Choose a folder", "", "", kChooseOpenDirectory, chosen), 0);
        EXPECT_EQ(chosen, "\\home\\ann\\out");
        agent.hostMessage(Said::Warning, "a.xml: line 3: odd");
        const std::string printed = out.str();
        // People read paths in their own notation.
        EXPECT_NE(printed.find("The file /home/ann/a.xml is done."), std::string::npos) << printed;
        EXPECT_NE(printed.find(yes ? "Continue?\n[answered Yes]" : "Continue?\n[answered No]"), std::string::npos);
        EXPECT_NE(printed.find("Other? [cancelled]"), std::string::npos);
        EXPECT_NE(printed.find("voka: warning: a.xml: line 3: odd"), std::string::npos);
    }
}

TEST(BatchAgent, EveryStepIsPrintedAndWhatChangesWithinOneSparingly) {
    std::ostringstream out;
    BatchOptions options;
    options.progress = BatchOptions::Progress::Lines;
    options.progressInterval = std::chrono::hours(1);
    bool ctrlC = false;
    options.cancelRequested = [&] { return ctrlC; };
    BatchAgent agent(out, options);
    agent.modelessDialogChanged({"br_Dialog_Status", "Coloring", {"", "Please wait...", "", ""}});
    agent.modelessDialogChanged({"br_Dialog_Status", "Coloring", {"", "Please wait...", "ch1.xml", ""}});
    agent.modelessDialogChanged({"br_Dialog_Status", "Coloring", {"", "", "", ""}});
    // Each step of a start-up is printed, however fast they come.
    for (const char* step : {"Initializing variables", "Retreiving local settings", "Creating menu paths"})
        agent.modelessDialogChanged({"br_Dialog_Status", "Initializing", {"", step, "Please wait...", ""}});
    agent.modelessDialogChanged({"br_Dialog_Status", "Coloring", {"Please wait. Currently processing:", "a.xml", "", ""}});
    agent.modelessDialogChanged({"br_Dialog_Status", "Coloring", {"Please wait. Currently processing:", "b.xml", "", ""}});
    EXPECT_EQ(out.str(),
              "voka: Please wait...\nvoka: Initializing variables Please wait...\n"
              "voka: Retreiving local settings Please wait...\nvoka: Creating menu paths Please wait...\n"
              "voka: Please wait. Currently processing: a.xml\n");
    EXPECT_FALSE(agent.userCancelled(0));
    ctrlC = true;
    EXPECT_TRUE(agent.userCancelled(0));
}

// Progress is for someone watching: none unless asked for, lines in a log, one line written over on a terminal.
TEST(BatchAgent, ProgressSaysTheFileHowFarAndHowFast) {
    using Progress = BatchOptions::Progress;
    struct Case {
        Progress progress;
        std::string printed;
    } cases[] = {
        {Progress::None, ""},
        {Progress::Lines, "voka: Please wait...\nvoka: ch.xml: 50,000 of 1,200,000 elements, "},
        {Progress::Terminal, "\r\033[Kvoka: Please wait...\r\033[Kvoka: ch.xml: 50,000 of 1,200,000 elements, "},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(static_cast<int>(c.progress));
        std::ostringstream out;
        BatchOptions options;
        options.progress = c.progress;
        options.progressInterval = std::chrono::milliseconds(0);
        BatchAgent agent(out, options);
        agent.modelessDialogChanged({"br_Dialog_Status", "Coloring", {"", "Please wait...", "", ""}});
        const std::string path = "/books/ch.xml";
        agent.progress({path, 1, 1200000});
        std::this_thread::sleep_for(std::chrono::milliseconds(250));
        agent.progress({path, 50000, 1200000});
        const std::string printed = out.str();
        EXPECT_EQ(printed.substr(0, c.printed.size()), c.printed);
        if (c.progress != Progress::None) {
            EXPECT_NE(printed.find(" a second"), std::string::npos) << printed;
        }
        agent.alert("Done.", kAlertContinueWarning);
        if (c.progress == Progress::Terminal) {
            EXPECT_NE(out.str().find("\r\033[KDone.\n"), std::string::npos) << "a message takes the progress line's place";
        }
    }
}

TEST(BatchAgent, QuietLeavesOutOnlyNotesThatAllWentWell) {
    std::ostringstream out;
    BatchOptions options;
    options.onlyInforms = [](const std::string& message) { return message.ends_with("complete."); };
    BatchAgent agent(out, options);
    agent.alert("Filter complete.", kAlertContinueWarning);
    agent.alert("The file could not be saved.", kAlertContinueWarning);
    agent.alert("Continue?", kAlertYesDefault);
    agent.hostMessage(Said::Warning, "a.xml: odd");
    agent.hostMessage(Said::Error, "b.xml: broken");
    EXPECT_EQ(out.str(), "The file could not be saved.\nContinue?\n[answered No]\nvoka: warning: a.xml: odd\n"
                         "voka: error: b.xml: broken\n");
}

TEST(BatchAgent, ParsingDialogScripts) {
    struct Case {
        const char* text;
        std::size_t actions;  // 0: refused
    };
    const Case cases[] = {
        {"vkp_Dialog_Filter:text:2=Draft, final,state:3=1,press:9", 0},  // "final" is no action
        {"vkp_Dialog_Filter:text:2=Draft,state:3=1,choose:4=Two,press:9", 4},
        {":press:10", 1},
        {"vkp_Dialog_Filter:state:3=x", 0},
        {"no colon", 0},
        {"d:push:9", 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        DialogScript script;
        std::string error;
        EXPECT_EQ(parseDialogScript(c.text, script, error), c.actions != 0);
        EXPECT_EQ(error.empty(), c.actions != 0);
        if (c.actions != 0) { EXPECT_EQ(script.actions.size(), c.actions); }
    }
}

// A script runs its dialog; a dialog without one, or asked for an entry it
// does not offer, is cancelled.
TEST(BatchAgent, DialogScriptsRunTheirDialogs) {
    struct Case {
        const char* name;
        const char* script;  // "" for none
        std::vector<int> events;
        std::string text;
        int choice;
        std::string printed;
    };
    const Case cases[] = {
        {"typed, checked, chosen by label, pressed", "t_Dialog_Choice:text:2=Draft,state:4=0,choose:3=Two,press:9",
         {4, 3, 9}, "Draft", 1, ""},
        {"an entry the pop-up lacks", "t_Dialog_Choice:choose:3=Three,press:9", {kDialogEventClose}, "", -1,
         "voka: dialog \"Choose\" offers no \"Three\" here; it offers \"One\", \"Two\""},
        {"no script", "", {kDialogEventClose}, "", -1,
         "voka: dialog \"Choose\" (t_Dialog_Choice) cancelled: no answers given for it"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        ScratchFolder folder;
        writeDialogs(folder);
        std::ostringstream out;
        BatchOptions options;
        if (*c.script) {
            DialogScript script;
            std::string error;
            ASSERT_TRUE(parseDialogScript(c.script, script, error)) << error;
            options.dialogs.push_back(script);
        }
        BatchAgent agent(out, options);
        HeadlessHost host(HostConfig{folder.path().string(), (folder.path() / "dialogs").string(), {}}, agent);
        RecordingClient client;
        host.attachClient(&client);
        const Handle dialog = host.openDialogResource("t_Dialog_Choice");
        host.modalDialog(5, dialog);
        std::vector<int> events;
        for (const auto& [number, item] : client.events) events.push_back(item);
        EXPECT_EQ(events, c.events);
        EXPECT_EQ(host.itemText(dialog, host.dialogItem(dialog, 2)), c.text);
        EXPECT_EQ(host.itemState(dialog, host.dialogItem(dialog, 3)), c.choice);
        EXPECT_NE(out.str().find(c.printed), std::string::npos) << out.str();
    }
}

TEST(Paths, HostNotationAndBack) {
    struct Case {
        std::string system, host;
    };
    const Case cases[] = {
        {"/home/ann/a.xml", "\\home\\ann\\a.xml"},
        {"/home/ann/Brindel/", "\\home\\ann\\Brindel\\"},
        {"relative/b.xml", "relative\\b.xml"},
        {"", ""},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(toHostPath(c.system), c.host);
        EXPECT_EQ(toSystemPath(c.host), c.system);
    }
    // Forward slashes the plug-in passes on from outside work too.
    EXPECT_EQ(toSystemPath("\\home/ann\\a.xml"), "/home/ann/a.xml");
    EXPECT_EQ(normalHostPath("\\home\\ann\\x\\..\\.\\a.xml"), "\\home\\ann\\a.xml");
    EXPECT_EQ(fileNameOf("\\home\\ann\\a.xml"), "a.xml");
    EXPECT_EQ(folderOf("\\home\\ann\\a.xml"), "\\home\\ann\\");
    EXPECT_EQ(toDisplayText("Open \\home\\a.xml (Esc \\!11)"), "Open /home/a.xml (Esc \\!11)");
}

}  // namespace
}  // namespace voka::headless::testing
