// Functions on arrays.
#pragma once

#include "stdlib/arguments.h"

namespace morvel::ruby::internal::builtins {

RubyValue arrayNew(const BuiltinCall& call);
RubyValue arrayPush(const BuiltinCall& call);
RubyValue arrayPop(const BuiltinCall& call);
RubyValue arrayShift(const BuiltinCall& call);
RubyValue arrayUnshift(const BuiltinCall& call);
RubyValue arraySlice(const BuiltinCall& call);
RubyValue arrayReverse(const BuiltinCall& call);
RubyValue arrayJoin(const BuiltinCall& call);

}  // namespace morvel::ruby::internal::builtins
