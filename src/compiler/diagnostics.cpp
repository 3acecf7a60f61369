#include "compiler/diagnostics.h"

#include "morvel/ruby/error.h"

namespace morvel::ruby::internal {

std::string formatError(const std::string& chunkName, unsigned line, std::size_t column, std::string_view message) {
    std::string text = chunkName;
    text += ':';
    text += std::to_string(line);
    text += ':';
    text += std::to_string(column);
    text += ": ";
    text += message;
    return text;
}

void fail(const std::string& message) { throw RubyError(message); }

}  // namespace morvel::ruby::internal
