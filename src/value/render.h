// Text rendering of values.
#pragma once

#include <string>

#include "morvel/ruby/value.h"

namespace morvel::ruby::internal {

/// Appends the text of `value` as RubyValue::toString gives it. Throws RubyError "stack overflow" for a nest that is
/// too deep for the native stack.
void appendText(std::string& text, const RubyValue& value);

}  // namespace morvel::ruby::internal
