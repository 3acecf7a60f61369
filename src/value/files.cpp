#include "value/files.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <new>
#include <system_error>

#include "platform/files.h"
#include "value/spare_memory.h"

namespace morvel::ruby::internal {

namespace {

bool holdsNul(const std::string& path) { return path.find('\0') != std::string::npos; }

// Opening a directory for reading may succeed; only reading it fails.
bool isDirectory(const std::string& path) {
    std::error_code ignored;
    return std::filesystem::is_directory(path, ignored);
}

/// Opens a file stream; false when the path cannot be opened. The C library allocates memory for it without calling
/// the new-handler, so running out of memory does not mean that the path cannot be opened.
template <typename Stream>
bool openStream(Stream& file, const std::string& path, std::ios::openmode mode) {
    while (true) {
        errno = 0;
        file.open(path, mode);
        if (file.is_open()) {
            return true;
        }
        if (errno != ENOMEM) {
            return false;
        }
        if (!SpareMemory::giveBackAll()) {
            throw std::bad_alloc();
        }
    }
}

}  // namespace

bool canOpenFile(const std::string& path) { return !holdsNul(path) && platform::canOpenForReading(path); }

bool readWholeFile(const std::string& path, std::string& content) {
    if (holdsNul(path) || isDirectory(path)) {
        return false;
    }
    std::ifstream file;
    if (!openStream(file, path, std::ios::binary | std::ios::in)) {
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
    // Reading always ends in a failed stream, at the end of the file. A bad stream means that a read failed earlier.
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
    std::ofstream file;
    if (!openStream(file, path, std::ios::binary | (mode == WriteMode::Append ? std::ios::app : std::ios::trunc))) {
        return WriteOutcome::CannotOpen;
    }
    file.write(content.data(), static_cast<std::streamsize>(content.size()));
    file.close();
    return file ? WriteOutcome::Written : WriteOutcome::CannotWrite;
}

}  // namespace morvel::ruby::internal
