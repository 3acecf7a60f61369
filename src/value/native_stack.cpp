#include "value/native_stack.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>

#include "platform/stack.h"

namespace morvel::ruby::internal {

namespace {

using platform::pageOf;
using platform::StackGrowth;

constexpr std::size_t kKiB = 1024;

// The space that must stay free for leaf calls: throwing an exception, formatting, a library call of the host.
constexpr std::size_t kLargestMargin = 96 * kKiB;

// The initial stack is mapped in steps of this size. The system keeps four times as much free below the mapped part.
constexpr std::size_t kGrowth = 256 * kKiB;

/// The known bounds of the thread's stack. Until they are measured, every address triggers the measurement.
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

bool measureStack(std::uintptr_t here) noexcept {
    const std::optional<platform::ThreadStack> stack = platform::threadStack(here);
    if (!stack) {
        return false;
    }
    stackBounds.lowest = stack->lowest;
    stackBounds.margin = std::min(kLargestMargin, stack->size / 3);
    stackBounds.setMapped(stack->mapped);
    return true;
}

// Maps the margin below `here`, for which the stack has room; false when that is impossible.
bool mapMargin(std::uintptr_t here) noexcept {
    StackBounds& bounds = stackBounds;
    // Frames of the host may have mapped more.
    bounds.setMapped(std::min(bounds.mapped, pageOf(here)));
    const std::uintptr_t needed = pageOf(here - bounds.margin);
    const std::uintptr_t ample = needed - std::min(kGrowth, needed - bounds.lowest);
    for (const std::uintptr_t address : {ample, needed}) {
        const StackGrowth growth = platform::growStack(address);
        if (growth != StackGrowth::Refused) {
            // Where the system gives no answer, the limits must suffice.
            bounds.setMapped(growth == StackGrowth::Mapped ? address : bounds.lowest);
            return true;
        }
    }
    return false;
}

// The part of nativeStackLow() that is skipped when plenty of stack is left.
[[gnu::noinline]] bool isLowAt(std::uintptr_t here) noexcept {
    // After a failed measurement, the next call measures again.
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
    // An address below the thread's own stack is on a stack of the host: the unsigned distance wraps to a large one.
    return here - stackBounds.lowest < stackBounds.safeDistance && isLowAt(here);
}

void checkNativeStack() {
    if (nativeStackLow()) {
        throw StackOverflow();
    }
}

}  // namespace morvel::ruby::internal
