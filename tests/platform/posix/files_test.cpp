#include "platform/files.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "support/files.h"
#include "support/temporary_directory.h"

namespace morvel::ruby::tests {

namespace {

TEST(OpenForReading, TellsWhatIsThere) {
    const TemporaryDirectory directory;
    writeFile(directory.file("there"), "");
    EXPECT_TRUE(platform::canOpenForReading(directory.file("there")));
    EXPECT_TRUE(platform::canOpenForReading(directory.file("")));
    EXPECT_TRUE(platform::canOpenForReading("/dev/null"));
    EXPECT_FALSE(platform::canOpenForReading(directory.file("missing")));
    EXPECT_FALSE(platform::canOpenForReading(""));
}

TEST(OpenForReading, DoesNotWaitForThePeerOfAPipe) {
    const TemporaryDirectory directory;
    const std::string path = directory.file("pipe");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    EXPECT_TRUE(platform::canOpenForReading(path));
}

}  // namespace

}  // namespace morvel::ruby::tests
