// Every memory request of the program may fail, including the C library's own; the program still exits cleanly.
#include <gtest/gtest.h>

#include <cstdlib>
#include <ostream>
#include <string>
#include <tuple>
#include <vector>

#include "support.h"

namespace morvel::ruby::tests {

namespace {

const std::string kScript =
    "def f(a) return [a, 'a text of more than sixteen bytes ' + a] end\n"
    "m = map_new()\nm['a key of more than sixteen bytes'] = f(1)\n"
    "p = pcall(f, 2)\nputs(m, p[0])\n"
    "error('a message of more than sixteen bytes')\n";

/// One request fails, or it and all later ones.
class FailingMemory : public ::testing::TestWithParam<std::tuple<const char*, const char*>> {};

TEST_P(FailingMemory, EndsInOrder) {
    const std::string mode = std::get<0>(GetParam());
    const char* const failing = std::get<1>(GetParam());
    const TemporaryDirectory directory;
    const std::string script = directory.file("script.rb");
    const std::string image = directory.file("image");
    writeFile(script, kScript);
    ProcessSetup compiling;
    compiling.arguments = {"--compile", script, image};
    ASSERT_EQ(runProcess(compiling).status, 0);
    ProcessSetup setup;
    setup.program = MORVEL_DYNAMIC_PROGRAM;
    setup.arguments = mode == "script"    ? std::vector{script}
                      : mode == "compile" ? std::vector<std::string>{"--compile", script, directory.file("other")}
                      : mode == "image"   ? std::vector<std::string>{"--run-bytecode", image}
                                          : std::vector<std::string>{"--repl"};
    setup.input = "x = [1, 'a text of more than sixteen bytes']\nputs(x)\nnil + 1\nexit\n";
    setup.prepare = [failing] {
        setenv("MORVEL_FAILING_MEMORY", failing, 1);
        setenv("LD_PRELOAD", MORVEL_FAILING_MEMORY_LIBRARY, 1);
    };
    const ProcessOutcome child = runProcess(setup);
    EXPECT_EQ(child.status, 0) << child.output << child.error;
    // With fewer, the requests would not be intercepted.
    constexpr int kFewestRequests = 200;
    EXPECT_GT(std::atoi(child.output.c_str()), kFewestRequests) << child.output;
    EXPECT_NE(child.output.find(" requests, 0 wrong\n"), std::string::npos) << child.output;
}

std::string modeName(const ::testing::TestParamInfo<FailingMemory::ParamType>& info) {
    const bool isAlone = std::get<1>(info.param) == std::string("alone");
    return std::string(std::get<0>(info.param)) + (isAlone ? "_alone" : "_from_there_on");
}

INSTANTIATE_TEST_SUITE_P(Modes, FailingMemory,
                         ::testing::Combine(::testing::Values("script", "compile", "image", "repl"),
                                            ::testing::Values("alone", "from there on")),
                         modeName);

}  // namespace

}  // namespace morvel::ruby::tests
