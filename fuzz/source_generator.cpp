#include "source_generator.h"

#include <array>
#include <string_view>
#include <utility>

#include "source_words.h"

namespace morvel::ruby::fuzz {

namespace {

class SourceGenerator {
public:
    explicit SourceGenerator(ByteSource& bytes) : m_bytes(bytes) {}

    std::string generate() {
        preamble();
        std::size_t number = 0;
        while (!m_bytes.isEmpty() && m_text.size() < kMostText) {
            unit(number++);
        }
        m_text += "return [a, b, s]";
        return std::move(m_text);
    }

private:
    static constexpr std::size_t kMostText = 8000;
    static constexpr std::size_t kDeepest = 4;
    /// Around the lengths at which lists stop fitting into registers.
    static constexpr std::array<std::size_t, 6> kLongLengths{254, 255, 256, 257, 510, 511};

    [[nodiscard]] bool isFull(std::size_t depth) const { return depth >= kDeepest || m_text.size() >= kMostText; }

    /// Variables and functions, with a few left out.
    void preamble() {
        for (const Variable& variable : kVariables) {
            if (!m_bytes.chance(3)) {
                m_text += std::string(variable.name) + " = " + std::string(variable.first) + "\n";
            }
        }
        m_text += "def f(p) return p + 1 end\ndef g(p, q) if p == q then error('same') end return [p, q] end\n";
        if (!m_bytes.chance(20)) {
            m_text += "def h() a = a + 1 return a end\ndef k(p) x = [p] y = x[0] return y end\n";
        }
        wideFunction();
    }

    /// Occasionally a function with so many parameters that a call's arguments do not fit into registers.
    void wideFunction() {
        if (!m_bytes.chance(20)) {
            return;
        }
        m_wideParameters = m_bytes.pick(kLongLengths);
        m_text += "def w(";
        for (std::size_t i = 1; i < m_wideParameters; ++i) {
            m_text += "p, ";
        }
        m_text += "q) ";
        m_text += m_bytes.chance(128) ? "return [p, q] end\n" : "x = [q, a] return x end\n";
    }

    /// The values of a literal or call: the same variable repeated, with an expression in the middle and at the end.
    void longList(std::size_t depth, std::size_t length) {
        const std::size_t middle = m_bytes.below(256);
        for (std::size_t i = 0; i < length; ++i) {
            m_text += i == 0 ? "" : ", ";
            if (i == middle || i + 1 == length) {
                expression(m_bytes.pick(kKinds), depth + 2);
            } else {
                m_text += 'a';
            }
        }
    }

    /// A call with a long list of arguments, in one of the forms of call.
    void longCall(std::size_t depth) {
        const bool callsWide = m_wideParameters > 0 && m_bytes.chance(200);
        const bool isProtected = m_bytes.chance(60);
        m_text += isProtected ? "pcall(" : "";
        m_text += callsWide ? "w" : m_bytes.chance(128) ? "math_max" : m_bytes.pick(kFunctions).name;
        m_text += isProtected ? ", " : "(";
        longList(depth, callsWide && m_bytes.chance(240) ? m_wideParameters : m_bytes.pick(kLongLengths));
        m_text += ')';
    }

    /// Work whose errors do not end the program: a function called in protected mode, code loaded as a separate chunk,
    /// a definition, or plain statements.
    void unit(std::size_t number) {
        std::string name = "u";
        name += std::to_string(number);
        const std::size_t kind = m_bytes.below(16);
        if (kind == 15) {
            return statement(2);
        }
        if (kind >= 13) {
            return definition(0);
        }
        if (kind >= 7) {
            m_text += "r = pcall(load('";
            quoted([this] { block(0, 6); });
            m_text += "'))\n";
        } else {
            m_text += "def " + name + "(p, q)\n";
            block(0, 6);
            m_text += "end\nr = pcall(" + name + ", ";
            literal(Kind::Number);
            m_text += ", ";
            literal(m_bytes.pick(kKinds));
            m_text += ")\n";
        }
        m_text += "puts(r, a, b, s, x)\n";
    }

