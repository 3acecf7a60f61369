// Draws decisions from a fuzzer's bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace morvel::ruby::fuzz {

/// Hands out decisions until the bytes are used up, then only zeros: in every generator, decision 0 must lead to an
/// end.
class ByteSource {
public:
    explicit ByteSource(std::span<const std::uint8_t> bytes) : m_bytes(bytes) {}

    [[nodiscard]] bool isEmpty() const { return m_position >= m_bytes.size(); }

    std::uint8_t byte() { return isEmpty() ? std::uint8_t{0} : m_bytes[m_position++]; }

    /// A number below `count`, which must be at least 1 and at most 256.
    std::size_t below(std::size_t count) { return byte() % count; }

    /// True in `times` of 256 cases.
    bool chance(unsigned times) { return byte() > 255 - times; }

    std::uint64_t word() {
        std::uint64_t value = 0;
        for (int i = 0; i < 8; ++i) {
            value = value << 8 | byte();
        }
        return value;
    }

    /// Up to `most` bytes.
    std::string text(std::size_t most) {
        std::string bytes;
        for (std::size_t left = below(most + 1); left > 0; --left) {
            bytes += static_cast<char>(byte());
        }
        return bytes;
    }

    /// One of the elements of a container that is not empty and has at most 256 elements.
    template <typename Container>
    const auto& pick(const Container& container) {
        return container[below(container.size())];
    }

    /// The remaining bytes.
    std::span<const std::uint8_t> rest() {
        const auto left = m_bytes.subspan(m_position < m_bytes.size() ? m_position : m_bytes.size());
        m_position = m_bytes.size();
        return left;
    }

private:
    std::span<const std::uint8_t> m_bytes;
    std::size_t m_position = 0;
};

}  // namespace morvel::ruby::fuzz
