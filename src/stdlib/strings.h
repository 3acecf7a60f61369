// Functions on strings. Positions count bytes from 1; negative ones count from the end.
#pragma once

#include "stdlib/arguments.h"

namespace morvel::ruby::internal::builtins {

RubyValue stringUpper(const BuiltinCall& call);
RubyValue stringLower(const BuiltinCall& call);
RubyValue stringSub(const BuiltinCall& call);
RubyValue stringByte(const BuiltinCall& call);
RubyValue stringChar(const BuiltinCall& call);
RubyValue stringRep(const BuiltinCall& call);
RubyValue stringSplit(const BuiltinCall& call);
RubyValue stringStrip(const BuiltinCall& call);
RubyValue stringLstrip(const BuiltinCall& call);
RubyValue stringRstrip(const BuiltinCall& call);
RubyValue stringReverse(const BuiltinCall& call);
RubyValue stringInclude(const BuiltinCall& call);
RubyValue stringStartWith(const BuiltinCall& call);
RubyValue stringEndWith(const BuiltinCall& call);
RubyValue utf8Len(const BuiltinCall& call);

}  // namespace morvel::ruby::internal::builtins
