// A library to preload into the program: runs it once for each memory request that it makes, and has that one fail.
//
// The process that loads it forks a copy of itself for every run, before the program has done anything, so runs are
// cheap. Standard input must be a file. Bad runs are reported on standard output; its last line gives the numbers of
// requests and of bad runs.
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>

extern "C" {
// The allocator's internal names, which need no symbol lookup.
void* __libc_malloc(std::size_t size) noexcept;                           // NOLINT(bugprone-reserved-identifier)
void* __libc_calloc(std::size_t count, std::size_t size) noexcept;        // NOLINT(bugprone-reserved-identifier)
void* __libc_realloc(void* block, std::size_t size) noexcept;             // NOLINT(bugprone-reserved-identifier)
void* __libc_memalign(std::size_t alignment, std::size_t size) noexcept;  // NOLINT(bugprone-reserved-identifier)
}

namespace {

/// Which requests fail in this process.
struct Plan {
    bool isActive = false;
    bool failsFromThereOn = false;
    std::size_t requestsBefore = 0;
};

Plan plan;
/// Whether a request has failed; shared by a run and the process that waits for it.
bool* hasFailed = nullptr;

bool mustFail() noexcept {
    if (!plan.isActive) {
        return false;
    }
    if (plan.requestsBefore > 0) {
        --plan.requestsBefore;
        return false;
    }
    plan.isActive = plan.failsFromThereOn;
    *hasFailed = true;
    errno = ENOMEM;
    return true;
}

/// How a run ended.
struct Ending {
    int status = 0;
    char message[4096] = {};
};

/// A run may succeed, fail as it does with enough memory, or run out of memory.
bool isGood(const Ending& ending, const Ending& usual) noexcept {
    if (!WIFEXITED(ending.status)) {
        return false;
    }
    if (WEXITSTATUS(ending.status) == 1 && std::strcmp(ending.message, "morveltesk: out of memory\n") == 0) {
        return true;
    }
    return WEXITSTATUS(ending.status) == 0 ||
           (ending.status == usual.status && std::strcmp(ending.message, usual.message) == 0);
}

/// Forks a run in which request number `point` fails. Returns true in the process that must run the program.
bool startRun(std::size_t point, int errors, Ending& ending) noexcept {
    *hasFailed = false;
    if (lseek(STDIN_FILENO, 0, SEEK_SET) != 0 || ftruncate(errors, 0) != 0 || lseek(errors, 0, SEEK_SET) != 0) {
        std::abort();
    }
    const pid_t child = fork();
    if (child == 0) {
        dup2(errors, STDERR_FILENO);
        dup2(open("/dev/null", O_WRONLY | O_CLOEXEC), STDOUT_FILENO);
        plan.requestsBefore = point;
        plan.isActive = true;
        return true;
    }
    while (waitpid(child, &ending.status, 0) < 0 && errno == EINTR) {
    }
    const ssize_t size = pread(errors, ending.message, sizeof ending.message - 1, 0);
    ending.message[size < 0 ? 0 : size] = '\0';
    return false;
}

__attribute__((constructor)) void runForEveryRequest() {
    const char* const mode = std::getenv("MORVEL_FAILING_MEMORY");
    if (mode == nullptr) {
        return;
    }
    plan.failsFromThereOn = std::strcmp(mode, "from there on") == 0;
    hasFailed =
        static_cast<bool*>(mmap(nullptr, sizeof(bool), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    const int errors = memfd_create("errors", MFD_CLOEXEC);
    Ending usual;
    Ending ending;
    if (startRun(std::numeric_limits<std::size_t>::max(), errors, usual)) {
        return;
    }
    std::size_t wrong = 0;
    std::size_t point = 0;
    while (true) {
        if (startRun(point, errors, ending)) {
            return;
        }
        if (!*hasFailed) {
            break;
        }
        if (!isGood(ending, usual)) {
            const bool isSignal = WIFSIGNALED(ending.status);
            std::printf("request %zu: %s %d, %s\n", point, isSignal ? "signal" : "status",
                        isSignal ? WTERMSIG(ending.status) : WEXITSTATUS(ending.status), ending.message);
            ++wrong;
        }
        ++point;
    }
    std::printf("%zu requests, %zu wrong\n", point, wrong);
    std::fflush(stdout);
    _exit(wrong == 0 ? 0 : 1);
}

}  // namespace

extern "C" {

void* malloc(std::size_t size) noexcept { return mustFail() ? nullptr : __libc_malloc(size); }

void* calloc(std::size_t count, std::size_t size) noexcept { return mustFail() ? nullptr : __libc_calloc(count, size); }

void* realloc(void* block, std::size_t size) noexcept { return mustFail() ? nullptr : __libc_realloc(block, size); }

void* memalign(std::size_t alignment, std::size_t size) noexcept {
    return mustFail() ? nullptr : __libc_memalign(alignment, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept { return memalign(alignment, size); }

int posix_memalign(void** block, std::size_t alignment, std::size_t size) noexcept {
    void* const fresh = memalign(alignment, size);
    if (fresh == nullptr) {
        return ENOMEM;
    }
    *block = fresh;
    return 0;
}

void* mmap(void* address, std::size_t size, int protection, int flags, int file, off_t offset) noexcept {
    if (mustFail()) {
        return MAP_FAILED;
    }
    return reinterpret_cast<void*>(syscall(SYS_mmap, address, size, protection, flags, file, offset));
}

}  // extern "C"
