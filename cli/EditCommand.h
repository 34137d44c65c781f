// voka edit: the plug-in's editors driven by a conversation read one user
// action a line (docs/editing.md), so that a change to the main settings can
// be automated and reviewed as text.
#pragma once

#include "cli/Session.h"
#include "host/headless/BatchAgent.h"

#include <istream>
#include <string>
#include <vector>

namespace voka::cli {

// Reads the script; false with "line N: ..." in `error` at the first line it cannot read.
bool parseEditScript(std::istream& in, std::vector<headless::ConversationStep>& steps, std::string& error);

// Runs the steps: each `command` line runs that menu command, whose dialogs,
// prompts and questions take the lines that follow. An exit code.
int runEditScript(Session& session, std::vector<headless::ConversationStep> steps);

}  // namespace voka::cli
