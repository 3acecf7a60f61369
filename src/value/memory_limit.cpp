#include "value/memory_limit.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <string>

namespace morvel::ruby::internal {

namespace {

constexpr std::size_t kNoLimit = std::numeric_limits<std::ptrdiff_t>::max();

// Files are read only where the memory would cost far more than that.
constexpr std::size_t kWorthReading = std::size_t{16} << 20;

std::size_t machineMemory() noexcept {
    const long pages = sysconf(_SC_PHYS_PAGES);
    const long pageSize = sysconf(_SC_PAGESIZE);
    if (pages <= 0 || pageSize <= 0) {
        return kNoLimit;
    }
    return static_cast<std::size_t>(pages) * static_cast<std::size_t>(pageSize);
}

std::size_t limitOf(decltype(RLIMIT_AS) resource) noexcept {
    rlimit limit{};
    if (getrlimit(resource, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY) {
        return kNoLimit;
    }
    return static_cast<std::size_t>(limit.rlim_cur);
}

/// The begin of a small file; empty when it cannot be read.
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

/// The number that a file holds; no limit for "max", and for a file that is not there.
std::size_t limitIn(const std::string& path) {
    const std::string text = readStart(path);
    std::size_t limit = 0;
    const auto parsed = std::from_chars(text.data(), text.data() + text.size(), limit);
    return parsed.ec == std::errc() ? std::min(limit, kNoLimit) : kNoLimit;
}

/// The smallest limit of a group and those around it, which are the folders above its own.
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
    std::size_t smallest = kNoLimit;
    // Lines of the form ID:CONTROLLERS:GROUP; the one of version 2 names no controllers.
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

bool canHaveMemory(std::size_t count, std::size_t size) {
    if (size == 0 || count <= kSurelyThere / size) {
        return true;
    }
    static const std::size_t memory = machineMemory();
    // Limits may be set at any time, so they are asked for each time.
    std::size_t most = std::min({memory, limitOf(RLIMIT_AS), limitOf(RLIMIT_DATA)});
    if (count <= most / size && count > kWorthReading / size) {
        most = std::min(most, controlGroupLimit("/proc/self/cgroup", "/sys/fs/cgroup"));
    }
    return count <= most / size;
}

void requireMemory(std::size_t count, std::size_t size) {
    if (!canHaveMemory(count, size)) {
        throw SizeRefused();
    }
}

}  // namespace morvel::ruby::internal
