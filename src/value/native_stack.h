// Guards native recursion: tells when the calling thread's stack is nearly used up.
#pragma once

#include <string>

#include "morvel/ruby/error.h"

namespace morvel::ruby::internal {

/// The script error "stack overflow", told apart from others since `pcall` always catches it, and since operators add
/// the place that the work below them does not know.
class StackOverflow : public RubyError {
public:
    /// The error, with a location in front of the message where there is one ("chunk:line: ").
    explicit StackOverflow(const std::string& location = {}) : RubyError(location + "stack overflow") {}
};

/// True when the calling thread has little native stack left, or when the system has no memory for more of it. Costs
/// one comparison of addresses once the thread's limits are known, and a system call for each 256 KiB that the initial
/// thread's stack grows to for the first time. On a stack that the host switched to by itself the answer is always
/// false.
[[nodiscard]] bool nativeStackLow() noexcept;

/// Throws StackOverflow when nativeStackLow().
void checkNativeStack();

}  // namespace morvel::ruby::internal
