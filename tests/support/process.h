// Runs programs, and parts of the test program, in separate processes.
#pragma once

#include <sys/resource.h>
#include <sys/types.h>

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace morvel::ruby::tests {

/// How a process is started.
struct ProcessSetup {
    /// Empty for the command line program.
    std::string program;
    std::vector<std::string> arguments;
    /// The content of its standard input.
    std::string input;
    /// Working directory; that of the test if empty.
    std::string directory;
    /// SIGALRM ends it after this time; 0 means no limit.
    std::chrono::seconds timeLimit{0};
    /// Runs in the process before the program; may change limits and descriptors.
    std::function<void()> prepare;
};

/// How a process ended.
struct ProcessOutcome {
    /// Exit status, or -1 if a signal ended it.
    int status = -1;
    /// The signal that ended it, or 0.
    int signal = 0;
    std::string output;
    std::string error;
    /// Peak resident memory in bytes.
    std::size_t peakMemory = 0;
    std::chrono::milliseconds cpuTime{0};
};

/// Limits a resource of the process; for ProcessSetup::prepare.
[[nodiscard]] std::function<void()> limited(decltype(RLIMIT_AS) resource, rlim_t most);

/// The command line program.
[[nodiscard]] std::string programPath();

/// Runs a program and waits for it to end. Its standard streams are files, so nothing blocks, whatever it writes or
/// leaves unread.
[[nodiscard]] ProcessOutcome runProcess(const ProcessSetup& setup);
[[nodiscard]] ProcessOutcome runProcess(const std::string& program, const std::vector<std::string>& arguments);

/// Runs `body` in a child process, whose exit status is the result. SIGXCPU ends it after `cpuSeconds` of CPU time.
[[nodiscard]] ProcessOutcome runInChild(const std::function<int()>& body, unsigned cpuSeconds);

/// Starts a program with these descriptors as its standard streams; the caller has to send `setup.input`.
[[nodiscard]] pid_t startProcess(const ProcessSetup& setup, int input, int output, int error);

/// Waits for a process and fills in how it ended.
void awaitProcess(pid_t process, ProcessOutcome& outcome);

}  // namespace morvel::ruby::tests
