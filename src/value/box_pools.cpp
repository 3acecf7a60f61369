#include "value/box_pools.h"

#include "platform/thread_end.h"

namespace morvel::ruby::internal {

constinit thread_local BoxPool boxPool;

namespace {

constinit platform::ThreadEnd threadEnd;

void closePool(void* /*unused*/) noexcept {
    boxPool.state = BoxPool::State::Closed;
    boxPool.shrink(0);
}

/// The initial thread ends when the process exits or the library is unloaded.
struct Process {
    Process() noexcept { threadEnd.open(closePool); }
    ~Process() {
        threadEnd.close();
        closePool(nullptr);
    }
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
};

// Constructed before all other static objects and destroyed after them, since those may hold values.
[[gnu::init_priority(101)]] const Process process;

}  // namespace

bool FreeList::shrink(std::size_t most) noexcept {
    const bool isLonger = m_length > most;
    while (m_length > most) {
        Link* const link = m_first;
        m_first = link->next;
        --m_length;
        ::operator delete(link);
    }
    return isLonger;
}

bool SpareArrays::shrink(std::size_t most) noexcept {
    bool wasLonger = false;
    for (List& list : m_lists) {
        wasLonger |= list.length > most;
        while (list.length > most) {
            ArrayBox* const array = list.first;
            list.first = nextOf(array);
            --list.length;
            delete array;
        }
    }
    return wasLonger;
}

bool BoxPool::open() noexcept {
    // A failure may be temporary, so the state stays New.
    if (threadEnd.ask()) {
        state = State::Open;
    }
    return state == State::Open;
}

bool BoxPool::shrink(std::size_t most) noexcept {
    // Destroying an array or a string gives its box to the pool.
    const bool hadArrays = spareArrays.shrink(most);
    const bool hadLarge = clearLarge();
    const bool hadStringBoxes = strings.shrink(most);
    const bool hadArrayBoxes = arrays.shrink(most);
    const bool hadMapBoxes = maps.shrink(most);
    return hadArrays || hadLarge || hadStringBoxes || hadArrayBoxes || hadMapBoxes;
}

bool BoxPool::clearLarge() noexcept {
    const bool hadArrays = largeArrays.clear();
    const bool hadStrings = largeStrings.clear();
    return hadArrays || hadStrings;
}

}  // namespace morvel::ruby::internal
