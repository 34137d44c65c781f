#include "cli/Signals.h"

#include "cli/Session.h"
#include "host/headless/persist/AtomicFile.h"

#include <csignal>
#include <unistd.h>

namespace voka::cli {
namespace {

// A signal handler can reach nothing but a flag of this kind.
volatile std::sig_atomic_t signalsSeen = 0;

void onSignal(int) {
    if (signalsSeen != 0) {
        headless::removePendingTemporaries();
        ::_exit(kExitCancelled);
    }
    signalsSeen = 1;
}

}  // namespace

void installCancelSignals() {
    struct sigaction action {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
    sigaction(SIGHUP, &action, nullptr);
}

bool cancelRequested() { return signalsSeen != 0; }

}  // namespace voka::cli
