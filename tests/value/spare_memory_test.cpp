// The handler that frees spare memory when the general allocator runs out.
#include "value/spare_memory.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <utility>

namespace morvel::ruby::tests {
namespace {

class Spare final : public internal::SpareMemory {
public:
    [[nodiscard]] bool isGivenBack() const { return m_isGivenBack; }

private:
    bool giveBack() noexcept override { return !std::exchange(m_isGivenBack, true); }

    bool m_isGivenBack = false;
};

TEST(SpareMemory, IsGivenBackByEveryObjectThatHasSome) {
    internal::SpareMemory::giveBackAll();
    const Spare outer;
    {
        const Spare inner;
        EXPECT_TRUE(internal::SpareMemory::giveBackAll());
        EXPECT_TRUE(inner.isGivenBack());
        EXPECT_TRUE(outer.isGivenBack());
        EXPECT_FALSE(internal::SpareMemory::giveBackAll());
    }
    const Spare later;
    EXPECT_TRUE(internal::SpareMemory::giveBackAll());
    EXPECT_TRUE(later.isGivenBack());
}

bool checksHandler = false;

struct EndOfProcess {
    EndOfProcess() = default;
    ~EndOfProcess() {
        if (checksHandler && std::get_new_handler() != nullptr) {
            std::_Exit(EXIT_FAILURE);
        }
    }
    EndOfProcess(const EndOfProcess&) = delete;
    EndOfProcess& operator=(const EndOfProcess&) = delete;
};

// Constructed before the library's handler is installed, and so destroyed after the handler.
[[gnu::init_priority(200)]] const EndOfProcess endOfProcess;

// The library may be unloaded while the process goes on.
TEST(SpareMemory, LeavesNoHandlerBehind) {
    EXPECT_NE(nullptr, std::get_new_handler());
    const auto endProcess = [] {
        checksHandler = true;
        std::exit(EXIT_SUCCESS);
    };
    EXPECT_EXIT(endProcess(), testing::ExitedWithCode(EXIT_SUCCESS), "");
}

}  // namespace
}  // namespace morvel::ruby::tests
