// Scripts that read and store elements.
#include "vm/indexing.h"

#include <gtest/gtest.h>

#include <limits>

#include "morvel/ruby/map.h"
#include "support/runs.h"

namespace morvel::ruby::tests {
namespace {

void prepareContainers(RubyVM& vm) {
    vm.setGlobal("array", RubyArray{1, 2, 3});
    RubyMap entries;
    entries["k"] = "v";
    entries["2"] = "two";
    entries["1.5"] = "x";
    entries["true"] = "t";
    entries["nil"] = "n";
    vm.setGlobal("map", entries);
    vm.setGlobal("text", "abc");
    vm.setGlobal("huge", 1e300);
    vm.setGlobal("nan", std::numeric_limits<double>::quiet_NaN());
}

void expectRead(const std::string& description, const std::string& expression) {
    expectScriptValue(description, "return " + expression, prepareContainers);
    // The same with the container in a local.
    expectScriptValue(description, "def f(i) x = 0 return " + expression + " end return f(0)", prepareContainers);
}

void expectReadError(const std::string& message, const std::string& expression) {
    expectScriptError("t:2: " + message, "\nreturn " + expression, prepareContainers);
}

TEST(GetIndex, OfArrays) {
    expectRead("1", "array[0]");
    expectRead("3", "array[2]");
    expectRead("nil", "array[3]");
    expectRead("nil", "array[5]");
    expectRead("nil", "array[9223372036854775807]");
    expectRead("2", "array[1.9]");
    expectRead("1", "array[-0.9]");
    expectRead("2", "array[true]");
    expectRead("1", "array[false]");
    expectRead("nil", "array[huge]");
    expectRead("1", "array[nan]");
    expectRead("nil", "[][0]");
    expectRead("7", "[[5, 7]][0][1]");
}

TEST(GetIndex, OfArraysFails) {
    expectReadError("array index must be non-negative", "array[-1]");
    expectReadError("array index must be non-negative", "array[-1.0]");
    expectReadError("array index must be non-negative", "array[-huge]");
    expectReadError("array index must be numeric", "array['0']");
    expectReadError("array index must be numeric", "array[nil]");
    expectReadError("array index must be numeric", "array[array]");
    expectReadError("array index must be numeric", "array[map]");
    expectReadError("array index must be numeric", "array[puts]");
}

TEST(GetIndex, OfMapsTakesAnyKeyText) {
    expectRead("\"v\"", "map['k']");
    expectRead("nil", "map['missing']");
    expectRead("\"two\"", "map[2]");
    expectRead("\"two\"", "map[2.0]");
    expectRead("\"two\"", "map['2']");
    expectRead("\"x\"", "map[1.5]");
    expectRead("\"t\"", "map[true]");
    expectRead("nil", "map[false]");
    expectRead("\"n\"", "map[nil]");
    expectRead("nil", "map[-1]");
}

TEST(GetIndex, OfMapsFailsWithoutALocation) {
    for (const char* key : {"array", "map", "puts", "[]"}) {
        expectScriptError("unsupported map key type", std::string("return map[") + key + "]", prepareContainers);
    }
}

TEST(GetIndex, OfStringsGivesOneByte) {
    expectRead("\"a\"", "text[0]");
    expectRead("\"b\"", "text[1]");
    expectRead("nil", "text[3]");
    expectRead("\"c\"", "text[2.99]");
    expectRead("\"b\"", "text[true]");
    expectRead("nil", "text[huge]");
    expectRead("nil", "''[0]");
    expectRead("\"\\xa9\"", "'\xc3\xa9'[1]");
}

TEST(GetIndex, OfStringsFails) {
    expectReadError("array index must be non-negative", "text[-1]");
    expectReadError("array index must be numeric", "text['0']");
    expectReadError("array index must be numeric", "text[nil]");
}

// The index is checked before the container.
TEST(GetIndex, OfEverythingElseFails) {
    for (const char* container : {"nil", "5", "2.5", "true", "puts"}) {
        const std::string c = container;
        expectReadError("indexing expects an array, map, or string", "(" + c + ")[0]");
        expectReadError("indexing expects an array, map, or string", "(" + c + ")[1.5]");
        expectReadError("array index must be numeric", "(" + c + ")[nil]");
        expectReadError("array index must be numeric", "(" + c + ")['k']");
        expectReadError("array index must be non-negative", "(" + c + ")[-1]");
    }
}

/// Runs `container[index] = value` on the global `x` with this initial value, at the top level and in a function that
/// takes it as a parameter; checks the new value of the variable.
void expectStore(const std::string& description, const std::string& start, const std::string& index,
                 const std::string& value) {
    const std::string store = "x[" + index + "] = " + value;
    expectScriptValue(description, "x = " + start + "\n" + store + "\nreturn x", prepareContainers);
    expectScriptValue(description, "def f(x)\n" + store + "\nreturn x\nend\nreturn f(" + start + ")",
                      prepareContainers);
}

void expectStoreError(const std::string& message, const std::string& start, const std::string& index,
                      const std::string& value = "1") {
    const std::string store = "x[" + index + "] = " + value;
    expectScriptError(message, "x = " + start + "\n" + store, prepareContainers);
    expectScriptError(message, "def f(x)\n" + store + "\nend\nf(" + start + ")", prepareContainers);
}

TEST(SetIndex, OfArrays) {
    expectStore("[9, 2]", "[1, 2]", "0", "9");
    expectStore("[1, 9]", "[1, 2]", "1.9", "9");
    expectStore("[9, 2]", "[1, 2]", "false", "9");
    expectStore("[9, 2]", "[1, 2]", "nan", "9");
    expectStore("[1, \"s\"]", "[1]", "1", "'s'");
    expectStore("[1, 2, nil, nil, nil, 9]", "[1, 2]", "5", "9");
    expectStore("[nil]", "[]", "0", "nil");
}

TEST(SetIndex, SharesTheArray) {
    expectScriptValue("[[1, 9], [1, 9]]", "a = [1] b = a a[1] = 9 return [a, b]");
    expectScriptValue("[5]", "def f(list) list[0] = 5 end a = [1] f(a) return a");
    // An array may contain itself.
    expectScriptValue("[nil, 7]", "a = [1] a[0] = a b = a[0] b[1] = 7 a[0] = nil return a");
}

TEST(SetIndex, OfArraysFails) {
    expectStoreError("t:2: index must be non-negative", "[1]", "-1");
    expectStoreError("t:2: index must be non-negative", "[1]", "-1.5");
    expectStoreError("t:2: index must be numeric", "[1]", "'0'");
    expectStoreError("t:2: index must be numeric", "[1]", "nil");
    expectStoreError("t:2: index must be numeric", "[1]", "[]");
    // Far larger than any memory.
    expectStoreError("out of memory", "[1]", "9223372036854775807");
    expectStoreError("out of memory", "[1]", "huge");
}

TEST(SetIndex, OfMaps) {
    expectStore("{\"k\": 1}", "map_new()", "'k'", "1");
    expectStore("{\"2\": 1}", "map_new()", "2.0", "1");
    expectStore("{\"nil\": 1}", "map_new()", "nil", "1");
    expectStore("{\"true\": nil}", "map_new()", "true", "nil");
    expectStore("{\"-1\": 1}", "map_new()", "-1", "1");
    expectScriptValue("{\"k\": 2, \"j\": 1}", "m = map_new() n = m m['k'] = 1 n['j'] = 1 m['k'] = 2 return n");
}

TEST(SetIndex, OfMapsFailsWithoutALocation) {
    expectStoreError("unsupported map key type", "map_new()", "[]");
    expectStoreError("unsupported map key type", "map_new()", "puts");
}

TEST(SetIndex, OfStringsReplacesOneByte) {
    expectStore("\"xbc\"", "'abc'", "0", "'xyz'");
    expectStore("\"7bc\"", "'abc'", "0", "7");
    expectStore("\"abn\"", "'abc'", "2", "nil");
    expectStore("\"a[c\"", "'abc'", "1", "[1, 2]");
    expectStore("\"a-c\"", "'abc'", "1.7", "-3.5");
    expectStore("\"xbc\"", "'abc'", "false", "'x'");
    // Other references to the string do not change.
    expectScriptValue("[\"xbc\", \"abc\"]", "a = 'abc' b = a a[0] = 'x' return [a, b]");
    expectScriptValue("[\"xbc\", [\"abc\"]]", "a = 'abc' b = [a] a[0] = 'x' return [a, b]");
    expectScriptValue("\"aaa\"", "a = 'abc' a[1] = a a[2] = a return a");
}

TEST(SetIndex, OfStringsFails) {
    expectStoreError("t:2: string index is out of range", "'abc'", "3", "'x'");
    expectStoreError("t:2: string index is out of range", "''", "0", "'x'");
    expectStoreError("t:2: string index is out of range", "'abc'", "huge", "'x'");
    expectStoreError("t:2: string assignment requires a non-empty replacement", "'abc'", "0", "''");
    // The range is checked before the replacement.
    expectStoreError("t:2: string index is out of range", "'abc'", "3", "''");
    expectStoreError("t:2: index must be non-negative", "'abc'", "-1", "'x'");
    expectStoreError("t:2: index must be numeric", "'abc'", "'0'", "'x'");
}

TEST(SetIndex, OfEverythingElseFails) {
    for (const char* container : {"nil", "5", "2.5", "true", "puts"}) {
        expectStoreError("t:2: indexed assignment expects an array, map, or string", container, "0");
        expectStoreError("t:2: index must be numeric", container, "nil");
        expectStoreError("t:2: index must be non-negative", container, "-1");
    }
}

TEST(SetIndex, AGlobalBecomesLocalInAFunction) {
    expectScriptValue("[\"abc\", \"xbc\"]", "s = 'abc' def f() s[0] = 'x' return s end local = f() return [s, local]");
    // The array itself is shared.
    expectScriptValue("[9]", "g = [1] def f() g[0] = 9 end f() return g");
    expectScriptError("t:1: undefined variable or function 'g'", "def f() g[0] = 9 end f()");
}

TEST(SetIndex, EvaluatesContainerIndexAndValueInOrder) {
    expectScriptValue("[\"i\", \"v\"]",
                      "log = []\n"
                      "def note(x) array_push(log, x) return 0 end\n"
                      "a = [1]\n"
                      "a[note('i')] = note('v')\n"
                      "return log");
}

TEST(StoreElement, TheValueMayLiveInTheArray) {
    RubyArray elements{"a", "b"};
    elements.shrink_to_fit();
    internal::storeElement(elements, 5, elements[1]);
    EXPECT_EQ("[a, b, nil, nil, nil, b]", RubyValue(elements).toString());
}

TEST(ByteString, HoldsAnyByte) {
    for (int byte = 0; byte < 256; ++byte) {
        EXPECT_EQ(std::string(1, static_cast<char>(byte)), internal::byteString(static_cast<char>(byte)).asString());
    }
}

}  // namespace
}  // namespace morvel::ruby::tests
