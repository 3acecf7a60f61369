// Failures that are passed as a status instead of thrown.
#pragma once

#include <cstdint>

namespace morvel::ruby::internal {

struct Program;

/// Why an operation failed, or that it did not. It costs nothing to make or pass on: only the caller that knows the
/// location of the failure builds the full message.
struct Fault {
    enum class Kind : std::uint8_t {
        /// The location goes in front of the message ("chunk:line: ").
        Located,
        /// The message stands alone.
        Placeless,
        /// Located, and a kind of its own because `pcall` always catches it.
        StackOverflow,
    };

    /// A string with static lifetime; null when nothing has failed.
    const char* message = nullptr;
    Kind kind = Kind::Located;

    constexpr explicit operator bool() const noexcept { return message != nullptr; }
};

inline constexpr Fault kNoFault{};
inline constexpr Fault kStackOverflow{"stack overflow", Fault::Kind::StackOverflow};

/// Throws a fault at a line of the program as StackOverflow or RubyError.
[[noreturn]] void raise(const Fault& fault, const Program& program, unsigned line);

}  // namespace morvel::ruby::internal