    /// Makes the text that `generate` appends the content of a string literal.
    template <typename Generate>
    void quoted(Generate generate) {
        std::string outer;
        outer.swap(m_text);
        generate();
        std::string inner;
        inner.swap(m_text);
        m_text = std::move(outer);
        for (const char c : inner) {
            m_text += c == '\'' || c == '\\' ? "\\" : "";
            m_text += c == '\n' ? "\\n" : std::string(1, c);
        }
    }

    void block(std::size_t depth, std::size_t most) {
        for (std::size_t left = 1 + m_bytes.below(most); left > 0; --left) {
            statement(depth + 1);
        }
    }

    void statement(std::size_t depth) {
        if (isFull(depth)) {
            m_text += "a = a + 1\n";
            return;
        }
        switch (m_bytes.below(22)) {
            case 20:
            case 21:
                return textBuilding(depth);
            case 0:
            case 1:
            case 2:
            case 3:
            case 4:
                return assignment(depth);
            case 5:
            case 6:
            case 7:
                return indexedAssignment(depth);
            case 8:
            case 9:
            case 10:
                return conditional(depth);
            case 11:
            case 12:
                return loop(depth);
            case 13:
                return definition(depth);
            case 14:
            case 15:
                return protectedCall(depth);
            case 16:
                m_text += "load('";
                quoted([this, depth] { statement(depth + 2); });
                m_text += "')()\n";
                return;
            case 17:
                m_text += "return ";
                expression(m_bytes.pick(kKinds), depth);
                m_text += '\n';
                return;
            case 18:
                if (m_bytes.chance(60)) {
                    return rebinding();
                }
                [[fallthrough]];
            default:
                expression(m_bytes.pick(kKinds), depth);
                m_text += '\n';
                return;
        }
    }

    /// Replaces a built-in that other code may be using.
    void rebinding() {
        m_text += m_bytes.pick(kRebound);
        m_text += " = ";
        if (m_bytes.chance(200)) {
            m_text += m_bytes.pick(kFunctions).name;
        } else {
            literal(m_bytes.pick(kKinds));
        }
        m_text += '\n';
    }

    void assignment(std::size_t depth) {
        const Variable& variable = m_bytes.pick(kVariables);
        m_text += std::string(variable.name) + " = ";
        // A variable updated from itself, the most common kind of assignment.
        if (m_bytes.chance(110)) {
            m_text += std::string(variable.name) + (variable.kind == Kind::Number ? " " : " + ");
            if (variable.kind == Kind::Number) {
                m_text += std::string(m_bytes.pick(kArithmetic)) + " ";
            }
        }
        expression(variable.kind, depth);
        if (variable.kind == Kind::Text) {
            moreParts(depth);
        }
        m_text += '\n';
    }

    /// A string extended by several parts at once.
    void moreParts(std::size_t depth) {
        while (m_bytes.chance(100)) {
            m_text += " + ";
            if (m_bytes.chance(128)) {
                literal(Kind::Text);
            } else {
                expression(Kind::Anything, depth + 1);
            }
        }
    }

    /// A string that grows or changes in a variable or an element, usually without other references to it.
    void textBuilding(std::size_t depth) {
        constexpr std::array<std::string_view, 6> kPlaces{"s", "t", "m['k']", "m[1]", "d[0]", "c[a % 3]"};
        const std::string_view place = m_bytes.pick(kPlaces);
        if (m_bytes.chance(60)) {
            // Another reference to the string.
            m_text += m_bytes.chance(128) ? "x = " : "y = ";
            m_text += place;
            m_text += '\n';
        }
        if (m_bytes.chance(50)) {
            m_text += m_bytes.chance(128) ? "t[" : "s[";
            m_text += m_bytes.chance(128) ? "a % 4" : "2";
            m_text += "] = ";
            expression(Kind::Anything, depth + 1);
            m_text += '\n';
            return;
        }
        m_text += place;
        m_text += " = ";
        if (m_bytes.chance(40)) {
            m_text += m_bytes.chance(128) ? "f(" : "g(";
            m_text += place;
            m_text += m_bytes.chance(128) ? ", 'and more of the text')" : ")";
        } else {
            m_text += m_bytes.chance(230) ? place : m_bytes.pick(kPlaces);
            m_text += " + ";
            expression(m_bytes.chance(128) ? Kind::Text : Kind::Anything, depth + 1);
        }
        moreParts(depth);
        m_text += '\n';
    }

