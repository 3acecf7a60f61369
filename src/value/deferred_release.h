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

/// True unless a DeferReleaseScope is alive or a host function is being destroyed: then the caller who lets go of one
/// should release it, once it has finished its own work.
[[nodiscard]] bool mayReleaseHosts() noexcept;

/// Destroys the host functions that wait, one after the other, with those that come to wait meanwhile. The caller must
/// be ready for anything to have changed afterwards.
void releaseDeferredHosts() noexcept;

/// A queue of its own for the host functions that come to wait while it lives; those that wait already are out of reach
/// until it ends.
class HostFunctionReleaseQueue {
public:
    HostFunctionReleaseQueue() noexcept;
    ~HostFunctionReleaseQueue();
    HostFunctionReleaseQueue(const HostFunctionReleaseQueue&) = delete;
    HostFunctionReleaseQueue& operator=(const HostFunctionReleaseQueue&) = delete;

    /// Takes a function that `binder` bound out of what is set aside on this thread; null when there is none.
    static RubyFunctionHandle* takeOneOf(const Binder& binder) noexcept;

private:
    RubyFunctionHandle* m_first;
    HostFunctionReleaseQueue* m_outer;
};

/// While it lives, host functions wait until releaseDeferredHosts is called. At its end they are destroyed, and those
/// that waited before it wait on. Instances need not end in the reverse order of their beginning, as hosts may run
/// scripts on several stacks of their own.
class DeferReleaseScope {
public:
    DeferReleaseScope() noexcept;
    ~DeferReleaseScope();
    DeferReleaseScope(const DeferReleaseScope&) = delete;
    DeferReleaseScope& operator=(const DeferReleaseScope&) = delete;

private:
    HostFunctionReleaseQueue m_earlier;
};

/// For a VM that is about to end, whose captured objects may refer to it: destroys all host functions that it bound and
/// that wait, and lets none wait while it lives, whatever else goes on on this thread.
class ImmediateReleaseScope {
public:
    explicit ImmediateReleaseScope(const Binder& binder) noexcept;
    ~ImmediateReleaseScope();
    ImmediateReleaseScope(const ImmediateReleaseScope&) = delete;
    ImmediateReleaseScope& operator=(const ImmediateReleaseScope&) = delete;

private:
    std::size_t m_deferrals;
};

}  // namespace morvel::ruby::internal
