// The table of the standard library: every built-in once, in the order of registration.
#include <array>
#include <cstddef>
#include <utility>

#include "stdlib/arrays.h"
#include "stdlib/core.h"
#include "stdlib/file_functions.h"
#include "stdlib/format.h"
#include "stdlib/math.h"
#include "stdlib/patterns.h"
#include "stdlib/strings.h"
#include "stdlib/tables.h"
#include "vm/errors.h"
#include "vm/impl.h"

namespace morvel::ruby {

namespace {

using internal::BuiltinCall;
using internal::FunctionInternals;
using internal::kNoMaximum;
using internal::NumberFunction;
using internal::Shortcut;
namespace builtins = internal::builtins;

struct Builtin {
    const char* name;
    std::size_t minimum;
    std::size_t maximum;
    RubyValue (*body)(const BuiltinCall&);
    NumberFunction numberFunction = nullptr;
    Shortcut shortcut = Shortcut::None;
};

/// A row with a short form for numbers.
constexpr Builtin onNumbers(Builtin row, NumberFunction function) {
    row.numberFunction = function;
    return row;
}

/// A row that the engine has an instruction for.
constexpr Builtin withShortcut(Builtin row, Shortcut shortcut) {
    row.shortcut = shortcut;
    return row;
}

constexpr std::array kBuiltins{
    Builtin{"puts", 0, kNoMaximum, builtins::puts},
    Builtin{"print", 0, kNoMaximum, builtins::print},
    withShortcut(Builtin{"len", 1, 1, builtins::len}, Shortcut::Len),
    Builtin{"time_ms", 0, 0, builtins::timeMs},
    Builtin{"to_s", 1, 1, builtins::toS},
    Builtin{"type_of", 1, 1, builtins::typeOf},
    Builtin{"to_i", 1, 2, builtins::toI},
    Builtin{"to_f", 1, 1, builtins::toF},
    Builtin{"to_number", 1, 2, builtins::toNumber},
    Builtin{"collect_garbage", 0, 0, builtins::collectGarbage},
    Builtin{"error", 0, 1, builtins::error},
    Builtin{"pcall", 1, kNoMaximum, builtins::pcall},
    Builtin{"load", 1, 2, builtins::load},
    Builtin{"range", 1, 3, builtins::range},
    Builtin{"array_new", 0, 2, builtins::arrayNew},
    Builtin{"map_new", 0, 0, builtins::mapNew},
    withShortcut(Builtin{"array_push", 2, kNoMaximum, builtins::arrayPush}, Shortcut::ArrayPush),
    Builtin{"array_pop", 1, 2, builtins::arrayPop},
    Builtin{"array_shift", 1, 1, builtins::arrayShift},
    Builtin{"array_unshift", 2, kNoMaximum, builtins::arrayUnshift},
    Builtin{"array_slice", 2, 3, builtins::arraySlice},
    Builtin{"array_reverse", 1, 1, builtins::arrayReverse},
    Builtin{"array_join", 1, 2, builtins::arrayJoin},
    Builtin{"map_delete", 2, 3, builtins::mapDelete},
    Builtin{"map_merge", 2, 2, builtins::mapMerge},
    Builtin{"map_clone", 1, 1, builtins::mapClone},
    Builtin{"table_clone", 1, 1, builtins::tableClone},
    Builtin{"table_clear", 1, 1, builtins::tableClear},
    Builtin{"keys", 1, 1, builtins::keys},
    Builtin{"values", 1, 1, builtins::values},
    Builtin{"table_get", 2, 3, builtins::tableGet},
    Builtin{"table_has_key", 2, 2, builtins::tableHasKey},
    Builtin{"table_set", 3, 3, builtins::tableSetBuiltin},
    Builtin{"table_insert", 2, 3, builtins::tableInsert},
    Builtin{"table_remove", 1, 2, builtins::tableRemove},
    Builtin{"table_sort", 1, 1, builtins::tableSort},
    Builtin{"table_concat", 1, 2, builtins::tableConcat},
    onNumbers(Builtin{"math_floor", 1, 1, builtins::mathFloor}, builtins::floorOfNumber),
    onNumbers(Builtin{"math_ceil", 1, 1, builtins::mathCeil}, builtins::ceilOfNumber),
    onNumbers(Builtin{"math_abs", 1, 1, builtins::mathAbs}, builtins::absOfNumber),
    onNumbers(Builtin{"math_min", 1, kNoMaximum, builtins::mathMin}, builtins::minOfNumbers),
    onNumbers(Builtin{"math_max", 1, kNoMaximum, builtins::mathMax}, builtins::maxOfNumbers),
    onNumbers(Builtin{"math_sin", 1, 1, builtins::mathSin}, builtins::sinOfNumber),
    onNumbers(Builtin{"math_cos", 1, 1, builtins::mathCos}, builtins::cosOfNumber),
    Builtin{"math_rad", 1, 1, builtins::mathRad},
    Builtin{"math_log", 1, 1, builtins::mathLog},
    onNumbers(Builtin{"math_sqrt", 1, 1, builtins::mathSqrt}, builtins::sqrtOfNumber),
    onNumbers(Builtin{"math_pow", 2, 2, builtins::mathPow}, builtins::powOfNumbers),
    Builtin{"math_deg", 1, 1, builtins::mathDeg},
    Builtin{"math_exp", 1, 1, builtins::mathExp},
    Builtin{"math_clamp", 3, 3, builtins::mathClamp},
    Builtin{"math_random_seed", 1, 1, builtins::mathRandomSeed},
    Builtin{"math_random", 0, 2, builtins::mathRandom},
    Builtin{"string_upper", 1, 1, builtins::stringUpper},
    Builtin{"string_lower", 1, 1, builtins::stringLower},
    Builtin{"string_sub", 2, 3, builtins::stringSub},
    Builtin{"string_find", 2, 2, builtins::stringFind},
    Builtin{"string_match", 2, 2, builtins::stringMatch},
    Builtin{"string_gmatch", 2, 2, builtins::stringGmatch},
    Builtin{"string_byte", 1, 3, builtins::stringByte},
    Builtin{"string_char", 0, kNoMaximum, builtins::stringChar},
    Builtin{"string_format", 1, kNoMaximum, builtins::stringFormat},
    Builtin{"string_rep", 2, 2, builtins::stringRep},
    Builtin{"string_gsub", 3, 3, builtins::stringGsub},
    Builtin{"string_split", 2, 3, builtins::stringSplit},
    Builtin{"string_strip", 1, 1, builtins::stringStrip},
    Builtin{"string_lstrip", 1, 1, builtins::stringLstrip},
    Builtin{"string_rstrip", 1, 1, builtins::stringRstrip},
    Builtin{"string_reverse", 1, 1, builtins::stringReverse},
    Builtin{"string_include?", 2, 2, builtins::stringInclude},
    Builtin{"string_start_with?", 2, 2, builtins::stringStartWith},
    Builtin{"string_end_with?", 2, 2, builtins::stringEndWith},
    Builtin{"utf8_len", 1, 1, builtins::utf8Len},
    Builtin{"file_exists?", 1, 1, builtins::fileExists},
    Builtin{"read_file", 1, 1, builtins::readFile},
    Builtin{"write_file", 2, 2, builtins::writeFile},
    Builtin{"append_file", 2, 2, builtins::appendFile},
};

/// The host function of one row: checks the argument count, then calls the built-in.
template <std::size_t Row>
RubyValue callBuiltin(RubyVM& vm, RubyArguments arguments) {
    constexpr const Builtin& kBuiltin = kBuiltins[Row];
    internal::requireArgumentCount(kBuiltin.name, arguments.size(), kBuiltin.minimum, kBuiltin.maximum);
    return kBuiltin.body({kBuiltin.name, vm, arguments});
}

template <std::size_t Row>
constexpr FunctionInternals kInternals{nullptr, kBuiltins[Row].numberFunction, kBuiltins[Row].shortcut};

template <std::size_t Row>
void bindRow(RubyVM::Impl& vm) {
    RubyFunctionHandle& handle = vm.bindFunction(kBuiltins[Row].name, RubyNativeFunction(callBuiltin<Row>));
    FunctionInternals::set(handle, kInternals<Row>);
}

template <std::size_t... Rows>
void bindAll(RubyVM::Impl& vm, std::index_sequence<Rows...>) {
    (bindRow<Rows>(vm), ...);
}

}  // namespace

void RubyVM::Impl::bindDefaults() {
    setGlobal("_VERSION", "MorvelTesk 0.2");
    setGlobal("MORVELTESK_VERSION", "0.2");
    bindAll(*this, std::make_index_sequence<kBuiltins.size()>());
}

}  // namespace morvel::ruby
