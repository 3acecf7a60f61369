#include "platform/signals.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>

#include "support/files.h"
#include "support/process.h"
#include "support/temporary_directory.h"

namespace morvel::ruby::tests {

namespace {

bool writeToNobody() {
    std::array<int, 2> ends{};
    return pipe(ends.data()) == 0 && close(ends[0]) == 0 && write(ends[1], "x", 1) == -1 && errno == EPIPE;
}

TEST(WriteSignals, AreErrorsOnceTheyAreIgnored) {
    constexpr unsigned kSeconds = 20;
    EXPECT_EQ(runInChild([] { return writeToNobody() ? 0 : 1; }, kSeconds).signal, SIGPIPE);
    const auto body = [] {
        platform::ignoreWriteSignals();
        return writeToNobody() ? 0 : 1;
    };
    EXPECT_EQ(runInChild(body, kSeconds).status, 0);
}

TEST(WriteSignals, CoverFilesThatMayNotGrow) {
    const TemporaryDirectory directory;
    const std::string path = directory.file("data");
    writeFile(path, "");
    const auto body = [&path] {
        platform::ignoreWriteSignals();
        limited(RLIMIT_FSIZE, 0)();
        return truncate(path.c_str(), 1) == -1 && errno == EFBIG ? 0 : 1;
    };
    constexpr unsigned kSeconds = 20;
    EXPECT_EQ(runInChild(body, kSeconds).status, 0);
}

}  // namespace

}  // namespace morvel::ruby::tests
