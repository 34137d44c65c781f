#include "host/headless/ScriptedAgent.h"

#include <algorithm>

namespace voka::headless {

ScriptedAgent::ScriptedAgent(FailureReporter onUnexpected) : onUnexpected_(std::move(onUnexpected)) {}

void ScriptedAgent::answerYes(int times) { questions_.insert(questions_.end(), times, true); }

void ScriptedAgent::answerNo(int times) { questions_.insert(questions_.end(), times, false); }

void ScriptedAgent::answerPrompt(const std::string& answer) { prompts_.push_back({true, answer}); }

void ScriptedAgent::cancelPrompt() { prompts_.push_back({false, {}}); }

void ScriptedAgent::chooseFileAnswer(const std::string& hostPath) { files_.push_back({true, hostPath}); }

void ScriptedAgent::cancelFileChooser() { files_.push_back({false, {}}); }

void ScriptedAgent::onDialog(DialogScript script) { dialogs_.push_back({{}, std::move(script)}); }

void ScriptedAgent::onDialog(const std::string& name, DialogScript script) {
    dialogs_.push_back({name, std::move(script)});
}

void ScriptedAgent::pressEsc() { escNow_ = true; }

void ScriptedAgent::pressEscAfterElements(std::uint64_t steps) { escAtSteps_.push_back(steps); }

std::vector<std::string> ScriptedAgent::texts(Said kind) const {
    std::vector<std::string> result;
    for (const TranscriptEntry& entry : transcript_)
        if (entry.kind == kind) result.push_back(entry.text);
    return result;
}

std::size_t ScriptedAgent::unusedAnswers() const {
    return questions_.size() + prompts_.size() + files_.size() + dialogs_.size();
}

const DialogView* ScriptedAgent::modelessView(const std::string& dialog) const {
    for (auto it = views_.rbegin(); it != views_.rend(); ++it)
        if (it->dialog == dialog) return &*it;
    return nullptr;
}

void ScriptedAgent::unexpectedly(const std::string& what) {
    unexpected_.push_back(what);
    if (onUnexpected_) onUnexpected_(what);
}

int ScriptedAgent::alert(const std::string& message, AlertKind kind) {
    const bool question = kind == kAlertYesDefault || kind == kAlertNoDefault;
    transcript_.push_back({question ? Said::Question : Said::Alert, message});
    if (!question) return 0;
    if (questions_.empty()) {
        unexpectedly("unexpected question: " + message);
        return 1;
    }
    const bool yes = questions_.front();
    questions_.pop_front();
    return yes ? 0 : 1;
}

int ScriptedAgent::promptString(const std::string& prompt, const std::string& initial, std::string& answer) {
    transcript_.push_back({Said::Prompt, prompt});
    if (prompts_.empty()) {
        unexpectedly("unexpected prompt: " + prompt);
        return 1;
    }
    const Answer given = prompts_.front();
    prompts_.pop_front();
    if (!given.given) return 1;
    answer = given.text;
    return 0;
}

int ScriptedAgent::chooseFile(const std::string& title, const std::string& directory, const std::string& defaultName,
                              int mode, std::string& chosen) {
    transcript_.push_back({Said::FileChooser, title});
    if (files_.empty()) {
        unexpectedly("unexpected file chooser: " + title);
        return 1;
    }
    const Answer given = files_.front();
    files_.pop_front();
    if (!given.given) return 1;
    chosen = given.text;
    return 0;
}

bool ScriptedAgent::userCancelled(std::uint64_t elementSteps) {
    if (escNow_) {
        escNow_ = false;
        return true;
    }
    auto due = std::find_if(escAtSteps_.begin(), escAtSteps_.end(), [&](auto at) { return at <= elementSteps; });
    if (due == escAtSteps_.end()) return false;
    escAtSteps_.erase(due);
    return true;
}

void ScriptedAgent::runModalDialog(DialogUser& dialog) {
    transcript_.push_back({Said::Dialog, dialog.name()});
    if (dialogs_.empty()) {
        unexpectedly("unexpected dialog: " + dialog.name());
        dialog.cancel();
        return;
    }
    QueuedDialog next = std::move(dialogs_.front());
    dialogs_.pop_front();
    if (!next.name.empty() && next.name != dialog.name()) {
        unexpectedly("dialog " + dialog.name() + " shown where " + next.name + " was expected");
        dialog.cancel();
        return;
    }
    next.script(dialog);
}

void ScriptedAgent::modelessDialogChanged(const DialogView& view) {
    auto same = std::find_if(views_.begin(), views_.end(), [&](const DialogView& v) { return v.dialog == view.dialog; });
    if (same != views_.end()) views_.erase(same);
    views_.push_back(view);
}

void ScriptedAgent::modelessDialogClosed(const std::string& dialog) {}

void ScriptedAgent::hostMessage(Said kind, const std::string& text) { transcript_.push_back({kind, text}); }

}  // namespace voka::headless
