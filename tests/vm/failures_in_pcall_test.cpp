// When a failure inside pcall frees the memory that is kept for reuse.
#include <gtest/gtest.h>

#include <new>
#include <string>
#include <vector>

#include "morvel/ruby/error.h"
#include "morvel/ruby/vm.h"
#include "support/describe.h"
#include "value/box_pools.h"

namespace morvel::ruby::tests {
namespace {

/// Whether spare memory is left after a script, called with the functions fail and isSpare, has made some.
bool isSpareAfter(const std::string& source, const RubyHostFunction& fail) {
    RubyVM vm;
    vm.bindFunction("fail", fail);
    vm.bindFunction("isSpare", [](RubyVM&, RubyArguments) { return RubyValue(internal::boxPool.shrink(0)); });
    const RubyResult result =
        vm.runScriptString("isSpare() l = [] i = 0 while i < 9 do array_push(l, map_new()) i = i + 1 end l = nil " +
                               source + " return isSpare()",
                           "t");
    EXPECT_TRUE(result.ok) << result.error;
    return result.value.isTruthy();
}

const std::vector<std::string> kScripts{
    "r = pcall(fail)",
    "def f() return fail() end r = pcall(f)",
    "def f() x = fail() return x end r = pcall(f)",
    "def f() return [fail()] end def g() x = f() return x end r = pcall(g)",
    "r = pcall(pcall, fail)",
};

TEST(FailuresInPcall, KeepSpareMemory) {
    std::vector<std::string> scripts = kScripts;
    scripts.insert(scripts.end(), {"r = pcall(error, 'failed')", "def f() return nil + 1 end r = pcall(f)"});
    for (const std::string& script : scripts) {
        const auto fail = [](RubyVM&, RubyArguments) -> RubyValue { throw RubyError("failed"); };
        EXPECT_EQ(MORVEL_RECYCLES_BOXES != 0, isSpareAfter(script, fail)) << script;
    }
}

TEST(FailuresInPcall, FreeSpareMemoryWhereMemoryRanOut) {
    for (const std::string& script : kScripts) {
        const auto fail = [](RubyVM&, RubyArguments) -> RubyValue { throw std::bad_alloc(); };
        EXPECT_FALSE(isSpareAfter(script, fail)) << script;
    }
}

}  // namespace
}  // namespace morvel::ruby::tests
