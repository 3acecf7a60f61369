// Threads with a native stack of a chosen size.
#pragma once

#include <cstddef>
#include <functional>

namespace morvel::ruby::tests {

/// Runs `body` on a thread with a native stack of `bytes` bytes and waits for it.
void runOnStack(std::size_t bytes, const std::function<void()>& body);

}  // namespace morvel::ruby::tests
