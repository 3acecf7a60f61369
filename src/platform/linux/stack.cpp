#include "platform/stack.h"

#include <pthread.h>
#include <sys/auxv.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

namespace morvel::ruby::platform {

namespace {

// Where the initial stack has no limit, it ends here for scripts: a value that contains itself would otherwise take all
// memory before it is refused. The system maps nothing else this close below the top of the stack, so that an address
// in this range is on the initial stack.
constexpr std::size_t kMostUnlimited = std::size_t{64} * 1024 * 1024;

// The stack of any thread but the initial one, and the part of the initial stack that is in use.
std::optional<ThreadStack> stackOfLibrary() noexcept {
    pthread_attr_t attributes;
    if (pthread_getattr_np(pthread_self(), &attributes) != 0) {
        return std::nullopt;
    }
    void* end = nullptr;
    std::size_t size = 0;
    const bool found = pthread_attr_getstack(&attributes, &end, &size) == 0;
    pthread_attr_destroy(&attributes);
    const auto lowest = reinterpret_cast<std::uintptr_t>(end);
    return found ? std::optional(ThreadStack{lowest, size, lowest}) : std::nullopt;
}

// The end of the initial thread's stack; 0 when unknown. The program's name, which the kernel puts at the very top,
// leads there. Asking the library takes a file of /proc, hence a free descriptor.
std::uintptr_t topOfInitialStack() noexcept {
    const auto name = static_cast<std::uintptr_t>(getauxval(AT_EXECFN));
    return name == 0 ? 0 : pageOf(name) + kSmallestPage;
}

// Valgrind grows the initial stack by itself, for frames only, and refuses other growth. It hides the kernel's vDSO.
bool growsByKernel() noexcept { return getauxval(AT_SYSINFO_EHDR) != 0; }

// What the initial thread's stack may grow to.
std::optional<ThreadStack> initialStack(std::uintptr_t top) noexcept {
    rlimit limit{};
    if (getrlimit(RLIMIT_STACK, &limit) != 0) {
        return std::nullopt;
    }
    const std::size_t size = limit.rlim_cur == RLIM_INFINITY ? kMostUnlimited : pageOf(limit.rlim_cur);
    const std::uintptr_t lowest = top - size;
    return ThreadStack{lowest, size, growsByKernel() ? top : lowest};
}

}  // namespace

std::optional<ThreadStack> threadStack(std::uintptr_t here) noexcept {
    const std::uintptr_t top = topOfInitialStack();
    if (top - here < kMostUnlimited) {
        return initialStack(top);
    }
    const std::optional<ThreadStack> stack = stackOfLibrary();
    // The arguments and the environment lie above what the library counts as the initial stack.
    const bool isInitial = stack && top - (stack->lowest + stack->size) < kMostUnlimited;
    return isInitial ? initialStack(top) : stack;
}

// The kernel grows the initial stack for whatever accesses the addresses below it. When it cannot, because the address
// space is used up, an access of the program's own is a SIGSEGV; a system call that is to write there just fails. This
// one writes the thread's signal mask and changes nothing.
StackGrowth growStack(std::uintptr_t address) noexcept {
    constexpr std::size_t kSizeOfSignalSet = 8;
    const int error = errno;
    const long failed = syscall(SYS_rt_sigprocmask, SIG_BLOCK, nullptr, address, kSizeOfSignalSet);
    const StackGrowth growth = failed == 0       ? StackGrowth::Mapped
                               : errno == EFAULT ? StackGrowth::Refused
                                                 : StackGrowth::Unknown;
    errno = error;
    return growth;
}

}  // namespace morvel::ruby::platform