    void indexedAssignment(std::size_t depth) {
        switch (m_bytes.below(8)) {
            case 0:
                m_text += "s[";
                break;
            case 1:
                m_text += std::string(m_bytes.pick(kVariables).name) + "[";
                break;
            case 2:
            case 3:
            case 4:
                m_text += m_bytes.chance(200) ? "c[" : "d[";
                break;
            default:
                m_text += "m[";
                expression(m_bytes.chance(128) ? Kind::Text : Kind::Anything, depth + 1);
                m_text += "] = ";
                expression(Kind::Anything, depth + 1);
                m_text += '\n';
                return;
        }
        expression(Kind::Number, depth + 2);
        m_text += m_bytes.chance(200) ? " % 6] = " : "] = ";
        expression(m_bytes.pick(kKinds), depth + 1);
        m_text += '\n';
    }

    void conditional(std::size_t depth) {
        m_text += "if ";
        expression(Kind::Flag, depth + 1);
        m_text += " then\n";
        block(depth, 3);
        while (m_bytes.chance(40)) {
            m_text += "elsif ";
            expression(Kind::Flag, depth + 1);
            m_text += " then\n";
            block(depth, 3);
        }
        if (m_bytes.chance(100)) {
            m_text += "else\n";
            block(depth, 3);
        }
        m_text += "end\n";
    }

    void loop(std::size_t depth) {
        const std::string counter = "i" + std::to_string(depth);
        m_text += counter + " = 0\nwhile " + counter + " < " + std::to_string(m_bytes.below(9));
        if (m_bytes.chance(60)) {
            m_text += " and ";
            expression(Kind::Flag, depth + 1);
        }
        m_text += " do\n";
        const std::string step = counter + " = " + counter + " + 1\n";
        // The last statement of a loop determines the value of a function that ends there.
        const bool stepsFirst = m_bytes.chance(128);
        m_text += stepsFirst ? step : "";
        block(depth, 4);
        m_text += stepsFirst ? "" : step;
        m_text += "end\n";
    }

    void definition(std::size_t depth) {
        const Callable& callable = m_bytes.pick(kFunctions);
        // Occasionally the function that guards call.
        m_text += "def " + std::string(m_bytes.chance(12) ? "error" : callable.name) + "(";
        for (std::size_t i = 0; i < callable.parameters; ++i) {
            m_text += i == 0 ? "" : ", ";
            m_text += m_bytes.chance(220) ? kParameters[i] : m_bytes.pick(kParameters);
        }
        m_text += ")\n";
        switch (m_bytes.below(5)) {
            case 0:
                m_text += "return ";
                simpleExpression(depth);
                m_text += '\n';
                break;
            case 1:
                m_text += "if ";
                simpleExpression(depth);
                m_text += " then error('";
                m_text += m_bytes.pick(std::array<std::string_view, 3>{"guarded", "", "other"});
                m_text += "') end\nreturn ";
                simpleExpression(depth);
                m_text += '\n';
                break;
            case 2:
                // Recursion, bounded by its parameter or by the step limit.
                m_text += "if p < 1 then return ";
                expression(Kind::Anything, depth + 1);
                m_text += " end\n";
                block(depth, 2);
                m_text += "x = f(p - 1)\nreturn ";
                expression(Kind::Anything, depth + 1);
                m_text += '\n';
                break;
            default:
                block(depth, 4);
                if (m_bytes.chance(180)) {
                    m_text += "return ";
                    expression(Kind::Anything, depth + 1);
                    m_text += '\n';
                }
                break;
        }
        m_text += "end\n";
    }

