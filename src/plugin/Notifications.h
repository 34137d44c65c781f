// The host notifications the plug-in answers: calls from other clients,
// the end of the session, and the element and attribute changes that
// trigger automatic validation.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"

#include <string>

namespace voka {

// The element automatic validation checks for a notification, or 0 when the
// notification triggers none (auto-validation off, an ID attribute, a code
// that is not an element change).
Handle autoValidationTarget(Host& host, const PluginState& state, int code, Handle doc, const std::string& text,
                            int number);
void handleNotification(Host& host, PluginState& state, int code, Handle document, const std::string& text,
                        int number);

}  // namespace voka
