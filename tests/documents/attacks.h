// Attacks by hostile guests on the programs of the documents.
#pragma once

#include <array>
#include <string_view>

namespace morvel::ruby::tests {

struct Attack {
    std::string_view name;
    /// Runs after the program's own script and replaces its result, as well as the globals that the program reads.
    /// `_texts` holds the strings of the program's script, `_names` its words, and `_functions` the functions that the
    /// program has bound.
    std::string_view script;
    /// The error message that it ends with, unless it completes.
    std::string_view error = {};
};

/// Calls every host function with every pair of arguments, and with none, one and three, and makes every script
/// function that the host calls back do the same.
inline constexpr std::string_view kCallEverything = R"(
    ring = []
    array_push(ring, ring)
    ring_map = map_new()
    ring_map["self"] = ring_map
    nest = []
    i = 0
    while i < 1000
        nest = [nest]
        i = i + 1
    end

    # Functions change globals only inside of containers.
    calls_left = [1000]
    def storm(argument)
        i = 0
        while i < len(_functions)
            j = 0
            while j < len(_texts) and calls_left[0] > 0
                calls_left[0] = calls_left[0] - 1
                pcall(_functions[i], _texts[j], answer_one)
                pcall(_functions[i], argument, _texts[j])
                pcall(_functions[i])
                j = j + 1
            end
            i = i + 1
        end
        return argument
    end
    def answer() return storm(nil) end
    def answer_one(first) return storm(first) end
    def answer_two(first, second) return storm(second) end
    def refuse(first) return error(ring) end

    values = [nil, true, false, 0, -1, 3, 9223372036854775807, -9223372036854775807 - 1, 2.5, math_exp(1000)]
    texts = ["", string_char(0, 255), string_rep("long", 2500)]
    containers = [[], [1, "two", nil], [[1, 2], [3]], ring, nest, map_new(), ring_map]
    functions = [answer, answer_one, answer_two, refuse, puts, pcall]
    values = values + texts + containers + functions + _functions + _texts

    def call_with_everything(function)
        pcall(function)
        i = 0
        while i < len(values)
            pcall(function, values[i])
            j = 0
            while j < len(values)
                pcall(function, values[i], values[j])
                pcall(function, values[i], values[j], values[i])
                j = j + 1
            end
            i = i + 1
        end
    end
    i = 0
    while i < len(_functions)
        call_with_everything(_functions[i])
        i = i + 1
    end
    calls_left[0] = 1000
)";

inline constexpr std::string_view kMakeRings = R"(
    i = 0
    while i < len(_names)
        name = _names[i]
        loaded = pcall(load, "pcall(array_push, " + name + ", " + name + ") " + name + "['ring'] = " + name)
        if type_of(loaded[1]) == "function"
            pcall(loaded[1])
        end
        i = i + 1
    end
)";

inline constexpr std::string_view kChangeNames = R"(
    i = 0
    while i < len(_names)
        loaded = pcall(load, _names[i] + " = [nil]")
        if type_of(loaded[1]) == "function" and _names[i] != "pcall"
            pcall(loaded[1])
        end
        i = i + 1
    end
)";

inline constexpr std::array kAttacks{
    Attack{"ring", "a = [] array_push(a, a) return a"},
    Attack{"nest", "a = [] i = 0 while i < 200000 do a = [a] i = i + 1 end return a"},
    Attack{"nothing", "return nil"},
    Attack{"not a number", "return math_exp(1000) - math_exp(1000)"},
    Attack{"text", "return 'text'"},
    Attack{"long text", "return string_rep('text', 1000000)"},
    Attack{"empty array", "return []"},
    Attack{"mixed array", "a = [nil, 1, 'two', true, map_new()] array_push(a, a) return a"},
    Attack{"map of its own names",
           "a = map_new() i = 0 while i < len(_texts) do a[_texts[i]] = [nil] i = i + 1 end return a"},
    Attack{"function", "return pcall"},
    Attack{"script function", "def f(n) return f(n) end return f"},
    Attack{"failure", "error('failed')", "failed"},
    Attack{"failure with bytes", "error(string_char(0, 255))", std::string_view("\0\377", 2)},
    Attack{"no end of calls", "def f(n) return f(n + 1) + 1 end return f(0)", "attack:1: stack overflow"},
    Attack{"no program", "1 +", "attack:1:4: expected expression"},
    Attack{"missing name", "missing(1)", "attack:1: undefined variable or function 'missing'"},
    Attack{"output", "i = 0 while i < 3000 do puts(string_rep('x', 1000)) i = i + 1 end return i"},
    Attack{"output of rings", "a = [] array_push(a, a) puts('a', a)", "stack overflow"},
    Attack{"calls", kCallEverything},
    Attack{"all containers made rings", kMakeRings},
    Attack{"all names changed", kChangeNames},
};

}  // namespace morvel::ruby::tests
