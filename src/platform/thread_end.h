// What is to be done when a thread ends.
#pragma once

#include <atomic>
#include <cstdint>

namespace morvel::ruby::platform {

/// A function that the system calls at the end of each thread that asked for it. To ask needs no memory of the general
/// allocator on a usual system, and may fail without harm: a thread-local object with a destructor, which would do the
/// same, ends the whole process where there is no memory to register it.
class ThreadEnd {
public:
    constexpr ThreadEnd() noexcept = default;

    /// From now on threads can ask for `function`, whose argument means nothing.
    void open(void (*function)(void*)) noexcept;
    /// No thread can ask any more, and nothing is called for those that did.
    void close() noexcept;
    /// Has the function called at the end of this thread; false when that is not possible.
    [[nodiscard]] bool ask() noexcept;

private:
    /// The system's own name for the function.
    std::uintptr_t m_key = 0;
    std::atomic<bool> m_isOpen{false};
};

}  // namespace morvel::ruby::platform
