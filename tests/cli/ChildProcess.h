// Running voka and the browser as child processes from the end-to-end tests:
// arguments as given (no shell), standard input from /dev/null, standard
// output and error captured whole, a time limit after which the child's whole
// process group is killed, and optionally the child run as the unprivileged
// user "nobody" so that permission bits mean something to a test run as root.
#pragma once

#include <string>
#include <sys/types.h>
#include <utility>
#include <vector>

namespace voka::test {

struct RunOptions {
    std::string workingDirectory;  // "" keeps the test's own
    std::vector<std::pair<std::string, std::string>> environment;  // set or replaced in the child
    bool asNobody = false;
    int timeoutSeconds = 120;
};

struct ProcessResult {
    int exitCode = -1;       // -1 when the child did not exit on its own
    bool timedOut = false;
    std::string out;
    std::string err;
    std::string failure;     // set when the child could not be started
};

// A child that runs while the caller starts others; finishProcess collects it.
struct RunningProcess {
    pid_t pid = -1;
    int outFd = -1;
    int errFd = -1;
    int timeoutSeconds = 0;
    std::string failure;
};

RunningProcess startProcess(const std::vector<std::string>& argv, const RunOptions& options = {});
ProcessResult finishProcess(RunningProcess& running);
ProcessResult runProcess(const std::vector<std::string>& argv, const RunOptions& options = {});

// True when the current process may drop to the user "nobody" for a child.
bool runningAsRoot();

}  // namespace voka::test