    void protectedCall(std::size_t depth) {
        m_text += m_bytes.chance(128) ? "x = pcall(" : "d = pcall(";
        m_text += m_bytes.chance(60) ? "pcall, " : "";
        const Callable& callable = m_bytes.pick(kFunctions);
        const bool isError = m_bytes.chance(50);
        m_text += isError ? "error" : callable.name;
        const std::size_t count = m_bytes.chance(30) ? m_bytes.below(3) : isError ? 1 : callable.parameters;
        for (std::size_t i = 0; i < count; ++i) {
            m_text += ", ";
            expression(i == 0 ? Kind::Number : Kind::Anything, depth + 1);
        }
        m_text += ")\n";
    }

    void variable(Kind kind) {
        if (m_bytes.chance(40)) {
            m_text += m_bytes.pick(kParameters);
            return;
        }
        const std::size_t start = m_bytes.below(kVariables.size());
        for (std::size_t i = 0; i < kVariables.size(); ++i) {
            const Variable& candidate = kVariables[(start + i) % kVariables.size()];
            if (candidate.kind == kind || kind == Kind::Anything) {
                m_text += candidate.name;
                return;
            }
        }
        m_text += "x";
    }

    void literal(Kind kind) {
        switch (kind) {
            case Kind::Number:
                m_text += m_bytes.pick(kNumbers);
                break;
            case Kind::Text:
                m_text += m_bytes.pick(kTexts);
                break;
            case Kind::Array:
                m_text += "[]";
                break;
            case Kind::Map:
                m_text += "m";
                break;
            case Kind::Flag:
            case Kind::Anything:
                m_text += m_bytes.pick(kFlags);
                break;
        }
    }

    /// An expression allowed in a function with a fast form.
    void simpleExpression(std::size_t depth) {
        if (m_bytes.chance(150)) {
            m_text += m_bytes.chance(170) ? "p" : m_bytes.pick(kVariables).name;
        } else if (m_bytes.chance(40)) {
            m_text += "[p, a]";
        } else {
            literal(m_bytes.pick(kKinds));
        }
        if (!isFull(depth) && m_bytes.chance(150)) {
            m_text += ' ';
            m_text += m_bytes.chance(150) ? m_bytes.pick(kArithmetic) : m_bytes.pick(kComparisons);
            m_text += ' ';
            simpleExpression(depth + 1);
        }
    }

    void expression(Kind kind, std::size_t depth) {
        // Occasionally a value of another kind.
        if (m_bytes.chance(14)) {
            kind = m_bytes.pick(kKinds);
        }
        if (isFull(depth)) {
            return m_bytes.chance(128) ? variable(kind) : literal(kind);
        }
        const std::size_t choice = m_bytes.below(12);
        switch (choice) {
            case 0:
            case 1:
                return literal(kind);
            case 2:
            case 3:
            case 4:
                return variable(kind);
            case 5:
                return userCall(depth);
            case 6:
            case 7:
                return builtinCall(kind, depth);
            case 8:
                m_text += m_bytes.chance(190) ? "c[" : m_bytes.chance(128) ? "d[" : "s[";
                expression(Kind::Number, depth + 2);
                m_text += m_bytes.chance(200) ? " % 4]" : "]";
                return;
            case 9:
                m_text += "m[";
                expression(Kind::Text, depth + 1);
                m_text += ']';
                return;
            default:
                return operation(kind, depth);
        }
    }

