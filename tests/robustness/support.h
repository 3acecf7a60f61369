// What the robustness tests share: threads with a small stack, child processes, and how a run went.
#pragma once

#include <sys/resource.h>
#include <sys/types.h>

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "morvel/ruby/vm.h"

namespace morvel::ruby::tests {

/// Whether the compiler optimises, so that tests may repeat more.
#if defined(__OPTIMIZE__)
inline constexpr bool kOptimised = true;
#else
inline constexpr bool kOptimised = false;
#endif

#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool kAddressSanitizer = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
inline constexpr bool kAddressSanitizer = true;
#else
inline constexpr bool kAddressSanitizer = false;
#endif
#else
inline constexpr bool kAddressSanitizer = false;
#endif

#if defined(__SANITIZE_THREAD__)
inline constexpr bool kThreadSanitizer = true;
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
inline constexpr bool kThreadSanitizer = true;
#else
inline constexpr bool kThreadSanitizer = false;
#endif
#else
inline constexpr bool kThreadSanitizer = false;
#endif

/// Runs source text and gives the text of its value, or "error: " and the message.
[[nodiscard]] std::string outcome(RubyVM& vm, const std::string& source);

/// The same on a VM of its own.
[[nodiscard]] std::string outcome(const std::string& source);

/// True when the VM still computes: to be asked after every failure.
[[nodiscard]] bool isUsable(RubyVM& vm);

/// Runs `body` on a thread with a native stack of `bytes` bytes and waits for it.
void runOnStack(std::size_t bytes, const std::function<void()>& body);

/// How a child process ended.
struct ChildOutcome {
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

/// What a child process is started with. Descriptors are -1 for "captured" (output, error) or "empty" (input).
struct ChildSetup {
    /// The command line program when empty.
    std::string program;
    std::vector<std::string> arguments;
    std::string input;
    /// Runs in the child between fork and exec; may change limits and descriptors.
    std::function<void()> prepare;
};

/// A text several times over.
[[nodiscard]] std::string repeated(const std::string& text, std::size_t times);

/// Limits a resource of the process; for ChildSetup::prepare.
[[nodiscard]] std::function<void()> limited(decltype(RLIMIT_AS) resource, rlim_t most);

/// Runs the command line program with the given arguments.
[[nodiscard]] ChildOutcome runProgram(const ChildSetup& setup);

/// Forks, runs `body` in the child and ends the child with its result as status. The child is stopped by SIGXCPU
/// after `cpuSeconds` of processor time.
[[nodiscard]] ChildOutcome runInChild(const std::function<int()>& body, unsigned cpuSeconds);

/// While it lives, what the process writes to standard output is dropped.
class SilencedOutput {
public:
    SilencedOutput();
    ~SilencedOutput();
    SilencedOutput(const SilencedOutput&) = delete;
    SilencedOutput& operator=(const SilencedOutput&) = delete;

private:
    int m_kept;
};

/// A directory of its own for a test, removed with everything in it at the end.
class TemporaryDirectory {
public:
    TemporaryDirectory();
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    /// Path of a file in the directory.
    [[nodiscard]] std::string path(const std::string& name) const { return m_path + "/" + name; }

private:
    std::string m_path;
};

[[nodiscard]] std::string readFile(const std::string& path);
void writeFile(const std::string& path, const std::string& content);

}  // namespace morvel::ruby::tests
