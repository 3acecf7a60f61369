// Objects captured by a host function are destroyed with the last reference to the function, whatever else ends with
// it.
#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "fiber.h"
#include "morvel/ruby/vm.h"
#include "support.h"

namespace morvel::ruby::tests {

namespace {

/// Returns a pointer that runs `action` when its last copy is destroyed.
std::shared_ptr<void> atTheEnd(std::function<void()> action) {
    return {nullptr, [action = std::move(action)](void*) { action(); }};
}

/// A function that captured `captured`, bound by `binder` but held by no global.
RubyValue functionWith(RubyVM& binder, std::shared_ptr<void> captured) {
    binder.bindFunction(
        "made", [captured = std::move(captured)](RubyVM&, RubyArguments) { return RubyValue(captured.use_count()); });
    RubyValue function;
    EXPECT_TRUE(binder.getGlobal("made", function));
    binder.setGlobal("made", RubyValue());
    return function;
}

/// An object whose destructor uses this VM and increments `ended`.
std::shared_ptr<void> userOf(RubyVM& vm, int& ended) {
    return atTheEnd([&] {
        ++ended;
        EXPECT_EQ(outcome(vm, "return 1 + 1"), "2");
    });
}

struct VmAndFunction {
    RubyVM vm;
    RubyValue function;
};

TEST(CapturedObjects, EndBeforeTheVmThatBoundThem) {
    int ended = 0;
    {
        RubyVM outer;
        auto inner = std::make_shared<VmAndFunction>();
        inner->function = functionWith(inner->vm, userOf(inner->vm, ended));
        outer.setGlobal("f", functionWith(outer, std::move(inner)));
    }
    EXPECT_EQ(ended, 1);
}

TEST(CapturedObjects, EndWithTheVmThatAnotherOnesEndMakes) {
    int ended = 0;
    int endedWithTheVm = 0;
    {
        RubyVM outer;
        outer.setGlobal("f", functionWith(outer, atTheEnd([&] {
                                              {
                                                  RubyVM local;
                                                  (void)functionWith(local, userOf(local, ended));
                                              }
                                              endedWithTheVm = ended;
                                          })));
    }
    EXPECT_EQ(endedWithTheVm, 1);
}

// A run drops the function and, before its next instruction, a nested run on another VM destroys the VM that bound it.
TEST(CapturedObjects, EndBeforeTheirVmThoughAnOuterRunLetGoOfThem) {
    int ended = 0;
    auto binder = std::make_unique<RubyVM>();
    RubyVM outer;
    RubyVM inner;
    inner.bindFunction("end_binder", [&](RubyVM&, RubyArguments) {
        binder.reset();
        return RubyValue(ended);
    });
    outer.bindFunction("drop_and_run", [&](RubyVM& vm, RubyArguments) {
        vm.setGlobal("f", RubyValue());
        return inner.runScriptString("return end_binder()", "inner").value;
    });
    outer.setGlobal("f", functionWith(*binder, userOf(*binder, ended)));
    EXPECT_EQ(outcome(outer, "return drop_and_run()"), "1");
}

/// Ways of dropping many functions at once.
void dropWithinARun(RubyVM& vm) { EXPECT_EQ(outcome(vm, "list = nil return 1"), "1"); }
void dropFromOutside(RubyVM& vm) { vm.setGlobal("list", RubyValue()); }
void dropWithTheVm(RubyVM&) {}

// They end one after another, not nested: the native stack would overflow.
TEST(CapturedObjects, MayBeManyThatRunScriptsOrEndVms) {
    constexpr std::size_t kStack = std::size_t{256} << 10;
    constexpr int kFunctions = 2'000;
    for (const auto& drop : {dropWithinARun, dropFromOutside, dropWithTheVm}) {
        for (const bool runsScript : {true, false}) {
            int ended = 0;
            runOnStack(kStack, [&] {
                RubyVM other;
                RubyVM vm;
                RubyArray list;
                for (int i = 0; i < kFunctions; ++i) {
                    list.push_back(functionWith(vm, atTheEnd([&, runsScript] {
                                                    if (runsScript) {
                                                        EXPECT_EQ(outcome(other, "return 1 + 1"), "2");
                                                    } else {
                                                        const RubyVM own;
                                                    }
                                                    ++ended;
                                                })));
                }
                vm.setGlobal("list", std::move(list));
                drop(vm);
            });
            EXPECT_EQ(ended, kFunctions) << runsScript;
        }
    }
}

TEST(CapturedObjects, MayBeALongChainOfFunctions) {
    constexpr int kFunctions = 50'000;
    int ended = 0;
    RubyVM vm;
    RubyValue last;
    for (int i = 0; i < kFunctions; ++i) {
        auto held = std::make_shared<std::pair<RubyValue, std::shared_ptr<void>>>(last, atTheEnd([&] { ++ended; }));
        last = functionWith(vm, std::move(held));
    }
    EXPECT_EQ(ended, 0);
    last = RubyValue();
    EXPECT_EQ(ended, kFunctions);
}

// Two VMs take turns on one thread, and the run that started first ends first.
TEST(CapturedObjects, EndWhateverTheOrderInWhichRunsEnd) {
    struct Side {
        RubyVM vm;
        int ended = 0;
        std::string result;
    };
    Side first;
    Side second;
    const auto run = [](Side& side, Fiber& fiber) {
        side.vm.bindFunction("pause", [&fiber](RubyVM&, RubyArguments) {
            fiber.pause();
            return RubyValue();
        });
        side.vm.setGlobal("f", functionWith(side.vm, atTheEnd([&side] { ++side.ended; })));
        side.result = outcome(side.vm, "pause() f = 1 pause() return f");
    };
    Fiber one([&](Fiber& fiber) { run(first, fiber); });
    Fiber two([&](Fiber& fiber) { run(second, fiber); });
    for (Fiber* next : {&one, &two, &one, &two, &one, &two}) {
        next->resume();
    }
    EXPECT_EQ(first.result, "1");
    EXPECT_EQ(second.result, "1");
    EXPECT_EQ(first.ended, 1);
    EXPECT_EQ(second.ended, 1);
    // Nothing is running now, so a dropped object is destroyed at once.
    RubyValue function = functionWith(first.vm, atTheEnd([&first] { ++first.ended; }));
    function = RubyValue();
    EXPECT_EQ(first.ended, 2);
}

}  // namespace

}  // namespace morvel::ruby::tests
