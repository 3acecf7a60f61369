// String formatting.
#pragma once

#include "stdlib/arguments.h"

namespace morvel::ruby::internal::builtins {

RubyValue stringFormat(const BuiltinCall& call);

}  // namespace morvel::ruby::internal::builtins
