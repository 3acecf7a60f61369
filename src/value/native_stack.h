// Guards native recursion: tells when the calling thread's stack is nearly used up.
#pragma once

namespace morvel::ruby::internal {

/// True when the calling thread has little native stack left. Costs one comparison of addresses once the thread's
/// limits are known. On a stack that the host switched to by itself the answer is always false.
[[nodiscard]] bool nativeStackLow() noexcept;

/// Throws RubyError "stack overflow" when nativeStackLow().
void checkNativeStack();

}  // namespace morvel::ruby::internal
