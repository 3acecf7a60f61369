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

// The size of the initial stack for scripts when the system sets no limit: otherwise a value that contains itself would
// use up all memory before it is refused. The system maps nothing else this close below the top of the stack, so an
// address in this range is on the initial stack.
constexpr std::size_t kMostUnlimited = std::size_t{64} * 1024 * 1024;

// The whole stack of any thread but the initial one; of the initial stack, only the part in use.
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

// The top of the initial thread's stack; 0 when unknown. It is found through the program's name, which the kernel puts
// at the very top. Asking the library would read a file of /proc and so need a free descriptor.
std::uintptr_t topOfInitialStack() noexcept {
    const auto name = static_cast<std::uintptr_t>(getauxval(AT_EXECFN));
    return name == 0 ? 0 : pageOf(name) + kSmallestPage;
}

// False under Valgrind, which grows the initial stack itself, for frames only. Valgrind hides the kernel's vDSO.
bool growsByKernel() noexcept { return getauxval(AT_SYSINFO_EHDR) != 0; }

// The initial thread's stack at the largest size that it may grow to.
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
    // The arguments and the environment lie above the part that the library counts as the initial stack.
    const bool isInitial = stack && top - (stack->lowest + stack->size) < kMostUnlimited;
    return isInitial ? initialStack(top) : stack;
}

// The kernel grows the initial stack on any access to the addresses below it. When it cannot, because the address space
// is used up, an access by the program raises SIGSEGV, but a system call that writes there merely fails. The call below
// writes the thread's signal mask there and changes nothing else.
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
