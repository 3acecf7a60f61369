// Clean-up at the end of a thread.
#pragma once

#include <atomic>
#include <cstdint>

namespace morvel::ruby::platform {

/// A function that the system calls at the end of each thread that asked for it. On usual systems, asking takes no
/// memory of the general allocator, and it may fail without harm: a thread-local object with a destructor would do the
/// same, but ends the whole process when there is no memory to register it.
class ThreadEnd {
public:
    constexpr ThreadEnd() noexcept = default;

    /// From now on threads can ask for `function`, which must ignore its argument.
    void open(void (*function)(void*)) noexcept;
    /// From now on no thread can ask, and the function is not called for those that did.
    void close() noexcept;
    /// Asks for the function to be called at the end of this thread; false when that is impossible.
    [[nodiscard]] bool ask() noexcept;

private:
    /// The system's key for the function.
    std::uintptr_t m_key = 0;
    std::atomic<bool> m_isOpen{false};
};

}  // namespace morvel::ruby::platform
