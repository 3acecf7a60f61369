// Finds scripts and the listings stored beside them.
#pragma once

#include <string>
#include <vector>

namespace morvel::ruby::tests {

/// The names, sorted and without extension, of the files of a directory that end in `extension`, such as ".rb".
[[nodiscard]] std::vector<std::string> namesIn(const std::string& directory, const std::string& extension);

}  // namespace morvel::ruby::tests
