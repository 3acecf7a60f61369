// Fibers: functions that run on their own native stacks.
#pragma once

#include <ucontext.h>

#include <cstddef>
#include <functional>
#include <utility>
#include <vector>

#if defined(__SANITIZE_ADDRESS__)
#define MORVEL_TELLS_STACKS
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define MORVEL_TELLS_STACKS
#endif
#endif
#if defined(MORVEL_TELLS_STACKS)
#include <sanitizer/common_interface_defs.h>
#endif

namespace morvel::ruby::tests {

/// A function that runs on its own stack and can pause.
class Fiber {
public:
    explicit Fiber(std::function<void(Fiber&)> body) : m_body(std::move(body)), m_stack(kStack) {
        getcontext(&m_own);
        m_own.uc_stack.ss_sp = m_stack.data();
        m_own.uc_stack.ss_size = m_stack.size();
        m_own.uc_link = &m_caller;
        makecontext(&m_own, &Fiber::begin, 0);
    }
    Fiber(const Fiber&) = delete;
    Fiber& operator=(const Fiber&) = delete;

    void resume() {
        current = this;
        leaveStack(&m_callerFrames, m_stack.data(), m_stack.size());
        swapcontext(&m_caller, &m_own);
        enterStack(m_callerFrames, nullptr, nullptr);
    }
    void pause() {
        leaveStack(&m_ownFrames, m_callerStack, m_callerSize);
        swapcontext(&m_own, &m_caller);
        enterStack(m_ownFrames, &m_callerStack, &m_callerSize);
    }

private:
    static constexpr std::size_t kStack = std::size_t{1} << 20;

    static void begin() {
        Fiber& self = *current;
        enterStack(nullptr, &self.m_callerStack, &self.m_callerSize);
        self.m_body(self);
        leaveStack(nullptr, self.m_callerStack, self.m_callerSize);
    }

    // AddressSanitizer must be told which stack is in use.
#if defined(MORVEL_TELLS_STACKS)
    static void leaveStack(void** frames, const void* next, std::size_t size) {
        __sanitizer_start_switch_fiber(frames, next, size);
    }
    static void enterStack(void* frames, const void** previous, std::size_t* size) {
        __sanitizer_finish_switch_fiber(frames, previous, size);
    }
#else
    static void leaveStack(void** /*frames*/, const void* /*next*/, std::size_t /*size*/) {}
    static void enterStack(void* /*frames*/, const void** /*previous*/, std::size_t* /*size*/) {}
#endif

    static inline thread_local Fiber* current = nullptr;

    std::function<void(Fiber&)> m_body;
    std::vector<std::byte> m_stack;
    ucontext_t m_own{};
    ucontext_t m_caller{};
    void* m_ownFrames = nullptr;
    void* m_callerFrames = nullptr;
    const void* m_callerStack = nullptr;
    std::size_t m_callerSize = 0;
};

}  // namespace morvel::ruby::tests
