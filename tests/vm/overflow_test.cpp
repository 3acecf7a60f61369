// When the error "stack overflow" names a source line, and that pcall catches it in every form of call, on both
// executors.
#include <gtest/gtest.h>

#include <cstddef>
#include <string>

#include "support/runs.h"
#include "support/threads.h"

namespace morvel::ruby::tests {

namespace {

/// A small stack, since it takes time to exhaust a large one.
constexpr std::size_t kStack = std::size_t{768} * 1024;

/// Scripts with a global list `ring` that contains itself, so it can be neither rendered nor compared.
class Overflow : public testing::Test {
protected:
    Overflow() : m_ring(RubyArray()) { m_ring.asArray().push_back(m_ring); }
    ~Overflow() override { m_ring.asArray().clear(); }
    Overflow(const Overflow&) = delete;
    Overflow& operator=(const Overflow&) = delete;

    void expectResult(const std::string& description, const std::string& source) const {
        runOnStack(kStack, [&] {
            expectScriptValue(description, source, [this](RubyVM& vm) { vm.setGlobal("ring", m_ring); });
        });
    }

    void expectFailure(const std::string& message, const std::string& source) const {
        runOnStack(kStack,
                   [&] { expectScriptError(message, source, [this](RubyVM& vm) { vm.setGlobal("ring", m_ring); }); });
    }

private:
    RubyValue m_ring;
};

TEST_F(Overflow, UnderAnOperatorHasItsPlace) {
    for (const char* statement : {
             "return text + ring",
             "return ring + text",
             "return 'a' + 1 + ring",
             "x = text + 'y' return x + ring",
             "x = text x = x + ring",
             "x = text x = x + 'y' + ring",
             "x = text x = x + 1 + ring + 'y'",
             "x = text x = x + [ring]",
             // A long string that nothing else holds grows in place.
             "x = string_rep('x', 40) x = x + ring",
             "x = string_rep('x', 40) x = x + 'y' + ring",
             "map['x'] = string_rep('x', 40) map['x'] = map['x'] + ring",
             "map['x'] = string_rep('x', 40) map['x'] = map['x'] + 'y' + ring",
             "map['x'] = text + ring",
             "map[text + ring] = 1",
             "grown = 'y' grown = grown + ring",
             "return [1, text + ring]",
             "return len(text + ring)",
             "map['x'] = ring return text + map",
             "return ring == [ring]",
             "return ring != [ring]",
             "return not (ring == [ring])",
             "other = map_new() other['x'] = [ring] map['x'] = ring return map == other",
             "if ring == [ring] then return 1 end",
             "if ring != [ring] then return 1 end",
             "if text == 'x' or ring == [ring] then return 1 end",
             "while ring != [ring] do return 1 end",
             "text[1] = ring",
             "x = 'abc' x[0] = ring return x",
         }) {
        const std::string line = statement;
        expectFailure("t:2: stack overflow", "text = 'text' map = map_new()\n" + line);
        expectResult("[true, false, \"t:3: stack overflow\"]",
                     "map = map_new()\ndef work(text)\n" + line + "\nend\nreturn pcall(work, 'text')");
    }
}

TEST_F(Overflow, OfABuiltInHasNone) {
    for (const char* call : {"to_s(ring)", "puts('x', ring)", "print('x', ring)", "error(ring)", "array_join(ring)",
                             "string_format('%s', ring)", "table_sort([ring, 'x'])"}) {
        const std::string line = call;
        expectFailure("stack overflow", line);
        expectResult("[true, false, \"stack overflow\"]", "def work()\n" + line + "\nend\nreturn pcall(work)");
    }
    // A value whose kind cannot be a key is not rendered.
    expectFailure("unsupported map key type", "map = map_new() map[ring] = 1");
    expectFailure("unsupported map key type", "map = map_new() return map[ring]");
}

TEST_F(Overflow, IsCaughtInEveryFormOfCall) {
    const std::string functions =
        "def sum(x) return 'a' + x end\n"
        "def same(x)\nreturn x == [x]\nend\n"
        "def guard(x)\nif x == [x] then error('no') end\nreturn 1\nend\n"
        "def body(x)\nif x == 1 then error('no') end\nreturn 'a' + x\nend\n";
    expectResult("[false, \"stack overflow\"]", "return pcall(error, ring)");
    expectResult("[true, [false, \"stack overflow\"]]", "return pcall(pcall, error, ring)");
    expectResult("[true, [true, [false, \"stack overflow\"]]]", "return pcall(pcall, pcall, error, ring)");
    expectResult("[false, \"stack overflow\"]", "map = map_new() map['e'] = error return pcall(map['e'], ring)");
    expectResult("[true, false, \"stack overflow\"]", "return pcall(to_s, ring)");
    expectResult("[true, false, \"t:1: stack overflow\"]", functions + "return pcall(sum, ring)");
    expectResult("[true, false, \"t:3: stack overflow\"]", functions + "return pcall(same, ring)");
    expectResult("[false, \"t:6: stack overflow\"]", functions + "return pcall(guard, ring)");
    expectResult("[false, \"t:11: stack overflow\"]", functions + "return pcall(body, ring)");
    expectResult("[true, [false, \"t:11: stack overflow\"]]", functions + "return pcall(pcall, body, ring)");
    expectFailure("t:6: stack overflow", functions + "return guard(ring)");
    expectFailure("t:11: stack overflow", functions + "return body(ring)");
}

TEST_F(Overflow, DoesNotMakeOtherErrorsOfProtectedCallsCaught) {
    expectFailure("t:3: operator '+' expects numbers, strings, or arrays",
                  "def f(x)\nif x == 1 then error('no') end\nreturn 1 + x\nend\npcall(f, ring)");
    expectFailure("error expects between 0 and 1 arguments", "pcall(error, ring, ring)");
    expectFailure("pcall expects at least 1 arguments", "pcall()");
}

TEST_F(Overflow, LeavesAStringThatGrewAlone) {
    expectResult("[[true, false, \"t:2: stack overflow\"], \"abc\", \"abcd\"]",
                 "text = 'ab' text = text + 'c' other = text\n"
                 "def grow() text = text + 'd' + ring end\n"
                 "return [pcall(grow), text, other + 'd']");
}

// A chain of operators is an expression as deep as it is long; neither executor recurses to evaluate it.
TEST(LongExpressions, HaveTheirValueOnBothExecutors) {
    constexpr std::size_t kTerms = 100'000;
    std::string sum = "a";
    for (std::size_t i = 1; i < kTerms; ++i) {
        sum += "+a";
    }
    expectScriptValue("[100000, [true, 100000]]", "def f(a) return " + sum + " end return [f(1), pcall(f, 1)]");
    expectScriptValue("[100000, [true, 100000], [false, \"low\"]]",
                      "def f(a) if " + sum + " < 0 then error('low') end return " + sum +
                          " end return [f(1), pcall(f, 1), pcall(f, -1)]");
    expectScriptError("t:1: operator '+' expects numbers, strings, or arrays",
                      "def f(a) if a == 1 then error('no') end return " + sum + " end return pcall(f, nil)");
}

}  // namespace

}  // namespace morvel::ruby::tests
