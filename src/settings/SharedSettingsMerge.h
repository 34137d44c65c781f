// The merge of a plug-in's shipped settings document into the settings
// document shared by all of the maker's plug-ins. The shipped file's
// presence starts it: a new installation creates the shared document from
// it, an upgrade imports newer element definitions and formats and replaces
// this product's settings group when its version is higher.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"

#include <string>

namespace voka {

inline constexpr const char* kSupportAddress = "support@brindel.example";

// Returns the shared settings document, open and invisible, or 0 when
// neither file could be opened.
Handle mergeSharedSettings(Host& host, PluginState& state, const std::string& sharedPath,
                           const std::string& tempPath, const std::string& productName);

}  // namespace voka
