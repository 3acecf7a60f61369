// Searching strings.
#include "stdlib/text_search.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace morvel::ruby::tests {
namespace {

using internal::findText;
using internal::TextSearch;

std::vector<std::size_t> placesOf(std::string_view text, std::string_view wanted) {
    std::vector<std::size_t> places;
    TextSearch search(text, wanted);
    for (std::size_t place = search.next(); place != TextSearch::kNowhere; place = search.next()) {
        places.push_back(place);
    }
    return places;
}

std::vector<std::size_t> expectedPlaces(std::string_view text, std::string_view wanted) {
    std::vector<std::size_t> places;
    for (std::size_t place = text.find(wanted); place != std::string_view::npos;
         place = text.find(wanted, place + wanted.size())) {
        places.push_back(place);
    }
    return places;
}

/// A string in a buffer of exactly its size, so that reads past the end are detected.
class ExactText {
public:
    explicit ExactText(const std::string& text) : m_bytes(new char[text.size()]), m_size(text.size()) {
        std::copy(text.begin(), text.end(), m_bytes.get());
    }
    [[nodiscard]] std::string_view view() const { return {m_bytes.get(), m_size}; }

private:
    std::unique_ptr<char[]> m_bytes;
    std::size_t m_size;
};

std::string randomText(std::mt19937& random, std::size_t size, unsigned letters) {
    std::string text;
    while (text.size() < size) {
        text += static_cast<char>(0xFE + random() % letters);
    }
    return text;
}

TEST(TextSearch, FindsWhatThereIs) {
    EXPECT_EQ((std::vector<std::size_t>{0, 3, 9}), placesOf("ab.ab.a.bab", "ab"));
    EXPECT_EQ((std::vector<std::size_t>{0, 2}), placesOf("aaaaa", "aa"));
    EXPECT_EQ((std::vector<std::size_t>{}), placesOf("", "a"));
    EXPECT_EQ((std::vector<std::size_t>{}), placesOf("ab", "abc"));
    EXPECT_EQ((std::vector<std::size_t>{0}), placesOf("abc", "abc"));
    EXPECT_EQ((std::vector<std::size_t>{1}), placesOf(std::string_view("a\0b", 3), std::string_view("\0", 1)));
}

TEST(TextSearch, EndsForGood) {
    TextSearch search("one two", "o");
    EXPECT_EQ(0u, search.next());
    EXPECT_EQ(6u, search.next());
    EXPECT_EQ(TextSearch::kNowhere, search.next());
    EXPECT_EQ(TextSearch::kNowhere, search.next());
}

TEST(TextSearch, FindTextTakesEmptyTexts) {
    EXPECT_EQ(0u, findText("", ""));
    EXPECT_EQ(0u, findText("abc", ""));
    EXPECT_EQ(TextSearch::kNowhere, findText("", "a"));
    EXPECT_EQ(2u, findText("abc", "c"));
}

TEST(TextSearch, AgreesWithTheStandardSearch) {
    std::mt19937 random(1);
    for (std::size_t size = 0; size < 100; ++size) {
        for (std::size_t wantedSize = 1; wantedSize < 24; ++wantedSize) {
            for (const unsigned letters : {1u, 2u, 3u}) {
                const ExactText text(randomText(random, size, letters));
                ExactText wanted(randomText(random, wantedSize, letters));
                if (wantedSize <= size && random() % 2 == 0) {
                    wanted = ExactText(std::string(text.view().substr(random() % (size - wantedSize + 1), wantedSize)));
                }
                ASSERT_EQ(expectedPlaces(text.view(), wanted.view()), placesOf(text.view(), wanted.view()))
                    << size << ", " << wantedSize << ", " << letters;
            }
        }
    }
}

/// Long runs of one letter: nearly every position matches at its beginning and end.
std::string stretches(std::mt19937& random, std::size_t size) {
    std::string text(size, 'a');
    for (std::size_t breaks = random() % 4; breaks > 0 && size > 0; --breaks) {
        text[random() % size] = 'b';
    }
    return text;
}

TEST(TextSearch, AgreesWithTheStandardSearchWherePlacesLookAlike) {
    std::mt19937 random(2);
    constexpr int kRounds = 3'000;
    std::size_t found = 0;
    for (int round = 0; round < kRounds; ++round) {
        const ExactText wanted(stretches(random, 1 + random() % 150));
        std::string together;
        for (std::size_t parts = random() % 12; parts > 0; --parts) {
            together += random() % 3 == 0 ? std::string(wanted.view()) : stretches(random, random() % 400);
        }
        const ExactText text(together);
        const std::vector<std::size_t> places = placesOf(text.view(), wanted.view());
        ASSERT_EQ(expectedPlaces(text.view(), wanted.view()), places) << together << "\n" << wanted.view();
        found += places.size();
    }
    EXPECT_GT(found, std::size_t{kRounds});
}

// Comparing the whole needle at every position would take more than a minute.
TEST(TextSearch, TakesTimeInProportionToTheText) {
    constexpr std::size_t kSize = 3'000'000;
    constexpr double kMostSeconds = 5;
    const std::string text(kSize, 'a');
    const std::string half(kSize / 4, 'a');
    const std::clock_t start = std::clock();
    for (const std::string& wanted : {half + 'b' + half, half + 'b' + "a", "ab" + half}) {
        EXPECT_EQ(placesOf(text, wanted), std::vector<std::size_t>{});
        EXPECT_EQ(placesOf(text + wanted, wanted).size(), 1u);
    }
    EXPECT_LT(static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC, kMostSeconds);
}

}  // namespace
}  // namespace morvel::ruby::tests
