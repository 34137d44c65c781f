// The active scheme dialog as voka answers it: the category and the scheme
// chosen by name (a name it lacks lists the ones it has), then OK.
#pragma once

#include "host/headless/BatchAgent.h"

#include <string>

namespace voka::cli {

// "" keeps the dialog's own choice.
headless::DialogScript schemeChoice(const std::string& category, const std::string& scheme);

}  // namespace voka::cli
