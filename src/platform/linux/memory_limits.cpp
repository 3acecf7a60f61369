#include "platform/memory_limits.h"

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>

#include "platform/linux/control_groups.h"

namespace morvel::ruby::platform {

namespace {

std::size_t limitOf(decltype(RLIMIT_AS) resource) noexcept {
    rlimit limit{};
    if (getrlimit(resource, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY) {
        return kNoMemoryLimit;
    }
    return static_cast<std::size_t>(limit.rlim_cur);
}

}  // namespace

std::size_t machineMemory() noexcept {
    const long pages = sysconf(_SC_PHYS_PAGES);
    const long pageSize = sysconf(_SC_PAGESIZE);
    if (pages <= 0 || pageSize <= 0) {
        return kNoMemoryLimit;
    }
    return static_cast<std::size_t>(pages) * static_cast<std::size_t>(pageSize);
}

std::size_t processMemoryLimit() noexcept { return std::min(limitOf(RLIMIT_AS), limitOf(RLIMIT_DATA)); }

std::size_t groupMemoryLimit() { return controlGroupLimit("/proc/self/cgroup", "/sys/fs/cgroup"); }

}  // namespace morvel::ruby::platform
