#include "cli/MigrateCommand.h"

#include <iostream>

namespace voka::cli {

int migrateSiblingSettings(Session& session, const std::string& file, bool yes, bool withAttributes) {
    const Handle doc = session.openFile(file);
    if (doc == kNoObject) return kExitBadInput;
    if (objectType(doc) == kBookObject) {
        std::cerr << "voka: " << file << " is a book; a Quorvane master settings file is a document\n";
        return kExitUsage;
    }
    session.host().setActiveDocument(doc);
    if (yes && !withAttributes) {
        // Continue, not the master attributes, continue: the three questions in their order.
        using Step = headless::ConversationStep;
        session.agent().setConversation({Step{Step::Kind::Yes}, Step{Step::Kind::No}, Step{Step::Kind::Yes}});
    }
    PluginState& state = session.plugin().state();
    state.lastCommandResult = 0;
    session.host().invokeCommand("vkp_MigrateQRV");
    switch (state.lastCommandResult) {
    case 1:
        return kExitOk;
    case -1:
        std::cerr << "voka: the main settings could not be saved; the files are as they were\n";
        return kExitFailed;
    }
    if (!yes) {
        std::cerr << "voka: nothing was migrated: the plug-in's questions were answered No (--yes answers Yes)\n";
        return kExitCancelled;
    }
    return kExitFailed;
}

}  // namespace voka::cli
