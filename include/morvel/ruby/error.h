// The exception that carries a script error.
#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace morvel::ruby {

/// A script error: a std::runtime_error with the complete message.
///
/// Host functions may throw it (or any other standard exception) to raise an error in the calling script. Unlike
/// what(), message() keeps NUL bytes.
///
/// Example: `throw RubyError("player expects a name");`
class RubyError : public std::runtime_error {
public:
    /// Makes an error with the given message, which may hold any bytes.
    explicit RubyError(const std::string& message) : std::runtime_error(message), m_message(message) {}

    /// The whole message, NUL bytes included.
    [[nodiscard]] const std::string& message() const noexcept { return m_message; }

private:
    std::string m_message;
};

}  // namespace morvel::ruby
