// Signals that must not kill the program.
#pragma once

namespace morvel::ruby::platform {

/// From now on, writing to a pipe without a reader, or past the file size limit of the process, fails instead of
/// killing the process.
void ignoreWriteSignals() noexcept;

}  // namespace morvel::ruby::platform
