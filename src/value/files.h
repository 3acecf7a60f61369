// Whole-file reading and writing, always binary.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace morvel::ruby::internal {

enum class WriteMode : std::uint8_t { Truncate, Append };

enum class WriteOutcome : std::uint8_t { Written, CannotOpen, CannotWrite };

/// True when the path can be opened for reading: files, devices and directories. A path that holds a NUL byte cannot.
[[nodiscard]] bool canOpenFile(const std::string& path);

/// Reads everything that the path gives, be it a file or a pipe. False when it cannot be opened or not be read to its
/// end, is a directory, or holds a NUL byte; `content` is then untouched.
[[nodiscard]] bool readWholeFile(const std::string& path, std::string& content);

/// Writes `content` to a file, which is created when missing. Written is returned only when every byte has been
/// handed to the system and the file closed without an error, so that a full device is noticed.
[[nodiscard]] WriteOutcome writeWholeFile(const std::string& path, std::string_view content, WriteMode mode);

}  // namespace morvel::ruby::internal
