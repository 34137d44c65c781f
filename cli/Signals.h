// Ctrl-C and SIGTERM (a CI time-out) ask voka to cancel: the work stops at
// its next poll, what was finished stays, and nothing half-written is left.
// A second signal ends voka at once, after removing its temporary files.
#pragma once

namespace voka::cli {

void installCancelSignals();
// True from the first signal on.
bool cancelRequested();

}  // namespace voka::cli
