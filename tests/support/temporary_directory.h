// A directory of a test's own.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace morvel::ruby::tests {

/// Exists, with all it holds, as long as this object.
class TemporaryDirectory {
public:
    TemporaryDirectory();
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    /// The path of a file with this name in the directory.
    [[nodiscard]] std::string file(const std::string& name) const;

private:
    std::filesystem::path m_path;
};

void writeTestFile(const std::string& path, std::string_view content);
[[nodiscard]] std::string readTestFile(const std::string& path);

}  // namespace morvel::ruby::tests
