// The user of the command line: never blocks. Questions get the answer the
// command line chose (No unless --yes), prompts and the file chooser the
// answers given beforehand or a cancel, modal dialogs a small script of
// actions or a cancel. Every alert, question and host message is printed as
// it would have been shown, with paths in the reader's notation; the status
// dialog's steps and the progress of long passes are shown when asked for:
// on a terminal as one line written over, elsewhere as lines at most once per
// interval.
#pragma once

#include "host/headless/UserAgent.h"

#include <chrono>
#include <functional>
#include <map>
#include <ostream>
#include <string>
#include <vector>

namespace voka::headless {

struct DialogAction {
    enum class Kind { Type, Choose, ChooseLabel, Press, DoubleClick };
    Kind kind = Kind::Press;
    int item = 0;
    std::string text;  // Type; ChooseLabel: the entry of a pop-up or list to choose
    int state = 0;     // Choose, DoubleClick
};

// Actions for one modal dialog; an empty name stands for any dialog.
struct DialogScript {
    std::string dialog;
    std::vector<DialogAction> actions;
};

// "NAME:text:2=Some text,state:3=1,choose:6=Entry,double:2=0,press:9" (NAME may be empty: ":press:9").
// Values run to the next comma; false and a message when malformed.
bool parseDialogScript(const std::string& text, DialogScript& script, std::string& error);

// One line of an editing conversation: what the user does next.
struct ConversationStep {
    enum class Kind { Command, Dialog, Answer, CancelPrompt, Yes, No, File };
    Kind kind = Kind::Command;
    int line = 0;              // in the script, for messages
    std::string text;          // Command: the tag; Answer: the text; File: the POSIX path
    DialogAction action;       // Dialog
};

struct BatchOptions {
    bool yes = false;                                  // answer questions Yes
    std::map<std::string, std::string> promptAnswers;  // by the prompt's text
    std::map<std::string, std::string> fileAnswers;    // by the chooser's title; POSIX paths
    std::vector<DialogScript> dialogs;                 // used in order, the first that matches
    std::function<bool()> cancelRequested;             // polled as Esc (Ctrl-C); Yes to the question that follows
    enum class Progress { None, Lines, Terminal };
    Progress progress = Progress::None;
    std::chrono::milliseconds progressInterval{1000};
    // What only informs (a "complete." note) is not printed; errors, warnings and questions are.
    std::function<bool(const std::string& message)> onlyInforms;
};

class BatchAgent : public UserAgent {
public:
    BatchAgent(std::ostream& out, BatchOptions options);

    int alert(const std::string& message, AlertKind kind) override;
    int promptString(const std::string& prompt, const std::string& initial, std::string& answer) override;
    int chooseFile(const std::string& title, const std::string& directory, const std::string& defaultName, int mode,
                   std::string& chosen) override;
    bool userCancelled(std::uint64_t elementSteps) override;
    void runModalDialog(DialogUser& dialog) override;
    void modelessDialogChanged(const DialogView& view) override;
    void modelessDialogClosed(const std::string& dialog) override { clearProgress(); }
    void hostMessage(Said kind, const std::string& text) override;
    void progress(const ProgressPoint& point) override;

    int errorsReported() const { return errors_; }
    // A warning said again for another file is counted, not printed: this
    // prints, once, how many times each was left out.
    void printRepeatedWarnings();
    // Takes the progress line off the terminal.
    void clearProgress();
    // Answers given once the driver knows what it opened.
    void addDialogScript(DialogScript script);
    // An editing conversation: dialogs, prompts and questions take their
    // answers from these steps, in order, while a command runs.
    void setConversation(std::vector<ConversationStep> steps);
    // The next step, which the driver takes when it is a command; null at the end.
    const ConversationStep* nextStep() const;
    void takeStep();
    void answerFileChooser(const std::string& title, const std::string& systemPath);

private:
    void print(const std::string& text);
    void showProgress(const std::string& line);
    bool chooseLabel(DialogUser& dialog, const DialogAction& action);

    std::ostream& out_;
    BatchOptions options_;
    std::vector<bool> scriptUsed_;
    std::chrono::steady_clock::time_point lastProgress_{};
    std::string lastProgressLine_;
    std::string lastProgressStep_;
    bool progressShown_ = false;  // a line stands on the terminal, to be written over
    std::string passDocument_;     // the document of the pass under way, and where and when it began
    std::uint64_t passStart_ = 0;
    std::chrono::steady_clock::time_point passStarted_{};
    int errors_ = 0;
    std::map<std::string, int> warningRepeats_;  // by the warning without its file name
    bool confirmCancel_ = false;  // the next question confirms a cancel the user asked for
    bool conversing_ = false;
    std::vector<ConversationStep> steps_;
    std::size_t nextStep_ = 0;
    void converse(DialogUser& dialog);
    bool scriptAnswer(const std::string& asked, ConversationStep::Kind kind, std::string& answer);
};

}  // namespace voka::headless
