// The program in an address space that its input does not fit into.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support.h"

namespace morvel::ruby::tests {

namespace {

TEST(SmallAddressSpace, IsReportedAsOutOfMemory) {
    constexpr rlim_t kAddressSpace = 256 * 1024 * 1024;
    const TemporaryDirectory directory;
    const std::string source = directory.path("script.rb");
    writeFile(source, "x = 1");
    std::filesystem::resize_file(source, kAddressSpace * 2);
    for (const bool isCompiling : {true, false}) {
        ChildSetup setup;
        setup.arguments =
            isCompiling ? std::vector<std::string>{"--compile", source, directory.path("image")} : std::vector{source};
        setup.prepare = limited(RLIMIT_AS, kAddressSpace);
        const ChildOutcome child = runProgram(setup);
        EXPECT_EQ(child.status, 1);
        EXPECT_EQ(child.error, "morveltesk: out of memory\n");
    }
}

TEST(SmallAddressSpace, EndsTheReplWithAnErrorWhenALineDoesNotFit) {
    constexpr rlim_t kAddressSpace = 128 * 1024 * 1024;
    ChildSetup setup;
    setup.arguments = {"--repl"};
    setup.input = "puts('before')\nx = '" + std::string(kAddressSpace, 'x') + "'\nputs('after')\n";
    setup.prepare = limited(RLIMIT_AS, kAddressSpace);
    const ChildOutcome child = runProgram(setup);
    EXPECT_EQ(child.status, 1);
    EXPECT_EQ(child.output, "rb> before\nrb> ");
    EXPECT_EQ(child.error, "morveltesk: out of memory\n");
}

}  // namespace

}  // namespace morvel::ruby::tests
