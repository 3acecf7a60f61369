// Reference cycles are never freed: tests that create some say so with this class.
#pragma once

#if defined(__SANITIZE_ADDRESS__)
#define MORVEL_LOOKS_FOR_LEAKS
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define MORVEL_LOOKS_FOR_LEAKS
#endif
#endif

#if defined(MORVEL_LOOKS_FOR_LEAKS)
#include <sanitizer/lsan_interface.h>
#endif

namespace morvel::ruby::tests {

/// During its lifetime, allocations are not reported as leaks.
#if defined(MORVEL_LOOKS_FOR_LEAKS)
using LeaksAllowed = __lsan::ScopedDisabler;
#else
class LeaksAllowed {
public:
    LeaksAllowed() = default;
    LeaksAllowed(const LeaksAllowed&) = delete;
    LeaksAllowed& operator=(const LeaksAllowed&) = delete;
    ~LeaksAllowed() {}
};
#endif

}  // namespace morvel::ruby::tests
