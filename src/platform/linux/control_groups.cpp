#include "platform/linux/control_groups.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>
#include <system_error>

#include "platform/memory_limits.h"

namespace morvel::ruby::platform {

namespace {

/// The beginning of a file, enough for small ones; empty when it cannot be read.
std::string readStart(const std::string& path) {
    constexpr std::size_t kMost = 4096;
    std::array<char, kMost> bytes;
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        return {};
    }
    const ssize_t size = read(file, bytes.data(), bytes.size());
    close(file);
    return size <= 0 ? std::string() : std::string(bytes.data(), static_cast<std::size_t>(size));
}

/// The number in a file; no limit for "max" or a missing file.
std::size_t limitIn(const std::string& path) {
    const std::string text = readStart(path);
    std::size_t limit = 0;
    const auto parsed = std::from_chars(text.data(), text.data() + text.size(), limit);
    return parsed.ec == std::errc() ? std::min(limit, kNoMemoryLimit) : kNoMemoryLimit;
}

/// The smallest limit of a group and the groups that contain it, which are the folders above its own.
std::size_t limitOfGroup(const std::string& root, std::string_view group, const char* file) {
    std::size_t smallest = limitIn(root + "/" + file);
    while (group.size() > 1 && group.front() == '/') {
        smallest = std::min(smallest, limitIn(root + std::string(group) + "/" + file));
        group = group.substr(0, group.rfind('/'));
    }
    return smallest;
}

bool namesMemory(std::string_view controllers) noexcept {
    while (!controllers.empty()) {
        const std::size_t end = std::min(controllers.find(','), controllers.size());
        if (controllers.substr(0, end) == "memory") {
            return true;
        }
        controllers.remove_prefix(std::min(end + 1, controllers.size()));
    }
    return false;
}

}  // namespace

std::size_t controlGroupLimit(const std::string& groupsOfProcess, const std::string& root) {
    const std::string text = readStart(groupsOfProcess);
    std::string_view left = text;
    std::size_t smallest = kNoMemoryLimit;
    // Lines have the form ID:CONTROLLERS:GROUP; the line of version 2 names no controllers.
    while (!left.empty()) {
        const std::size_t end = std::min(left.find('\n'), left.size());
        const std::string_view line = left.substr(0, end);
        left.remove_prefix(std::min(end + 1, left.size()));
        const std::size_t first = line.find(':');
        const std::size_t second = first == std::string_view::npos ? first : line.find(':', first + 1);
        if (second == std::string_view::npos) {
            continue;
        }
        const std::string_view controllers = line.substr(first + 1, second - first - 1);
        const std::string_view group = line.substr(second + 1);
        if (controllers.empty()) {
            smallest = std::min(smallest, limitOfGroup(root, group, "memory.max"));
        } else if (namesMemory(controllers)) {
            smallest = std::min(smallest, limitOfGroup(root + "/memory", group, "memory.limit_in_bytes"));
        }
    }
    return smallest;
}

}  // namespace morvel::ruby::platform
