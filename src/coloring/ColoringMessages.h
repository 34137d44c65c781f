// The texts the colouring engine and commands show, kept in one place
// because several steps show the same words.
#pragma once

#include "frame/Alerts.h"

namespace voka {

inline constexpr const char* kNoActiveSchemeToApply =
    "No active coloring scheme - cannot apply color. Please set an active coloring scheme and try again.\n\n"
    "Note that you can set a default coloring scheme in your preferences.";
inline constexpr const char* kSelectionColorsMissing =
    "The following colors are used by the active coloring scheme, but are not present active in the "
    "document:\n%s\n\nA rule cannot apply a color that does not exist in the document. If you choose to "
    "continue, the colors listed above will not be applied. Do you want to continue?";
inline constexpr const char* kDocumentColorsMissing =
    "The following file:\n\n%s\n\n...is missing the following color definitions:\n%s\n\n...which are "
    "referenced in the active coloring scheme. A scheme rule cannot apply a color that does not exist in the "
    "document. If you choose to continue, the colors listed above will not be applied. Do you want to continue?";
inline constexpr const char* kNoStructureInMainFlow = "No structure found in the main flow. Cannot apply color.";
inline constexpr const char* kNoTarget = "No active book or document. Cannot color.";
inline constexpr const char* kNoSchemeToColor = "Cannot color - no active coloring scheme.";
inline constexpr const char* kNoDocument = "No active document. Cannot color.";
inline constexpr const char* kNoElementSelected = "No element selection or insertion point. Cannot color.";
inline constexpr const char* kComponentsNotOpen =
    "One or more book components are not open. These files will not be processed.  Do you want to continue?";
inline constexpr const char* kColoringCancelledMessage = "Coloring action cancelled by user.";
inline constexpr const char* kBookColoringComplete = "Book coloring complete.";

}  // namespace voka
