#include "sameness/program_generator.h"

#include <array>
#include <random>
#include <string_view>

#include "bytecode/image.h"
#include "compiler/program.h"

namespace morvel::ruby::sameness {

namespace {

class Random {
public:
    explicit Random(std::uint64_t seed) : m_engine(seed) {}

    /// A number from 0 to `bound` - 1.
    std::size_t below(std::size_t bound) { return m_engine() % bound; }
    bool oneIn(std::size_t times) { return below(times) == 0; }
    template <std::size_t Size>
    std::string pick(const std::array<std::string_view, Size>& choices) {
        return std::string(choices[below(Size)]);
    }

private:
    std::mt19937_64 m_engine;
};

constexpr std::array<std::string_view, 6> kVariables{"a", "b", "c", "d", "list", "m"};
constexpr std::array<std::string_view, 11> kBinaryOperators{"+", "-", "*", "/", "%", "==", "!=", "<", "<=", ">", ">="};
constexpr std::array<std::string_view, 18> kLiterals{"0",      "1",
                                                     "2",      "-1",
                                                     "7",      "9223372036854775807",
                                                     "0.5",    "2.0",
                                                     "0.0",    "nil",
                                                     "true",   "false",
                                                     "\"\"",   "\"x\"",
                                                     "\"12\"", "\"a longer text than that\"",
                                                     "[]",     "[1, \"two\", 3.5]"};

class ScriptGenerator {
public:
    explicit ScriptGenerator(std::uint64_t seed) : m_random(seed) {}

    std::string generate() {
        line("list = [3, 1, 2]");
        line("m = map_new()");
        if (!m_random.oneIn(6)) {
            line("a = 5");
            line("b = \"text\"");
        }
        const std::size_t functions = 1 + m_random.below(4);
        for (std::size_t i = 0; i < functions; ++i) {
            function();
        }
        // Most statements run inside functions called by pcall, so that an error ends little.
        const std::size_t tasks = 3 + m_random.below(6);
        for (std::size_t i = 0; i < tasks; ++i) {
            task(i);
        }
        if (m_random.oneIn(2)) {
            block(1 + m_random.below(4), 0);
        }
        line("puts(a)");
        line("puts(list)");
        line("puts(m)");
        return m_text;
    }

private:
    void line(const std::string& text) {
        m_text += text;
        m_text += m_random.oneIn(8) ? " ; " : "\n";
    }

    void task(std::size_t number) {
        const std::string name = "t" + std::to_string(number);
        m_text += "def " + name + "()\n";
        // A task works on variables of its own or, without the assignments, on the globals.
        if (m_random.oneIn(2)) {
            line("a = " + m_random.pick(kLiterals));
            line("b = 3");
        }
        block(2 + m_random.below(6), 0);
        m_text += "end\n";
        line("puts(pcall(" + name + "))");
        if (m_random.oneIn(3)) {
            line(variable() + " = " + m_random.pick(kLiterals));
        }
    }

    void function() {
        const std::size_t index = m_functions;
        const std::size_t params = m_random.below(4);
        std::string header = "def f" + std::to_string(index) + "(";
        for (std::size_t i = 0; i < params; ++i) {
            header += (i > 0 ? ", " : "") + std::string(kVariables[m_random.oneIn(10) ? 0 : i]);
        }
        m_text += header + ")\n";
        switch (m_random.below(5)) {
            case 0:
                line("return " + expression(3));
                break;
            case 1:
                line("if " + expression(2) + " then error(\"guard\") end");
                line("return " + expression(2));
                break;
            default:
                block(1 + m_random.below(5), 1);
                if (m_random.oneIn(2)) {
                    line("return " + expression(2));
                }
                break;
        }
        m_text += "end\n";
        ++m_functions;
    }

    void block(std::size_t statements, std::size_t depth) {
        for (std::size_t i = 0; i < statements; ++i) {
            statement(depth);
        }
    }

