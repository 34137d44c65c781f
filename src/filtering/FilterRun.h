// A whole filter run on the document or book of state.filterRun: a source-
// file run hides in the originals; a duplicate run filters an untitled
// duplicate of a document, or a copy of a book moved into another folder,
// and never touches the originals' files.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"

namespace voka {

// The note a finished filter run ends with.
inline constexpr const char* kFilterComplete = "Filter complete.";

// Run results besides the filtered document's or book's handle.
inline constexpr int kFilterRunStopped = 0;       // cancelled, aborted or declined
inline constexpr int kFilterRunCopyFailed = 106;  // the duplicate or the moved book could not be made
inline constexpr int kFilterRunSameFolder = 107;  // the destination is the book's own folder

// Without `interactive` the run asks nothing and tells nothing, but for a
// deletion the host refuses.
int FilterRun(Host& host, PluginState& state, int showProgress, int interactive);

// Runs the filter pass on every open chapter of the book, then updates it.
void FilterNewBook(Host& host, PluginState& state, Handle book);

}  // namespace voka