    void operation(Kind kind, std::size_t depth) {
        m_text += '(';
        switch (kind) {
            case Kind::Number:
                if (m_bytes.chance(30)) {
                    m_text += '-';
                } else {
                    expression(Kind::Number, depth + 1);
                    m_text += ' ' + std::string(m_bytes.pick(kArithmetic)) + ' ';
                }
                expression(Kind::Number, depth + 1);
                break;
            case Kind::Text:
                expression(Kind::Text, depth + 1);
                m_text += " + ";
                expression(m_bytes.pick(kKinds), depth + 1);
                break;
            case Kind::Array:
                if (m_bytes.chance(128)) {
                    expression(Kind::Array, depth + 1);
                    m_text += " + ";
                    expression(Kind::Array, depth + 1);
                    break;
                }
                m_text += '[';
                if (m_bytes.chance(6)) {
                    longList(depth, m_bytes.pick(kLongLengths));
                    m_text += ']';
                    break;
                }
                for (std::size_t left = m_bytes.below(4); left > 0; --left) {
                    expression(m_bytes.pick(kKinds), depth + 1);
                    m_text += left > 1 ? ", " : "";
                }
                m_text += ']';
                break;
            case Kind::Map:
                m_text += "map_clone(m)";
                break;
            case Kind::Flag:
            case Kind::Anything:
                flagOperation(depth);
                break;
        }
        m_text += ')';
    }

    void flagOperation(std::size_t depth) {
        switch (m_bytes.below(4)) {
            case 0:
                m_text += "not ";
                return expression(Kind::Flag, depth + 1);
            case 1:
                expression(Kind::Flag, depth + 1);
                m_text += m_bytes.chance(128) ? " and " : " or ";
                return expression(Kind::Flag, depth + 1);
            default: {
                const Kind kind = m_bytes.chance(128)   ? Kind::Number
                                  : m_bytes.chance(128) ? Kind::Text
                                                        : Kind::Anything;
                expression(kind, depth + 1);
                m_text += ' ' + std::string(kind == Kind::Anything ? "==" : m_bytes.pick(kComparisons)) + ' ';
                return expression(kind, depth + 1);
            }
        }
    }

    void userCall(std::size_t depth) {
        if (m_bytes.chance(m_wideParameters > 0 ? 40 : 3)) {
            return longCall(depth);
        }
        const Callable& callable = m_bytes.pick(kFunctions);
        m_text += m_bytes.chance(10) ? m_bytes.pick(kVariables).name : callable.name;
        m_text += '(';
        const std::size_t count = m_bytes.chance(6) ? m_bytes.below(4) : callable.parameters;
        for (std::size_t i = 0; i < count; ++i) {
            m_text += i == 0 ? "" : ", ";
            expression(i == 0 ? Kind::Number : Kind::Anything, depth + 1);
        }
        m_text += ')';
    }

    void builtinCall(Kind kind, std::size_t depth) {
        switch (kind) {
            case Kind::Number:
                return fill(m_bytes.pick(kNumberCalls), depth);
            case Kind::Text:
                return fill(m_bytes.pick(kTextCalls), depth);
            case Kind::Array:
                return fill(m_bytes.pick(kArrayCalls), depth);
            case Kind::Map:
                return fill(m_bytes.pick(kMapCalls), depth);
            case Kind::Flag:
                return fill(m_bytes.pick(kFlagCalls), depth);
            case Kind::Anything:
                return fill(m_bytes.pick(kAnyCalls), depth);
        }
    }

    void fill(std::string_view pattern, std::size_t depth) {
        for (std::size_t i = 0; i < pattern.size(); ++i) {
            // A question mark stands for an argument only where one is allowed.
            const bool isArgument = pattern[i] != '?' || (i > 0 && (pattern[i - 1] == '(' || pattern[i - 1] == ' '));
            switch (isArgument ? pattern[i] : '.') {
                case 'N':
                    expression(Kind::Number, depth + 1);
                    break;
                case 'T':
                    expression(Kind::Text, depth + 1);
                    break;
                case 'A':
                    expression(Kind::Array, depth + 1);
                    break;
                case 'M':
                    expression(Kind::Map, depth + 1);
                    break;
                case '?':
                    expression(Kind::Anything, depth + 1);
                    break;
                default:
                    m_text += pattern[i];
                    break;
            }
        }
    }

    ByteSource& m_bytes;
    std::string m_text;
    /// The number of parameters of w; 0 if there is no such function.
    std::size_t m_wideParameters = 0;
};

}  // namespace

std::string generateSource(ByteSource& bytes) { return SourceGenerator(bytes).generate(); }

}  // namespace morvel::ruby::fuzz
