#include "support/process.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <system_error>

#include "support/file_descriptor.h"
#include "support/files.h"
#include "support/temporary_directory.h"

namespace morvel::ruby::tests {

namespace {

[[noreturn]] void failWith(const char* call) { throw std::system_error(errno, std::generic_category(), call); }

pid_t forkProcess() {
    const pid_t process = fork();
    if (process < 0) {
        failWith("fork");
    }
    return process;
}

std::chrono::milliseconds milliseconds(const timeval& time) {
    return std::chrono::milliseconds(time.tv_sec * 1000 + time.tv_usec / 1000);
}

// Closes on exec: a program inherits it only as one of its standard streams.
FileDescriptor openFile(const std::string& path, int flags) {
    constexpr mode_t kMode = 0600;
    FileDescriptor file(open(path.c_str(), flags | O_CLOEXEC, kMode));
    if (!file.isOpen()) {
        failWith("open");
    }
    return file;
}

/// The files used as the standard streams of a process.
class StreamFiles {
public:
    explicit StreamFiles(const std::string& input) { writeFile(m_directory.file("input"), input); }

    [[nodiscard]] FileDescriptor input() const { return openFile(m_directory.file("input"), O_RDONLY); }
    [[nodiscard]] FileDescriptor output() const { return openFile(m_directory.file("output"), O_WRONLY | O_CREAT); }
    [[nodiscard]] FileDescriptor error() const { return openFile(m_directory.file("error"), O_WRONLY | O_CREAT); }

    /// Waits for a process and collects its output.
    [[nodiscard]] ProcessOutcome await(pid_t process) const {
        ProcessOutcome outcome;
        awaitProcess(process, outcome);
        outcome.output = readFile(m_directory.file("output"));
        outcome.error = readFile(m_directory.file("error"));
        return outcome;
    }

private:
    TemporaryDirectory m_directory;
};

}  // namespace

std::function<void()> limited(decltype(RLIMIT_AS) resource, rlim_t most) {
    return [resource, most] {
        const rlimit limit{most, most};
        setrlimit(resource, &limit);
    };
}

std::string programPath() { return std::filesystem::absolute(MORVELTESK_PROGRAM).string(); }

pid_t startProcess(const ProcessSetup& setup, int input, int output, int error) {
    const std::string program = setup.program.empty() ? programPath() : setup.program;
    std::vector<char*> words{const_cast<char*>(program.c_str())};
    for (const std::string& argument : setup.arguments) {
        words.push_back(const_cast<char*>(argument.c_str()));
    }
    words.push_back(nullptr);
    const pid_t process = forkProcess();
    if (process != 0) {
        return process;
    }
    // A test may ignore SIGPIPE; the program must start with the default.
    (void)std::signal(SIGPIPE, SIG_DFL);
    if (dup2(input, STDIN_FILENO) >= 0 && dup2(output, STDOUT_FILENO) >= 0 && dup2(error, STDERR_FILENO) >= 0 &&
        (setup.directory.empty() || chdir(setup.directory.c_str()) == 0)) {
        // The alarm survives exec.
        alarm(static_cast<unsigned>(setup.timeLimit.count()));
        if (setup.prepare) {
            setup.prepare();
        }
        execv(program.c_str(), words.data());
    }
    _exit(127);
}

void awaitProcess(pid_t process, ProcessOutcome& outcome) {
    int status = 0;
    rusage usage{};
    while (wait4(process, &status, 0, &usage) < 0) {
        if (errno != EINTR) {
            failWith("wait4");
        }
    }
    outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    outcome.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    outcome.peakMemory = static_cast<std::size_t>(usage.ru_maxrss) * 1024;
    outcome.cpuTime = milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

ProcessOutcome runProcess(const ProcessSetup& setup) {
    const StreamFiles files(setup.input);
    return files.await(startProcess(setup, files.input().number(), files.output().number(), files.error().number()));
}

ProcessOutcome runProcess(const std::string& program, const std::vector<std::string>& arguments) {
    ProcessSetup setup;
    setup.program = program;
    setup.arguments = arguments;
    return runProcess(setup);
}

ProcessOutcome runInChild(const std::function<int()>& body, unsigned cpuSeconds) {
    const StreamFiles files({});
    const pid_t process = forkProcess();
    if (process == 0) {
        // The soft limit sends SIGXCPU, the hard one SIGKILL.
        const rlimit limit{cpuSeconds, cpuSeconds + 1};
        setrlimit(RLIMIT_CPU, &limit);
        dup2(files.output().number(), STDOUT_FILENO);
        dup2(files.error().number(), STDERR_FILENO);
        _exit(body());
    }
    return files.await(process);
}

}  // namespace morvel::ruby::tests
