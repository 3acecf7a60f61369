// Parsing of numbers, character classes, and sort order.
#include <gtest/gtest.h>

#include <algorithm>
#include <clocale>
#include <limits>
#include <locale>
#include <random>

#include "stdlib/numbers_from_text.h"
#include "stdlib/sorting.h"
#include "stdlib/text_classes.h"
#include "support/describe.h"
#include "support/runs.h"

namespace morvel::ruby::tests {
namespace {

using internal::parseFloat;
using internal::parseInteger;

std::string integer(const std::string& text, int base = 10) {
    const auto number = parseInteger(text, base);
    return number ? std::to_string(*number) : "nothing";
}

std::string floating(const std::string& text) {
    const auto number = parseFloat(text);
    return number ? describe(RubyValue(*number)) : "nothing";
}

TEST(ParseInteger, TakesTheWholeText) {
    EXPECT_EQ("42", integer("42"));
    EXPECT_EQ("42", integer(" \t\n+42"));
    EXPECT_EQ("-7", integer("-007"));
    EXPECT_EQ("nothing", integer(""));
    EXPECT_EQ("nothing", integer(" "));
    EXPECT_EQ("nothing", integer("42 "));
    EXPECT_EQ("nothing", integer("42abc"));
    EXPECT_EQ("nothing", integer("4 2"));
    EXPECT_EQ("nothing", integer("- 4"));
    EXPECT_EQ("nothing", integer("0x10"));
    EXPECT_EQ("nothing", integer("1.0"));
    EXPECT_EQ("nothing", integer(std::string("4\0", 2)));
}

TEST(ParseInteger, InEveryBase) {
    EXPECT_EQ("255", integer("ff", 16));
    EXPECT_EQ("255", integer("0xFF", 16));
    EXPECT_EQ("5", integer("101", 2));
    EXPECT_EQ("nothing", integer("102", 2));
    EXPECT_EQ("35", integer("z", 36));
    EXPECT_EQ("8", integer("010", 8));
}

TEST(ParseInteger, OutOfRangeIsNothing) {
    EXPECT_EQ("9223372036854775807", integer("9223372036854775807"));
    EXPECT_EQ("-9223372036854775808", integer("-9223372036854775808"));
    EXPECT_EQ("nothing", integer("9223372036854775808"));
    EXPECT_EQ("nothing", integer("-9223372036854775809"));
}

TEST(ParseFloat, TakesTheWholeText) {
    EXPECT_EQ("1.5", floating("1.5"));
    EXPECT_EQ("-1500.0", floating("  -1.5e3"));
    EXPECT_EQ("0.0", floating(""));
    EXPECT_EQ("inf", floating("inf"));
    EXPECT_EQ("nan", floating("nan"));
    EXPECT_EQ("16.0", floating("0x10"));
    EXPECT_EQ("nothing", floating("1.5x"));
    EXPECT_EQ("nothing", floating("1,5"));
    EXPECT_EQ("nothing", floating(" "));
    EXPECT_EQ("nothing", floating("1e400"));
    EXPECT_EQ("nothing", floating("1e-400"));
    EXPECT_EQ("nothing", floating(std::string("1\0", 2)));
}

TEST(TextClasses, AreThoseOfAscii) {
    for (int byte = 0; byte < 256; ++byte) {
        const char c = static_cast<char>(byte);
        EXPECT_EQ(byte >= '0' && byte <= '9', internal::isDigitByte(c));
        EXPECT_EQ((byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z'), internal::isLetterByte(c));
        EXPECT_EQ(byte == ' ' || (byte >= 9 && byte <= 13), internal::isSpaceByte(c));
        const bool lower = byte >= 'a' && byte <= 'z';
        const bool upper = byte >= 'A' && byte <= 'Z';
        EXPECT_EQ(static_cast<char>(lower ? byte - 32 : byte), internal::toUpperByte(c));
        EXPECT_EQ(static_cast<char>(upper ? byte + 32 : byte), internal::toLowerByte(c));
    }
}

std::string sorted(RubyArray elements) {
    internal::sortElements(elements);
    return describe(RubyValue(elements));
}

TEST(Sorting, NumbersByValue) {
    EXPECT_EQ("[]", sorted({}));
    EXPECT_EQ("[1, 2.5, 3]", sorted({3, 1, 2.5}));
    EXPECT_EQ("[-10, 2, 10]", sorted({10, 2, -10}));
    EXPECT_EQ("[false, 0.5, true, 2]", sorted({2, true, 0.5, false}));
    EXPECT_EQ("[-9223372036854775808, 0, 9223372036854775807]",
              sorted({std::numeric_limits<std::int64_t>::max(), 0, std::numeric_limits<std::int64_t>::min()}));
}

TEST(Sorting, EverythingElseByItsText) {
    EXPECT_EQ("[\"B\", \"a\", \"ab\", \"b\", \"\\xff\"]", sorted({"b", "\xff", "ab", "B", "a"}));
    EXPECT_EQ("[\"10\", 9]", sorted({9, "10"}));
    EXPECT_EQ("[\"a\", nil, \"z\"]", sorted({"z", nullptr, "a"}));
    // "," comes before "]".
    EXPECT_EQ("[[1, 2], [1], [2]]", sorted({RubyArray{2}, RubyArray{1, 2}, RubyArray{1}}));
}

TEST(Sorting, EqualNumbersAmongTextsKeepTheirOrder) {
    EXPECT_EQ("[0, false, 0.0, 1.0, 1, true, \"x\"]", sorted({1.0, 0, false, "x", 1, 0.0, true}));
}

TEST(Sorting, OrdersThatContradictThemselvesKeepAllElements) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    std::mt19937 random(5);
    for (int round = 0; round < 50; ++round) {
        RubyArray elements;
        std::vector<std::string> before;
        for (int i = 0; i < 200; ++i) {
            const auto number = static_cast<std::int64_t>(random() % 100);
            const std::vector<RubyValue> choices{number, std::to_string(number), nan, static_cast<double>(number) / 7};
            elements.push_back(choices[random() % choices.size()]);
            before.push_back(describe(elements.back()));
        }
        internal::sortElements(elements);
        std::vector<std::string> after;
        for (const RubyValue& element : elements) {
            after.push_back(describe(element));
        }
        std::sort(before.begin(), before.end());
        std::sort(after.begin(), after.end());
        ASSERT_EQ(before, after);
    }
}

TEST(Sort, StringsGoByTheirBytes) {
    std::mt19937 random(3);
    std::vector<std::string> texts;
    for (int i = 0; i < 3000; ++i) {
        // Few distinct bytes, so that many strings share a prefix.
        std::string text;
        while (text.size() < static_cast<std::size_t>(i % 20)) {
            text += "\0a\xff"[random() % 3];
        }
        texts.push_back(text);
    }
    RubyArray elements(texts.begin(), texts.end());
    internal::sortElements(elements);
    std::sort(texts.begin(), texts.end());
    ASSERT_EQ(texts.size(), elements.size());
    for (std::size_t i = 0; i < texts.size(); ++i) {
        ASSERT_EQ(texts[i], elements[i].asString()) << i;
    }
}

TEST(Sorting, AFailedRenderingChangesNothing) {
    RubyValue cycle = RubyValue::makeArray();
    cycle.asArray().push_back(cycle);
    RubyArray elements{"z", cycle, "a"};
    EXPECT_EQ("stack overflow", errorOf([&] { internal::sortElements(elements); }));
    EXPECT_EQ("\"z\"", describe(elements[0]));
    EXPECT_EQ("\"a\"", describe(elements[2]));
    cycle.asArray().clear();
}

/// Numbers like 1.234,5.
struct CommaNumbers : std::numpunct<char> {
    [[nodiscard]] char do_decimal_point() const override { return ','; }
    [[nodiscard]] char do_thousands_sep() const override { return '.'; }
    [[nodiscard]] std::string do_grouping() const override { return "\3"; }
};

TEST(Locale, OfTheStandardStreamsDoesNotMatter) {
    const std::locale before = std::locale::global(std::locale(std::locale(), new CommaNumbers));
    EXPECT_EQ("2.5", RubyValue(2.5).toString());
    EXPECT_EQ("1234567", RubyValue(1234567).toString());
    EXPECT_EQ("1.5", floating("1.5"));
    expectScriptValue("[\"x1.5\", \"1234567\", \"1.5\", \"1234567\"]",
                      "return ['x' + 1.5, to_s(1234567), string_format('%f', 1.5), string_format('%d', 1234567)]");
    expectScriptError("t:1000: division by zero", std::string(999, '\n') + "1 / 0");
    std::locale::global(before);
}

// The host may set any locale; scripts' numbers and strings do not follow it.
TEST(Locale, OfTheCLibraryDoesNotMatter) {
    const std::string before = std::setlocale(LC_ALL, nullptr);
    for (const char* name : {"de_DE.UTF-8", "fr_FR.UTF-8", "tr_TR.UTF-8", "C.UTF-8"}) {
        if (std::setlocale(LC_ALL, name) == nullptr) {
            continue;
        }
        EXPECT_EQ("1.5", floating("1.5"));
        EXPECT_EQ("2.5", RubyValue(2.5).toString());
        EXPECT_EQ("1e+06", RubyValue(1000000.0).toString());
        EXPECT_EQ("1000000", RubyValue(1000000).toString());
        expectScriptValue("[\"I\", 1.5]", "return [string_upper('i'), 1.5]");
    }
    std::setlocale(LC_ALL, before.c_str());
    EXPECT_EQ(before, std::setlocale(LC_ALL, nullptr));
}

}  // namespace
}  // namespace morvel::ruby::tests
