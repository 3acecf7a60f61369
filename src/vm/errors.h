// The texts of run-time errors.
#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <string>

#include "compiler/program.h"
#include "value/fault.h"

namespace morvel::ruby::internal {

/// The prefix that locates an error in its message: the program's name, ":", the line, ": ".
[[nodiscard]] std::string locationOf(const Program& program, unsigned line);

/// Raises a script error with its location in front.
[[noreturn]] void runtimeError(const Program& program, unsigned line, const std::string& message);

/// The string held by constant `index`; fails with "constant index is out of range" or "constant is not a string".
[[nodiscard]] const std::string& requireStringConstant(const Program& program, std::int32_t index, unsigned line);

/// True when memory has run short: an allocation was tried and has failed. A mere size beyond all limits does not
/// count: it is no reason to free memory, which takes time proportional to all there is.
[[nodiscard]] bool isMemoryShort(const std::exception& exception) noexcept;

/// The text of a caught exception as scripts and results see it: a script error's whole message, "out of memory" for a
/// failed allocation that the host gave no text of its own, otherwise what().
[[nodiscard]] std::string errorText(const std::exception& exception);

/// "undefined variable or function 'NAME'".
[[nodiscard]] std::string undefinedMessage(const std::string& name);
/// Raises it.
[[noreturn]] void undefinedName(const Program& program, unsigned line, const std::string& name);

/// "exactly 1 argument", "at least 2 arguments", "between 1 and 2 arguments", ...
[[nodiscard]] std::string describeArgumentExpectation(std::size_t minimum, std::size_t maximum);

/// Stands for "no maximum" in an argument count.
inline constexpr std::size_t kNoMaximum = static_cast<std::size_t>(-1);

/// Throws RubyError "NAME expects " and the expectation.
[[noreturn]] void failArgumentCount(const char* name, std::size_t minimum, std::size_t maximum);

/// Fails as above when `count` is below `minimum` or above `maximum`.
inline void requireArgumentCount(const char* name, std::size_t count, std::size_t minimum, std::size_t maximum) {
    if (count < minimum || count > maximum) {
        failArgumentCount(name, minimum, maximum);
    }
}

}  // namespace morvel::ruby::internal
