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
    /// The end that the stack grows towards, and how far that is from the other one.
    std::uintptr_t lowest;
    std::size_t size;
    /// Frames above this address need nothing; those below it need growStack first.
    std::uintptr_t mapped;
};

/// The stack that the system gave to the calling thread, where `here` is an address of the running frame, on that stack
/// or on one that the host switched to by itself. Nothing when the system does not tell; it may do so later.
[[nodiscard]] std::optional<ThreadStack> threadStack(std::uintptr_t here) noexcept;

enum class StackGrowth : std::uint8_t { Mapped, Refused, Unknown };

/// Has the calling thread's stack grow down to an address of it: Refused when there is no memory for that, which would
/// otherwise end the process once a frame gets there, and Unknown when the system does not tell. Costs a system call.
[[nodiscard]] StackGrowth growStack(std::uintptr_t address) noexcept;

}  // namespace morvel::ruby::platform
