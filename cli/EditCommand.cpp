#include "cli/EditCommand.h"

#include "plugin/CommandTable.h"

#include <charconv>
#include <iostream>
#include <sstream>

namespace voka::cli {

namespace {

using headless::ConversationStep;
using headless::DialogAction;

bool number(const std::string& text, int& value) {
    const char* end = text.data() + text.size();
    auto [stop, error] = std::from_chars(text.data(), end, value);
    return error == std::errc() && stop == end && !text.empty();
}

// The rest of the line after the verb and `skip` words, blanks around it trimmed.
std::string rest(const std::string& line, int skip) {
    std::size_t at = 0;
    for (int word = 0; word <= skip; ++word) {
        at = line.find_first_not_of(" \t", at);
        if (at == std::string::npos) return "";
        at = line.find_first_of(" \t", at);
        if (at == std::string::npos) return "";
    }
    const std::size_t begin = line.find_first_not_of(" \t", at);
    if (begin == std::string::npos) return "";
    return line.substr(begin, line.find_last_not_of(" \t\r") + 1 - begin);
}

}  // namespace

bool parseEditScript(std::istream& in, std::vector<ConversationStep>& steps, std::string& error) {
    int lineNumber = 0;
    for (std::string line; std::getline(in, line);) {
        ++lineNumber;
        std::istringstream words(line);
        std::string verb, first, second;
        words >> verb >> first >> second;
        if (verb.empty() || verb.front() == '#') continue;
        ConversationStep step;
        step.line = lineNumber;
        auto fail = [&](const std::string& why) {
            error = "line " + std::to_string(lineNumber) + ": " + why;
            return false;
        };
        int item = 0, entry = 0;
        if (verb == "command" && !first.empty() && second.empty()) {
            step.kind = ConversationStep::Kind::Command;
            step.text = first;
        } else if (verb == "answer") {
            step.kind = ConversationStep::Kind::Answer;
            step.text = rest(line, 0);
            if (step.text.empty()) return fail("answer needs a text (cancel cancels the prompt)");
        } else if (verb == "file" && !first.empty()) {
            step.kind = ConversationStep::Kind::File;
            step.text = rest(line, 0);
        } else if ((verb == "cancel" || verb == "yes" || verb == "no") && first.empty()) {
            step.kind = verb == "cancel" ? ConversationStep::Kind::CancelPrompt
                        : verb == "yes"  ? ConversationStep::Kind::Yes
                                         : ConversationStep::Kind::No;
        } else if (verb == "press" && number(first, item) && second.empty()) {
            step.kind = ConversationStep::Kind::Dialog;
            step.action = DialogAction{DialogAction::Kind::Press, item, "", 0};
        } else if ((verb == "choose" || verb == "double") && number(first, item) && number(second, entry)) {
            step.kind = ConversationStep::Kind::Dialog;
            step.action = DialogAction{verb == "choose" ? DialogAction::Kind::Choose : DialogAction::Kind::DoubleClick,
                                       item, "", entry};
        } else if ((verb == "select" || verb == "type") && number(first, item)) {
            step.kind = ConversationStep::Kind::Dialog;
            step.action = DialogAction{verb == "select" ? DialogAction::Kind::ChooseLabel : DialogAction::Kind::Type,
                                       item, rest(line, 1), 0};
        } else {
            return fail("expected command TAG, press ITEM, choose ITEM N, double ITEM N, select ITEM ENTRY, "
                        "type ITEM TEXT, answer TEXT, file PATH, cancel, yes or no; not \"" + line + "\"");
        }
        steps.push_back(std::move(step));
    }
    return true;
}

int runEditScript(Session& session, std::vector<ConversationStep> steps) {
    headless::BatchAgent& agent = session.agent();
    agent.setConversation(std::move(steps));
    PluginState& state = session.plugin().state();
    int code = kExitOk;
    for (const ConversationStep* step = agent.nextStep(); step != nullptr; step = agent.nextStep()) {
        const ConversationStep here = *step;
        agent.takeStep();
        if (here.kind != ConversationStep::Kind::Command) {
            std::cerr << "voka: line " << here.line << ": no dialog, prompt or question is open for it\n";
            return kExitUsage;
        }
        const CommandEntry* entry = nullptr;
        for (const CommandEntry& command : commandTable())
            if (here.text == command.tag) entry = &command;
        if (!entry) {
            std::cerr << "voka: line " << here.line << ": no command " << here.text << "; 'voka menus' lists them\n";
            return kExitUsage;
        }
        if (entry->handler == nullptr) {
            std::cerr << "voka: line " << here.line << ": " << here.text << " (" << entry->label
                      << ") is not in this version of the plug-in yet\n";
            return kExitFailed;
        }
        state.lastCommandResult = 0;
        session.host().invokeCommand(here.text);
        if (state.lastCommandResult != 1) {
            std::cerr << "voka: line " << here.line << ": " << here.text << " ended without saving\n";
            code = kExitFailed;
        }
    }
    return agent.errorsReported() > 0 ? kExitFailed : code;
}

}  // namespace voka::cli
