// Guards native recursion: reports when the calling thread's stack is nearly used up.
#pragma once

#include <string>

#include "morvel/ruby/error.h"

namespace morvel::ruby::internal {

/// The script error "stack overflow". It has a type of its own because `pcall` always catches it, and because operators
/// add the location, which the code below them does not know.
class StackOverflow : public RubyError {
public:
    /// The error, with a location in front of the message where there is one ("chunk:line: ").
    explicit StackOverflow(const std::string& location = {}) : RubyError(location + "stack overflow") {}
};

/// True when the calling thread has little native stack left, or when the system has no memory to extend it. Costs one
/// comparison of addresses once the thread's limits are known, plus a system call for each new 256 KiB that the initial
/// thread's stack grows by. Always false on a stack that the host itself switched to.
[[nodiscard]] bool nativeStackLow() noexcept;

/// Throws StackOverflow when nativeStackLow().
void checkNativeStack();

}  // namespace morvel::ruby::internal
