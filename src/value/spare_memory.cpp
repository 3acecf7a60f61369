#include "value/spare_memory.h"

#include <new>
#include <utility>

#include "value/box_pools.h"

namespace morvel::ruby::internal {

namespace {

constinit thread_local SpareMemory* innermost = nullptr;

constinit std::new_handler earlierHandler = nullptr;

void findMemory() {
    if (SpareMemory::giveBackAll()) {
        return;
    }
    if (earlierHandler != nullptr) {
        earlierHandler();
        return;
    }
    throw std::bad_alloc();
}

struct Handler {
    // cppcheck-suppress throwInNoexceptFunction; the handler is installed, not called
    Handler() noexcept { earlierHandler = std::set_new_handler(findMemory); }
    ~Handler() {
        if (std::get_new_handler() == findMemory) {
            std::set_new_handler(earlierHandler);
        }
    }
    Handler(const Handler&) = delete;
    Handler& operator=(const Handler&) = delete;
};

const Handler handler;

}  // namespace

SpareMemory::SpareMemory() noexcept : m_outer(std::exchange(innermost, this)) {}

// Objects on several native stacks of the host may end in any order.
SpareMemory::~SpareMemory() {
    SpareMemory** place = &innermost;
    while (*place != this) {
        place = &(*place)->m_outer;
    }
    *place = m_outer;
}

bool SpareMemory::giveBackAll() noexcept {
    bool hasGivenBack = false;
    for (SpareMemory* user = innermost; user != nullptr; user = user->m_outer) {
        hasGivenBack |= user->giveBack();
    }
    // Last, because memory that the others free ends up in this pool.
    hasGivenBack |= boxPool.shrink(0);
    return hasGivenBack;
}

void trimSpareMemory() noexcept {
    constexpr std::size_t kWorthKeeping = 1 << 8;
    boxPool.shrink(kWorthKeeping);
}

}  // namespace morvel::ruby::internal
