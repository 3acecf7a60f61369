#include "stdlib/text_search.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

namespace morvel::ruby::internal {

namespace {

constexpr std::size_t kLanes = 16;
/// How many bytes of a candidate are compared before the comparison counts towards kPatience.
constexpr std::size_t kBeginning = 32;
/// How many bytes may be compared for each byte of the two strings.
constexpr std::size_t kPatience = 8;

using Lanes [[gnu::vector_size(kLanes)]] = unsigned char;

/// Sets all bits of each lane whose byte equals `wanted`.
Lanes lanesEqual(const char* bytes, char wanted) noexcept {
    Lanes lanes;
    std::memcpy(&lanes, bytes, sizeof lanes);
    return static_cast<Lanes>(lanes == static_cast<unsigned char>(wanted));
}

/// One bit for each lane that is set.
unsigned bitsOf(Lanes lanes) noexcept {
    constexpr Lanes kBits{1, 2, 4, 8, 16, 32, 64, 128, 1, 2, 4, 8, 16, 32, 64, 128};
    constexpr std::uint64_t kSumOfBytes = 0x0101010101010101;
    constexpr unsigned kTopByte = 56;
    lanes &= kBits;
    std::array<std::uint64_t, 2> halves;
    std::memcpy(halves.data(), &lanes, sizeof lanes);
    return static_cast<unsigned>(halves[0] * kSumOfBytes >> kTopByte | halves[1] * kSumOfBytes >> kTopByte << 8);
}

bool isAnySet(Lanes lanes) noexcept {
    std::array<std::uint64_t, 2> halves;
    std::memcpy(halves.data(), &lanes, sizeof lanes);
    return (halves[0] | halves[1]) != 0;
}

}  // namespace

TextSearch::TextSearch(std::string_view text, std::string_view wanted) noexcept
    : m_text(text), m_wanted(wanted), m_places(text.size() - std::min(wanted.size() - 1, text.size())) {}

std::size_t TextSearch::next() {
    if (!m_failureFunction.empty()) {
        return nextByFailureFunction();
    }
    while (m_candidates != 0 || advance()) {
        const std::size_t position = m_block + static_cast<std::size_t>(std::countr_zero(m_candidates));
        m_candidates &= m_candidates - 1;
        if (position < m_from) {
            continue;
        }
        if (isAt(position)) {
            m_from = position + m_wanted.size();
            return position;
        }
        if (m_compared / kPatience > position + m_wanted.size()) {
            m_from = position + 1;
            computeFailureFunction();
            return nextByFailureFunction();
        }
    }
    return kNowhere;
}

bool TextSearch::advance() noexcept {
    const char* const first = m_text.data();
    const char* const last = first + m_wanted.size() - 1;
    std::size_t block = std::max(m_blockEnd, m_from);
    if (m_places < kLanes) {
        m_block = block;
        m_blockEnd = m_places;
        for (std::size_t place = block; place < m_places; ++place) {
            const bool isCandidate = first[place] == m_wanted.front() && last[place] == m_wanted.back();
            m_candidates |= (isCandidate ? 1U : 0U) << (place - block);
        }
        return m_candidates != 0;
    }
    for (; block < m_places; block += kLanes) {
        // The last block may overlap the one before it.
        m_block = std::min(block, m_places - kLanes);
        m_blockEnd = m_block + kLanes;
        const Lanes candidates =
            lanesEqual(first + m_block, m_wanted.front()) & lanesEqual(last + m_block, m_wanted.back());
        if (isAnySet(candidates)) {
            m_candidates = bitsOf(candidates);
            return true;
        }
    }
    return false;
}

bool TextSearch::isAt(std::size_t position) noexcept {
    // The first and the last byte are known to match.
    if (m_wanted.size() <= 2) {
        return true;
    }
    const std::string_view middle = m_wanted.substr(1, m_wanted.size() - 2);
    const char* const place = m_text.data() + position + 1;
    if (middle.size() <= kBeginning) {
        return std::memcmp(place, middle.data(), middle.size()) == 0;
    }
    if (std::memcmp(place, middle.data(), kBeginning) != 0) {
        return false;
    }
    m_compared += middle.size();
    return std::memcmp(place, middle.data(), middle.size()) == 0;
}

void TextSearch::computeFailureFunction() {
    m_failureFunction.resize(m_wanted.size());
    std::size_t matched = 0;
    for (std::size_t end = 1; end < m_wanted.size(); ++end) {
        matched = extendMatch(matched, m_wanted[end]);
        m_failureFunction[end] = matched;
    }
}

std::size_t TextSearch::extendMatch(std::size_t matched, char byte) const noexcept {
    while (matched > 0 && m_wanted[matched] != byte) {
        matched = m_failureFunction[matched - 1];
    }
    return m_wanted[matched] == byte ? matched + 1 : 0;
}

std::size_t TextSearch::nextByFailureFunction() noexcept {
    std::size_t matched = 0;
    for (; m_from < m_text.size(); ++m_from) {
        matched = extendMatch(matched, m_text[m_from]);
        if (matched == m_wanted.size()) {
            ++m_from;
            return m_from - matched;
        }
    }
    return kNowhere;
}

std::size_t findText(std::string_view text, std::string_view wanted) {
    return wanted.empty() ? 0 : TextSearch(text, wanted).next();
}

}  // namespace morvel::ruby::internal
