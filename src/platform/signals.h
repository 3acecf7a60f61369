// Signals that the program must not die of.
#pragma once

namespace morvel::ruby::platform {

/// From now on a write whose reader has gone away, or that makes a file larger than the process may, fails instead of
/// ending the process.
void ignoreWriteSignals() noexcept;

}  // namespace morvel::ruby::platform
