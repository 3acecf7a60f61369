// The symbolic stack: what its entries stand for, and when they are materialized in their temporaries.
#include "vm/engine/symbolic_stack.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace morvel::ruby::tests {
namespace {

using internal::Code;
using internal::CodeBuilder;
using internal::Entry;
using internal::Place;

constexpr std::uint32_t kFirstTemporary = 10;

const Entry kLocal{Place::Local, 1};
const Entry kOtherLocal{Place::Local, 2};
const Entry kDyingLocal{Place::Local, 3, true};
const Entry kGlobal{Place::Global, 1};
const Entry kOtherGlobal{Place::Global, 2};
const Entry kConstant{Place::Constant, 1};

class SymbolicStack : public testing::Test {
protected:
    void pushAll(const std::vector<Entry>& entries) {
        for (const Entry& entry : entries) {
            stack.push(entry);
        }
    }

    /// The emitted instructions: their names and the depths of the temporaries that they write.
    [[nodiscard]] std::string emitted() {
        std::string text;
        for (const internal::EngineInstruction& instruction : builder.code().instructions) {
            text += text.empty() ? "" : " ";
            text += std::string(internal::kEngineOpNames.at(static_cast<std::size_t>(instruction.op))) + ' ' +
                    std::to_string(instruction.a / 2U - kFirstTemporary);
        }
        return text;
    }

    static std::unique_ptr<Code> makeCode() {
        auto code = std::make_unique<Code>();
        code->localCount = kFirstTemporary;
        code->firstTemporary = kFirstTemporary;
        return code;
    }

    CodeBuilder builder{makeCode(), 1};
    // Code of one instruction, which allows 256 looks.
    internal::SymbolicStack stack{builder, 1};
};

TEST_F(SymbolicStack, EntriesArePassedToTheTemporariesOfTheirDepths) {
    pushAll({kLocal, kConstant, kGlobal, kDyingLocal});
    EXPECT_EQ(kFirstTemporary + 4, stack.pushTemporary() / 2U);
    stack.materializeAll();
    EXPECT_EQ("PassLocal 0 PassConstant 1 PassGlobal 2 MoveTemporary 3", emitted());
    EXPECT_EQ((Entry{Place::Temporary, kFirstTemporary + 2}), stack[2]);
    stack.materializeAll();
    EXPECT_EQ(4U, builder.code().instructions.size());
}

TEST_F(SymbolicStack, AChangeDetachesWhatStandsForTheOldValue) {
    pushAll({kLocal, kOtherLocal, kGlobal, kLocal});
    stack.detach(kLocal);
    EXPECT_EQ("PassLocal 0 PassLocal 3", emitted());
    stack.detach(kLocal);
    stack.detach(kOtherGlobal);
    EXPECT_EQ("PassLocal 0 PassLocal 3", emitted());
}

TEST_F(SymbolicStack, ACallDetachesAllGlobals) {
    pushAll({kGlobal, kLocal, kOtherGlobal, kConstant, kGlobal});
    stack.detachGlobals();
    EXPECT_EQ("PassGlobal 0 PassGlobal 2 PassGlobal 4", emitted());
}

TEST_F(SymbolicStack, FindsOthersThatStandForTheSame) {
    pushAll({kLocal, kOtherLocal, kLocal, kGlobal});
    stack.pushTemporary();
    EXPECT_TRUE(stack.isElsewhere(0));
    EXPECT_FALSE(stack.isElsewhere(1));
    EXPECT_TRUE(stack.isElsewhere(2));
    EXPECT_FALSE(stack.isElsewhere(3));
    EXPECT_FALSE(stack.isElsewhere(4));
    EXPECT_TRUE(stack.holds(kLocal));
    EXPECT_TRUE(stack.holds(kGlobal));
    EXPECT_FALSE(stack.holds(kDyingLocal));
    EXPECT_FALSE(stack.holds(kOtherGlobal));
    stack.materialize(0);
    EXPECT_FALSE(stack.isElsewhere(2));
}

TEST_F(SymbolicStack, KnowsWhetherAnEntryFromADepthOnDies) {
    stack.beginBlock(2);
    pushAll({kLocal, kDyingLocal, kConstant});
    EXPECT_TRUE(stack.hasDying(0));
    EXPECT_TRUE(stack.hasDying(2));
    EXPECT_TRUE(stack.hasDying(3));
    EXPECT_FALSE(stack.hasDying(4));
    EXPECT_FALSE(stack.hasDying(5));
}

TEST_F(SymbolicStack, EntriesFromBeforeTheBlockAreInTheirTemporaries) {
    stack.push(kLocal);
    stack.beginBlock(3);
    EXPECT_EQ(3U, stack.size());
    EXPECT_EQ((Entry{Place::Temporary, kFirstTemporary + 1}), stack[1]);
    stack.push(kGlobal);
    EXPECT_EQ(kGlobal, stack.pop());
    EXPECT_EQ((Entry{Place::Temporary, kFirstTemporary + 2}), stack.pop());
    EXPECT_EQ(2U, stack.size());
    EXPECT_EQ(kFirstTemporary + 2, stack.pushTemporary() / 2U);
    stack.push(kLocal);
    stack.cutTo(1);
    EXPECT_EQ(1U, stack.size());
    EXPECT_FALSE(stack.holds(kLocal));
    stack.materializeAll();
    EXPECT_EQ("", emitted());
}

TEST_F(SymbolicStack, OnlyWhatAnOperandCannotNameIsMadeNameable) {
    pushAll({{Place::Global, 0x7fff}, {Place::Global, 0x8000}, {Place::Constant, 0x8000}});
    for (std::size_t depth = 0; depth < 3; ++depth) {
        stack.makeNameable(depth);
    }
    EXPECT_EQ("PassGlobal 1 PassConstant 2", emitted());
}

TEST_F(SymbolicStack, OnlyWhatIsInNoRegisterIsPutIntoOne) {
    pushAll({kLocal, kConstant, kGlobal, kDyingLocal});
    for (std::size_t depth = 0; depth < 4; ++depth) {
        stack.makeRegister(depth);
    }
    EXPECT_EQ("PassConstant 1 PassGlobal 2", emitted());
}

TEST_F(SymbolicStack, GivesUpWhenItLooksTooFarTooOften) {
    stack.push(kLocal);
    for (int i = 0; i < 255; ++i) {
        stack.push(kConstant);
    }
    EXPECT_TRUE(stack.holds(kLocal));
    EXPECT_FALSE(builder.hasFailed());
    // All looks are used up, but looking for an entry that is not there takes none.
    EXPECT_FALSE(stack.holds(kGlobal));
    EXPECT_FALSE(builder.hasFailed());
    EXPECT_TRUE(stack.holds(kConstant));
    EXPECT_TRUE(builder.hasFailed());
}

TEST_F(SymbolicStack, GivesUpWhenItLooksOnceTooFar) {
    stack.push(kLocal);
    for (int i = 0; i < 256; ++i) {
        stack.push(kConstant);
    }
    EXPECT_TRUE(stack.holds(kLocal));
    EXPECT_TRUE(builder.hasFailed());
}

}  // namespace
}  // namespace morvel::ruby::tests
