#include "value/native_stack.h"

#include <pthread.h>
#include <sys/auxv.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "morvel/ruby/error.h"

namespace morvel::ruby::internal {

namespace {

// What must stay free for leaf work: raising an exception, formatting, a library call of the host.
constexpr std::size_t kLargestMargin = std::size_t{96} * 1024;

struct StackRange {
    std::uintptr_t lowest;
    std::size_t size;
};

struct StackBounds {
    std::uintptr_t lowest = 0;
    std::uintptr_t margin = 0;
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

// For the initial thread the library reads a file of /proc, which fails in a process without that directory or without
// a free descriptor. The program's name, which the kernel puts at the very top of the stack, leads there too.
std::optional<StackRange> initialStack() noexcept {
    constexpr std::size_t kUsualSize = std::size_t{8} * 1024 * 1024;
    constexpr std::uintptr_t kPage = 4096;
    const auto name = static_cast<std::uintptr_t>(getauxval(AT_EXECFN));
    rlimit limit{};
    if (getpid() != gettid() || name == 0 || getrlimit(RLIMIT_STACK, &limit) != 0) {
        return std::nullopt;
    }
    const std::size_t size = limit.rlim_cur == RLIM_INFINITY ? kUsualSize : limit.rlim_cur;
    const std::uintptr_t top = (name / kPage + 1) * kPage;
    return StackRange{top - size, size};
}

void measureStack() noexcept {
    std::optional<StackRange> range = threadStack();
    if (!range) {
        range = initialStack();
    }
    // Without an answer the question is asked again next time.
    if (range) {
        stackBounds = {range->lowest, std::min(kLargestMargin, range->size / 3)};
    }
}

}  // namespace

bool nativeStackLow() noexcept {
    if (stackBounds.margin == 0) {
        measureStack();
    }
    const auto here = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
    // Unsigned: an address below the thread's own stack belongs to a stack of the host's and wraps to a large distance.
    return here - stackBounds.lowest < stackBounds.margin;
}

void checkNativeStack() {
    if (nativeStackLow()) {
        throw RubyError("stack overflow");
    }
}

}  // namespace morvel::ruby::internal
