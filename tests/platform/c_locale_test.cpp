#include "platform/c_locale.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <limits>

namespace morvel::ruby::tests {

namespace {

TEST(NumbersInTheCLocale, AreReadAsFarAsTheyGo) {
    char* end = nullptr;
    const char* const integer = " -12.5";
    EXPECT_EQ(platform::integerFromText(integer, &end, 10), -12);
    EXPECT_EQ(end, integer + 4);
    const char* const hexadecimal = "0xfg";
    EXPECT_EQ(platform::integerFromText(hexadecimal, &end, 16), 15);
    EXPECT_EQ(end, hexadecimal + 3);
    const char* const number = "1.5,5";
    EXPECT_EQ(platform::floatFromText(number, &end), 1.5);
    EXPECT_EQ(end, number + 3);
}

TEST(NumbersInTheCLocale, TellOfTheirRange) {
    char* end = nullptr;
    errno = 0;
    EXPECT_EQ(platform::integerFromText("99999999999999999999", &end, 10), std::numeric_limits<long long>::max());
    EXPECT_EQ(errno, ERANGE);
    errno = 0;
    EXPECT_EQ(platform::floatFromText("1e999", &end), std::numeric_limits<double>::infinity());
    EXPECT_EQ(errno, ERANGE);
    errno = 0;
    EXPECT_EQ(platform::floatFromText("1e99", &end), 1e99);
    EXPECT_EQ(errno, 0);
}

}  // namespace

}  // namespace morvel::ruby::tests
