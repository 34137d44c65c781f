// The subcommands of voka. Each returns the process's exit code.
#pragma once

#include "cli/Session.h"

#include <string>
#include <vector>

namespace voka::cli {

int listMenus(Session& session);
int runMenuCommand(Session& session, const std::string& tag, const std::string& file);

struct ColorRequest {
    std::vector<std::string> files;  // none for the bundled example book
    std::string category;  // "" to keep the active one
    std::string scheme;
    std::string outDir = "voka-out";
    bool uncolor = false;
    bool fullForm = false;  // the host's full form (ch.voka.xml) instead of each document's own
};
int colorFiles(Session& session, const ColorRequest& request);

int showInfo(Session& session, const std::vector<std::string>& files);

// The bundled example book.
std::string exampleBook();

}  // namespace voka::cli
