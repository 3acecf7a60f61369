// The parts that listings have in common.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "compiler/program.h"
#include "morvel/ruby/value.h"

namespace morvel::ruby::tools {

/// Appends a cell of a table, filled up with spaces to `width`.
void appendPadded(std::string& text, std::string_view cell, std::size_t width, bool toTheRight);

/// A constant as it could stand in a source text: strings quoted, floats always with a point or an exponent.
[[nodiscard]] std::string constantText(const RubyValue& constant);

/// A name bare where it could stand in a source text, quoted otherwise.
[[nodiscard]] std::string nameText(const std::string& name);

/// The heading of function `index`: its number, name and parameters.
[[nodiscard]] std::string functionTitle(const internal::Program& program, std::size_t index);

}  // namespace morvel::ruby::tools
