// voka migrate: the plug-in's Migrate Quorvane Settings command on a sibling
// master settings document, into the per-user main settings.
#pragma once

#include "cli/Session.h"

#include <string>

namespace voka::cli {

// Opens `file`, makes it the active document and runs the migration; the
// plug-in's questions take the command line's answer (--yes), but for the
// one about the master attribute list when `withAttributes` is false. An exit code.
int migrateSiblingSettings(Session& session, const std::string& file, bool yes, bool withAttributes);

}  // namespace voka::cli
