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

// What must stay free for leaf work: raising an exception, formatting, a library call of the host.
constexpr std::size_t kLargestMargin = 96 * kKiB;

// The initial stack is mapped in steps of this size. The system keeps four times as much free below what is mapped.
constexpr std::size_t kGrowth = 256 * kKiB;

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

// Maps the margin below `here`, which is at least that far above the end of the stack; false when that is impossible.
bool mapMargin(std::uintptr_t here) noexcept {
    StackBounds& bounds = stackBounds;
    // The host may have gone deeper by itself.
    bounds.setMapped(std::min(bounds.mapped, pageOf(here)));
    const std::uintptr_t needed = pageOf(here - bounds.margin);
    const std::uintptr_t ample = needed - std::min(kGrowth, needed - bounds.lowest);
    for (const std::uintptr_t address : {ample, needed}) {
        const StackGrowth growth = platform::growStack(address);
        if (growth != StackGrowth::Refused) {
            // Where the system does not tell, the limits have to do.
            bounds.setMapped(growth == StackGrowth::Mapped ? address : bounds.lowest);
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
