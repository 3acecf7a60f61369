#include "value/native_stack.h"

#include <pthread.h>
#include <sys/auxv.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>

namespace morvel::ruby::internal {

namespace {

constexpr std::size_t kKiB = 1024;
constexpr std::size_t kMiB = 1024 * kKiB;

// What must stay free for leaf work: raising an exception, formatting, a library call of the host.
constexpr std::size_t kLargestMargin = 96 * kKiB;

// The initial stack is mapped in steps of this size. The system keeps four times as much free below what is mapped.
constexpr std::size_t kGrowth = 256 * kKiB;

// Where the initial stack has no limit, it ends here for scripts: a value that contains itself would otherwise take all
// memory before it is refused. The system maps nothing else this close below the top of the stack, so that an address
// in this range is on the initial stack.
constexpr std::size_t kMostUnlimited = 64 * kMiB;

// The smallest page of any system.
constexpr std::uintptr_t kPage = 4096;

std::uintptr_t pageOf(std::uintptr_t address) noexcept { return address / kPage * kPage; }

struct StackRange {
    std::uintptr_t lowest;
    std::size_t size;
};

/// What is known of the thread's stack. Before it is measured, every address asks for that.
struct StackBounds {
    std::uintptr_t lowest = 0;
    /// Frames at least this far above `lowest` have their margin mapped.
    std::uintptr_t safeDistance = std::numeric_limits<std::uintptr_t>::max();
    std::uintptr_t margin = 0;
    /// From here up the stack is mapped.
    std::uintptr_t mapped = 0;

    void setMapped(std::uintptr_t address) noexcept {
        mapped = address;
        safeDistance = mapped - lowest + margin;
    }
};

constinit thread_local StackBounds stackBounds;

std::optional<StackRange> threadStack() noexcept {
    pthread_attr_t attributes;
    if (pthread_getattr_np(pthread_self(), &attributes) != 0) {
        return std::nullopt;
    }
    void* lowest = nullptr;
    std::size_t size = 0;
    const bool found = pthread_attr_getstack(&attributes, &lowest, &size) == 0;
    pthread_attr_destroy(&attributes);
    return found ? std::optional(StackRange{reinterpret_cast<std::uintptr_t>(lowest), size}) : std::nullopt;
}

// The end of the initial thread's stack; 0 when unknown. The program's name, which the kernel puts at the very top,
// leads there. Asking the library takes a file of /proc, hence a free descriptor.
std::uintptr_t topOfInitialStack() noexcept {
    const auto name = static_cast<std::uintptr_t>(getauxval(AT_EXECFN));
    return name == 0 ? 0 : pageOf(name) + kPage;
}

// What the initial thread's stack may grow to.
std::optional<StackRange> initialStack(std::uintptr_t top) noexcept {
    rlimit limit{};
    if (getrlimit(RLIMIT_STACK, &limit) != 0) {
        return std::nullopt;
    }
    const std::size_t size = limit.rlim_cur == RLIM_INFINITY ? kMostUnlimited : pageOf(limit.rlim_cur);
    return StackRange{top - size, size};
}

// Valgrind grows the initial stack by itself, for frames only, and refuses other growth. It hides the kernel's vDSO.
bool growsByKernel() noexcept { return getauxval(AT_SYSINFO_EHDR) != 0; }

bool measureStack(std::uintptr_t here) noexcept {
    const std::uintptr_t top = topOfInitialStack();
    bool isInitial = top - here < kMostUnlimited;
    std::optional<StackRange> range;
    if (!isInitial) {
        // The arguments and the environment lie above what the library counts as the initial stack.
        range = threadStack();
        isInitial = range && top - (range->lowest + range->size) < kMostUnlimited;
    }
    if (isInitial) {
        range = initialStack(top);
    }
    if (!range) {
        return false;
    }
    stackBounds.lowest = range->lowest;
    stackBounds.margin = std::min(kLargestMargin, range->size / 3);
    stackBounds.setMapped(isInitial && growsByKernel() ? top : range->lowest);
    return true;
}

enum class Growth : std::uint8_t { Mapped, Refused, Unknown };

// The kernel grows the initial stack for whatever accesses the addresses below it. When it cannot, because the address
// space is used up, an access of the program's own is a SIGSEGV; a system call that is to write there just fails. This
// one writes the thread's signal mask and changes nothing.
Growth growTo(std::uintptr_t address) noexcept {
    constexpr std::size_t kSizeOfSignalSet = 8;
    const int error = errno;
    const long failed = syscall(SYS_rt_sigprocmask, SIG_BLOCK, nullptr, address, kSizeOfSignalSet);
    const Growth growth = failed == 0 ? Growth::Mapped : errno == EFAULT ? Growth::Refused : Growth::Unknown;
    errno = error;
    return growth;
}

// Maps the margin below `here`, which is at least that far above the end of the stack; false when that is impossible.
bool mapMargin(std::uintptr_t here) noexcept {
    StackBounds& bounds = stackBounds;
    // The host may have gone deeper by itself.
    bounds.setMapped(std::min(bounds.mapped, pageOf(here)));
    const std::uintptr_t needed = pageOf(here - bounds.margin);
    const std::uintptr_t ample = needed - std::min(kGrowth, needed - bounds.lowest);
    for (const std::uintptr_t address : {ample, needed}) {
        const Growth growth = growTo(address);
        if (growth != Growth::Refused) {
            // Where the call is forbidden the limits have to do.
            bounds.setMapped(growth == Growth::Mapped ? address : bounds.lowest);
            return true;
        }
    }
    return false;
}

// What nativeStackLow() leaves out when there is plenty.
[[gnu::noinline]] bool isLowAt(std::uintptr_t here) noexcept {
    // Without an answer the question is asked again next time.
    if (stackBounds.margin == 0 && !measureStack(here)) {
        return false;
    }
    const std::uintptr_t distance = here - stackBounds.lowest;
    if (distance >= stackBounds.safeDistance) {
        return false;
    }
    return distance < stackBounds.margin || !mapMargin(here);
}

}  // namespace

bool nativeStackLow() noexcept {
    const auto here = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
    // Unsigned: an address below the thread's own stack belongs to a stack of the host's and wraps to a large distance.
    return here - stackBounds.lowest < stackBounds.safeDistance && isLowAt(here);
}

void checkNativeStack() {
    if (nativeStackLow()) {
        throw StackOverflow();
    }
}

}  // namespace morvel::ruby::internal
