// When host functions that nothing refers to any more are destroyed.
//
// Destroying a host function destroys what it captured, which may run any code: change globals, run scripts, end VMs.
// While a script runs, that has to wait until nothing is half-way through; and one at a time, so that many of them, or
// a long chain of functions that hold each other, need no more native stack than one.
#pragma once

#include <cstddef>

#include "morvel/ruby/function.h"
#include "value/function_internals.h"

namespace morvel::ruby::internal {

/// The host functions that wait on this thread, chained through their counts; null mostly.
extern constinit thread_local RubyFunctionHandle* deferredHosts;

/// Takes a host function whose last reference is gone: notes it, to be destroyed by the next call of
/// releaseDeferredHosts.
void deferHost(RubyFunctionHandle* dead) noexcept;

/// True unless a DeferHostReleases lives or a host function is being destroyed: then the caller who lets go of one
/// should release it, once it has finished its own work.
[[nodiscard]] bool mayReleaseHosts() noexcept;

/// Destroys the host functions that wait, one after the other, with those that come to wait meanwhile. The caller must
/// be ready for anything to have changed afterwards.
void releaseDeferredHosts() noexcept;

/// Keeps the host functions that wait now out of the reach of what goes on while it lives.
class SetAsideHosts {
public:
    SetAsideHosts() noexcept;
    ~SetAsideHosts();
    SetAsideHosts(const SetAsideHosts&) = delete;
    SetAsideHosts& operator=(const SetAsideHosts&) = delete;

    /// Takes a function that `binder` bound out of what is set aside on this thread; null when there is none.
    static RubyFunctionHandle* takeOneOf(const Binder& binder) noexcept;

private:
    RubyFunctionHandle* m_first;
    SetAsideHosts* m_outer;
};

/// While it lives, host functions wait until releaseDeferredHosts is called. At its end they are destroyed, and those
/// that waited before it wait on. Instances need not end in the reverse order of their beginning, as hosts may run
/// scripts on several stacks of their own.
class DeferHostReleases {
public:
    DeferHostReleases() noexcept;
    ~DeferHostReleases();
    DeferHostReleases(const DeferHostReleases&) = delete;
    DeferHostReleases& operator=(const DeferHostReleases&) = delete;

private:
    SetAsideHosts m_earlier;
};

/// For a VM that is about to end, whose captured objects may refer to it: destroys all host functions that it bound and
/// that wait, and lets none wait while it lives, whatever else goes on on this thread.
class ReleaseHostsAtOnce {
public:
    explicit ReleaseHostsAtOnce(const Binder& binder) noexcept;
    ~ReleaseHostsAtOnce();
    ReleaseHostsAtOnce(const ReleaseHostsAtOnce&) = delete;
    ReleaseHostsAtOnce& operator=(const ReleaseHostsAtOnce&) = delete;

private:
    std::size_t m_deferrals;
};

}  // namespace morvel::ruby::internal
