// Helpers shared by the listings.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "compiler/program.h"
#include "morvel/ruby/value.h"

namespace morvel::ruby::tools {

/// Appends a table cell, padded with spaces to `width`.
void appendPadded(std::string& text, std::string_view cell, std::size_t width, bool toTheRight);

/// A constant as written in source code: strings quoted, floats always with a point or an exponent.
[[nodiscard]] std::string constantText(const RubyValue& constant);

/// A name, quoted unless it is valid in source code.
[[nodiscard]] std::string nameText(const std::string& name);

/// The heading of function `index`: its number, name and parameters.
[[nodiscard]] std::string functionTitle(const internal::Program& program, std::size_t index);

}  // namespace morvel::ruby::tools
