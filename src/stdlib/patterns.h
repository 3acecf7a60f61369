// Searching and replacing: a few fixed patterns; everything else is taken literally.
#pragma once

#include "stdlib/arguments.h"

namespace morvel::ruby::internal::builtins {

RubyValue stringFind(const BuiltinCall& call);
RubyValue stringMatch(const BuiltinCall& call);
RubyValue stringGmatch(const BuiltinCall& call);
RubyValue stringGsub(const BuiltinCall& call);

}  // namespace morvel::ruby::internal::builtins
