#include "value/files.h"

#include <fcntl.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <system_error>

namespace morvel::ruby::internal {

namespace {

bool holdsNul(const std::string& path) { return path.find('\0') != std::string::npos; }

// Opening a directory for reading succeeds on this platform; only reading it fails.
bool isDirectory(const std::string& path) {
    std::error_code ignored;
    return std::filesystem::is_directory(path, ignored);
}

}  // namespace

bool canOpenFile(const std::string& path) {
    if (holdsNul(path)) {
        return false;
    }
    // A file stream would wait for the other end of a pipe with a name.
    const int file = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    return file >= 0 && close(file) == 0;
}

bool readWholeFile(const std::string& path, std::string& content) {
    if (holdsNul(path) || isDirectory(path)) {
        return false;
    }
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        return false;
    }
    // Block by block until the end: the size of a pipe is not known, and a file may change while it is read.
    constexpr std::size_t kBlock = 1 << 16;
    std::string bytes;
    std::size_t size = 0;
    while (file) {
        bytes.resize(size + kBlock);
        file.read(bytes.data() + size, kBlock);
        size += static_cast<std::size_t>(file.gcount());
    }
    // The end of the file also counts as a failure, a bad stream does not: part of the content could not be read.
    if (file.bad()) {
        return false;
    }
    bytes.resize(size);
    content = std::move(bytes);
    return true;
}

WriteOutcome writeWholeFile(const std::string& path, std::string_view content, WriteMode mode) {
    if (holdsNul(path)) {
        return WriteOutcome::CannotOpen;
    }
    std::ofstream file(path, std::ios::binary | (mode == WriteMode::Append ? std::ios::app : std::ios::trunc));
    if (!file) {
        return WriteOutcome::CannotOpen;
    }
    file.write(content.data(), static_cast<std::streamsize>(content.size()));
    file.close();
    return file ? WriteOutcome::Written : WriteOutcome::CannotWrite;
}

}  // namespace morvel::ruby::internal
