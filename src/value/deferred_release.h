// Puts off the end of host functions with state until nothing is half-way through.
#pragma once

#include <cstddef>

#include "morvel/ruby/value.h"

namespace morvel::ruby::internal {

/// Containers whose last reference is gone and whose contents still have to be released. The chain runs through the
/// dead boxes themselves, so that releasing needs no memory and no recursion.
struct Graveyard {
    Box* first = nullptr;
    /// The contents of one are being released: the others wait.
    bool draining = false;
};

/// While an instance lives, containers end when their last reference goes, even within the end of another one, whose
/// destruction may have led to code that runs for long.
class FreshGraveyard {
public:
    FreshGraveyard() noexcept;
    ~FreshGraveyard();
    FreshGraveyard(const FreshGraveyard&) = delete;
    FreshGraveyard& operator=(const FreshGraveyard&) = delete;

private:
    Graveyard m_suspended;
};

/// Letting go of a host function destroys what it captured, which may run any code: create globals, run scripts. While
/// an instance lives, this thread only notes such functions when their last reference goes.
class DeferHostReleases {
public:
    DeferHostReleases() noexcept;
    ~DeferHostReleases();
    DeferHostReleases(const DeferHostReleases&) = delete;
    DeferHostReleases& operator=(const DeferHostReleases&) = delete;
};

/// Destroys the host functions noted so far; while an instance lives, the next ones end when their last reference goes,
/// whatever else is in progress on this thread. The caller must be ready for anything to have changed.
class ReleaseHostsAtOnce {
public:
    ReleaseHostsAtOnce() noexcept;
    ~ReleaseHostsAtOnce();
    ReleaseHostsAtOnce(const ReleaseHostsAtOnce&) = delete;
    ReleaseHostsAtOnce& operator=(const ReleaseHostsAtOnce&) = delete;

private:
    FreshGraveyard m_graveyard;
    std::size_t m_suspended;
};

/// The host functions noted so far on this thread, chained; null mostly.
extern constinit thread_local Box* deferredHosts;

/// Destroys the host functions noted so far. The caller must be ready for anything to have changed afterwards.
void releaseDeferredHosts() noexcept;

}  // namespace morvel::ruby::internal
