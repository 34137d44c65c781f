// The user of the tests: answers questions, prompts, the file chooser and
// modal dialogs from queues, presses Esc when told, and keeps a transcript
// of every text it was shown, so that a test asserts the exact words.
//
// A question, prompt, file chooser or modal dialog with nothing queued for
// it is a test failure: it is reported through the callback the test gives
// (so the host library needs no test framework) and answered No / cancel.
#pragma once

#include "host/headless/UserAgent.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <vector>

namespace voka::headless {

struct TranscriptEntry {
    Said kind;
    std::string text;
    bool operator==(const TranscriptEntry&) const = default;
};

class ScriptedAgent : public UserAgent {
public:
    using FailureReporter = std::function<void(const std::string& what)>;
    using DialogScript = std::function<void(DialogUser&)>;

    explicit ScriptedAgent(FailureReporter onUnexpected = {});

    // Answers, each used once, in order.
    void answerYes(int times = 1);
    void answerNo(int times = 1);
    void answerPrompt(const std::string& answer);
    void cancelPrompt();
    void chooseFileAnswer(const std::string& hostPath);
    void cancelFileChooser();
    // Acts on the next modal dialog; with a name, that dialog must be the one.
    void onDialog(DialogScript script);
    void onDialog(const std::string& name, DialogScript script);
    // Esc, seen by the next poll; or once the plug-in has taken that many
    // steps through element trees.
    void pressEsc();
    void pressEscAfterElements(std::uint64_t steps);

    // What the user saw.
    const std::vector<TranscriptEntry>& transcript() const { return transcript_; }
    std::vector<std::string> texts(Said kind) const;
    void clearTranscript() { transcript_.clear(); }
    const std::vector<std::string>& unexpected() const { return unexpected_; }
    // Answers and dialog scripts queued and never used.
    std::size_t unusedAnswers() const;
    // The last state of each modeless dialog shown, the newest last.
    const std::vector<DialogView>& modelessViews() const { return views_; }
    const DialogView* modelessView(const std::string& dialog) const;

    int alert(const std::string& message, AlertKind kind) override;
    int promptString(const std::string& prompt, const std::string& initial, std::string& answer) override;
    int chooseFile(const std::string& title, const std::string& directory, const std::string& defaultName, int mode,
                   std::string& chosen) override;
    bool userCancelled(std::uint64_t elementSteps) override;
    void runModalDialog(DialogUser& dialog) override;
    void modelessDialogChanged(const DialogView& view) override;
    void modelessDialogClosed(const std::string& dialog) override;
    void hostMessage(Said kind, const std::string& text) override;

private:
    struct Answer {
        bool given;  // Yes / an answer / a file; false: No / cancel
        std::string text;
    };
    struct QueuedDialog {
        std::string name;
        DialogScript script;
    };
    void unexpectedly(const std::string& what);

    FailureReporter onUnexpected_;
    std::deque<bool> questions_;
    std::deque<Answer> prompts_;
    std::deque<Answer> files_;
    std::deque<QueuedDialog> dialogs_;
    bool escNow_ = false;
    std::vector<std::uint64_t> escAtSteps_;
    std::vector<TranscriptEntry> transcript_;
    std::vector<std::string> unexpected_;
    std::vector<DialogView> views_;
};

}  // namespace voka::headless
