// Both executors behave the same on the script tests, examples and benchmarks. fuzz/differential_target.cpp compares
// them on generated programs and instructions.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "equivalence/both_executors.h"
#include "support/files.h"
#include "support/temporary_directory.h"

namespace morvel::ruby::equivalence {

namespace {

namespace fs = std::filesystem;

/// An empty working directory for scripts that write files.
class WorkingDirectory {
public:
    WorkingDirectory() : m_previous(fs::current_path()) { fs::current_path(m_directory.path()); }
    ~WorkingDirectory() { fs::current_path(m_previous); }
    WorkingDirectory(const WorkingDirectory&) = delete;
    WorkingDirectory& operator=(const WorkingDirectory&) = delete;

private:
    fs::path m_previous;
    tests::TemporaryDirectory m_directory;
};

Observation observeFile(const fs::path& script, internal::ExecutorChoice executor) {
    const WorkingDirectory folder;
    fs::path files = script;
    files.replace_extension(".files");
    if (fs::is_directory(files)) {
        fs::copy(files, ".", fs::copy_options::recursive);
    }
    return observeSource(tests::readFile(script), script.filename().string(), executor);
}

std::vector<fs::path> corpus() {
    std::vector<fs::path> scripts;
    // Scripts that reach a limit on purpose can observe where it lies, and the clock and unseeded random numbers never
    // repeat.
    const std::set<std::string> excluded{"limits", "cli", "repl"};
    for (const auto& entry : fs::recursive_directory_iterator(MORVELTESK_SCRIPTS_DIR)) {
        if (entry.path().extension() == ".rb" && excluded.count(entry.path().parent_path().filename().string()) == 0) {
            scripts.push_back(entry.path());
        }
    }
    for (const auto& entry : fs::directory_iterator(MORVELTESK_EXAMPLES_DIR)) {
        if (entry.path().extension() == ".rb") {
            scripts.push_back(entry.path());
        }
    }
    std::sort(scripts.begin(), scripts.end());
    return scripts;
}

TEST(Equivalence, ScriptTestsAndExamples) {
    const std::vector<fs::path> scripts = corpus();
    ASSERT_GT(scripts.size(), 300U);
    for (const fs::path& script : scripts) {
        const Observation engine = observeFile(script, internal::ExecutorChoice::Automatic);
        const Observation plain = observeFile(script, internal::ExecutorChoice::BaselineOnly);
        if (engine.reachedTheStackLimit() || plain.reachedTheStackLimit()) {
            continue;
        }
        EXPECT_TRUE(engine == plain) << script << "\nengine:\n" << engine.describe() << "plain:\n" << plain.describe();
    }
}

TEST(Equivalence, Benchmarks) {
    std::size_t compared = 0;
    for (const auto& entry : fs::directory_iterator(fs::path(MORVELTESK_BENCH_DIR) / "programs")) {
        std::string source = tests::readFile(entry.path() / "morveltesk.rb");
        std::string small = tests::readFile(entry.path() / "small");
        small.erase(std::remove(small.begin(), small.end(), '\n'), small.end());
        source.replace(0, source.find('\n'), "n = " + small);
        for (const auto executor : {internal::ExecutorChoice::Automatic, internal::ExecutorChoice::BaselineOnly}) {
            const Observation run = observeSource(source, "benchmark", executor);
            EXPECT_TRUE(run.ok) << entry.path() << run.error;
            EXPECT_EQ(run.output, tests::readFile(entry.path() / "expected")) << entry.path();
        }
        ++compared;
    }
    EXPECT_GE(compared, 24U);
}

}  // namespace

}  // namespace morvel::ruby::equivalence
