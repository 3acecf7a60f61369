// Questions about files that the standard library cannot answer.
#pragma once

#include <string>

namespace morvel::ruby::platform {

/// True when the path can be opened for reading, as files, devices and directories can. Opens it without ever waiting,
/// and closes it again. The path ends at its first NUL byte.
[[nodiscard]] bool canOpenForReading(const std::string& path) noexcept;

}  // namespace morvel::ruby::platform
