// A sample of the damaged copies of many images; the program bad_images tries all of them.
#include <gtest/gtest.h>

#include <string>

#include "bad_images.h"
#include "support.h"

namespace morvel::ruby::tests {

namespace {

constexpr std::size_t kImages = 60;
constexpr std::size_t kLargestImage = 2000;

std::vector<NamedImage> images() {
    return imagesOfScripts({MORVELTESK_SCRIPTS_DIR, MORVELTESK_EXAMPLES_DIR}, kImages, kLargestImage);
}

std::string joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
        text += line + '\n';
    }
    return text;
}

TEST(DamagedImages, OfManyScriptsNeverCrash) {
    const std::vector<NamedImage> all = images();
    ASSERT_GE(all.size(), 50U);
    constexpr std::size_t kStep = kAddressSanitizer || kThreadSanitizer ? 211 : 29;
    constexpr unsigned kMilliseconds = 100;
    const BadImageTally tally = tryDamagedImages(all, kStep, kMilliseconds);
    EXPECT_EQ(tally.crashes.size(), 0U) << joined(tally.crashes);
    EXPECT_EQ(tally.differences.size(), 0U) << joined(tally.differences);
    EXPECT_GE(tally.tried, all.size());
    EXPECT_EQ(tally.tried, tally.completed + tally.failed + tally.stopped + tally.crashes.size());
    // The damage reaches the runtime: most copies fail, some run.
    EXPECT_GT(tally.failed, tally.tried / 4);
    EXPECT_GT(tally.completed, 0U);
    RecordProperty("tried", static_cast<int>(tally.tried));
}

TEST(DamagedImages, AreCaughtByTheHarness) {
    // The copies are damaged as intended, and a crash would be noticed.
    const RubyVM vm;
    const RubyBytecode image = vm.compileScript("x = 1", "t");
    EXPECT_EQ(damagedCopies(image), image.bytes.size() * 9);
    EXPECT_EQ(damagedCopy(image, 9).bytes[1], image.bytes[1] ^ 2);
    EXPECT_EQ(damagedCopy(image, image.bytes.size() * 8 + 5).bytes.size(), 5U);
    const ProcessOutcome crash = runInChild(
        [] {
            std::abort();
            return 0;
        },
        1);
    EXPECT_NE(crash.signal, 0);
}

}  // namespace

}  // namespace morvel::ruby::tests
