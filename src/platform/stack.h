// The native stack of the calling thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

namespace morvel::ruby::platform {

/// The smallest page of any system.
inline constexpr std::uintptr_t kSmallestPage = 4096;

/// The start of the page that an address lies in.
[[nodiscard]] constexpr std::uintptr_t pageOf(std::uintptr_t address) noexcept {
    return address / kSmallestPage * kSmallestPage;
}

struct ThreadStack {
    /// The end that the stack grows towards, and its distance from the other end.
    std::uintptr_t lowest;
    std::size_t size;
    /// Frames below this address need growStack first.
    std::uintptr_t mapped;
};

/// The stack that the system gave to the calling thread. `here` is an address in the running frame, which is on that
/// stack or on one that the host itself switched to. Nothing when the system gives no answer; a later call may succeed.
[[nodiscard]] std::optional<ThreadStack> threadStack(std::uintptr_t here) noexcept;

enum class StackGrowth : std::uint8_t { Mapped, Refused, Unknown };

/// Grows the calling thread's stack down to `address`, which lies in it. Refused means that there is no memory for it,
/// so a frame there would kill the process; Unknown that the system gives no answer. Costs a system call.
[[nodiscard]] StackGrowth growStack(std::uintptr_t address) noexcept;

}  // namespace morvel::ruby::platform
