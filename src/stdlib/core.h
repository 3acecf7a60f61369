// Core functions: output, conversions, errors, run-time compilation, ranges.
#pragma once

#include "stdlib/arguments.h"

namespace morvel::ruby::internal::builtins {

RubyValue puts(const BuiltinCall& call);
RubyValue print(const BuiltinCall& call);
RubyValue len(const BuiltinCall& call);
RubyValue timeMs(const BuiltinCall& call);
RubyValue toS(const BuiltinCall& call);
RubyValue typeOf(const BuiltinCall& call);
RubyValue toI(const BuiltinCall& call);
RubyValue toF(const BuiltinCall& call);
RubyValue toNumber(const BuiltinCall& call);
RubyValue collectGarbage(const BuiltinCall& call);
RubyValue error(const BuiltinCall& call);
RubyValue pcall(const BuiltinCall& call);
RubyValue load(const BuiltinCall& call);
RubyValue range(const BuiltinCall& call);

}  // namespace morvel::ruby::internal::builtins
