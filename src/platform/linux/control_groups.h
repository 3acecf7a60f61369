// The memory limits of control groups.
#pragma once

#include <cstddef>
#include <string>

namespace morvel::ruby::platform {

/// The memory that control groups of version 1 or 2 leave to a process; kNoMemoryLimit when they set no limit.
/// `groupsOfProcess` is the file that names its groups, `root` the folder of all groups.
[[nodiscard]] std::size_t controlGroupLimit(const std::string& groupsOfProcess, const std::string& root);

}  // namespace morvel::ruby::platform
