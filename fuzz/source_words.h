// The vocabulary of generated source code.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "compiler/operators.h"

namespace morvel::ruby::fuzz {

/// The kind of value that an expression should have, and usually has.
enum class Kind : std::uint8_t { Number, Text, Array, Map, Flag, Anything };

inline constexpr std::array kKinds{Kind::Number, Kind::Text, Kind::Array, Kind::Map, Kind::Flag, Kind::Anything};

/// The variables, each usually of one kind. Functions also use these names for their locals.
struct Variable {
    std::string_view name;
    Kind kind;
    std::string_view first;
};

inline constexpr std::array kVariables{
    Variable{"a", Kind::Number, "3"},        Variable{"b", Kind::Number, "2.5"},
    Variable{"s", Kind::Text, "'text'"},     Variable{"t", Kind::Text, "'a text of more than fifteen bytes'"},
    Variable{"c", Kind::Array, "[1, 2, 3]"}, Variable{"d", Kind::Array, "['x', [1], nil]"},
    Variable{"m", Kind::Map, "map_new()"},   Variable{"x", Kind::Anything, "true"},
    Variable{"y", Kind::Anything, "nil"},
};

struct Callable {
    std::string_view name;
    std::size_t parameters;
};

inline constexpr std::array kFunctions{Callable{"f", 1}, Callable{"g", 2}, Callable{"h", 0}, Callable{"k", 1}};

inline constexpr std::array<std::string_view, 7> kRebound{"len",       "array_push", "to_s", "pcall",
                                                          "table_get", "table_set",  "f"};

inline constexpr std::array<std::string_view, 4> kParameters{"p", "q", "a", "error"};

inline constexpr std::array<std::string_view, 14> kNumbers{"0",
                                                           "1",
                                                           "2",
                                                           "7",
                                                           "100",
                                                           "9223372036854775807",
                                                           "4611686018427387904",
                                                           "9007199254740993",
                                                           "0.5",
                                                           "1.0",
                                                           "2.5",
                                                           "0.0000000000000000001",
                                                           "123456789.125",
                                                           "(-1)"};
inline constexpr std::array<std::string_view, 7> kTexts{
    "''", "'a'", "'1'", "'abc,def'", "'text of more than fifteen bytes'", "\"q\\n\"", "'2.5'"};
inline constexpr std::array<std::string_view, 5> kFlags{"true", "false", "nil", "0", "''"};

/// The spellings of the operators of a class.
template <internal::OpcodeClass kClass>
constexpr auto spellingsOf() {
    constexpr auto kIsOfClass = [](const internal::OperatorInfo& row) { return classOf(row.op) == kClass; };
    constexpr auto kCount = std::count_if(internal::kOperators.begin(), internal::kOperators.end(), kIsOfClass);
    std::array<std::string_view, static_cast<std::size_t>(kCount)> spellings;
    std::size_t next = 0;
    for (const internal::OperatorInfo& row : internal::kOperators) {
        if (kIsOfClass(row)) {
            spellings[next++] = row.spelling;
        }
    }
    return spellings;
}

inline constexpr auto kArithmetic = spellingsOf<internal::OpcodeClass::Arithmetic>();
inline constexpr auto kComparisons = spellingsOf<internal::OpcodeClass::Comparison>();

// Calls of built-ins by the kind of their result. In the templates, N, T, A, M, B and ? stand for arguments of the six
// kinds.
inline constexpr std::array<std::string_view, 17> kNumberCalls{"len(A)",
                                                               "len(T)",
                                                               "len(M)",
                                                               "math_floor(N)",
                                                               "math_max(N, N)",
                                                               "to_i(T)",
                                                               "to_number(N)",
                                                               "table_get(A, N, N)",
                                                               "math_abs(N)",
                                                               "to_f(N)",
                                                               "math_clamp(N, 0, 9)",
                                                               "utf8_len(T)",
                                                               "math_random(1, 6)",
                                                               "array_shift(A)",
                                                               "table_remove(A)",
                                                               "table_get(M, T, N)",
                                                               "table_set(A, N, N)"};
inline constexpr std::array<std::string_view, 13> kTextCalls{
    "to_s(?)",           "type_of(?)",      "string_sub(T, N, N)",  "string_rep(T, N)",
    "array_join(A, T)",  "string_upper(T)", "string_gsub(T, T, T)", "string_reverse(T)",
    "string_strip(T)",   "table_concat(A)", "string_char(N)",       "string_format('%s %d', ?, N)",
    "string_match(T, T)"};
inline constexpr std::array<std::string_view, 20> kArrayCalls{"array_push(A, ?)",
                                                              "array_push(A, ?, ?)",
                                                              "array_unshift(A, ?)",
                                                              "array_slice(A, N, N)",
                                                              "array_reverse(A)",
                                                              "array_pop(A, N)",
                                                              "keys(M)",
                                                              "values(M)",
                                                              "keys(A)",
                                                              "table_clone(A)",
                                                              "range(N % 20)",
                                                              "string_split(T, T)",
                                                              "string_byte(T, N, N)",
                                                              "array_new(N % 20, ?)",
                                                              "table_clear(A)",
                                                              "string_find(T, T)",
                                                              "string_gmatch(T, T)",
                                                              "values(A)",
                                                              "[table_sort(A), A]",
                                                              "[table_insert(A, 0, ?), A]"};
inline constexpr std::array<std::string_view, 5> kMapCalls{"map_new()", "map_clone(M)", "map_merge(M, M)",
                                                           "table_clone(M)", "table_clear(M)"};
inline constexpr std::array<std::string_view, 4> kFlagCalls{"table_has_key(M, T)", "table_has_key(A, N)",
                                                            "string_include?(T, T)", "string_start_with?(T, T)"};
inline constexpr std::array<std::string_view, 6> kAnyCalls{"table_get(A, N)",    "map_delete(M, T)", "array_pop(A)",
                                                           "table_set(M, ?, ?)", "error(?)",         "puts(?, ?)"};

}  // namespace morvel::ruby::fuzz
