// Helpers for changing strings in place.
#pragma once

#include "morvel/ruby/value.h"

namespace morvel::ruby::internal {

/// The box of a string.
[[nodiscard]] inline StringBox& boxOf(const RubyValue& text) { return *static_cast<StringBox*>(text.data.box); }

/// True when nothing else holds this string.
[[nodiscard]] inline bool isLone(const RubyValue& text) { return text.data.box->references == 1; }

}  // namespace morvel::ruby::internal
