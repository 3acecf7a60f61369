// When what nothing refers to any more is destroyed.
#pragma once

#include <cstdint>

#include "morvel/ruby/value.h"

namespace morvel::ruby::internal {

/// How this thread lets go of what nothing refers to any more.
struct ReleaseState {
    /// Containers whose contents still have to be released. The chain runs through the dead boxes themselves, so that
    /// releasing needs no memory and no recursion.
    Box* graveyard = nullptr;
    /// The contents of one are being released: the others wait.
    bool isDraining = false;
    /// Host functions are only noted when their last reference goes.
    bool defersHosts = false;
};

/// Lets go of things in its own way while it lives, whatever else is in progress on this thread, which goes on after
/// it. At its end, the host functions noted so far are destroyed.
///
/// Letting go of a host function destroys what it captured, which may run any code: create globals, run scripts. While
/// a script runs, that has to wait until nothing is half-way through. When a VM ends, the one that captured things may
/// be gone afterwards, and they have to go at once.
class ReleaseScope {
public:
    enum class Hosts : std::uint8_t { Deferred, AtOnce };

    /// With AtOnce, the host functions noted so far are destroyed first. The caller must be ready for anything to have
    /// changed.
    explicit ReleaseScope(Hosts hosts) noexcept;
    ~ReleaseScope();
    ReleaseScope(const ReleaseScope&) = delete;
    ReleaseScope& operator=(const ReleaseScope&) = delete;

private:
    ReleaseState m_outer;
};

/// The host functions noted so far on this thread, chained; null mostly.
extern constinit thread_local Box* deferredHosts;

/// Destroys the host functions noted so far. The caller must be ready for anything to have changed afterwards.
void releaseDeferredHosts() noexcept;

}  // namespace morvel::ruby::internal
