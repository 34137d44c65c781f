// The plug-in's 21 commands in one table: number, tag, label, shortcut and
// handler. The menus are defined from it and the command dispatch runs from
// it, so a command is added or re-attached in one place.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"

#include <span>

namespace voka {

using CommandHandler = void (*)(Host&, PluginState&);

struct CommandEntry {
    int number;
    const char* tag;
    const char* label;
    const char* shortcut;
    // Commands 20 and 21 remove every format override: they ask first.
    bool overrideWarning;
    CommandHandler handler;  // none yet: the command does nothing
};

// In the order the commands are defined with the host.
std::span<const CommandEntry> commandTable();
// The entry of a command number, or none.
const CommandEntry* findCommand(int number);
// Runs a command: the override question where the entry asks for it, then its handler.
void runCommand(Host& host, PluginState& state, int number);

}  // namespace voka
