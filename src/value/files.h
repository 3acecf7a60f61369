// Whole-file reading and writing, always binary.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace morvel::ruby::internal {

enum class WriteMode : std::uint8_t { Truncate, Append };

enum class WriteOutcome : std::uint8_t { Written, CannotOpen, CannotWrite };

/// True when the path can be opened for reading, as files, devices and directories can. A path with a NUL byte cannot.
[[nodiscard]] bool canOpenFile(const std::string& path);

/// Reads a file or pipe to its end. False, with `content` untouched, when it cannot be opened or read to its end, is a
/// directory, or its path holds a NUL byte.
[[nodiscard]] bool readWholeFile(const std::string& path, std::string& content);

/// Writes `content` to a file, creating it when missing. Returns Written only when the system has taken every byte and
/// closed the file without an error, so that a full device is noticed.
[[nodiscard]] WriteOutcome writeWholeFile(const std::string& path, std::string_view content, WriteMode mode);

}  // namespace morvel::ruby::internal
