// The plug-in's text commands, by which other clients of the host drive it
// without any dialog: select schemes, set options, colour, filter, restore
// and validate. A message is a command word and its arguments, separated by
// the local preference's delimiter (see MessageSplit.h); every outcome is one
// of the integer codes below, handed back to the caller by the host.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"

#include <string>

namespace voka {

// Besides these, FilterFile answers with the filtered document's or book's id
// (0 when the run stopped without a cancel), FilterCheckElement with 1 or 0
// and ValidateElement with the rule of the last error (0 for none).
enum TextCommandResult : int {
    kCallDone = 1,
    kCallUnknownCommand = 101,
    kCallBadSchemeType = 102,
    kCallWrongArgumentCount = 103,
    kCallFileNotFound = 104,
    kCallNotAnElement = 105,
    kCallNoScheme = 106,            // not loaded, or none active
    kCallNoMainSettings = 107,
    kCallNoStructure = 108,
    kCallUnknownParameter = 109,
    kCallBadFilterType = 110,
    kCallFilterCancelled = 111,
    kCallFilterCopyFailed = 112,
    kCallBookNotAllOpen = 113,
    kCallFilterSameFolder = 114,
    kCallNoFilterFolder = 115,
    kCallColoringFailed = 116,
    kCallColoringCancelled = 117,
};

// Runs one message and returns its result code.
int runTextCommand(Host& host, PluginState& state, const std::string& message);

}  // namespace voka
