// A temporary directory for one test.
#pragma once

#include <filesystem>
#include <string>

namespace morvel::ruby::tests {

/// A directory that is deleted, with its contents, along with this object.
class TemporaryDirectory {
public:
    TemporaryDirectory();
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return m_path; }
    /// The path of a file of this name in the directory.
    [[nodiscard]] std::string file(const std::string& name) const { return (m_path / name).string(); }

private:
    std::filesystem::path m_path;
};

}  // namespace morvel::ruby::tests
