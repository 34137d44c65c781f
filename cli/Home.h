// The per-user folder voka runs the host on (the host session directory),
// and the first-run installation of the shipped files into it.
#pragma once

#include <string>

namespace voka::cli {

// $XDG_CONFIG_HOME/voka, else ~/.config/voka; "" when neither variable is set.
std::string defaultHome();

// Where the shipped files are: the source tree's resources folder, or
// VOKA_RESOURCES when set.
std::string resourceDirectory();

// Makes sure the per-user folder can serve a session. The default folder is
// created when missing; a folder named by --home must exist already. On first
// use (no "Brindel" subfolder yet) the shipped shared settings are put there
// as the file an installation leaves for the plug-in to merge, with the report
// template and the example main settings as the local copy. Returns "" or the
// reason it could not; when the folder is missing or read-only nothing is
// installed and the plug-in then reports for itself.
std::string prepareHome(const std::string& home, bool createIfMissing);

}  // namespace voka::cli
