// Reads and writes whole files.
#pragma once

#include <string>
#include <string_view>

namespace morvel::ruby::tests {

/// The content of a file. Throws std::runtime_error when it cannot be read.
[[nodiscard]] std::string readFile(const std::string& path);

/// Creates or replaces a file. Throws std::runtime_error when it cannot be written.
void writeFile(const std::string& path, std::string_view content);

}  // namespace morvel::ruby::tests
