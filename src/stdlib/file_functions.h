// Whole-file access.
#pragma once

#include "stdlib/arguments.h"

namespace morvel::ruby::internal::builtins {

RubyValue fileExists(const BuiltinCall& call);
RubyValue readFile(const BuiltinCall& call);
RubyValue writeFile(const BuiltinCall& call);
RubyValue appendFile(const BuiltinCall& call);

}  // namespace morvel::ruby::internal::builtins
