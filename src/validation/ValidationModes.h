// The validation modes, which are also the codes of the validation commands:
// what is checked, and whether errors go to alerts (mode 20, while authoring)
// or into the plugin report (the others).
#pragma once

namespace voka {

enum ValidationMode : int {
    kValidateElement = 20,    // one element while authoring: errors in alerts
    kValidateSelection = 21,  // the selected element and its descendants
    kValidateDocument = 22,
    kValidateBook = 23,
};

}  // namespace voka
