// Searching a text for another one.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace morvel::ruby::internal {

/// Finds the places of a text within another one from left to right, without overlaps. Sixteen places are tried at a
/// time, by the first and the last byte of what is looked for; few others are looked at any closer. Where many look
/// right for long and are not, the search goes on with the algorithm of Knuth, Morris and Pratt ("Fast pattern matching
/// in strings", 1977), so that it takes time in proportion to the text in any case.
class TextSearch {
public:
    /// `wanted` is not empty. Both texts stay as they are while the search is in use.
    TextSearch(std::string_view text, std::string_view wanted) noexcept;

    /// Where the next place begins; kNowhere when there is none. Throws std::bad_alloc when there is no memory for a
    /// word for each byte of a text that is hard to find.
    [[nodiscard]] std::size_t next();

    static constexpr std::size_t kNowhere = std::string_view::npos;

private:
    /// Looks for candidates among the next places; false when there are none left.
    [[nodiscard]] bool advance() noexcept;
    [[nodiscard]] bool isAt(std::size_t position) noexcept;
    void computeFailureFunction();
    /// How many bytes of `wanted` match up to and including `byte`, when `matched` of them did before it.
    [[nodiscard]] std::size_t extendMatch(std::size_t matched, char byte) const noexcept;
    [[nodiscard]] std::size_t nextByFailureFunction() noexcept;

    std::string_view m_text;
    std::string_view m_wanted;
    /// How many places there are to try.
    std::size_t m_places;
    /// The next place is not before this one.
    std::size_t m_from = 0;
    /// The first of the places that have been tried last, and the place after them.
    std::size_t m_block = 0;
    std::size_t m_blockEnd = 0;
    /// A bit for each of them that has the right first and last byte and is still to be looked at.
    unsigned m_candidates = 0;
    /// How many bytes the closer looks have compared.
    std::size_t m_compared = 0;
    /// The failure function of `wanted`, once the search needs it: for each prefix, the length of its longest proper
    /// prefix that is also a suffix of it.
    std::vector<std::size_t> m_failureFunction;
};

/// Where `wanted` begins in `text` for the first time; kNowhere when it does not. An empty text is at the beginning.
[[nodiscard]] std::size_t findText(std::string_view text, std::string_view wanted);

}  // namespace morvel::ruby::internal
