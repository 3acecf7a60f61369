#include "platform/linux/control_groups.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/memory_limits.h"
#include "support/files.h"
#include "support/temporary_directory.h"

namespace morvel::ruby::tests {

namespace {

using platform::controlGroupLimit;

constexpr std::size_t kNone = platform::kNoMemoryLimit;

void write(const std::string& path, const std::string& text) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    writeFile(path, text);
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

}  // namespace

}  // namespace morvel::ruby::tests
