// A function in the engine's register form.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "compiler/program.h"
#include "morvel/ruby/value.h"
#include "value/function_internals.h"
#include "vm/engine/code_blocks.h"
#include "vm/engine/global_names.h"
#include "vm/engine/instruction.h"

namespace morvel::ruby::internal {

/// A read of a local that may be unassigned; if it is, the global of the same name is read.
struct LocalFallback {
    std::uint16_t local;
    std::size_t globalSlot;
};

/// What a DefineFunction instruction defines.
struct Definition {
    /// Owned by the program.
    const std::string* name;
    std::int32_t functionIndex;
    std::size_t globalSlot;
};

/// How many registers a return looks at without asking how many there are.
inline constexpr std::uint32_t kRegistersAtOnce = 4;

struct Code : FunctionInternals {
    Code() { kind = Kind::Translation; }

    // What calls and returns look at comes first, side by side.
    /// The key of the program's functions without parameters, from which those of the others follow.
    CallKey programKey = kNoCallKey;
    /// The size of all registers.
    std::uint32_t registerBytes = 0;
    /// Locals come first in a frame, parameters before the others; then, when `keepsLastValue`, the value of the last
    /// expression statement; then the temporaries. Everything before `firstTemporary` is released on return.
    std::uint32_t firstTemporary = 0;
    std::vector<EngineInstruction> instructions;
    /// Constants used by this function, each once.
    std::vector<RubyValue> constants;
    std::vector<LocalFallback> fallbacks;
    std::vector<Definition> definitions;
    /// Source line of each instruction.
    std::vector<std::uint32_t> lines;
    CodeBlocks blocks;

    const Program* program = nullptr;
    const CompiledFunction* function = nullptr;
    std::uint32_t parameterCount = 0;
    std::uint32_t localCount = 0;
    std::uint32_t registerCount = 0;
    bool keepsLastValue = false;
    /// The function is its program's top-level code.
    bool isTopLevel = false;
    /// A call by pcall can enter the function. Guarded ones have their own kind of outcome.
    bool isProtectable = false;

    /// The line of the instruction before `next`. A frame entered just now has executed none, yet values destroyed at
    /// that point may already run scripts.
    [[nodiscard]] std::uint32_t lineAt(const EngineInstruction* next) const {
        const auto executed = static_cast<std::size_t>(next - instructions.data());
        return lines[executed == 0 ? 0 : executed - 1];
    }
};

/// Represents an engine in its translations, which may outlive it.
struct EngineIdentity {
    EndedMentions endedMentions;
};

/// The engine's state for a program: the translated functions. Its address begins their call keys, and its alignment
/// leaves room for the number of parameters.
struct alignas(256) ProgramCode {
    enum class State : std::uint8_t { Untried, Translated, Unsuitable };
    struct Entry {
        State state = State::Untried;
        std::unique_ptr<Code> code;
    };

    ProgramCode(const Program& program, GlobalTable& globals, std::shared_ptr<EngineIdentity> identity)
        : engine(std::move(identity)), names(program, globals), functions(program.functions.size()) {}
    ProgramCode(const ProgramCode&) = delete;
    ProgramCode& operator=(const ProgramCode&) = delete;
    ~ProgramCode() { engine->endedMentions.add(names.end()); }

    /// Keeps another engine from reusing this engine's identity while its translations exist.
    std::shared_ptr<EngineIdentity> engine;
    GlobalNames names;
    std::vector<Entry> functions;
};

}  // namespace morvel::ruby::internal
