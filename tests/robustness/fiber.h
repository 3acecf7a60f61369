// A native stack of the test's own.
#pragma once

#include <ucontext.h>

#include <cstddef>
#include <functional>
#include <utility>
#include <vector>

namespace morvel::ruby::tests {

/// Something that runs on a stack of its own and may stop in between.
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
        swapcontext(&m_caller, &m_own);
    }
    void pause() { swapcontext(&m_own, &m_caller); }

private:
    static constexpr std::size_t kStack = std::size_t{1} << 20;

    static void begin() { current->m_body(*current); }

    static inline thread_local Fiber* current = nullptr;

    std::function<void(Fiber&)> m_body;
    std::vector<std::byte> m_stack;
    ucontext_t m_own{};
    ucontext_t m_caller{};
};

}  // namespace morvel::ruby::tests
