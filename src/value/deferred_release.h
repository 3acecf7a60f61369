// Decides when unreferenced host functions are destroyed.
//
// Destroying a host function destroys its captures, which may run any code: change globals, run scripts, end VMs. While
// a script runs, this must wait until no operation is half-way through. Host functions are destroyed one at a time, so
// that many of them, or a long chain of functions that hold each other, need no more native stack than one.
#pragma once

#include <cstddef>

#include "morvel/ruby/function.h"
#include "value/function_internals.h"

namespace morvel::ruby::internal {

/// The host functions that wait on this thread, linked through their reference counts; usually null.
extern constinit thread_local RubyFunctionHandle* deferredHosts;

/// Queues a host function whose last reference is gone for the next call of releaseDeferredHosts.
void deferHost(RubyFunctionHandle* dead) noexcept;

/// False while a DeferReleaseScope is alive or a host function is being destroyed. When true, the caller that queued a
/// host function should call releaseDeferredHosts once its own work is done.
[[nodiscard]] bool mayReleaseHosts() noexcept;

/// Destroys the waiting host functions one after another, including those queued meanwhile. Afterwards anything may
/// have changed, and the caller must be ready for it.
void releaseDeferredHosts() noexcept;

/// A separate queue for the host functions that come to wait during its lifetime; those already waiting are set aside
/// until it ends.
class HostFunctionReleaseQueue {
public:
    HostFunctionReleaseQueue() noexcept;
    ~HostFunctionReleaseQueue();
    HostFunctionReleaseQueue(const HostFunctionReleaseQueue&) = delete;
    HostFunctionReleaseQueue& operator=(const HostFunctionReleaseQueue&) = delete;

    /// Removes a function that `binder` bound from the functions set aside on this thread; null when there is none.
    static RubyFunctionHandle* takeOneOf(const Binder& binder) noexcept;

private:
    RubyFunctionHandle* m_first;
    HostFunctionReleaseQueue* m_outer;
};

/// During its lifetime, host functions wait until releaseDeferredHosts is called. Its end destroys them, while those
/// that were already waiting before it keep waiting. Instances may end in any order, as hosts may run scripts on
/// several stacks of their own.
class DeferReleaseScope {
public:
    DeferReleaseScope() noexcept;
    ~DeferReleaseScope();
    DeferReleaseScope(const DeferReleaseScope&) = delete;
    DeferReleaseScope& operator=(const DeferReleaseScope&) = delete;

private:
    HostFunctionReleaseQueue m_earlier;
};

/// For a VM about to be destroyed, which captured objects may refer to: destroys all waiting host functions that the VM
/// bound, and lets none wait during its own lifetime, whatever else this thread is doing.
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
