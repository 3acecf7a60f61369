// What the standard library's files cannot tell.
#pragma once

#include <string>

namespace morvel::ruby::platform {

/// True when the path can be opened for reading: files, devices and directories. Opens it, which never waits, and
/// closes it again. The path ends at its first NUL byte.
[[nodiscard]] bool canOpenForReading(const std::string& path) noexcept;

}  // namespace morvel::ruby::platform
