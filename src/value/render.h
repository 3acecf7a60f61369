// Text rendering of values.
#pragma once

#include <string>

#include "morvel/ruby/value.h"

namespace morvel::ruby::internal {

/// Appends the text of `value` as RubyValue::toString gives it. Throws RubyError "stack overflow" when the value nests
/// too deeply for the native stack.
void appendText(std::string& text, const RubyValue& value);

}  // namespace morvel::ruby::internal