    void statement(std::size_t depth) {
        switch (m_random.below(depth < 3 ? 16 : 11)) {
            case 0:
            case 1:
                return line(variable() + " = " + expression(3));
            case 2: {
                const std::string name = variable();
                return line(name + " = " + name + " + " + expression(2));
            }
            case 3:
                return line(m_random.pick(kVariables) + "[" + expression(1) + "] = " + storedValue());
            case 4:
                return line("list[" + std::to_string(m_random.below(5)) + "] = " + storedValue());
            case 5:
                return line("array_push(" + std::string(m_random.oneIn(4) ? variable() : "list") + ", " +
                            storedValue() + ")");
            case 6:
                return line("puts(" + expression(3) + ")");
            case 7:
                return line(expression(3));
            case 8:
                return line("puts(pcall(" + callee() + arguments(2, true) + "))");
            case 9:
                return rareStatement();
            case 10:
                return line("m[\"" + m_random.pick(kVariables) + "\"] = " + storedValue());
            case 11:
            case 12:
                return conditional(depth);
            case 13:
            case 14:
                return loop(depth);
            default:
                return line("if " + expression(2) + " then return " + expression(2) + " end");
        }
    }

    void rareStatement() {
        switch (m_random.below(7)) {
            case 0:
                return line("error(" + expression(1) + ")");
            case 1:
                return line("len = " + callee());
            case 2:
                return line("array_push = " + callee());
            case 3:
                return line("def error(x) return x end");
            case 4:
                return m_functions > 0 ? line("def f" + std::to_string(m_random.below(m_functions)) + "(a) return " +
                                              expression(2) + " end")
                                       : line("a = nil");
            case 5:
                return line("puts(load(\"return " + std::to_string(m_random.below(9)) + " + a\")())");
            default:
                return line("f0 = " + expression(2));
        }
    }

    void conditional(std::size_t depth) {
        m_text += "if " + expression(2) + "\n";
        block(1 + m_random.below(3), depth + 1);
        if (m_random.oneIn(3)) {
            m_text += "elsif " + expression(2) + "\n";
            block(1 + m_random.below(2), depth + 1);
        }
        if (m_random.oneIn(2)) {
            m_text += "else\n";
            block(1 + m_random.below(2), depth + 1);
        }
        m_text += "end\n";
    }

    void loop(std::size_t depth) {
        const std::string counter = "k" + std::to_string(m_loops++);
        m_text += counter + " = 0\n";
        m_text += "while " + counter + " < " + std::to_string(1 + m_random.below(4)) +
                  (m_random.oneIn(4) ? " and " + expression(1) : "") + "\n";
        m_text += counter + " = " + counter + " + 1\n";
        block(1 + m_random.below(3), depth + 1);
        m_text += "end\n";
    }

    /// What goes into a container: never a container that is there already, so that none comes to contain itself. Such
    /// rings are never freed, and would hide real leaks.
    std::string storedValue() {
        switch (m_random.below(4)) {
            case 0:
                return "to_s(" + expression(2) + ")";
            case 1:
                return "len(" + variable() + ")";
            default:
                return m_random.pick(kLiterals);
        }
    }

    std::string variable() { return m_random.pick(kVariables); }

    std::string callee() {
        if (m_functions > 0 && !m_random.oneIn(3)) {
            return "f" + std::to_string(m_random.below(m_functions));
        }
        constexpr std::array<std::string_view, 8> kCallees{"len",     "to_s",      "error",     "pcall",
                                                           "type_of", "table_get", "array_pop", "math_floor"};
        return m_random.pick(kCallees);
    }

    std::string arguments(std::size_t depth, bool afterOthers) {
        std::string text;
        const std::size_t count = m_random.below(4);
        for (std::size_t i = 0; i < count; ++i) {
            text += (afterOthers || i > 0 ? ", " : "") + expression(depth - 1);
        }
        return text;
    }

    std::string expression(std::size_t depth) {
        if (depth == 0 || m_random.oneIn(4)) {
            return m_random.oneIn(2) ? m_random.pick(kLiterals) : m_random.oneIn(20) ? "undefined_name" : variable();
        }
        switch (m_random.below(12)) {
            case 0:
            case 1:
            case 2:
            case 3:
                return "(" + expression(depth - 1) + " " + m_random.pick(kBinaryOperators) + " " +
                       expression(depth - 1) + ")";
            case 4:
                return "(" + variable() + " + " + std::to_string(m_random.below(5)) + ")";
            case 5:
                return "(" + expression(depth - 1) + (m_random.oneIn(2) ? " and " : " or ") + expression(depth - 1) +
                       ")";
            case 6:
                return (m_random.oneIn(2) ? "-" : "!") + expression(depth - 1);
            case 7:
                return variable() + "[" + expression(depth - 1) + "]";
            case 8:
                return "[" + expression(depth - 1) + ", " + expression(depth - 1) + "]";
            case 9:
                return "pcall(" + callee() + arguments(depth, true) + ")";
            case 10:
                return "len(" + variable() + ")";
            default:
                return callee() + "(" + arguments(depth, false) + ")";
        }
    }

