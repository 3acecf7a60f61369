// The guest of the programs of the documents. The environment variable MORVEL_ATTACK names the attack; without it the
// programs run as they are.
//
// This file sees the class with the renamed members, and defines these. The originals are reached through the free
// functions, which are not renamed.
#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "documents/attacks.h"
#include "documents/unchanged.h"
#include "morvel/ruby/vm.h"
#include "support/assembler.h"

namespace morvel::ruby {

namespace {

using internal::OpCode;
using tests::op;

/// The names of all functions that the program has bound so far on any VM.
class BoundNames {
public:
    void add(const std::string& name) {
        const std::lock_guard lock(m_mutex);
        if (std::find(m_names.begin(), m_names.end(), name) == m_names.end()) {
            m_names.push_back(name);
        }
    }
    [[nodiscard]] std::vector<std::string> all() const {
        const std::lock_guard lock(m_mutex);
        return m_names;
    }

private:
    mutable std::mutex m_mutex;
    std::vector<std::string> m_names;
};

BoundNames& boundNames() {
    static BoundNames names;
    return names;
}

const tests::Attack* currentAttack() {
    const char* name = std::getenv("MORVEL_ATTACK");  // NOLINT(concurrency-mt-unsafe)
    if (name == nullptr) {
        return nullptr;
    }
    const auto* const attack = std::find_if(tests::kAttacks.begin(), tests::kAttacks.end(),
                                            [&](const tests::Attack& one) { return one.name == name; });
    if (attack == tests::kAttacks.end()) {
        std::abort();
    }
    return attack;
}

/// The strings between quotes in a script.
RubyArray textsOf(const std::string& source) {
    RubyArray texts;
    std::size_t begin = source.find_first_of("\"'");
    while (begin != std::string::npos) {
        const std::size_t end = source.find(source[begin], begin + 1);
        if (end == std::string::npos) {
            break;
        }
        texts.emplace_back(source.substr(begin + 1, end - begin - 1));
        begin = source.find_first_of("\"'", end + 1);
    }
    return texts;
}

/// The words of a script, including the names of its variables and functions.
RubyArray namesOf(const std::string& source) {
    constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_";
    RubyArray names;
    std::size_t begin = source.find_first_of(kLetters);
    while (begin != std::string::npos) {
        const std::size_t end = std::min(source.find_first_not_of(kLetters, begin), source.size());
        names.emplace_back(source.substr(begin, end - begin));
        begin = source.find_first_of(kLetters, end);
    }
    return names;
}

/// Images that the compiler never produces: each calls a function with no arguments at the bottom of the stack, and
/// with more arguments than the stack holds.
void runHandMadeImages(RubyVM& vm) {
    for (const std::string& name : boundNames().all()) {
        for (const int count : {0, 1, 3}) {
            (void)runRubyBytecode(
                vm, tests::assemble({name}, {op(OpCode::LoadName, 0), op(OpCode::Call, count), op(OpCode::Return)}));
            (void)runRubyBytecode(vm, tests::assemble({name, 5}, {op(OpCode::PushConst, 1), op(OpCode::Pop),
                                                                  op(OpCode::LoadName, 0), op(OpCode::Call, count)}));
        }
    }
}

/// Carries out the attack. `source` is the script that the program wanted to run.
RubyResult attack(RubyVM& vm, const tests::Attack& attack, const std::string& source) {
    RubyArray texts = textsOf(source);
    RubyArray names = namesOf(source);
    std::string functions;
    for (const std::string& name : boundNames().all()) {
        texts.emplace_back(name);
        names.emplace_back(name);
        // A program may have several VMs, not all of which have this function.
        functions += "pcall(load('array_push(_functions, " + name + ")'))\n";
    }
    vm.setGlobal("_texts", texts);
    vm.setGlobal("_names", names);
    (void)runRubyScriptString(vm, "_functions = []\n" + functions, "functions");
    runHandMadeImages(vm);
    return runRubyScriptString(vm, std::string(attack.script), "attack");
}

/// Runs the program's script, then the attack, and returns the attack's result.
template <typename Run>
RubyResult runAndAttack(RubyVM& vm, const std::string& source, Run run) {
    const tests::Attack* const chosen = currentAttack();
    if (chosen == nullptr) {
        return run();
    }
    RubyResult own = run();
    // The attack's side effects may make the program run far more scripts.
    static std::atomic<int> attacksLeft{2};
    return attacksLeft-- > 0 ? attack(vm, *chosen, source) : own;
}

}  // namespace

void RubyVM::bindFunctionForGuest(const std::string& name, RubyHostFunction callback) {
    boundNames().add(name);
    bindCppFunctionToRubyVM(*this, name, std::move(callback));
}

bool RubyVM::getGlobalOfGuest(const std::string& name, RubyValue& value) const {
    const tests::Attack* const chosen = currentAttack();
    if (chosen == nullptr) {
        return tests::getGlobalUnchanged(*this, name, value);
    }
    // A script can set any global to any value, so it does not matter which VM the value comes from.
    RubyVM other;
    value = attack(other, *chosen, "").value;
    return true;
}

RubyResult RubyVM::runScriptStringOfGuest(const std::string& source, const std::string& chunkName) {
    return runAndAttack(*this, source, [&] { return runRubyScriptString(*this, source, chunkName); });
}

RubyResult RubyVM::runScriptFileOfGuest(const std::string& path) {
    return runAndAttack(*this, "", [&] { return runRubyScriptFile(*this, path); });
}

RubyResult RubyVM::runBytecodeOfGuest(const RubyBytecode& bytecode) {
    return runAndAttack(*this, "", [&] { return runRubyBytecode(*this, bytecode); });
}

RubyResult RubyVM::runBytecodeFileOfGuest(const std::string& path) {
    return runAndAttack(*this, "", [&] { return runRubyBytecodeFile(*this, path); });
}

RubyResult RubyVM::runScriptFromBytecodeFileOfGuest(const std::string& path) {
    return runAndAttack(*this, "", [&] { return runRubyScriptFromBytecodeFile(*this, path); });
}

}  // namespace morvel::ruby
