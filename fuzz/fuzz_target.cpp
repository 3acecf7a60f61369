#include "fuzz_target.h"

#include <cstdio>
#include <cstdlib>

namespace morvel::ruby::fuzz {

void reportFinding(const char* what, const char* details) {
    (void)std::fprintf(stderr, "FINDING: %s\n%s\n", what, details);
    std::abort();
}

}  // namespace morvel::ruby::fuzz
