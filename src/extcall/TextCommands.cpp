#include "extcall/TextCommands.h"

#include "extcall/CallHandlers.h"
#include "extcall/MessageSplit.h"
#include "frame/Strings.h"

namespace voka {

namespace {

using CallHandler = int (*)(Host&, PluginState&, const CallItems&);

// An item appended when the message has exactly `count` items.
struct DefaultItem {
    std::size_t count;
    const char* value;
};

struct TextCommand {
    const char* word;
    std::size_t items;  // the command word included
    DefaultItem defaults[2];  // count 0: none
    CallHandler handler;
};

// Defaults are appended in order, each looking at the count the one before
// left, so ColorElement with 3 items gets both.
constexpr TextCommand kTextCommands[] = {
    {"SetScheme", 4, {}, setSchemeCall},
    {"ColorElement", 5, {{3, "True"}, {4, "False"}}, colorElementCall},
    {"ColorFile", 3, {{2, "False"}}, colorFileCall},
    {"SetParm", 3, {}, setParameterCall},
    {"FilterCheckElement", 3, {}, filterCheckElementCall},
    {"FilterFile", 3, {{2, "False"}}, filterFileCall},
    {"RestoreFile", 2, {}, restoreFileCall},
    {"ValidateElement", 3, {}, validateElementCall},
};

const TextCommand* findTextCommand(const std::string& word) {
    for (const TextCommand& command : kTextCommands) {
        if (equalsIgnoreCase(command.word, word)) return &command;
    }
    return nullptr;
}

}  // namespace

int runTextCommand(Host& host, PluginState& state, const std::string& message) {
    // A caller checking that the plug-in is there sends the word alone.
    if (equalsIgnoreCase(message, "Hello")) return kCallDone;
    CallItems items = splitMessage(message, state.prefs.externalCallDelimiter);
    const TextCommand* command = items.empty() ? nullptr : findTextCommand(items.front());
    if (command == nullptr) return kCallUnknownCommand;
    for (const DefaultItem& item : command->defaults) {
        if (item.count != 0 && items.size() == item.count) items.emplace_back(item.value);
    }
    if (items.size() != command->items) return kCallWrongArgumentCount;
    return command->handler(host, state, items);
}

}  // namespace voka
