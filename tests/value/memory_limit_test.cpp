#include "value/memory_limit.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <limits>

#include "support/temporary_directory.h"

namespace morvel::ruby::tests {

namespace {

using internal::controlGroupLimit;

constexpr std::size_t kNone = std::numeric_limits<std::ptrdiff_t>::max();

void write(const std::string& path, const std::string& text) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path) << text;
}

TEST(ControlGroupLimit, IsTheSmallestOfTheGroupAndThoseAroundIt) {
    const TemporaryDirectory directory;
    const std::string groups = directory.file("groups");
    const std::string root = directory.file("root");
    write(groups, "0::/outer/inner\n");
    EXPECT_EQ(controlGroupLimit(groups, root), kNone);
    write(root + "/outer/inner/memory.max", "max\n");
    EXPECT_EQ(controlGroupLimit(groups, root), kNone);
    write(root + "/outer/memory.max", "3000000\n");
    EXPECT_EQ(controlGroupLimit(groups, root), 3'000'000U);
    write(root + "/outer/inner/memory.max", "2000000\n");
    EXPECT_EQ(controlGroupLimit(groups, root), 2'000'000U);
    write(root + "/memory.max", "1000000\n");
    EXPECT_EQ(controlGroupLimit(groups, root), 1'000'000U);
    write(groups, "0::/\n");
    EXPECT_EQ(controlGroupLimit(groups, root), 1'000'000U);
}

TEST(ControlGroupLimit, KnowsTheFirstVersion) {
    const TemporaryDirectory directory;
    const std::string groups = directory.file("groups");
    const std::string root = directory.file("root");
    write(groups, "5:cpu,cpuacct:/a\n4:hugetlb,memory:/a/b\n0::/a\n");
    write(root + "/memory/memory.limit_in_bytes", "9223372036854771712\n");
    EXPECT_GT(controlGroupLimit(groups, root), std::size_t{1} << 60);
    write(root + "/memory/a/b/memory.limit_in_bytes", "4000000\n");
    EXPECT_EQ(controlGroupLimit(groups, root), 4'000'000U);
    write(groups, "4:memory_of_another_kind:/a/b\n");
    EXPECT_EQ(controlGroupLimit(groups, root), kNone);
}

TEST(ControlGroupLimit, TakesNothingFromFilesOfAnotherForm) {
    const TemporaryDirectory directory;
    const std::string groups = directory.file("groups");
    const std::string root = directory.file("root");
    EXPECT_EQ(controlGroupLimit(groups, root), kNone);
    for (const char* const text : {"", "\n", "0", "0:", "::", "0:memory", "0::relative", "nothing\nof\nthe kind"}) {
        write(groups, text);
        EXPECT_EQ(controlGroupLimit(groups, root), kNone) << text;
    }
    write(groups, "0::/a");
    write(root + "/a/memory.max", "many");
    EXPECT_EQ(controlGroupLimit(groups, root), kNone);
    write(root + "/a/memory.max", "99999999999999999999999999");
    EXPECT_EQ(controlGroupLimit(groups, root), kNone);
}

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
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        const bool before = internal::canHaveMemory(12 * kMegabyte, 1);
        const rlimit limit{8 * kMegabyte, RLIM_INFINITY};
        const bool isSet = setrlimit(static_cast<decltype(RLIMIT_AS)>(GetParam()), &limit) == 0;
        const bool after = internal::canHaveMemory(12 * kMegabyte, 1);
        _exit(isSet && before && !after && internal::canHaveMemory(4 * kMegabyte, 1) ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

INSTANTIATE_TEST_SUITE_P(Resources, ProcessLimit, ::testing::Values(RLIMIT_AS, RLIMIT_DATA));

}  // namespace

}  // namespace morvel::ruby::tests
