// Functions on maps, and functions on both arrays and maps.
#pragma once

#include "stdlib/arguments.h"

namespace morvel::ruby::internal::builtins {

RubyValue mapNew(const BuiltinCall& call);
RubyValue mapDelete(const BuiltinCall& call);
RubyValue mapMerge(const BuiltinCall& call);
RubyValue mapClone(const BuiltinCall& call);
RubyValue tableClone(const BuiltinCall& call);
RubyValue tableClear(const BuiltinCall& call);
RubyValue keys(const BuiltinCall& call);
RubyValue values(const BuiltinCall& call);
RubyValue tableGet(const BuiltinCall& call);
RubyValue tableHasKey(const BuiltinCall& call);
RubyValue tableSetBuiltin(const BuiltinCall& call);
RubyValue tableInsert(const BuiltinCall& call);
RubyValue tableRemove(const BuiltinCall& call);
RubyValue tableSort(const BuiltinCall& call);
RubyValue tableConcat(const BuiltinCall& call);

}  // namespace morvel::ruby::internal::builtins
