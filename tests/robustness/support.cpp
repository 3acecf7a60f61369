#include "support.h"

#include <fcntl.h>
#include <pthread.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <system_error>

namespace morvel::ruby::tests {

namespace {

void* runBody(void* body) {
    (*static_cast<const std::function<void()>*>(body))();
    return nullptr;
}

[[noreturn]] void failWith(const char* call) { throw std::system_error(errno, std::generic_category(), call); }

std::chrono::milliseconds milliseconds(const timeval& time) {
    return std::chrono::milliseconds(time.tv_sec * 1000 + time.tv_usec / 1000);
}

/// Waits for a child and fills in how it ended.
void await(pid_t child, ChildOutcome& result) {
    int status = 0;
    rusage usage{};
    while (wait4(child, &status, 0, &usage) < 0) {
        if (errno != EINTR) {
            failWith("wait4");
        }
    }
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    result.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    result.peakMemory = static_cast<std::size_t>(usage.ru_maxrss) * 1024;
    result.cpuTime = milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

// The signal comes at the soft limit, death at the hard one.
void limitCpu(unsigned seconds) {
    const rlimit limit{seconds, seconds + 1};
    setrlimit(RLIMIT_CPU, &limit);
}

}  // namespace

std::string repeated(const std::string& text, std::size_t times) {
    std::string all;
    all.reserve(text.size() * times);
    for (std::size_t i = 0; i < times; ++i) {
        all += text;
    }
    return all;
}

std::function<void()> limited(decltype(RLIMIT_AS) resource, rlim_t most) {
    return [resource, most] {
        const rlimit limit{most, most};
        setrlimit(resource, &limit);
    };
}

std::string outcome(RubyVM& vm, const std::string& source) {
    const RubyResult result = vm.runScriptString(source, "t");
    return result.ok ? result.value.toString() : "error: " + result.error;
}

std::string outcome(const std::string& source) {
    RubyVM vm;
    return outcome(vm, source);
}

bool isUsable(RubyVM& vm) {
    return outcome(vm,
                   "def check(n) if n == 0 then return 0 end return n + check(n - 1) end\n"
                   "m = map_new() m[\"k\"] = [1, 2.5, \"s\"]\n"
                   "[check(10), m, pcall(error, \"caught\")]") == "[55, {k: [1, 2.5, s]}, [false, caught]]";
}

void runOnStack(std::size_t bytes, const std::function<void()>& body) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    if (pthread_attr_setstacksize(&attributes, bytes) != 0) {
        throw std::runtime_error("stack size is not possible");
    }
    pthread_t thread{};
    const int error = pthread_create(&thread, &attributes, runBody, const_cast<std::function<void()>*>(&body));
    pthread_attr_destroy(&attributes);
    if (error != 0) {
        throw std::runtime_error("thread cannot be created");
    }
    pthread_join(thread, nullptr);
}

ChildOutcome runProgram(const ChildSetup& setup) {
    // Files instead of pipes: nothing blocks, whatever the program writes or leaves unread.
    const TemporaryDirectory directory;
    writeFile(directory.path("input"), setup.input);
    const std::string program = setup.program.empty() ? MORVEL_PROGRAM : setup.program;
    std::vector<char*> words{const_cast<char*>(program.c_str())};
    for (const std::string& argument : setup.arguments) {
        words.push_back(const_cast<char*>(argument.c_str()));
    }
    words.push_back(nullptr);
    const pid_t child = fork();
    if (child < 0) {
        failWith("fork");
    }
    if (child == 0) {
        constexpr int kMode = 0600;
        dup2(open(directory.path("input").c_str(), O_RDONLY), STDIN_FILENO);
        dup2(open(directory.path("output").c_str(), O_WRONLY | O_CREAT, kMode), STDOUT_FILENO);
        dup2(open(directory.path("error").c_str(), O_WRONLY | O_CREAT, kMode), STDERR_FILENO);
        if (setup.prepare) {
            setup.prepare();
        }
        execv(program.c_str(), words.data());
        _exit(127);
    }
    ChildOutcome result;
    await(child, result);
    result.output = readFile(directory.path("output"));
    result.error = readFile(directory.path("error"));
    return result;
}

ChildOutcome runInChild(const std::function<int()>& body, unsigned cpuSeconds) {
    const TemporaryDirectory directory;
    const pid_t child = fork();
    if (child < 0) {
        failWith("fork");
    }
    if (child == 0) {
        constexpr int kMode = 0600;
        limitCpu(cpuSeconds);
        dup2(open(directory.path("output").c_str(), O_WRONLY | O_CREAT, kMode), STDOUT_FILENO);
        dup2(open(directory.path("error").c_str(), O_WRONLY | O_CREAT, kMode), STDERR_FILENO);
        _exit(body());
    }
    ChildOutcome result;
    await(child, result);
    result.output = readFile(directory.path("output"));
    result.error = readFile(directory.path("error"));
    return result;
}

SilencedOutput::SilencedOutput() : m_kept(dup(STDOUT_FILENO)) {
    const int nowhere = open("/dev/null", O_WRONLY);
    std::cout.flush();
    std::fflush(stdout);
    dup2(nowhere, STDOUT_FILENO);
    close(nowhere);
}

SilencedOutput::~SilencedOutput() {
    std::cout.flush();
    std::fflush(stdout);
    dup2(m_kept, STDOUT_FILENO);
    close(m_kept);
}

TemporaryDirectory::TemporaryDirectory() {
    std::string pattern = (std::filesystem::temp_directory_path() / "morvel-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
        failWith("mkdtemp");
    }
    m_path = pattern;
}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

std::string readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void writeFile(const std::string& path, const std::string& content) {
    std::ofstream file(path, std::ios::binary);
    file << content;
    if (!file.flush()) {
        throw std::runtime_error("cannot write " + path);
    }
}

}  // namespace morvel::ruby::tests
