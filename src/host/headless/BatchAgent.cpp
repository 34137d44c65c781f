#include "host/headless/BatchAgent.h"

#include "host/headless/HostPaths.h"

#include <algorithm>
#include <charconv>

namespace voka::headless {

namespace {

bool toInt(const std::string& text, int& value) {
    const char* end = text.data() + text.size();
    auto [stop, error] = std::from_chars(text.data(), end, value);
    return error == std::errc() && stop == end && !text.empty();
}

bool parseAction(const std::string& text, DialogAction& action, std::string& error) {
    const auto colon = text.find(':');
    const std::string verb = text.substr(0, colon);
    const std::string rest = colon == std::string::npos ? std::string() : text.substr(colon + 1);
    if (verb == "press") {
        action.kind = DialogAction::Kind::Press;
        if (toInt(rest, action.item)) return true;
        error = "press needs an item number: \"" + text + "\"";
        return false;
    }
    const auto equals = rest.find('=');
    if ((verb != "text" && verb != "state" && verb != "choose" && verb != "double") || equals == std::string::npos ||
        !toInt(rest.substr(0, equals), action.item)) {
        error = "expected text:ITEM=VALUE, state:ITEM=N, choose:ITEM=ENTRY, double:ITEM=N or press:ITEM, not \"" + text + "\"";
        return false;
    }
    const std::string value = rest.substr(equals + 1);
    if (verb == "text" || verb == "choose") {
        action.kind = verb == "text" ? DialogAction::Kind::Type : DialogAction::Kind::ChooseLabel;
        action.text = value;
        return true;
    }
    action.kind = verb == "double" ? DialogAction::Kind::DoubleClick : DialogAction::Kind::Choose;
    if (toInt(value, action.state)) return true;
    error = "a state is a number: \"" + text + "\"";
    return false;
}

}  // namespace

bool parseDialogScript(const std::string& text, DialogScript& script, std::string& error) {
    const auto colon = text.find(':');
    if (colon == std::string::npos) {
        error = "expected NAME:ACTION,...: \"" + text + "\"";
        return false;
    }
    script.dialog = text.substr(0, colon);
    script.actions.clear();
    std::string rest = text.substr(colon + 1);
    while (!rest.empty()) {
        const auto comma = rest.find(',');
        DialogAction action;
        if (!parseAction(rest.substr(0, comma), action, error)) return false;
        script.actions.push_back(action);
        rest = comma == std::string::npos ? std::string() : rest.substr(comma + 1);
    }
    return true;
}

BatchAgent::BatchAgent(std::ostream& out, BatchOptions options)
    : out_(out), options_(std::move(options)), scriptUsed_(options_.dialogs.size(), false) {}

void BatchAgent::print(const std::string& text) {
    clearProgress();
    out_ << toDisplayText(text) << '\n' << std::flush;
}

void BatchAgent::clearProgress() {
    if (!progressShown_) return;
    progressShown_ = false;
    out_ << "\r\033[K" << std::flush;
}

void BatchAgent::showProgress(const std::string& line) {
    if (options_.progress == BatchOptions::Progress::Lines) {
        print(line);
        return;
    }
    out_ << "\r\033[K" << toDisplayText(line) << std::flush;
    progressShown_ = true;
}

void BatchAgent::setConversation(std::vector<ConversationStep> steps) {
    steps_ = std::move(steps);
    nextStep_ = 0;
    conversing_ = true;
}

const ConversationStep* BatchAgent::nextStep() const { return nextStep_ < steps_.size() ? &steps_[nextStep_] : nullptr; }

void BatchAgent::takeStep() {
    if (nextStep_ < steps_.size()) ++nextStep_;
}

int BatchAgent::alert(const std::string& message, AlertKind kind) {
    const bool question = kind == kAlertYesDefault || kind == kAlertNoDefault;
    if (question && conversing_) {
        const ConversationStep* step = nextStep();
        if (step && (step->kind == ConversationStep::Kind::Yes || step->kind == ConversationStep::Kind::No)) {
            const bool yes = step->kind == ConversationStep::Kind::Yes;
            takeStep();
            print(message + (yes ? "\n[answered Yes]" : "\n[answered No]"));
            return yes ? 0 : 1;
        }
        print(message + "\n[answered No: the script says nothing here]");
        ++errors_;
        return 1;
    }
    if (!question) {
        if (options_.onlyInforms && options_.onlyInforms(message)) return 0;
        print(message);
        return 0;
    }
    // The question that follows a cancel request asks to confirm it: the user
    // who pressed Ctrl-C has answered it already.
    if (confirmCancel_) {
        confirmCancel_ = false;
        print(message + "\n[answered Yes: cancelled]");
        return 0;
    }
    print(message + (options_.yes ? "\n[answered Yes]" : "\n[answered No]"));
    return options_.yes ? 0 : 1;
}

// The script's answer to a prompt or a file chooser: a step of `kind`, or
// `cancel`; anything else leaves it cancelled and counts as an error.
bool BatchAgent::scriptAnswer(const std::string& asked, ConversationStep::Kind kind, std::string& answer) {
    const ConversationStep* step = nextStep();
    if (step && step->kind == kind) {
        takeStep();
        print(asked + " [" + step->text + "]");
        answer = step->text;
        return true;
    }
    const bool cancel = step && step->kind == ConversationStep::Kind::CancelPrompt;
    if (cancel) takeStep();
    else ++errors_;
    print(asked + (cancel ? " [cancelled]" : " [cancelled: the script gives no answer]"));
    return false;
}

int BatchAgent::promptString(const std::string& prompt, const std::string& initial, std::string& answer) {
    if (conversing_) return scriptAnswer(prompt, ConversationStep::Kind::Answer, answer) ? 0 : 1;
    auto found = options_.promptAnswers.find(prompt);
    if (found == options_.promptAnswers.end()) {
        print(prompt + " [cancelled]");
        return 1;
    }
    print(prompt + " [" + found->second + "]");
    answer = found->second;
    return 0;
}

int BatchAgent::chooseFile(const std::string& title, const std::string& directory, const std::string& defaultName,
                           int mode, std::string& chosen) {
    if (conversing_) {
        std::string path;
        if (!scriptAnswer(title, ConversationStep::Kind::File, path)) return 1;
        chosen = toHostPath(path);
        return 0;
    }
    auto found = options_.fileAnswers.find(title);
    if (found == options_.fileAnswers.end()) {
        print(title + " [cancelled]");
        return 1;
    }
    print(title + " [" + found->second + "]");
    chosen = toHostPath(found->second);
    return 0;
}

bool BatchAgent::userCancelled(std::uint64_t elementSteps) {
    if (!options_.cancelRequested || !options_.cancelRequested()) return false;
    confirmCancel_ = true;
    return true;
}

// Chooses an entry of a pop-up or list by its text; when the dialog offers
// no such entry, says which it offers and leaves the dialog to be cancelled.
bool BatchAgent::chooseLabel(DialogUser& dialog, const DialogAction& action) {
    const std::vector<std::string> labels = dialog.labels(action.item);
    for (std::size_t i = 0; i < labels.size(); ++i)
        if (labels[i] == action.text) return dialog.choose(action.item, static_cast<int>(i));
    std::string offered;
    for (const std::string& label : labels) offered += (offered.empty() ? "\"" : ", \"") + label + "\"";
    print("voka: dialog \"" + dialog.title() + "\" offers no \"" + action.text + "\" here; it offers " +
          (offered.empty() ? std::string("nothing") : offered));
    ++errors_;
    return false;
}

void BatchAgent::addDialogScript(DialogScript script) {
    options_.dialogs.push_back(std::move(script));
    scriptUsed_.push_back(false);
}

void BatchAgent::answerFileChooser(const std::string& title, const std::string& systemPath) {
    options_.fileAnswers[title] = systemPath;
}

// The dialog steps that follow, until the dialog is down or the script turns to something else.
void BatchAgent::converse(DialogUser& dialog) {
    while (dialog.isUp()) {
        const ConversationStep* step = nextStep();
        if (!step || step->kind != ConversationStep::Kind::Dialog) break;
        const DialogAction action = step->action;
        const int line = step->line;
        takeStep();
        bool done = false;
        if (action.kind == DialogAction::Kind::ChooseLabel) done = chooseLabel(dialog, action);
        else if (action.kind == DialogAction::Kind::Type) done = dialog.type(action.item, action.text);
        else if (action.kind == DialogAction::Kind::Choose) done = dialog.choose(action.item, action.state);
        else if (action.kind == DialogAction::Kind::DoubleClick) done = dialog.doubleClick(action.item, action.state);
        else done = dialog.press(action.item);
        if (!done) {
            print("voka: line " + std::to_string(line) + ": dialog " + dialog.name() + ": item " +
                  std::to_string(action.item) + " is not available");
            ++errors_;
        }
    }
    if (dialog.isUp()) {
        print("voka: dialog \"" + dialog.title() + "\" (" + dialog.name() + ") closed: the script goes on without it");
        dialog.cancel();
    }
}

void BatchAgent::runModalDialog(DialogUser& dialog) {
    if (conversing_) {
        converse(dialog);
        return;
    }
    for (std::size_t i = 0; i < options_.dialogs.size(); ++i) {
        const DialogScript& script = options_.dialogs[i];
        if (scriptUsed_[i] || (!script.dialog.empty() && script.dialog != dialog.name())) continue;
        scriptUsed_[i] = true;
        for (const DialogAction& action : script.actions) {
            if (!dialog.isUp()) break;
            bool done = false;
            if (action.kind == DialogAction::Kind::ChooseLabel) {
                if (!chooseLabel(dialog, action)) break;
                continue;
            }
            if (action.kind == DialogAction::Kind::Type) done = dialog.type(action.item, action.text);
            else if (action.kind == DialogAction::Kind::Choose) done = dialog.choose(action.item, action.state);
            else if (action.kind == DialogAction::Kind::DoubleClick) done = dialog.doubleClick(action.item, action.state);
            else done = dialog.press(action.item);
            if (!done) print("voka: dialog " + dialog.name() + ": item " + std::to_string(action.item) + " is not available");
        }
        if (dialog.isUp()) dialog.cancel();
        return;
    }
    print("voka: dialog \"" + dialog.title() + "\" (" + dialog.name() + ") cancelled: no answers given for it");
    dialog.cancel();
}

void BatchAgent::modelessDialogChanged(const DialogView& view) {
    if (options_.progress == BatchOptions::Progress::None) return;
    std::string line;
    for (const std::string& text : view.lines) {
        if (text.empty()) continue;
        if (!line.empty()) line += ' ';
        line += text;
    }
    if (line.empty() || line == lastProgressLine_) return;
    // A status names its step in the first line it fills ("Retrieving main
    // settings file", "Please wait. Currently processing:"); each new step is
    // printed, what changes within one (a name, a count) once per interval.
    std::string step;
    for (const std::string& text : view.lines)
        if (step.empty()) step = text;
    const auto now = std::chrono::steady_clock::now();
    if (step == lastProgressStep_ && now - lastProgress_ < options_.progressInterval) return;
    lastProgress_ = now;
    lastProgressLine_ = line;
    lastProgressStep_ = step;
    showProgress("voka: " + line);
}

namespace {

// 1234567 as "1,234,567".
std::string grouped(std::uint64_t n) {
    std::string digits = std::to_string(n);
    for (std::size_t at = digits.size(); at > 3; at -= 3) digits.insert(at - 3, ",");
    return digits;
}

}  // namespace

void BatchAgent::progress(const ProgressPoint& point) {
    if (options_.progress == BatchOptions::Progress::None) return;
    const auto now = std::chrono::steady_clock::now();
    // A new pass begins at another document, or back at the start of this one.
    if (point.document != passDocument_ || point.done < passStart_) {
        passDocument_ = point.document;
        passStart_ = point.done;
        passStarted_ = now;
        lastProgress_ = now;
        return;
    }
    const auto interval = options_.progress == BatchOptions::Progress::Terminal ? std::chrono::milliseconds(200)
                                                                              : options_.progressInterval;
    if (now - lastProgress_ < interval) return;
    lastProgress_ = now;
    const double seconds = std::chrono::duration<double>(now - passStarted_).count();
    const std::uint64_t rate = seconds > 0 ? static_cast<std::uint64_t>((point.done - passStart_) / seconds) : 0;
    std::string name = toDisplayText(point.document);
    if (const std::size_t slash = name.find_last_of("/\\"); slash != std::string::npos) name.erase(0, slash + 1);
    showProgress("voka: " + name + ": " + grouped(std::min(point.done, point.total)) + " of " + grouped(point.total) +
                 " elements, " + grouped(rate) + " a second");
}

void BatchAgent::hostMessage(Said kind, const std::string& text) {
    if (kind == Said::Error) {
        ++errors_;
        print("voka: error: " + text);
        return;
    }
    // "FILE: what" is the same warning for another file when `what` repeats.
    const std::size_t colon = text.find(": ");
    const std::string what = colon != std::string::npos && text.find('/') < colon ? text.substr(colon + 2) : text;
    auto [seen, added] = warningRepeats_.try_emplace(what, 0);
    if (!added) {
        ++seen->second;
        return;
    }
    print("voka: warning: " + text);
}

void BatchAgent::printRepeatedWarnings() {
    clearProgress();
    for (const auto& [what, repeats] : warningRepeats_)
        if (repeats > 0)
            print("voka: warning: the same for " + std::to_string(repeats) + " more file" + (repeats == 1 ? "" : "s") +
                  ": " + what);
}

}  // namespace voka::headless
