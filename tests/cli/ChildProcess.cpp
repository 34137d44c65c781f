#include "Cli.h"

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <grp.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

extern char** environ;

namespace voka::test {
namespace {

std::string readAll(std::FILE* file) {  // an unnamed temporary file the child wrote into
    std::string text;
    char buffer[65536];
    std::rewind(file);
    for (std::size_t n; (n = std::fread(buffer, 1, sizeof buffer, file)) > 0;) text.append(buffer, n);
    std::fclose(file);
    return text;
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> result;
    for (std::string& text : texts) result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

}  // namespace

ProcessResult runProcess(const std::vector<std::string>& argv, const RunOptions& options) {
    ProcessResult result;
    std::FILE *outFile = std::tmpfile(), *errFile = std::tmpfile();
    if (!outFile || !errFile) return {-1, "", "", std::string("cannot make capture files: ") + std::strerror(errno)};
    // Everything the child needs is built before fork: after it, only async-signal-safe calls.
    std::vector<std::string> arguments = argv, environment;
    for (char** entry = environ; *entry; ++entry)
        if (options.home.empty() || std::strncmp(*entry, "HOME=", 5) != 0) environment.push_back(*entry);
    if (!options.home.empty()) environment.push_back("HOME=" + options.home);
    std::vector<char*> argp = pointers(arguments), envp = pointers(environment);
    const char* directory = options.workingDirectory.empty() ? nullptr : options.workingDirectory.c_str();

    const pid_t pid = fork();
    if (pid == 0) {
        setpgid(0, 0);  // one group, so that a time-out ends the child's own children too
        int in = open("/dev/null", O_RDONLY);
        if (in < 0 || dup2(in, 0) < 0 || dup2(fileno(outFile), 1) < 0 || dup2(fileno(errFile), 2) < 0) _exit(126);
        if (directory && chdir(directory) != 0) _exit(126);
        constexpr uid_t kNobody = 65534;
        if (options.asNobody && (setgroups(0, nullptr) != 0 || setgid(kNobody) != 0 || setuid(kNobody) != 0)) _exit(126);
        execve(argp[0], argp.data(), envp.data());
        _exit(127);
    }
    if (pid < 0) result.failure = std::string("fork: ") + std::strerror(errno);
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(options.timeoutSeconds);
    int status = 0;
    while (pid > 0 && waitpid(pid, &status, WNOHANG) == 0) {
        if (std::chrono::steady_clock::now() > deadline) {
            kill(-pid, SIGKILL);
            waitpid(pid, &status, 0);
            result.failure = "did not finish in time";
            break;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    if (pid > 0) kill(-pid, SIGKILL);  // helpers the child left in its group (a browser's) go with it
    if (pid > 0 && result.failure.empty() && WIFEXITED(status)) result.exitCode = WEXITSTATUS(status);
    result.out = readAll(outFile);
    result.err = readAll(errFile);
    return result;
}

}  // namespace voka::test
