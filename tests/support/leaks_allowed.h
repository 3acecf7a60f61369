// Rings are never freed: tests that make some say that they know.
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

/// While it lives, what is allocated may stay for ever.
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
