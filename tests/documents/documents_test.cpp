// The C++ programs of the documents print what the documents say, and no guest crashes them.
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "documents/attacks.h"
#include "morvel/ruby/vm.h"
#include "support/files.h"
#include "support/leaks_allowed.h"
#include "support/process.h"
#include "support/temporary_directory.h"

namespace morvel::ruby::tests {
namespace {

std::vector<std::string> programNames() {
    std::vector<std::string> names;
    std::istringstream list(MORVEL_PROGRAM_NAMES);
    for (std::string name; std::getline(list, name, ',');) {
        names.push_back(name);
    }
    return names;
}

/// Runs a program in its own folder on a small stack, under an attack unless that is empty.
ProcessOutcome run(const std::string& name, const std::string& attack) {
    // The sanitizers report with a signal. Reference cycles are never freed, so leak detection is off. Without
    // sanitizers, freed memory is overwritten, which exposes some reads of it.
    constexpr const char* kScript =
        "cd \"$1\" && ulimit -s 512 && export ASAN_OPTIONS=abort_on_error=1:detect_leaks=0 "
        "UBSAN_OPTIONS=abort_on_error=1:halt_on_error=1 MALLOC_PERTURB_=165 && "
        "if [ -n \"$3\" ]; then export MORVEL_ATTACK=\"$3\"; fi && exec \"$2\"";
    const TemporaryDirectory directory;
    return runProcess("/bin/sh", {"-c", kScript, "sh", directory.file("."), MORVEL_PROGRAMS_DIR "/" + name, attack});
}

std::string outputFile(const std::string& name) { return MORVEL_PROGRAM_OUTPUT_DIR "/" + name + ".out"; }

/// The programs in the documents; another test checks the output of the embedding example.
std::vector<std::string> programsWithOutput() {
    std::vector<std::string> names = programNames();
    std::erase_if(names, [](const std::string& name) { return !std::filesystem::exists(outputFile(name)); });
    return names;
}

class DocumentProgram : public testing::TestWithParam<std::string> {};
class AttackedProgram : public testing::TestWithParam<std::string> {};

TEST_P(DocumentProgram, PrintsWhatTheDocumentSays) {
    const ProcessOutcome outcome = run(GetParam(), "");
    EXPECT_EQ(0, outcome.status);
    EXPECT_EQ(readFile(outputFile(GetParam())), outcome.output);
    EXPECT_EQ("", outcome.error);
}

TEST_P(AttackedProgram, OutlivesHostileGuests) {
    for (const Attack& attack : kAttacks) {
        const ProcessOutcome outcome = run(GetParam(), std::string(attack.name));
        EXPECT_TRUE(outcome.status == 0 || outcome.status == 1)
            << "attack: " << attack.name << "\nstatus: " << outcome.status << '\n'
            << outcome.error.substr(0, 2000);
    }
}

// An attack that fails on its own would test nothing.
TEST(Attacks, DoWhatTheySay) {
    const LeaksAllowed ringsAreMade;
    for (const Attack& attack : kAttacks) {
        RubyVM vm;
        int calls = 0;
        vm.bindFunction("puts", [&](RubyVM&, RubyArguments arguments) {
            ++calls;
            // Rendering takes time; only the attack that is expected to fail needs it.
            for (const RubyValue& argument : arguments) {
                (void)(attack.error.empty() ? "" : argument.toString());
            }
            return RubyValue();
        });
        RubyValue function;
        ASSERT_TRUE(vm.getGlobal("puts", function));
        vm.setGlobal("_functions", RubyArray{function});
        vm.setGlobal("_texts", RubyArray{"click"});
        vm.setGlobal("_names", RubyArray{"while", "list", "puts"});
        vm.setGlobal("list", RubyArray{1});
        const RubyResult result = vm.runScriptString(std::string(attack.script), "attack");
        EXPECT_EQ(attack.error, result.error) << attack.name;
        RubyValue list;
        ASSERT_TRUE(vm.getGlobal("list", list));
        if (attack.script == kCallEverything) {
            EXPECT_GT(calls, 1000);
        } else if (attack.script == kMakeRings) {
            EXPECT_THROW((void)list.toString(), RubyError);
        } else if (attack.script == kChangeNames) {
            EXPECT_EQ("[nil]", list.toString());
        }
    }
}

std::string nameOf(const testing::TestParamInfo<std::string>& info) { return info.param; }

INSTANTIATE_TEST_SUITE_P(Documents, DocumentProgram, testing::ValuesIn(programsWithOutput()), nameOf);
INSTANTIATE_TEST_SUITE_P(Documents, AttackedProgram, testing::ValuesIn(programNames()), nameOf);

}  // namespace
}  // namespace morvel::ruby::tests
