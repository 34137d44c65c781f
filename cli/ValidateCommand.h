// voka validate: the plug-in's Validate Document and Validate Book commands
// on each file, the findings printed for editors and CI, and the report
// written beside pictures of the validated documents that it links into.
#pragma once

#include "cli/FindingFormats.h"
#include "cli/Session.h"

#include <string>
#include <vector>

namespace voka::cli {

struct ValidateRequest {
    std::vector<std::string> files;  // none: the bundled example book
    std::string category;            // "" keeps the active one
    std::string scheme;
    std::string outDir = "voka-out";
    FindingFormat format = FindingFormat::Text;
};

// 0 clean, 1 findings (or the plug-in refused), 2 outputs voka may not
// write, 4 a file that could not be opened, 5 cancelled.
int validateFiles(Session& session, const ValidateRequest& request);

}  // namespace voka::cli
