// Every operator on values of every kind, with operands in every possible place and the result used in every way. The
// operator functions, which have their own tests, give the expected results.
#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <ostream>

#include "compiler/program.h"
#include "morvel/ruby/error.h"
#include "morvel/ruby/map.h"
#include "support/describe.h"
#include "support/runs.h"
#include "vm/operators.h"

namespace morvel::ruby::tests {
namespace {

using internal::Program;

using Operation = std::function<RubyValue(const RubyValue&, const RubyValue&, const Program&)>;

struct Operator {
    std::string name;
    /// The expression, with L and R for the operands.
    std::string expression;
    Operation operation;
};

void PrintTo(const Operator& tested, std::ostream* stream) { *stream << tested.expression; }

template <internal::OpCode kOp>
RubyValue binary(const RubyValue& left, const RubyValue& right, const Program& program) {
    return internal::applyBinary(kOp, left, right, program, 1);
}

template <internal::OpCode kOp>
RubyValue unary(const RubyValue& value, const RubyValue&, const Program& program) {
    return internal::applyUnary(kOp, value, program, 1);
}

std::vector<Operator> allOperators() {
    using internal::OpCode;
    return {
        {"Add", "L + R", binary<OpCode::Add>},
        {"Subtract", "L - R", binary<OpCode::Subtract>},
        {"Multiply", "L * R", binary<OpCode::Multiply>},
        {"Divide", "L / R", binary<OpCode::Divide>},
        {"Modulo", "L % R", binary<OpCode::Modulo>},
        {"Less", "L < R", binary<OpCode::Less>},
        {"LessEqual", "L <= R", binary<OpCode::LessEqual>},
        {"Greater", "L > R", binary<OpCode::Greater>},
        {"GreaterEqual", "L >= R", binary<OpCode::GreaterEqual>},
        {"Equal", "L == R",
         [](const RubyValue& l, const RubyValue& r, const Program&) { return RubyValue(internal::valuesEqual(l, r)); }},
        {"NotEqual", "L != R",
         [](const RubyValue& l, const RubyValue& r, const Program&) {
             return RubyValue(!internal::valuesEqual(l, r));
         }},
        {"And", "L && R",
         [](const RubyValue& l, const RubyValue& r, const Program&) {
             return RubyValue(l.isTruthy() && r.isTruthy());
         }},
        {"Or", "L || R",
         [](const RubyValue& l, const RubyValue& r, const Program&) {
             return RubyValue(l.isTruthy() || r.isTruthy());
         }},
        {"Negate", "-L", unary<OpCode::Negate>},
        {"Not", "!L", [](const RubyValue& l, const RubyValue&, const Program&) { return RubyValue(!l.isTruthy()); }},
    };
}

struct Operand {
    RubyValue value;
    /// The literal for the value in a script; empty if there is none.
    std::string literal;
};

std::vector<Operand> allOperands() {
    RubyMap entries;
    entries["k"] = 1;
    RubyValue function;
    {
        RubyVM vm;
        EXPECT_TRUE(vm.runScriptString("def some() end", "t").ok);
        EXPECT_TRUE(vm.getGlobal("some", function));
    }
    return {
        {nullptr, "nil"},
        {true, "true"},
        {false, "false"},
        {0, "0"},
        {5, "5"},
        {-3, ""},
        {std::numeric_limits<std::int64_t>::max(), "9223372036854775807"},
        {std::numeric_limits<std::int64_t>::min(), ""},
        {-1, ""},
        {0.0, "0.0"},
        {2.5, "2.5"},
        {5.0, "5.0"},
        {1e-17, "0.00000000000000001"},
        {std::numeric_limits<double>::quiet_NaN(), ""},
        {"", "''"},
        {"5", "'5'"},
        {"a longer string than any that is kept in place", "'a longer string than any that is kept in place'"},
        {RubyArray{1, "x"}, ""},
        {entries, ""},
        {function, ""},
    };
}

/// A way to use the result: a program that contains EXPRESSION, and the outcome expected for a result.
struct Use {
    std::string program;
    bool givesTruth;
};

// The operands are the parameters l and r, the globals gl and gr, or elements of temporary arrays.
const std::vector<std::string> kLeftPlaces{"l", "gl", "[l][0]"};
const std::vector<std::string> kRightPlaces{"r", "gr", "[r][0]"};

const std::vector<Use> kUsesInFunctions{
    {"def f(l, r) return EXPRESSION end return f(gl, gr)", false},
    {"def f(l, r) x = EXPRESSION return x end return f(gl, gr)", false},
    {"def f(l, r) l = EXPRESSION return l end return f(gl, gr)", false},
    {"def f(l, r) r = EXPRESSION return r end return f(gl, gr)", false},
    {"def f(l, r) EXPRESSION end return f(gl, gr)", false},
    {"def f(l, r) x = [EXPRESSION] return x[0] end return f(gl, gr)", false},
    {"def f(l, r) if EXPRESSION then return true end return false end return f(gl, gr)", true},
    {"def f(l, r) if !(EXPRESSION) then return false end x = 1 return true end return f(gl, gr)", true},
    {"def f(l, r) while EXPRESSION do return true end return false end return f(gl, gr)", true},
    {"def f(l, r) x = false if (EXPRESSION) && true then x = true end return x end return f(gl, gr)", true},
};

const std::vector<Use> kUsesAtTheTop{
    {"return EXPRESSION", false},
    {"x = EXPRESSION return x", false},
    {"l = EXPRESSION return l", false},
    {"r = EXPRESSION r", false},
    {"EXPRESSION", false},
    {"if EXPRESSION then return true end return false", true},
    {"x = true if !(EXPRESSION) then x = false end return x", true},
};

std::string replaced(std::string text, const std::string& word, const std::string& by) {
    for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + by.size())) {
        text.replace(at, word.size(), by);
    }
    return text;
}

