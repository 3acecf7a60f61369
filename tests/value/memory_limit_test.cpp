#include "value/memory_limit.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <limits>

#include "support/process.h"

namespace morvel::ruby::tests {

namespace {

constexpr std::size_t kNone = std::numeric_limits<std::ptrdiff_t>::max();

TEST(RequiredMemory, IsRefusedWhereTheProcessCannotHaveIt) {
    EXPECT_NO_THROW(internal::requireMemory(1, 1));
    EXPECT_NO_THROW(internal::requireMemory(0, kNone));
    EXPECT_NO_THROW(internal::requireMemory(kNone, 0));
    EXPECT_THROW(internal::requireMemory(kNone / 2, 1), internal::SizeRefused);
    EXPECT_THROW(internal::requireMemory(kNone, kNone), internal::SizeRefused);
}

class ProcessLimit : public ::testing::TestWithParam<int> {};

TEST_P(ProcessLimit, CountsFromWhenItIsSet) {
    constexpr std::size_t kMegabyte = 1 << 20;
    const auto body = [] {
        const bool before = internal::canHaveMemory(12 * kMegabyte, 1);
        const rlimit limit{8 * kMegabyte, RLIM_INFINITY};
        const bool isSet = setrlimit(static_cast<decltype(RLIMIT_AS)>(GetParam()), &limit) == 0;
        const bool after = internal::canHaveMemory(12 * kMegabyte, 1);
        const bool afterInWords = internal::canHaveMemory(3 * kMegabyte, 4);
        return isSet && before && !after && !afterInWords && internal::canHaveMemory(4 * kMegabyte, 1) ? 0 : 1;
    };
    constexpr unsigned kSeconds = 20;
    EXPECT_EQ(runInChild(body, kSeconds).status, 0);
}

INSTANTIATE_TEST_SUITE_P(Resources, ProcessLimit, ::testing::Values(RLIMIT_AS, RLIMIT_DATA));

}  // namespace

}  // namespace morvel::ruby::tests
