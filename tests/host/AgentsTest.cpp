// The two users of the headless host: the scripted one of the tests and the
// batch one of the command line.
#include "HostFixture.h"

#include "host/headless/BatchAgent.h"

#include <sstream>

namespace voka::headless::testing {
namespace {

TEST(ScriptedAgent, TranscriptKeepsTheExactWords) {
    std::vector<std::string> failures;
    ScriptedAgent agent([&](const std::string& what) { failures.push_back(what); });
    agent.answerYes();
    agent.answerPrompt("My scheme");
    agent.cancelPrompt();
    EXPECT_EQ(agent.alert("-- VOKA plugin message --\n\nDone.", kAlertContinueWarning), 0);
    EXPECT_EQ(agent.alert("Sure?  Really?", kAlertYesDefault), 0);
    std::string answer = "unchanged";
    EXPECT_EQ(agent.promptString("Name?", "{...}", answer), 0);
    EXPECT_EQ(answer, "My scheme");
    EXPECT_NE(agent.promptString("Other?", "", answer), 0);
    EXPECT_EQ(answer, "My scheme");
    const std::vector<TranscriptEntry> expected = {
        {Said::Alert, "-- VOKA plugin message --\n\nDone."},
        {Said::Question, "Sure?  Really?"},
        {Said::Prompt, "Name?"},
        {Said::Prompt, "Other?"},
    };
    EXPECT_EQ(agent.transcript(), expected);
    EXPECT_EQ(agent.texts(Said::Prompt), (std::vector<std::string>{"Name?", "Other?"}));
    EXPECT_TRUE(failures.empty());
    EXPECT_EQ(agent.unusedAnswers(), 0u);
}

TEST(ScriptedAgent, WhatWasNotScriptedIsATestFailure) {
    struct Case {
        const char* name;
        std::function<int(ScriptedAgent&)> ask;
        int answer;  // what the agent answers: No / cancel
    };
    const Case cases[] = {
        {"a question", [](ScriptedAgent& a) { return a.alert("Delete?", kAlertYesDefault); }, 1},
        {"a prompt",
         [](ScriptedAgent& a) {
             std::string s;
             return a.promptString("Name?", "", s);
         },
         1},
        {"a file chooser",
         [](ScriptedAgent& a) {
             std::string s;
             return a.chooseFile("Open", "\\tmp\\", "", kChooseOpen, s);
         },
         1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        std::vector<std::string> failures;
        ScriptedAgent agent([&](const std::string& what) { failures.push_back(what); });
        EXPECT_EQ(c.ask(agent), c.answer);
        EXPECT_EQ(failures.size(), 1u);
        EXPECT_EQ(agent.unexpected(), failures);
    }
    // A continue alert needs no answer.
    std::vector<std::string> failures;
    ScriptedAgent agent([&](const std::string& what) { failures.push_back(what); });
    EXPECT_EQ(agent.alert("Note", kAlertContinueNote), 0);
    EXPECT_TRUE(failures.empty());
}

TEST(ScriptedAgent, EscPressedAfterSomeElements) {
    HostFixture f;
    TreeBuilder b;
    b.open("Chapter");
    for (int i = 0; i < 300; ++i) b.leaf("Para", {}, "p");
    const Handle doc = b.build(f.host, f.folder.hostPath("esc.xml"));
    f.agent.pressEscAfterElements(150);
    int seenAt = -1;
    int step = 0;
    for (Handle e = f.host.firstChild(doc, root(f.host, doc)); e != kNoObject; e = f.host.nextSibling(doc, e)) {
        ++step;
        if (step % 10 != 0) continue;
        if (f.host.userCancelled()) {
            seenAt = step;
            break;
        }
    }
    EXPECT_EQ(seenAt, 150);
    EXPECT_FALSE(f.host.userCancelled());  // one press, one cancel
    f.agent.pressEsc();
    EXPECT_TRUE(f.host.userCancelled());
    EXPECT_FALSE(f.host.userCancelled());
}

TEST(BatchAgent, AnswersAsTheCommandLineSaysAndPrintsEverything) {
    struct Case {
        const char* name;
        bool yes;
        int questionAnswer;
    };
    for (const Case& c : {Case{"default No", false, 1}, Case{"--yes", true, 0}}) {
        SCOPED_TRACE(c.name);
        std::ostringstream out;
        BatchOptions options;
        options.yes = c.yes;
        options.promptAnswers = {{"Name?", "Draft"}};
        options.fileAnswers = {{"Choose a folder", "/home/ann/out"}};
        BatchAgent agent(out, options);
        EXPECT_EQ(agent.alert("-- VOKA plugin message --\n\nThe file \\home\\ann\\a.xml is done.", kAlertContinueWarning), 0);
        EXPECT_EQ(agent.alert("Continue?", kAlertYesDefault), c.questionAnswer);
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
        EXPECT_NE(printed.find(c.yes ? "Continue?\n[answered Yes]" : "Continue?\n[answered No]"), std::string::npos);
        EXPECT_NE(printed.find("Other? [cancelled]"), std::string::npos);
        EXPECT_NE(printed.find("voka: warning: a.xml: line 3: odd"), std::string::npos);
        EXPECT_FALSE(agent.userCancelled(0));
    }
}

TEST(BatchAgent, ProgressIsPrintedSparingly) {
    std::ostringstream out;
    BatchOptions options;
    options.progressInterval = std::chrono::hours(1);
    bool ctrlC = false;
    options.cancelRequested = [&] { return ctrlC; };
    BatchAgent agent(out, options);
    agent.modelessDialogChanged({"br_Dialog_Status", "Coloring", {"", "Please wait...", "", ""}});
    agent.modelessDialogChanged({"br_Dialog_Status", "Coloring", {"", "Please wait...", "ch1.xml", ""}});
    agent.modelessDialogChanged({"br_Dialog_Status", "Coloring", {"", "", "", ""}});
    EXPECT_EQ(out.str(), "voka: Please wait...\n");
    ctrlC = true;
    EXPECT_TRUE(agent.userCancelled(0));
}

TEST(BatchAgent, DialogScripts) {
    struct Case {
        const char* text;
        bool ok;
        std::size_t actions;
    };
    const Case cases[] = {
        {"vkp_Dialog_Filter:text:2=Draft, final,state:3=1,press:9", false, 0},  // "final" is no action
        {"vkp_Dialog_Filter:text:2=Draft,state:3=1,press:9", true, 3},
        {":press:10", true, 1},
        {"vkp_Dialog_Filter:state:3=x", false, 0},
        {"no colon", false, 0},
        {"d:push:9", false, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        DialogScript script;
        std::string error;
        EXPECT_EQ(parseDialogScript(c.text, script, error), c.ok);
        EXPECT_EQ(error.empty(), c.ok);
        if (c.ok) {
            EXPECT_EQ(script.actions.size(), c.actions);
        }
    }

    // A script runs its dialog; a dialog without one is cancelled.
    ScratchFolder folder;
    folder.write("dialogs/t_Dialog.xml", R"(<dialog name="t_Dialog" title="Filter">
  <item number="2" kind="edit"/><item number="3" kind="checkbox"/><item number="9" kind="button" label="OK" closes="1"/>
</dialog>)");
    std::ostringstream out;
    BatchOptions options;
    DialogScript script;
    std::string error;
    ASSERT_TRUE(parseDialogScript("t_Dialog:text:2=Draft,state:3=1,press:9", script, error));
    options.dialogs.push_back(script);
    BatchAgent agent(out, options);
    HeadlessHost host(HostConfig{folder.path().string(), (folder.path() / "dialogs").string()}, agent);
    RecordingClient client;
    host.attachClient(&client);
    const Handle dialog = host.openDialogResource("t_Dialog");
    host.modalDialog(5, dialog);
    EXPECT_EQ(host.itemText(dialog, host.dialogItem(dialog, 2)), "Draft");
    EXPECT_EQ(host.itemState(dialog, host.dialogItem(dialog, 3)), 1);
    EXPECT_EQ(client.calls, (std::vector<RecordingClient::Call>{{"dialogEvent", 5, 3, {}}, {"dialogEvent", 5, 9, {}}}));
    client.calls.clear();
    host.modalDialog(5, dialog);
    EXPECT_EQ(client.calls, (std::vector<RecordingClient::Call>{{"dialogEvent", 5, kDialogEventClose, {}}}));
    EXPECT_NE(out.str().find("cancelled"), std::string::npos);
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

TEST(Paths, FilesThroughTheHost) {
    HostFixture f;
    EXPECT_EQ(f.host.sessionDirectory(), toHostPath(f.folder.path().string()) + "\\");
    f.folder.write("Brindel/BR_Settings.fm", "<x/>");
    const std::string settings = f.host.sessionDirectory() + "Brindel\\BR_Settings.fm";
    EXPECT_TRUE(f.host.fileExists(settings));
    EXPECT_FALSE(f.host.isDirectory(settings));
    EXPECT_TRUE(f.host.isDirectory(f.host.sessionDirectory() + "Brindel"));
    EXPECT_TRUE(std::filesystem::exists(f.folder.path() / "Brindel" / "BR_Settings.fm"));
    EXPECT_TRUE(f.host.deleteFile(settings));
    EXPECT_FALSE(f.host.fileExists(settings));
    EXPECT_FALSE(f.host.deleteFile(settings));
    EXPECT_FALSE(f.host.deleteFile(f.host.sessionDirectory() + "Brindel"));
}

}  // namespace
}  // namespace voka::headless::testing
