// Substring search.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace morvel::ruby::internal {

/// Finds the occurrences of one string in another from left to right, without overlaps. It tests sixteen positions at a
/// time for the first and the last byte of the wanted string, and compares the rest only where both match. When many
/// candidates match far but not fully, the search switches to the algorithm of Knuth, Morris and Pratt ("Fast pattern
/// matching in strings", 1977), so that it always takes linear time.
class TextSearch {
public:
    /// `wanted` must not be empty. Both strings must stay unchanged while the search is in use.
    TextSearch(std::string_view text, std::string_view wanted) noexcept;

    /// The position of the next occurrence; kNowhere when there is none. Throws std::bad_alloc when a hard search needs
    /// one word of memory for each byte of `wanted` and there is none.
    [[nodiscard]] std::size_t next();

    static constexpr std::size_t kNowhere = std::string_view::npos;

private:
    /// Looks for candidates among the next positions; false when there are none left.
    [[nodiscard]] bool advance() noexcept;
    [[nodiscard]] bool isAt(std::size_t position) noexcept;
    void computeFailureFunction();
    /// How many bytes of `wanted` match up to and including `byte`, given that `matched` of them did before it.
    [[nodiscard]] std::size_t extendMatch(std::size_t matched, char byte) const noexcept;
    [[nodiscard]] std::size_t nextByFailureFunction() noexcept;

    std::string_view m_text;
    std::string_view m_wanted;
    /// How many positions there are to try.
    std::size_t m_places;
    /// The next occurrence does not begin before this position.
    std::size_t m_from = 0;
    /// The positions tested last: the first, and the one after the last.
    std::size_t m_block = 0;
    std::size_t m_blockEnd = 0;
    /// One bit for each of them whose first and last byte match and that is still to be compared.
    unsigned m_candidates = 0;
    /// How many bytes these comparisons have taken.
    std::size_t m_compared = 0;
    /// The failure function of `wanted`, once the search needs it: for each prefix, the length of its longest proper
    /// prefix that is also a suffix of it.
    std::vector<std::size_t> m_failureFunction;
};

/// The first position of `wanted` in `text`; kNowhere when there is none. An empty string is found at the beginning.
[[nodiscard]] std::size_t findText(std::string_view text, std::string_view wanted);

}  // namespace morvel::ruby::internal
