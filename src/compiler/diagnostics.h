// How compile errors are built and raised.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace morvel::ruby::internal {

/// The text "chunk:line:column: message".
[[nodiscard]] std::string formatError(const std::string& chunkName, unsigned line, std::size_t column,
                                      std::string_view message);

/// Throws RubyError with the message.
[[noreturn]] void fail(const std::string& message);

}  // namespace morvel::ruby::internal
