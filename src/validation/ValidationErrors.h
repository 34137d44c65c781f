// Where a validation error goes: while authoring (mode 20) straight to the
// user in an alert; in the other modes into the plugin report, as a heading,
// the rule's message and a link to the element, and into
// state.validationFindings beside it, whether or not a report is open.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"
#include "validation/ValidationModes.h"

#include <string>

namespace voka {

// Tells an error of `rule` (1 to 4; others are ignored). `value` is the
// offending value of rules 1 and 2.
void ReportValidationError(Host& host, PluginState& state, int rule, Handle doc, Handle element,
                           const std::string& attribute, const std::string& value, int mode);

}  // namespace voka
