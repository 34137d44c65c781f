#include "ChildProcess.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <grp.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

extern char** environ;

namespace voka::test {
namespace {

constexpr uid_t kNobody = 65534;

// An unnamed temporary file the child writes into and the parent reads back.
int captureFile() {
    char name[] = "/tmp/voka-capture-XXXXXX";
    int fd = mkstemp(name);
    if (fd >= 0) unlink(name);
    return fd;
}

std::string readAll(int fd) {
    std::string text;
    if (fd < 0) return text;
    lseek(fd, 0, SEEK_SET);
    char buffer[65536];
    for (ssize_t n; (n = read(fd, buffer, sizeof buffer)) > 0;) text.append(buffer, static_cast<std::size_t>(n));
    close(fd);
    return text;
}

std::vector<std::string> childEnvironment(const RunOptions& options) {
    std::vector<std::string> entries;
    for (char** entry = environ; *entry; ++entry) {
        std::string text = *entry;
        bool replaced = false;
        for (const auto& [name, value] : options.environment) replaced = replaced || text.rfind(name + "=", 0) == 0;
        if (!replaced) entries.push_back(text);
    }
    for (const auto& [name, value] : options.environment) entries.push_back(name + "=" + value);
    return entries;
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> result;
    for (std::string& text : texts) result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

}  // namespace

bool runningAsRoot() { return geteuid() == 0; }

RunningProcess startProcess(const std::vector<std::string>& argv, const RunOptions& options) {
    RunningProcess running;
    running.timeoutSeconds = options.timeoutSeconds;
    if (argv.empty()) {
        running.failure = "no program given";
        return running;
    }
    running.outFd = captureFile();
    running.errFd = captureFile();
    if (running.outFd < 0 || running.errFd < 0) {
        running.failure = std::string("cannot make capture files: ") + std::strerror(errno);
        return running;
    }
    // Everything the child needs is built before fork: after it only
    // async-signal-safe calls are made.
    std::vector<std::string> arguments = argv;
    std::vector<std::string> environment = childEnvironment(options);
    std::vector<char*> argp = pointers(arguments);
    std::vector<char*> envp = pointers(environment);
    const bool dropToNobody = options.asNobody;
    const char* workingDirectory = options.workingDirectory.empty() ? nullptr : options.workingDirectory.c_str();

    pid_t pid = fork();
    if (pid < 0) {
        running.failure = std::string("fork: ") + std::strerror(errno);
        return running;
    }
    if (pid == 0) {
        setpgid(0, 0);  // one group, so that a time-out ends the child's own children too
        int in = open("/dev/null", O_RDONLY);
        if (in < 0 || dup2(in, 0) < 0 || dup2(running.outFd, 1) < 0 || dup2(running.errFd, 2) < 0) _exit(126);
        if (workingDirectory && chdir(workingDirectory) != 0) _exit(126);
        if (dropToNobody && (setgroups(0, nullptr) != 0 || setgid(kNobody) != 0 || setuid(kNobody) != 0)) _exit(126);
        execve(argp[0], argp.data(), envp.data());
        _exit(127);
    }
    running.pid = pid;
    return running;
}

ProcessResult finishProcess(RunningProcess& running) {
    ProcessResult result;
    result.failure = running.failure;
    if (running.pid > 0) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(running.timeoutSeconds);
        int status = 0;
        pid_t done = 0;
        while ((done = waitpid(running.pid, &status, WNOHANG)) == 0) {
            if (std::chrono::steady_clock::now() > deadline) {
                result.timedOut = true;
                kill(-running.pid, SIGKILL);
                waitpid(running.pid, &status, 0);
                done = running.pid;
                break;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        // Helpers the child left behind in its group (a browser's) go with it.
        kill(-running.pid, SIGKILL);
        if (done == running.pid && WIFEXITED(status) && !result.timedOut) result.exitCode = WEXITSTATUS(status);
        running.pid = -1;
    }
    result.out = readAll(running.outFd);
    result.err = readAll(running.errFd);
    running.outFd = running.errFd = -1;
    return result;
}

ProcessResult runProcess(const std::vector<std::string>& argv, const RunOptions& options) {
    RunningProcess running = startProcess(argv, options);
    return finishProcess(running);
}

}  // namespace voka::test
