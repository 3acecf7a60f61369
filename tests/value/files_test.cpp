// Files, and the limits of memory and the native stack.
#include "value/files.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <iterator>
#include <limits>
#include <new>
#include <thread>

#include "morvel/ruby/error.h"
#include "support/files.h"
#include "support/runs.h"
#include "support/temporary_directory.h"
#include "value/memory_limit.h"
#include "value/native_stack.h"

namespace morvel::ruby::tests {
namespace {

using internal::canOpenFile;
using internal::readWholeFile;
using internal::WriteMode;
using internal::WriteOutcome;
using internal::writeWholeFile;

const std::string kPathWithNul("/dev/null\0x", 11);

TEST(Files, WriteThenRead) {
    const TemporaryDirectory directory;
    const std::string path = directory.file("data");
    const std::string bytes("a\r\nb\0c\n\xff", 8);
    EXPECT_EQ(WriteOutcome::Written, writeWholeFile(path, bytes, WriteMode::Truncate));
    EXPECT_EQ(bytes, readFile(path));
    std::string content = "old";
    EXPECT_TRUE(readWholeFile(path, content));
    EXPECT_EQ(bytes, content);
}

TEST(Files, TruncateReplacesAndAppendExtends) {
    const TemporaryDirectory directory;
    const std::string path = directory.file("data");
    EXPECT_EQ(WriteOutcome::Written, writeWholeFile(path, "one two", WriteMode::Append));
    EXPECT_EQ(WriteOutcome::Written, writeWholeFile(path, "1", WriteMode::Truncate));
    EXPECT_EQ(WriteOutcome::Written, writeWholeFile(path, "2", WriteMode::Append));
    EXPECT_EQ("12", readFile(path));
    EXPECT_EQ(WriteOutcome::Written, writeWholeFile(path, "", WriteMode::Truncate));
    EXPECT_EQ("", readFile(path));
}

TEST(Files, ReadsLargeFilesWhole) {
    const TemporaryDirectory directory;
    std::string bytes(300001, 'x');
    bytes.back() = 'y';
    writeFile(directory.file("large"), bytes);
    std::string content;
    EXPECT_TRUE(readWholeFile(directory.file("large"), content));
    EXPECT_EQ(bytes, content);
}

TEST(Files, ReadsPipes) {
    const TemporaryDirectory directory;
    const std::string path = directory.file("pipe");
    ASSERT_EQ(0, mkfifo(path.c_str(), 0600));
    std::thread writer([&] { writeFile(path, std::string(200000, 'p')); });
    std::string content;
    EXPECT_TRUE(readWholeFile(path, content));
    writer.join();
    EXPECT_EQ(std::string(200000, 'p'), content);
}

TEST(Files, MissingFilesAndDirectoriesCannotBeRead) {
    const TemporaryDirectory directory;
    std::string content = "untouched";
    EXPECT_FALSE(readWholeFile(directory.file("missing"), content));
    EXPECT_FALSE(readWholeFile(directory.file(""), content));
    EXPECT_FALSE(readWholeFile(kPathWithNul, content));
    EXPECT_FALSE(readWholeFile("", content));
    EXPECT_EQ("untouched", content);
}

TEST(Files, CanOpen) {
    const TemporaryDirectory directory;
    writeFile(directory.file("there"), "");
    EXPECT_TRUE(canOpenFile(directory.file("there")));
    EXPECT_TRUE(canOpenFile(directory.file("")));
    EXPECT_FALSE(canOpenFile(directory.file("missing")));
    EXPECT_FALSE(canOpenFile(kPathWithNul));
    EXPECT_FALSE(canOpenFile(""));
}

TEST(Files, AreClosedAtOnce) {
    const TemporaryDirectory directory;
    const std::string path = directory.file("data");
    const auto openFiles = [] {
        const std::filesystem::directory_iterator descriptors("/dev/fd");
        return std::distance(begin(descriptors), end(descriptors));
    };
    const auto before = openFiles();
    ASSERT_GT(before, 0);
    for (int i = 0; i < 20; ++i) {
        std::string content;
        EXPECT_EQ(WriteOutcome::Written, writeWholeFile(path, "one", WriteMode::Truncate));
        EXPECT_EQ(WriteOutcome::Written, writeWholeFile(path, "two", WriteMode::Append));
        EXPECT_TRUE(readWholeFile(path, content));
        EXPECT_TRUE(canOpenFile(path));
        EXPECT_TRUE(canOpenFile(directory.file("")));
        EXPECT_FALSE(readWholeFile(directory.file(""), content));
        EXPECT_EQ(WriteOutcome::CannotWrite, writeWholeFile("/dev/full", "text", WriteMode::Truncate));
    }
    EXPECT_EQ(before, openFiles());
}

TEST(Files, CannotWriteEverywhere) {
    const TemporaryDirectory directory;
    EXPECT_EQ(WriteOutcome::CannotOpen, writeWholeFile(directory.file(""), "x", WriteMode::Truncate));
    EXPECT_EQ(WriteOutcome::CannotOpen, writeWholeFile(directory.file("no/such"), "x", WriteMode::Append));
    EXPECT_EQ(WriteOutcome::CannotOpen, writeWholeFile(kPathWithNul, "x", WriteMode::Truncate));
    EXPECT_EQ(WriteOutcome::CannotWrite, writeWholeFile("/dev/full", "x", WriteMode::Truncate));
    EXPECT_EQ(WriteOutcome::CannotWrite, writeWholeFile("/dev/full", "x", WriteMode::Append));
}

TEST(MemoryLimit, RefusesWhatNoMachineHas) {
    EXPECT_NO_THROW(internal::requireMemory(0, 16));
    EXPECT_NO_THROW(internal::requireMemory(std::numeric_limits<std::size_t>::max(), 0));
    EXPECT_NO_THROW(internal::requireMemory(1000000, 16));
    EXPECT_THROW(internal::requireMemory(std::numeric_limits<std::size_t>::max(), 1), std::bad_alloc);
    EXPECT_THROW(internal::requireMemory(std::numeric_limits<std::size_t>::max() / 16 + 1, 16), std::bad_alloc);
    EXPECT_THROW(internal::requireMemory(std::size_t{1} << 60, 16), std::bad_alloc);
}

/// Recurses until the guard reports that the stack is low; returns the depth reached.
int depthUntilLow(int depth) {
    volatile char frame[1024] = {};
    if (internal::nativeStackLow()) {
        return depth;
    }
    return depthUntilLow(depth + 1) + frame[0];
}

TEST(NativeStack, IsPlentyAtFirstAndLowInTheEnd) {
    EXPECT_FALSE(internal::nativeStackLow());
    EXPECT_NO_THROW(internal::checkNativeStack());
    EXPECT_GT(depthUntilLow(0), 100);
    EXPECT_FALSE(internal::nativeStackLow());
}

TEST(NativeStack, KnowsTheStackOfEveryThread) {
    int depth = 0;
    std::thread([&] { depth = depthUntilLow(0); }).join();
    EXPECT_GT(depth, 100);
}

}  // namespace
}  // namespace morvel::ruby::tests
