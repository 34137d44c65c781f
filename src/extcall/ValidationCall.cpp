// ValidateElement: checks an element and its descendants against the loaded
// validation scheme, and answers with the rule of the last error found.
#include "extcall/CallHandlers.h"
#include "extcall/FileArguments.h"
#include "extcall/TextCommands.h"
#include "validation/ValidationCheck.h"

namespace voka {

int validateElementCall(Host& host, PluginState& state, const CallItems& items) {
    // Exactly "<none>" as the plug-in writes it; a name in another case is left to the check.
    if (state.active.validationScheme == kNone) return kCallNoScheme;
    const Handle doc = findFileArgument(host, items[1], false);
    if (doc == kNoObject) return kCallFileNotFound;
    const Handle element = elementArgument(items[2]);
    if (element == kNoObject) return kCallNotAnElement;
    // Errors go to the plug-in report, of which none is open here, and to state.validationFindings.
    const int rule = CheckSubtree(host, state, doc, element, kValidateSelection);
    return rule == -1 ? 0 : rule;
}

}  // namespace voka