std::string expectedOutcome(const Operator& tested, const Use& use, const RubyValue& left, const RubyValue& right) {
    Program program;
    program.name = "t";
    try {
        const RubyValue result = tested.operation(left, right, program);
        return use.givesTruth ? (result.isTruthy() ? "true" : "false") : describe(result);
    } catch (const RubyError& error) {
        return error.message();
    }
}

class Operands : public testing::TestWithParam<Operator> {
protected:
    Operands() { useBaselineInterpreter(m_plain); }

    /// Runs the program on both executors with these operands; checks the outcome, and that the operands are unchanged
    /// and no longer referenced afterwards.
    void check(const RubyBytecode& image, const std::string& source, const Use& use, const RubyValue& left,
               const RubyValue& right) {
        const std::string expected = expectedOutcome(GetParam(), use, left, right);
        const std::string before = state(left, right);
        for (RubyVM* vm : {&m_vm, &m_plain}) {
            const char* executor = vm == &m_plain ? " by the baseline interpreter" : "";
            setOperands(*vm, left, right);
            RubyResult result = vm->runBytecode(image);
            ASSERT_EQ(expected, result.ok ? describe(result.value) : result.error)
                << source << "\n with " << before << executor;
            result = {};
            setOperands(*vm, nullptr, nullptr);
            vm->setGlobal("x", nullptr);
            ASSERT_EQ(before, state(left, right)) << source << executor;
        }
    }

    void checkPlaces(const std::vector<Use>& uses) {
        const std::vector<Operand> operands = allOperands();
        for (const Use& use : uses) {
            for (const std::string& leftPlace : kLeftPlaces) {
                for (const std::string& rightPlace : kRightPlaces) {
                    const std::string source = program(use, leftPlace, rightPlace);
                    const RubyBytecode image = m_vm.compileScript(source, "t");
                    for (const Operand& left : operands) {
                        for (const Operand& right : operands) {
                            check(image, source, use, left.value, right.value);
                            if (HasFatalFailure()) {
                                return;
                            }
                        }
                    }
                }
            }
        }
    }

    void checkLiterals(const std::vector<Use>& uses) {
        const std::vector<Operand> operands = allOperands();
        for (const Use& use : uses) {
            for (const Operand& literal : operands) {
                if (literal.literal.empty()) {
                    continue;
                }
                for (const std::string& place : kLeftPlaces) {
                    const std::string source = program(use, place, literal.literal);
                    const RubyBytecode image = m_vm.compileScript(source, "t");
                    for (const Operand& left : operands) {
                        check(image, source, use, left.value, literal.value);
                    }
                }
                for (const std::string& place : kRightPlaces) {
                    const std::string source = program(use, literal.literal, place);
                    const RubyBytecode image = m_vm.compileScript(source, "t");
                    for (const Operand& right : operands) {
                        check(image, source, use, literal.value, right.value);
                    }
                }
                if (HasFatalFailure()) {
                    return;
                }
            }
        }
    }

private:
    static void setOperands(RubyVM& vm, const RubyValue& left, const RubyValue& right) {
        for (const char* name : {"gl", "l"}) {
            vm.setGlobal(name, left);
        }
        for (const char* name : {"gr", "r"}) {
            vm.setGlobal(name, right);
        }
    }

    /// Strings are excluded, since equal ones may be shared.
    static std::string holders(const RubyValue& value) {
        const bool counts = value.isBoxed() && !value.isString();
        return counts ? " held " + std::to_string(value.data.box->references) + " times" : "";
    }

    static std::string state(const RubyValue& left, const RubyValue& right) {
        return describe(left) + holders(left) + " and " + describe(right) + holders(right);
    }

    std::string program(const Use& use, const std::string& left, const std::string& right) {
        const std::string expression = replaced(replaced(GetParam().expression, "L", left), "R", right);
        return replaced(use.program, "EXPRESSION", expression);
    }

    RubyVM m_vm;
    RubyVM m_plain;
};

TEST_P(Operands, InFunctions) { checkPlaces(kUsesInFunctions); }

TEST_P(Operands, AtTheTop) { checkPlaces(kUsesAtTheTop); }

TEST_P(Operands, LiteralsInFunctions) { checkLiterals(kUsesInFunctions); }

TEST_P(Operands, LiteralsAtTheTop) { checkLiterals(kUsesAtTheTop); }

INSTANTIATE_TEST_SUITE_P(Operators, Operands, testing::ValuesIn(allOperators()),
                         [](const testing::TestParamInfo<Operator>& tested) { return tested.param.name; });

}  // namespace
}  // namespace morvel::ruby::tests
