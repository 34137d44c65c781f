// voka filter and voka restore: the plug-in's filter and restore commands
// on a document or a book, with what they made written out.
#pragma once

#include "cli/Session.h"

#include <string>
#include <vector>

namespace voka::cli {

struct FilterRequest {
    std::vector<std::string> files;  // none for the bundled example book
    std::string category;  // "" to keep the active one
    std::string scheme;
    std::string type;      // "source", "duplicate", or "" for the preference
    bool removeColoring = false;
    std::string outDir = "voka-out";
};
int filterFiles(Session& session, const FilterRequest& request);

// Restores a source-filtered document or book and writes it as colouring does.
int restoreFiles(Session& session, const std::vector<std::string>& files, const std::string& outDir);

}  // namespace voka::cli
