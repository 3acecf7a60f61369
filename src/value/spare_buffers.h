// Unused large buffers, kept for reuse: the general allocator would return them to the system, and a new buffer from
// the system costs a page fault for each page.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <utility>

#include "morvel/ruby/value.h"

namespace morvel::ruby::internal {

inline RubyArray& contentsOf(ArrayBox& box) noexcept { return box.elements; }
inline std::string& contentsOf(StringBox& box) noexcept { return box.text; }

/// Buffers smaller than this are left to the general allocator, which itself keeps blocks of that size for reuse.
inline constexpr std::size_t kLargeBuffer = std::size_t{64} << 10;

/// Empty boxes with a large buffer each. Only a few boxes and a few megabytes are kept, plus one buffer that may be
/// larger than all the others together. That one is freed once later requests that it did not fit add up to its size,
/// so that it never takes more memory than was asked for since.
template <typename Box>
class SpareBuffers {
public:
    constexpr SpareBuffers() = default;

    /// An empty box with room for `count` elements but for at most about twice as many, since a huge buffer would be
    /// wasted on a small array. Null when there is none.
    Box* take(std::size_t count) noexcept {
        if (count * kElementSize > kMostBytes) {
            return takeHuge(count);
        }
        std::size_t best = m_count;
        for (std::size_t i = 0; i < m_count; ++i) {
            if (fits(m_boxes[i], count) && (best == m_count || roomOf(m_boxes[i]) < roomOf(m_boxes[best]))) {
                best = i;
            }
        }
        return best == m_count ? nullptr : remove(best);
    }

    /// Keeps an empty box; false when it is not worth keeping. The oldest boxes make room for it.
    bool keep(Box* box) noexcept {
        const std::size_t bytes = bytesOf(box);
        if (bytes < kLargeBuffer || bytes > kMostBytes) {
            return false;
        }
        while (m_count == m_boxes.size() || m_bytes + bytes > kMostBytes) {
            delete remove(0);
        }
        m_boxes[m_count++] = box;
        m_bytes += bytes;
        return true;
    }

    /// The same, for a box whose buffer may also be huge.
    bool keepAny(Box* box) noexcept {
        if (bytesOf(box) <= kMostBytes || bytesOf(box) > kMostHugeBytes) {
            return keep(box);
        }
        clearHuge();
        m_huge = box;
        m_missed = 0;
        return true;
    }

    /// Destroys them all; true when there were any.
    bool clear() noexcept {
        const bool isFull = m_count != 0 || m_huge != nullptr;
        while (m_count != 0) {
            delete remove(m_count - 1);
        }
        clearHuge();
        return isFull;
    }

private:
    static constexpr std::size_t kElementSize = sizeof contentsOf(std::declval<Box&>())[0];
    static constexpr std::size_t kMostBoxes = 32;
    static constexpr std::size_t kMostBytes = std::size_t{4} << 20;
    static constexpr std::size_t kMostHugeBytes = std::size_t{64} << 20;

    static std::size_t roomOf(Box* box) noexcept { return contentsOf(*box).capacity(); }
    static std::size_t bytesOf(Box* box) noexcept { return roomOf(box) * kElementSize; }
    static bool fits(Box* box, std::size_t count) noexcept { return roomOf(box) >= count && roomOf(box) / 2 <= count; }

    void clearHuge() noexcept { delete std::exchange(m_huge, nullptr); }

    Box* takeHuge(std::size_t count) noexcept {
        if (m_huge == nullptr || fits(m_huge, count)) {
            return std::exchange(m_huge, nullptr);
        }
        m_missed += std::min(count * kElementSize, kMostHugeBytes);
        if (m_missed >= bytesOf(m_huge)) {
            clearHuge();
        }
        return nullptr;
    }

    Box* remove(std::size_t index) noexcept {
        Box* const box = m_boxes[index];
        m_bytes -= bytesOf(box);
        --m_count;
        std::move(m_boxes.data() + index + 1, m_boxes.data() + m_count + 1, m_boxes.data() + index);
        return box;
    }

    /// From the oldest to the newest.
    std::array<Box*, kMostBoxes> m_boxes{};
    std::size_t m_count = 0;
    std::size_t m_bytes = 0;
    Box* m_huge = nullptr;
    /// The total bytes of requests that m_huge did not fit.
    std::size_t m_missed = 0;
};

}  // namespace morvel::ruby::internal