    Random m_random;
    std::string m_text;
    std::size_t m_functions = 0;
    std::size_t m_loops = 0;
};

class ImageGenerator {
public:
    explicit ImageGenerator(std::uint64_t seed) : m_random(seed) {}

    RubyBytecode generate() {
        m_program.name = "image";
        m_program.constants = {nullptr, 1,     2.5,     true,    "x",    "a",  "b",
                               "puts",  "len", "pcall", "error", "to_s", "f1", "f2"};
        const std::size_t functions = 1 + m_random.below(3);
        for (std::size_t i = 0; i < functions; ++i) {
            m_program.functions.push_back(function(i));
        }
        return internal::serializeProgram(m_program);
    }

private:
    internal::CompiledFunction function(std::size_t index) {
        internal::CompiledFunction function;
        function.name = index == 0 ? "<main>" : "f" + std::to_string(index);
        for (std::size_t i = m_random.below(index == 0 ? 1 : 3); i > 0; --i) {
            function.params.emplace_back(m_random.oneIn(2) ? "a" : "b");
        }
        const std::size_t size = 1 + m_random.below(24);
        for (std::size_t i = 0; i < size; ++i) {
            function.code.push_back(instruction(index, i, size));
        }
        return function;
    }

    internal::Instruction instruction(std::size_t function, std::size_t index, std::size_t size) {
        using internal::OpCode;
        internal::Instruction instruction;
        instruction.line = static_cast<std::uint32_t>(index + 1);
        // Half of the instructions push, so that the others mostly find something.
        const std::size_t number = m_random.oneIn(2) ? m_random.below(2) : m_random.below(m_random.oneIn(40) ? 40 : 27);
        instruction.op = static_cast<OpCode>(number);
        instruction.a = operand(instruction.op, function, index, size);
        if (instruction.op == OpCode::DefineFunction) {
            // Calls go to functions with a larger index only, so that they end.
            instruction.a = static_cast<std::int32_t>(12 + m_random.below(2));
            instruction.b = instruction.a - 11;
        }
        return instruction;
    }

    std::int32_t operand(internal::OpCode op, std::size_t function, std::size_t index, std::size_t size) {
        using internal::OpCode;
        if (m_random.oneIn(40)) {
            constexpr std::array<std::int32_t, 4> kUnsound{-1, 99, 0x7fffffff, -0x7fffffff - 1};
            const bool isJump = op == OpCode::Jump || op == OpCode::JumpIfFalse;
            return isJump ? 99 : kUnsound[m_random.below(kUnsound.size())];
        }
        switch (op) {
            case OpCode::PushConst:
                return static_cast<std::int32_t>(m_random.below(5));
            case OpCode::LoadName:
                return static_cast<std::int32_t>(5 + m_random.below(7 + callable(function)));
            case OpCode::StoreName:
                return static_cast<std::int32_t>(5 + m_random.below(2));
            case OpCode::Jump:
            case OpCode::JumpIfFalse:
                return static_cast<std::int32_t>(index + 1 + m_random.below(size - index));
            case OpCode::Call:
            case OpCode::MakeArray:
                return static_cast<std::int32_t>(m_random.below(3));
            default:
                return 0;
        }
    }

    // Main may name both functions; they name no function, so that no call comes back to them.
    static std::size_t callable(std::size_t function) { return function == 0 ? 2 : 0; }

    Random m_random;
    internal::Program m_program;
};

}  // namespace

std::string generateScript(std::uint64_t seed) { return ScriptGenerator(seed).generate(); }

RubyBytecode generateImage(std::uint64_t seed) { return ImageGenerator(seed).generate(); }

}  // namespace morvel::ruby::sameness
