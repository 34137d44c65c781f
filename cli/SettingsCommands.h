// voka schemes and voka check-settings: the schemes of a main settings file
// as the plug-in reads them, and what in a hand-edited one it would misread.
#pragma once

#include "cli/Session.h"

#include <string>

namespace voka::cli {

// Prints the categories of the per-user local copy, and in each its
// coloring, filter and validation schemes with their rules or attributes and
// the options that are on; only `category` when it is not "". 1 for an
// unknown category, 4 when the file cannot be read.
int listSchemes(Session& session, const std::string& category);

// Prints one line FILE:LINE: message for each thing in the main settings
// file at `path` that the plug-in would misread or ignore. 0 clean,
// 1 something found, 4 when the file cannot be read. It needs no plug-in,
// so that a local copy the plug-in cannot start with can be checked too.
int checkSettings(const std::string& path);

}  // namespace voka::cli
