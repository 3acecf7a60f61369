#include "platform/signals.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <functional>

#include "support/temporary_directory.h"

namespace morvel::ruby::tests {

namespace {

/// How a process ends that does this.
int statusOf(const std::function<bool()>& body) {
    const pid_t child = fork();
    if (child == 0) {
        _exit(body() ? 0 : 1);
    }
    int status = -1;
    return waitpid(child, &status, 0) == child ? status : -1;
}

bool writeToNobody() {
    std::array<int, 2> ends{};
    return pipe(ends.data()) == 0 && close(ends[0]) == 0 && write(ends[1], "x", 1) == -1 && errno == EPIPE;
}

TEST(WriteSignals, AreErrorsOnceTheyAreIgnored) {
    const int died = statusOf(writeToNobody);
    EXPECT_TRUE(WIFSIGNALED(died) && WTERMSIG(died) == SIGPIPE);
    EXPECT_EQ(statusOf([] {
                  platform::ignoreWriteSignals();
                  return writeToNobody();
              }),
              0);
}

TEST(WriteSignals, CoverFilesThatMayNotGrow) {
    const TemporaryDirectory directory;
    const std::string path = directory.file("data");
    writeTestFile(path, "");
    EXPECT_EQ(statusOf([&path] {
                  platform::ignoreWriteSignals();
                  const rlimit none{0, 0};
                  return setrlimit(RLIMIT_FSIZE, &none) == 0 && truncate(path.c_str(), 1) == -1 && errno == EFBIG;
              }),
              0);
}

}  // namespace

}  // namespace morvel::ruby::tests
