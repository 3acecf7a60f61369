// Failures that travel as a status.
#pragma once

#include <cstdint>

namespace morvel::ruby::internal {

struct Program;

/// Why an operation failed, or that it did not. Costs nothing to make or to pass on: the place of the failure is added
/// by who knows it, and only then is there a text of its own.
struct Fault {
    enum class Kind : std::uint8_t {
        /// The message gets the place in front ("chunk:line: ").
        Located,
        /// The message is all there is.
        Placeless,
        /// Located, and told apart from others: `pcall` always catches it.
        StackOverflow,
    };

    /// Lives forever; null when nothing has failed.
    const char* message = nullptr;
    Kind kind = Kind::Located;

    constexpr explicit operator bool() const noexcept { return message != nullptr; }
};

inline constexpr Fault kNoFault{};
inline constexpr Fault kStackOverflow{"stack overflow", Fault::Kind::StackOverflow};

/// Raises a fault at a line of the program: as StackOverflow or RubyError.
[[noreturn]] void raise(const Fault& fault, const Program& program, unsigned line);

}  // namespace morvel::ruby::internal
