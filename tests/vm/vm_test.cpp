// The public VM class and the free functions.
#include "morvel/ruby/vm.h"

#include <gtest/gtest.h>

#include <memory>
#include <thread>
#include <type_traits>

#include "support/assembler.h"
#include "support/describe.h"
#include "support/files.h"
#include "support/runs.h"
#include "support/temporary_directory.h"
#include "vm/calling.h"
#include "vm/engine/code.h"
#include "vm/globals.h"
#include "vm/impl.h"

namespace morvel::ruby::tests {
namespace {

using internal::OpCode;

std::string globalOf(const RubyVM& vm, const std::string& name) {
    RubyValue value;
    return vm.getGlobal(name, value) ? describe(value) : "undefined";
}

std::string run(RubyVM& vm, const std::string& source) {
    const RubyResult result = vm.runScriptString(source, "t");
    return result.ok ? describe(result.value) : "error " + result.error;
}

static_assert(!std::is_copy_constructible_v<RubyVM> && !std::is_copy_assignable_v<RubyVM>);
static_assert(std::is_nothrow_move_constructible_v<RubyVM> && std::is_nothrow_move_assignable_v<RubyVM>);
static_assert(std::is_copy_constructible_v<RubyBytecode> && std::is_copy_constructible_v<RubyResult>);

TEST(Result, StartsAsAFailureWithoutText) {
    const RubyResult result;
    EXPECT_FALSE(result.ok);
    EXPECT_TRUE(result.value.isNil());
    EXPECT_EQ("", result.error);
    const auto [ok, value, error] = RubyResult{true, 5, "e"};
    EXPECT_TRUE(ok);
    EXPECT_EQ("5", describe(value));
    EXPECT_EQ("e", error);
}

TEST(Vm, RunsSourceText) {
    RubyVM vm;
    const RubyResult result = vm.runScriptString("x = 2\nx * 21", "t");
    EXPECT_TRUE(result.ok);
    EXPECT_EQ("42", describe(result.value));
    EXPECT_EQ("", result.error);
}

TEST(Vm, ReportsCompileErrors) {
    RubyVM vm;
    const RubyResult result = vm.runScriptString("x = (", "chunk");
    EXPECT_FALSE(result.ok);
    EXPECT_TRUE(result.value.isNil());
    EXPECT_EQ("chunk:1:6: expected expression", result.error);
}

TEST(Vm, ReportsRuntimeErrors) {
    RubyVM vm;
    const RubyResult result = vm.runScriptString("\n1 / 0", "chunk");
    EXPECT_FALSE(result.ok);
    EXPECT_TRUE(result.value.isNil());
    EXPECT_EQ("chunk:2: division by zero", result.error);
}

TEST(Vm, ErrorsKeepNulBytes) {
    RubyVM vm;
    EXPECT_EQ(std::string("a\0b", 3), vm.runScriptString("error(string_char(97, 0, 98))", "t").error);
    EXPECT_EQ(std::string("c\0d:1: division by zero", 23), vm.runScriptString("1 / 0", std::string("c\0d", 3)).error);
    EXPECT_EQ(std::string("c\0d:1:1: unexpected character '\0'", 33),
              vm.runScriptString(std::string(1, '\0'), std::string("c\0d", 3)).error);
}

TEST(Vm, GlobalsPersistBetweenRuns) {
    RubyVM vm;
    EXPECT_EQ("nil", run(vm, "x = [1] def f(y) return x[0] + y end return nil"));
    EXPECT_EQ("3", run(vm, "return f(2)"));
    EXPECT_EQ("error t:1: division by zero", run(vm, "x = [5] 1 / 0"));
    EXPECT_EQ("7", run(vm, "return f(2)"));
}

TEST(Vm, ARunEndsWithItsErrorButTheVmGoesOn) {
    RubyVM vm;
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ("error t:1: operator '+' expects numbers, strings, or arrays",
                  run(vm, "def f(n) local = [n] if n == 0 then return nil + 1 end return [f(n - 1), local] end f(20)"));
    }
    EXPECT_EQ("[1]", run(vm, "return [1]"));
}

TEST(Vm, AProgramIsFreedWithTheLastOfItsFunctions) {
    for (const bool plain : {false, true}) {
        RubyVM vm;
        if (plain) {
            useBaselineInterpreter(vm);
        }
        const auto programOf = [&vm](const std::string& name) {
            RubyValue function;
            EXPECT_TRUE(vm.getGlobal(name, function));
            return std::weak_ptr<internal::Program>(internal::handleOf(function).program);
        };
        EXPECT_EQ("3", run(vm, "def f(x) y = x + 1 return y end def g(x) return x * 2 end return f(g(1))"));
        EXPECT_EQ("5", run(vm, "kept = [load('a = 5 return a')] return kept[0]()"));
        const std::weak_ptr<internal::Program> first = programOf("f");
        EXPECT_EQ(first.lock(), programOf("g").lock());
        EXPECT_EQ("1", run(vm, "f = 1 return f"));
        EXPECT_FALSE(first.expired());
        EXPECT_EQ("8", run(vm, "return g(4)"));
        EXPECT_EQ("2", run(vm, "g = 2 return g"));
        EXPECT_TRUE(first.expired());
        EXPECT_EQ("5", run(vm, "h = kept[0] kept = nil return h()"));
        const std::weak_ptr<internal::Program> loaded = programOf("h");
        EXPECT_FALSE(loaded.expired());
        EXPECT_EQ("error t:1: division by zero", run(vm, "h = nil 1 / 0"));
        EXPECT_TRUE(loaded.expired());
    }
}

TEST(Globals, SetAndGet) {
    RubyVM vm;
    vm.setGlobal("x", 5);
    EXPECT_EQ("5", globalOf(vm, "x"));
    EXPECT_EQ("6", run(vm, "y = x + 1 x = 7 return y"));
    EXPECT_EQ("7", globalOf(vm, "x"));
    EXPECT_EQ("6", globalOf(vm, "y"));
    vm.setGlobal("x", "text");
    EXPECT_EQ("\"text\"", run(vm, "return x"));
}

TEST(Globals, UnknownNamesLeaveTheOutputUntouched) {
    const RubyVM vm;
    RubyValue value("untouched");
    EXPECT_FALSE(vm.getGlobal("missing", value));
    EXPECT_EQ("\"untouched\"", describe(value));
}

TEST(Globals, ANameThatIsOnlyMentionedIsUndefined) {
    RubyVM vm;
    EXPECT_EQ("nil", run(vm, "def f() return mentioned end def g() x = mentioned end if false then mentioned end"));
    EXPECT_EQ("undefined", globalOf(vm, "mentioned"));
    EXPECT_EQ("error t:1: undefined variable or function 'mentioned'", run(vm, "f()"));
    EXPECT_EQ("error t:1: undefined variable or function 'mentioned'", run(vm, "g()"));
    EXPECT_EQ("undefined", globalOf(vm, "mentioned"));
    vm.setGlobal("mentioned", 1);
    EXPECT_EQ("1", run(vm, "return f()"));
}

TEST(Globals, NilIsDefined) {
    RubyVM vm;
    vm.setGlobal("x", nullptr);
    EXPECT_EQ("nil", globalOf(vm, "x"));
    EXPECT_EQ("true", run(vm, "return x == nil"));
}

TEST(Globals, AnyNameWillDo) {
    RubyVM vm;
    vm.setGlobal("", 1);
    vm.setGlobal("not a name", 2);
    vm.setGlobal("if", 3);
    EXPECT_EQ("1", globalOf(vm, ""));
    EXPECT_EQ("2", globalOf(vm, "not a name"));
    EXPECT_EQ("3", globalOf(vm, "if"));
}

TEST(Globals, ContainersAreSharedWithTheHost) {
    RubyVM vm;
    RubyValue list(RubyArray{1});
    vm.setGlobal("list", list);
    EXPECT_EQ("[1, 2]", run(vm, "array_push(list, 2) return list"));
    list.asArray().push_back(3);
    EXPECT_EQ("[1, 2, 3]", globalOf(vm, "list"));
}

TEST(Globals, ManyOfThemKeepTheirValues) {
    RubyVM vm;
    std::string source;
    for (int i = 0; i < 3000; ++i) {
        source += "g" + std::to_string(i) + " = " + std::to_string(i) + "\n";
    }
    EXPECT_EQ("2999", run(vm, source));
    EXPECT_EQ("1234", globalOf(vm, "g1234"));
    // A function translated before more globals were added.
    EXPECT_EQ("nil", run(vm, "def f() x = g0 return x + g2999 end return nil"));
    EXPECT_EQ("2999", run(vm, "return f()"));
    for (int i = 3000; i < 6000; ++i) {
        vm.setGlobal("g" + std::to_string(i), i);
    }
    EXPECT_EQ("2999", run(vm, "return f()"));
}

TEST(GlobalTable, SlotsStayForLife) {
    internal::GlobalTable table;
    EXPECT_EQ(internal::GlobalTable::kNoSlot, table.findSlot("a"));
    EXPECT_FALSE(table.isDefined(internal::GlobalTable::kNoSlot));
    const std::size_t a = table.ensureSlot("a");
    const std::size_t b = table.ensureSlot("b");
    EXPECT_EQ(0u, a);
    EXPECT_EQ(1u, b);
    EXPECT_EQ(a, table.ensureSlot("a"));
    EXPECT_EQ(b, table.findSlot("b"));
    EXPECT_EQ("b", table.nameOf(b));
    EXPECT_FALSE(table.isDefined(a));
    table.setValue(a, 5);
    EXPECT_TRUE(table.isDefined(a));
    EXPECT_FALSE(table.isDefined(b));
    for (int i = 0; i < 1000; ++i) {
        table.ensureSlot("n" + std::to_string(i));
    }
    EXPECT_EQ(a, table.findSlot("a"));
    EXPECT_EQ("5", describe(table.value(a)));
    EXPECT_EQ("a", table.nameOf(a));
    EXPECT_EQ(1002u, table.size());
}

TEST(GlobalTable, SlotsOfNamesThatNothingMentionsAreFreeAgain) {
    internal::GlobalTable table;
    const std::size_t a = table.mention("a");
    EXPECT_EQ(a, table.mention("a"));
    const std::size_t b = table.mention("b");
    table.setValue(b, 5);
    table.endMention(a);
    table.endMention(b);
    EXPECT_EQ(a, table.findSlot("a"));
    EXPECT_EQ(b, table.findSlot("b"));
    table.endMention(a);
    EXPECT_EQ(internal::GlobalTable::kNoSlot, table.findSlot("a"));
    EXPECT_EQ(a, table.mention("c"));
    EXPECT_EQ("c", table.nameOf(a));
    EXPECT_FALSE(table.isDefined(a));
    EXPECT_EQ(2u, table.ensureSlot("a"));
    EXPECT_EQ("5", describe(table.value(b)));
    EXPECT_EQ(3u, table.size());
}

TEST(StandardLibrary, VersionGlobals) {
    const RubyVM vm;
    EXPECT_EQ("\"MorvelTesk 0.2\"", globalOf(vm, "_VERSION"));
    EXPECT_EQ("\"0.2\"", globalOf(vm, "MORVELTESK_VERSION"));
}

TEST(BindFunction, DefinesAndReplacesGlobals) {
    RubyVM vm;
    vm.bindFunction("f", [](RubyVM&, RubyArguments) { return RubyValue(1); });
    EXPECT_EQ("[1, \"[function f]\", \"function\"]", run(vm, "return [f(), to_s(f), type_of(f)]"));
    vm.bindFunction("f", [](RubyVM&, RubyArguments) { return RubyValue(2); });
    EXPECT_EQ("2", run(vm, "return f()"));
    EXPECT_EQ("3", run(vm, "f = 3 return f"));
}

TEST(BindFunction, LeavesTheValuesOfTheEarlierBindingAlone) {
    RubyVM vm;
    vm.bindFunction("f", [](RubyVM&, RubyArguments) { return RubyValue("first"); });
    ASSERT_TRUE(vm.runScriptString("g = f", "t").ok);
    vm.bindFunction("f", [](RubyVM&, RubyArguments) { return RubyValue("second"); });
    EXPECT_EQ("[first, second, false]", vm.runScriptString("return [g(), f(), f == g]", "t").value.toString());
}

TEST(BindFunction, ReplacesBuiltIns) {
    RubyVM vm;
    auto printed = std::make_shared<std::string>();
    EXPECT_EQ("nil", run(vm, "def say(x) print(x) end return nil"));
    vm.bindFunction("print", [printed](RubyVM&, RubyArguments arguments) {
        *printed += arguments[0].toString() + ";";
        return RubyValue();
    });
    EXPECT_EQ("nil", run(vm, "print(1) say('two') return nil"));
    EXPECT_EQ("1;two;", *printed);
}

TEST(BindFunction, SetsTheIntrinsicFromTheNameAlone) {
    RubyVM vm;
    for (const auto& [name, intrinsic] : std::vector<std::pair<std::string, RubyFunctionHandle::Intrinsic>>{
             {"error", RubyFunctionHandle::Intrinsic::Error},
             {"pcall", RubyFunctionHandle::Intrinsic::Pcall},
             {"table_set", RubyFunctionHandle::Intrinsic::TableSet},
             {"Error", RubyFunctionHandle::Intrinsic::None},
             {"table_get", RubyFunctionHandle::Intrinsic::None}}) {
        vm.bindFunction(name, [](RubyVM&, RubyArguments) { return RubyValue("own"); });
        RubyValue value;
        ASSERT_TRUE(vm.getGlobal(name, value));
        const RubyFunctionHandle& handle = internal::handleOf(value);
        EXPECT_EQ(intrinsic, handle.intrinsic) << name;
        EXPECT_EQ(RubyFunctionHandle::Kind::Host, handle.kind);
        EXPECT_EQ(-1, handle.functionIndex);
        EXPECT_EQ(nullptr, handle.program);
        EXPECT_TRUE(static_cast<bool>(handle.hostFunction));
        EXPECT_EQ(name, handle.name);
    }
}

TEST(BindFunction, TakesOverTheTreatmentOfItsName) {
    const Preparation prepare = [](RubyVM& vm) {
        for (const char* name : {"error", "pcall", "table_set"}) {
            vm.bindFunction(name, [](RubyVM&, RubyArguments) { return RubyValue("own"); });
        }
        vm.bindFunction("own", [](RubyVM&, RubyArguments) { return RubyValue("own"); });
    };
    expectScriptError("boom", "error('boom')", prepare);
    expectScriptValue("[true, 3]", "return pcall(len, 'abc')", prepare);
    expectScriptValue("[1, [1]]", "a = [] v = table_set(a, 0, 1) return [v, a]", prepare);
    // The special treatment belongs to the function, not to the variable.
    expectScriptValue("\"own\"", "error = own return error('boom')", prepare);
}

TEST(BindFunction, PlainFunctionsAndClosuresAndVectors) {
    RubyVM vm;
    const auto plain = +[](RubyVM&, RubyArguments arguments) { return RubyValue(arguments.size()); };
    vm.bindFunction("plain", plain);
    vm.bindFunction("closure", [number = 5](RubyVM&, RubyArguments) { return RubyValue(number); });
    vm.bindFunction("counter", [number = 0](RubyVM&, RubyArguments) mutable { return RubyValue(++number); });
    vm.bindFunction("vector", [](RubyVM&, const std::vector<RubyValue>& arguments) { return RubyValue(arguments); });
    EXPECT_EQ("[2, 5, 1, 2, [7]]", run(vm, "return [plain(1, 2), closure(), counter(), counter(), vector(7)]"));
}

TEST(Move, ConstructionTakesEverythingAlong) {
    RubyVM first;
    RubyVM* received = nullptr;
    first.bindFunction("who", [&received](RubyVM& vm, RubyArguments) {
        received = &vm;
        return RubyValue();
    });
    EXPECT_EQ("nil", run(first, "x = 5 def f() y = x return y end who() return nil"));
    EXPECT_EQ(&first, received);
    RubyVM second(std::move(first));
    EXPECT_EQ("5", run(second, "who() return f()"));
    EXPECT_EQ(&second, received);
    EXPECT_EQ("5", globalOf(second, "x"));
}

TEST(Move, AssignmentReplacesTheTarget) {
    int alive = 0;
    struct Witness {
        explicit Witness(int& count) : m_count(&count) { ++*m_count; }
        Witness(const Witness& other) : m_count(other.m_count) { ++*m_count; }
        ~Witness() { --*m_count; }
        int* m_count;
    };
    RubyVM target;
    target.bindFunction("f",
                        [witness = Witness(alive)](RubyVM&, RubyArguments) { return RubyValue(*witness.m_count); });
    EXPECT_EQ(1, alive);
    RubyVM source;
    source.setGlobal("x", 5);
    RubyVM* received = nullptr;
    source.bindFunction("who", [&received](RubyVM& vm, RubyArguments) {
        received = &vm;
        return RubyValue();
    });
    target = std::move(source);
    EXPECT_EQ(0, alive);
    EXPECT_EQ("5", run(target, "who() return x"));
    EXPECT_EQ(&target, received);
    EXPECT_EQ("undefined", globalOf(target, "f"));
    // A moved-from VM can be assigned to.
    source = RubyVM();
    EXPECT_EQ("1", run(source, "return 1"));
    EXPECT_EQ("undefined", globalOf(source, "x"));
}

TEST(Move, SelfAssignmentChangesNothing) {
    RubyVM vm;
    vm.setGlobal("x", 5);
    RubyVM& alias = vm;
    vm = std::move(alias);
    EXPECT_EQ("5", run(vm, "return x"));
}

TEST(Move, AMovedFromVmCanBeDestroyed) {
    auto first = std::make_unique<RubyVM>();
    RubyVM second(std::move(*first));
    first.reset();
    EXPECT_EQ("1", run(second, "return 1"));
}

TEST(CompileScript, ThrowsOnErrors) {
    const RubyVM vm;
    EXPECT_EQ("c:2:1: expected expression", errorOf([&] { (void)vm.compileScript("x = 1\nend", "c"); }));
    EXPECT_EQ('M', vm.compileScript("", "c").bytes[0]);
}

TEST(RunBytecode, RunsImagesAnyNumberOfTimes) {
    RubyVM vm;
    vm.setGlobal("n", 0);
    const RubyBytecode image = vm.compileScript("n = n + 1 return n", "t");
    EXPECT_EQ("1", describe(vm.runBytecode(image).value));
    EXPECT_EQ("2", describe(vm.runBytecode(image).value));
    RubyVM other;
    other.setGlobal("n", 10);
    EXPECT_EQ("11", describe(other.runBytecode(image).value));
}

TEST(RunBytecode, ReportsLoadErrors) {
    RubyVM vm;
    const RubyResult result = vm.runBytecode({});
    EXPECT_FALSE(result.ok);
    EXPECT_TRUE(result.value.isNil());
    EXPECT_EQ("bytecode file is too small", result.error);
}

TEST(ScriptFiles, RunUnderTheirPath) {
    const TemporaryDirectory directory;
    const std::string path = directory.file("script.rb");
    RubyVM vm;
    writeFile(path, "x = 'caf\xc3\xa9'\r\nreturn x");
    EXPECT_EQ("\"caf\\xc3\\xa9\"", describe(vm.runScriptFile(path).value));
    writeFile(path, "\n1 / 0");
    EXPECT_EQ(path + ":2: division by zero", vm.runScriptFile(path).error);
    writeFile(path, "\nend");
    EXPECT_EQ(path + ":2:1: expected expression", vm.runScriptFile(path).error);
    writeFile(path, "");
    const RubyResult empty = vm.runScriptFile(path);
    EXPECT_TRUE(empty.ok);
    EXPECT_TRUE(empty.value.isNil());
}

TEST(ScriptFiles, ThatCannotBeOpened) {
    const TemporaryDirectory directory;
    RubyVM vm;
    for (const std::string& path :
         {directory.file("missing.rb"), directory.file(""), std::string(), std::string("a\0b", 3)}) {
        const RubyResult script = vm.runScriptFile(path);
        EXPECT_FALSE(script.ok);
        EXPECT_TRUE(script.value.isNil());
        EXPECT_EQ("unable to open script file: " + path, script.error);
        EXPECT_EQ("unable to open bytecode file: " + path, vm.runBytecodeFile(path).error);
        EXPECT_EQ("unable to open bytecode file: " + path, vm.runScriptFromBytecodeFile(path).error);
    }
}

TEST(BytecodeFiles, WriteAndRun) {
    const TemporaryDirectory directory;
    const std::string path = directory.file("image");
    RubyVM vm;
    std::string error = "untouched";
    EXPECT_TRUE(vm.writeBytecodeFile("x = 1\nreturn x / 0", path, "chunk", &error));
    EXPECT_EQ("untouched", error);
    const std::vector<std::uint8_t> bytes = vm.compileScript("x = 1\nreturn x / 0", "chunk").bytes;
    EXPECT_EQ(std::string(bytes.begin(), bytes.end()), readFile(path));
    EXPECT_EQ("chunk:2: division by zero", vm.runBytecodeFile(path).error);
    EXPECT_TRUE(vm.writeBytecodeFile("return 5", path, "chunk"));
    EXPECT_EQ("5", describe(vm.runBytecodeFile(path).value));
    EXPECT_EQ("5", describe(vm.runScriptFromBytecodeFile(path).value));
}

TEST(BytecodeFiles, CompileErrorsTouchNoFile) {
    const TemporaryDirectory directory;
    const std::string path = directory.file("image");
    const RubyVM vm;
    std::string error;
    EXPECT_FALSE(vm.writeBytecodeFile("x = (", path, "chunk", &error));
    EXPECT_EQ("chunk:1:6: expected expression", error);
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_FALSE(vm.writeBytecodeFile("x = (", path, "chunk", nullptr));
    writeFile(path, "older");
    EXPECT_FALSE(vm.writeBytecodeFile("x = (", path, "chunk", &error));
    EXPECT_EQ("older", readFile(path));
}

TEST(BytecodeFiles, ThatCannotBeWritten) {
    const TemporaryDirectory directory;
    const RubyVM vm;
    for (const std::string& path : {directory.file(""), directory.file("no/such/directory"), std::string()}) {
        std::string error;
        EXPECT_FALSE(vm.writeBytecodeFile("1", path, "chunk", &error));
        EXPECT_EQ("unable to open bytecode output file: " + path, error);
        EXPECT_FALSE(vm.writeBytecodeFile("1", path, "chunk"));
    }
    std::string error;
    EXPECT_FALSE(vm.writeBytecodeFile("1", "/dev/full", "chunk", &error));
    EXPECT_EQ("failed to write file: /dev/full", error);
    // The compile error comes before the file is opened.
    EXPECT_FALSE(vm.writeBytecodeFile("end", "/no/such/file", "chunk", &error));
    EXPECT_EQ("chunk:1:1: expected expression", error);
}

TEST(Failures, AreReturnedAndNotPrinted) {
    const TemporaryDirectory directory;
    RubyVM vm;
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    std::string error;
    EXPECT_FALSE(vm.writeBytecodeFile("x = (", directory.file("image"), "chunk", &error));
    EXPECT_FALSE(vm.writeBytecodeFile("x = (", directory.file("image"), "chunk", nullptr));
    EXPECT_FALSE(vm.writeBytecodeFile("1", directory.file(""), "chunk", nullptr));
    EXPECT_FALSE(vm.runScriptString("x = (", "chunk").ok);
    EXPECT_FALSE(vm.runScriptString("1 / 0", "chunk").ok);
    EXPECT_FALSE(vm.runScriptFile(directory.file("missing")).ok);
    EXPECT_FALSE(vm.runBytecodeFile(directory.file("missing")).ok);
    EXPECT_FALSE(vm.runBytecode({}).ok);
    EXPECT_EQ("", testing::internal::GetCapturedStdout());
    EXPECT_EQ("", testing::internal::GetCapturedStderr());
}

TEST(BytecodeFiles, DamagedOnes) {
    const TemporaryDirectory directory;
    const std::string path = directory.file("image");
    RubyVM vm;
    writeFile(path, "");
    EXPECT_EQ("bytecode file is too small", vm.runBytecodeFile(path).error);
    writeFile(path, "puts('a script, not an image')");
    EXPECT_EQ("invalid bytecode header", vm.runBytecodeFile(path).error);
    ASSERT_TRUE(vm.writeBytecodeFile("return 'kept'", path, "chunk"));
    const std::string whole = readFile(path);
    writeFile(path, whole.substr(0, whole.size() - 1));
    EXPECT_EQ("bytecode is truncated", vm.runBytecodeFile(path).error);
    writeFile(path, whole + "trailing");
    EXPECT_EQ("\"kept\"", describe(vm.runBytecodeFile(path).value));
}

TEST(ValueToString, IsTheTextOfTheValue) {
    EXPECT_EQ("[1, a, 2.5]", RubyVM::valueToString(RubyArray{1, "a", 2.5}));
    EXPECT_EQ("nil", RubyVM::valueToString({}));
}

TEST(FreeFunctions, ForwardToTheVm) {
    const TemporaryDirectory directory;
    RubyVM vm;
    bindCppFunctionToRubyVM(vm, "twice",
                            [](RubyVM&, RubyArguments arguments) { return RubyValue(arguments[0].asInteger() * 2); });
    EXPECT_EQ("42", describe(runRubyScriptString(vm, "return twice(21)", "chunk").value));
    EXPECT_EQ("chunk:1: division by zero", runRubyScriptString(vm, "1 / 0", "chunk").error);
    const std::string script = directory.file("script.rb");
    writeFile(script, "return twice(5)");
    EXPECT_EQ("10", describe(runRubyScriptFile(vm, script).value));
    EXPECT_EQ("unable to open script file: missing", runRubyScriptFile(vm, "missing").error);
    EXPECT_EQ("8", describe(runRubyBytecode(vm, vm.compileScript("return twice(4)", "chunk")).value));
    const std::string image = directory.file("image");
    ASSERT_TRUE(vm.writeBytecodeFile("return twice(3)", image, "chunk"));
    EXPECT_EQ("6", describe(runRubyBytecodeFile(vm, image).value));
    EXPECT_EQ("6", describe(runRubyScriptFromBytecodeFile(vm, image).value));
    EXPECT_EQ("unable to open bytecode file: missing", runRubyBytecodeFile(vm, "missing").error);
    EXPECT_EQ("unable to open bytecode file: missing", runRubyScriptFromBytecodeFile(vm, "missing").error);
}

TEST(Threads, DistinctVmsShareNothing) {
    const std::string source =
        "total = 0 i = 0 m = map_new()\n"
        "while i < 2000 do m['k' + i % 50] = i total = total + m['k' + i % 50] i = i + 1 end\n"
        "return [total, len(m)]";
    std::string outcomes[2];
    std::thread other([&] {
        RubyVM vm;
        outcomes[0] = run(vm, source);
    });
    {
        RubyVM vm;
        outcomes[1] = run(vm, source);
    }
    other.join();
    EXPECT_EQ("[1999000, 50]", outcomes[0]);
    EXPECT_EQ("[1999000, 50]", outcomes[1]);
}

TEST(Threads, AVmMayMoveToAnotherThread) {
    RubyVM vm;
    EXPECT_EQ("nil", run(vm, "list = ['a' + 1, [2], map_new()] return nil"));
    std::string outcome;
    std::thread([&outcome, moved = std::move(vm)]() mutable {
        outcome = run(moved, "array_push(list, 'b') return list");
        moved = RubyVM();
    }).join();
    EXPECT_EQ("[\"a1\", [2], {}, \"b\"]", outcome);
}

TEST(Code, AFrameThatHasExecutedNothingIsAtItsFirstLine) {
    internal::Code code;
    code.instructions.resize(3);
    code.lines = {7, 8, 9};
    const internal::EngineInstruction* first = code.instructions.data();
    EXPECT_EQ(7u, code.lineAt(first));
    EXPECT_EQ(7u, code.lineAt(first + 1));
    EXPECT_EQ(9u, code.lineAt(first + 3));
}

}  // namespace
}  // namespace morvel::ruby::tests
