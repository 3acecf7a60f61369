// Puts off the end of host functions with state until nothing is half-way through.
#pragma once

#include "morvel/ruby/value.h"

namespace morvel::ruby::internal {

/// Letting go of a host function destroys what it captured, which may run any code: create globals, run scripts. While
/// an instance lives, this thread only notes such functions when their last reference goes.
class DeferHostReleases {
public:
    DeferHostReleases() noexcept;
    ~DeferHostReleases();
    DeferHostReleases(const DeferHostReleases&) = delete;
    DeferHostReleases& operator=(const DeferHostReleases&) = delete;
};

/// The host functions noted so far on this thread, chained; null mostly.
extern constinit thread_local Box* deferredHosts;

/// Destroys the host functions noted so far. The caller must be ready for anything to have changed afterwards.
void releaseDeferredHosts() noexcept;

}  // namespace morvel::ruby::internal
