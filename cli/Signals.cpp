#include "cli/Signals.h"

#include "cli/Session.h"
#include "host/headless/persist/AtomicFile.h"

#include <atomic>
#include <csignal>
#include <unistd.h>

namespace voka::cli {
namespace {

// A signal handler may only touch a lock-free atomic; the page is written
// on a thread of its own, which reads the flag too.
std::atomic<int> signalsSeen = 0;
static_assert(std::atomic<int>::is_always_lock_free);

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
