// Runs programs, and parts of the test program, in processes of their own.
#pragma once

#include <sys/resource.h>
#include <sys/types.h>

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace morvel::ruby::tests {

/// What a process is started with.
struct ProcessSetup {
    /// The command line program when empty.
    std::string program;
    std::vector<std::string> arguments;
    /// What it finds in its standard input.
    std::string input;
    /// Where it runs; where the test does when empty.
    std::string directory;
    /// A signal (SIGALRM) ends it after that time, unless that is 0.
    std::chrono::seconds timeLimit{0};
    /// Runs in the process before the program; may change limits and descriptors.
    std::function<void()> prepare;
};

/// How a process ended.
struct ProcessOutcome {
    /// Exit status, or -1 when a signal ended it.
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

/// Runs a program and waits for its end. Its standard streams are files: nothing blocks, whatever it writes or leaves
/// unread.
[[nodiscard]] ProcessOutcome runProcess(const ProcessSetup& setup);
[[nodiscard]] ProcessOutcome runProcess(const std::string& program, const std::vector<std::string>& arguments);

/// Runs `body` in a process whose exit status is its result. SIGXCPU ends it after `cpuSeconds` of processor time.
[[nodiscard]] ProcessOutcome runInChild(const std::function<int()>& body, unsigned cpuSeconds);

/// Starts a program with these descriptors as its standard streams; `setup.input` is for the caller to deliver.
[[nodiscard]] pid_t startProcess(const ProcessSetup& setup, int input, int output, int error);

/// Waits for a process and fills in how it ended.
void awaitProcess(pid_t process, ProcessOutcome& outcome);

}  // namespace morvel::ruby::tests
