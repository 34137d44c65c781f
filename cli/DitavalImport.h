// voka import-ditaval: a filter scheme made from a DITAVAL file, added to
// the main settings the plug-in reads (the per-user local copy).
#pragma once

#include "cli/Session.h"

#include <string>

namespace voka::cli {

struct DitavalRequest {
    std::string file;
    std::string category;  // "" for the active one
    std::string scheme;    // "" for the file's name without its extension
};

// Prints what the scheme cannot express as warnings, and the scheme added.
int importDitaval(Session& session, const DitavalRequest& request);

}  // namespace voka::cli
