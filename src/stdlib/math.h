// Mathematical functions and random numbers.
#pragma once

#include "stdlib/arguments.h"

namespace morvel::ruby::internal::builtins {

RubyValue mathFloor(const BuiltinCall& call);
RubyValue mathCeil(const BuiltinCall& call);
RubyValue mathAbs(const BuiltinCall& call);
RubyValue mathMin(const BuiltinCall& call);
RubyValue mathMax(const BuiltinCall& call);
RubyValue mathSin(const BuiltinCall& call);
RubyValue mathCos(const BuiltinCall& call);
RubyValue mathRad(const BuiltinCall& call);
RubyValue mathLog(const BuiltinCall& call);
RubyValue mathSqrt(const BuiltinCall& call);
RubyValue mathPow(const BuiltinCall& call);
RubyValue mathDeg(const BuiltinCall& call);
RubyValue mathExp(const BuiltinCall& call);
RubyValue mathClamp(const BuiltinCall& call);
RubyValue mathRandomSeed(const BuiltinCall& call);
RubyValue mathRandom(const BuiltinCall& call);

// The same functions on plain numbers, without a BuiltinCall (see NumberFunction).
bool floorOfNumber(const RubyValue* arguments, std::size_t count, RubyValue* result);
bool ceilOfNumber(const RubyValue* arguments, std::size_t count, RubyValue* result);
bool absOfNumber(const RubyValue* arguments, std::size_t count, RubyValue* result);
bool minOfNumbers(const RubyValue* arguments, std::size_t count, RubyValue* result);
bool maxOfNumbers(const RubyValue* arguments, std::size_t count, RubyValue* result);
bool sinOfNumber(const RubyValue* arguments, std::size_t count, RubyValue* result);
bool cosOfNumber(const RubyValue* arguments, std::size_t count, RubyValue* result);
bool sqrtOfNumber(const RubyValue* arguments, std::size_t count, RubyValue* result);
bool powOfNumbers(const RubyValue* arguments, std::size_t count, RubyValue* result);

}  // namespace morvel::ruby::internal::builtins
