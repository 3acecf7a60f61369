#include "value/deferred_release.h"

#include <cstdint>
#include <utility>

namespace morvel::ruby::internal {

namespace {

constinit thread_local std::size_t deferrals = 0;
constinit thread_local HostFunctionReleaseQueue* innermost = nullptr;

// The reference count of a dead box is no longer needed, so it holds the link to the next one.
RubyFunctionHandle* next(const RubyFunctionHandle& dead) noexcept {
    return reinterpret_cast<RubyFunctionHandle*>(static_cast<std::uintptr_t>(dead.references));
}

void link(RubyFunctionHandle& dead, RubyFunctionHandle* to) noexcept {
    dead.references = reinterpret_cast<std::uintptr_t>(to);
}

void destroy(RubyFunctionHandle* dead) noexcept {
    ++deferrals;
    {
        const HostFunctionReleaseQueue earlier;
        if (const Binder* const binder = binderOf(*dead)) {
            --binder->waiting;
        }
        delete dead;
    }
    --deferrals;
}

}  // namespace

constinit thread_local RubyFunctionHandle* deferredHosts = nullptr;

void deferHost(RubyFunctionHandle* dead) noexcept {
    if (const Binder* const binder = binderOf(*dead)) {
        ++binder->waiting;
    }
    link(*dead, std::exchange(deferredHosts, dead));
}

bool mayReleaseHosts() noexcept { return deferrals == 0; }

void releaseDeferredHosts() noexcept {
    while (deferredHosts != nullptr) {
        RubyFunctionHandle* const dead = deferredHosts;
        deferredHosts = next(*dead);
        destroy(dead);
    }
}

HostFunctionReleaseQueue::HostFunctionReleaseQueue() noexcept
    : m_first(std::exchange(deferredHosts, nullptr)), m_outer(std::exchange(innermost, this)) {}

HostFunctionReleaseQueue::~HostFunctionReleaseQueue() {
    HostFunctionReleaseQueue** place = &innermost;
    while (*place != this) {
        place = &(*place)->m_outer;
    }
    *place = m_outer;
    if (deferredHosts == nullptr) {
        deferredHosts = m_first;
    } else if (m_first != nullptr) {
        RubyFunctionHandle* last = deferredHosts;
        while (next(*last) != nullptr) {
            last = next(*last);
        }
        link(*last, m_first);
    }
    if (mayReleaseHosts()) {
        releaseDeferredHosts();
    }
}

RubyFunctionHandle* HostFunctionReleaseQueue::takeOneOf(const Binder& binder) noexcept {
    // Usually no function of the binder is waiting; this avoids a search of the queues, which may be long.
    if (binder.waiting == 0) {
        return nullptr;
    }
    for (HostFunctionReleaseQueue* aside = innermost; aside != nullptr; aside = aside->m_outer) {
        RubyFunctionHandle* previous = nullptr;
        for (RubyFunctionHandle* dead = aside->m_first; dead != nullptr; previous = dead, dead = next(*dead)) {
            if (binderOf(*dead) != &binder) {
                continue;
            }
            if (previous == nullptr) {
                aside->m_first = next(*dead);
            } else {
                link(*previous, next(*dead));
            }
            return dead;
        }
    }
    return nullptr;
}

DeferReleaseScope::DeferReleaseScope() noexcept { ++deferrals; }

DeferReleaseScope::~DeferReleaseScope() {
    releaseDeferredHosts();
    --deferrals;
}

ImmediateReleaseScope::ImmediateReleaseScope(const Binder& binder) noexcept : m_deferrals(std::exchange(deferrals, 0)) {
    releaseDeferredHosts();
    while (RubyFunctionHandle* const dead = HostFunctionReleaseQueue::takeOneOf(binder)) {
        destroy(dead);
        releaseDeferredHosts();
    }
}

ImmediateReleaseScope::~ImmediateReleaseScope() { deferrals += m_deferrals; }

}  // namespace morvel::ruby::internal
