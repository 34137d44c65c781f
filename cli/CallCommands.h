// voka call and voka ids: other programs drive the plug-in through the text
// commands another client of the host would send, and find the ids of the
// elements they address.
#pragma once

#include "cli/Session.h"

#include <string>
#include <vector>

namespace voka::cli {

struct CallRequest {
    std::vector<std::string> open;      // documents and books opened first, in order
    std::vector<std::string> messages;  // "-" reads them from standard input, one a line
    std::string delimiter;              // "" keeps the preference
    std::string outDir;                 // "" writes nothing
};

// Prints each message's integer result on a line of its own.
int callPlugin(Session& session, const CallRequest& request);

// Prints the ids of the document (or the book and its documents) and of
// every element, with its tag, where its start tag stands, and its place.
int showIds(Session& session, const std::string& file);

}  // namespace voka::cli
