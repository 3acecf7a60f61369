// The stack is run symbolically: an entry is a local, a constant, a global or a temporary register, and only what has
// to be in a register is put there. The temporary of the entry at depth d is always register firstTemporary + d.
#include "vm/engine/translator.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "morvel/ruby/function.h"
#include "value/hash.h"
#include "value/operators.h"
#include "vm/engine/append_chains.h"
#include "vm/engine/assignment.h"
#include "vm/engine/flow.h"

namespace morvel::ruby::internal {

namespace {

enum class Place : std::uint8_t { Local, Temporary, Constant, Global };

/// Where the value of a stack entry is.
struct Entry {
    Place place;
    std::uint32_t index;
    /// A local that is written again before anything can read it.
    bool dies = false;

    bool operator==(const Entry& other) const { return place == other.place && index == other.index; }
};

/// Operand letters of a pair, in the order of the instruction list.
enum class Letter : std::uint8_t { R, K, G };

Letter letterOf(const Entry& entry) {
    switch (entry.place) {
        case Place::Constant:
            return Letter::K;
        case Place::Global:
            return Letter::G;
        default:
            return Letter::R;
    }
}

// Offset of a pair of letters within its family: RR, RK, RG, KR, KG, GR, GK, GG.
unsigned pairOffset(Letter left, Letter right) {
    constexpr unsigned kNone = 0;
    constexpr unsigned kOffsets[3][3] = {{0, 1, 2}, {3, kNone, 4}, {5, 6, 7}};
    return kOffsets[static_cast<unsigned>(left)][static_cast<unsigned>(right)];
}

constexpr unsigned kPairs = 8;

EngineOp plus(EngineOp base, unsigned offset) { return static_cast<EngineOp>(static_cast<unsigned>(base) + offset); }

bool isBetween(EngineOp op, EngineOp first, EngineOp last) { return op >= first && op <= last; }

bool isComparison(EngineOp op) { return isBetween(op, EngineOp::EqualRR, EngineOp::LessEqualGG); }

bool isArithmetic(EngineOp op) { return isBetween(op, EngineOp::AddRR, EngineOp::ModuloToGGG); }

bool writesGlobal(EngineOp op) {
    const unsigned offset = static_cast<unsigned>(op) - static_cast<unsigned>(EngineOp::AddRR);
    return isArithmetic(op) && offset % (2 * kPairs) >= kPairs;
}

/// True for the instructions whose result register is operand a and that may write any register.
bool writesA(EngineOp op) {
    return (isArithmetic(op) && !writesGlobal(op)) || isComparison(op) ||
           isBetween(op, EngineOp::GetIndexRR, EngineOp::GetIndexGG) ||
           isBetween(op, EngineOp::CopyLocal, EngineOp::LoadGlobal) || op == EngineOp::LoadLocalOrGlobal ||
           isBetween(op, EngineOp::Negate, EngineOp::MakeArray) || op == EngineOp::Len;
}

bool isCall(EngineOp op) { return op == EngineOp::CallGlobal || op == EngineOp::CallRegister; }

/// Identity of a constant: its kind and its payload; strings by their text.
struct ConstantKey {
    RubyValue::Type type;
    std::uint64_t payload;
    std::string_view text;

    bool operator==(const ConstantKey&) const = default;
};

struct ConstantKeyHash {
    std::size_t operator()(const ConstantKey& key) const {
        // Constants come from the image, so the hash has to be one that the image's author cannot know.
        return hashText(key.text) ^ hashInteger(static_cast<std::int64_t>(key.payload)) ^
               static_cast<std::size_t>(key.type);
    }
};

ConstantKey keyOfConstant(const RubyValue& constant) {
    switch (constant.type) {
        case RubyValue::Type::Integer:
            return {constant.type, static_cast<std::uint64_t>(constant.data.integer), {}};
        case RubyValue::Type::Float:
            return {constant.type, std::bit_cast<std::uint64_t>(constant.data.floating), {}};
        case RubyValue::Type::Boolean:
            return {constant.type, constant.data.boolean ? 1U : 0U, {}};
        case RubyValue::Type::String:
            return {constant.type, 0, constant.asString()};
        default:
            return {constant.type, 0, {}};
    }
}

/// Where the guard of a guarded function calls `error`: that call is made at line 0 and by the global's name, even
/// when a parameter has the same name.
struct GuardCall {
    std::size_t load = static_cast<std::size_t>(-1);
    std::size_t call = static_cast<std::size_t>(-1);
};

GuardCall findGuardCall(const CompiledFunction& function) {
    GuardCall guard;
    if (function.fastKind == FastKind::Guarded) {
        std::size_t jump = 0;
        while (function.code[jump].op != OpCode::JumpIfFalse) {
            ++jump;
        }
        guard.load = jump + 1;
        guard.call = jump + 3;
    }
    return guard;
}

class Translator {
public:
    Translator(const Program& program, std::int32_t functionIndex, GlobalTable& globals, Flow flow)
        : m_program(program),
          m_function(program.functions[static_cast<std::size_t>(functionIndex)]),
          m_isMain(functionIndex == 0),
          m_globals(globals),
          m_flow(std::move(flow)),
          m_guard(findGuardCall(m_function)),
          m_globalSlots(resolveGlobals()),
          m_livePops(findLivePops(m_function, m_flow)),
          m_assignment(m_function, m_flow, globals, m_globalSlots),
          m_appends(findAppendChains(program, m_function, m_flow, m_globalSlots, kNotGlobal)) {}

    std::unique_ptr<Code> translate(bool longJumps) {
        m_longJumps = longJumps;
        m_nextAppend = 0;
        m_code = std::make_unique<Code>();
        layOutFrame();
        if (m_code->registerCount > kLargestOperand) {
            return nullptr;
        }
        m_starts.assign(m_function.code.size() + 1, 0);
        m_isBlockStart.assign(m_function.code.size() + 1, false);
        for (const Block& block : m_flow.blocks) {
            m_isBlockStart[block.begin] = true;
        }
        for (std::size_t block = 0; block < m_flow.blocks.size(); ++block) {
            translateBlock(block);
            if (m_failed) {
                return nullptr;
            }
        }
        m_starts[m_function.code.size()] = m_code->instructions.size();
        m_line = 0;
        if (m_code->keepsLastValue) {
            emit(EngineOp::ReturnLocal, 0, reg(m_lastValue), 0, 0);
        } else {
            emit(EngineOp::ReturnNil, 0, 0, 0, 0);
        }
        m_code->isTopLevel = m_isMain;
        if (m_code->marksUnassigned || m_code->parameterCount > m_code->localCount) {
            m_code->prologue = Prologue::PrepareRegisters;
        } else if (m_code->keepsLastValue) {
            m_code->prologue = Prologue::ClearLastValue;
        }
        return patchJumps() ? std::move(m_code) : nullptr;
    }

    /// True when a jump did not fit its short form; translating again with long jumps helps.
    [[nodiscard]] bool needsLongJumps() const { return m_needsLongJumps; }

private:
    struct Patch {
        std::size_t instruction;
        std::size_t target;
        bool isShort;
    };

    // --- set-up

    std::vector<std::uint32_t> resolveGlobals() {
        std::vector<std::uint32_t> slots(m_function.code.size(), kNotGlobal);
        for (std::size_t i = 0; i < m_function.code.size(); ++i) {
            const Instruction& instruction = m_function.code[i];
            if (m_flow.depths[i] != kUnreachable && addressesGlobal(i)) {
                slots[i] =
                    static_cast<std::uint32_t>(m_globals.ensureSlot(*getStringConstantPtr(m_program, instruction.a)));
            }
        }
        return slots;
    }

    [[nodiscard]] bool addressesGlobal(std::size_t index) const {
        switch (m_function.code[index].op) {
            case OpCode::DefineFunction:
                return true;
            case OpCode::StoreName:
                return m_isMain || localSlotAt(m_function, index) == kNoLocalSlot;
            case OpCode::LoadName:
                return index == m_guard.load || localSlotAt(m_function, index) == kNoLocalSlot;
            default:
                return false;
        }
    }

    void layOutFrame() {
        Code& code = *m_code;
        code.program = &m_program;
        code.function = &m_function;
        code.parameterCount = static_cast<std::uint32_t>(m_function.params.size());
        code.localCount = static_cast<std::uint32_t>(m_function.localNames.size());
        for (const bool live : m_livePops) {
            code.keepsLastValue = code.keepsLastValue || live;
        }
        m_lastValue = code.localCount;
        code.firstTemporary = code.localCount + (code.keepsLastValue ? 1U : 0U);
        // Surplus arguments of duplicate parameter names arrive behind the locals, in the place of temporaries.
        const std::uint32_t surplus = code.parameterCount - std::min(code.parameterCount, code.localCount);
        code.registerCount = code.firstTemporary + std::max(static_cast<std::uint32_t>(m_flow.deepest), surplus) + 1;
        code.registerCount += m_appends.empty() ? 0U : 1U;
    }

    // --- emitting

    static std::uint16_t operand(std::size_t index) { return static_cast<std::uint16_t>(index * 2); }
    static std::uint16_t reg(std::uint32_t index) { return operand(index); }
    [[nodiscard]] std::uint32_t temporary(std::size_t depth) const {
        return m_code->firstTemporary + static_cast<std::uint32_t>(depth);
    }

    void emit(EngineOp op, std::uint8_t n, std::uint16_t a, std::uint16_t b, std::uint16_t c) {
        EngineInstruction instruction{};
        instruction.op = op;
        instruction.n = n;
        instruction.a = a;
        instruction.b = b;
        instruction.c = c;
        append(instruction);
    }

    void emitWide(EngineOp op, std::uint8_t n, std::uint16_t a, std::size_t wide) {
        EngineInstruction instruction{};
        instruction.op = op;
        instruction.n = n;
        instruction.a = a;
        instruction.setWide(static_cast<std::int32_t>(wide));
        append(instruction);
    }

    void append(const EngineInstruction& instruction) {
        m_code->instructions.push_back(instruction);
        m_code->lines.push_back(m_line);
    }

    /// The instruction just emitted, when it belongs to the current block and so surely ran last.
    EngineInstruction* lastInBlock() {
        return m_code->instructions.size() > m_blockStart ? &m_code->instructions.back() : nullptr;
    }

    std::uint32_t addConstant(const RubyValue& constant) {
        const auto next = static_cast<std::uint32_t>(m_code->constants.size());
        const auto [entry, isNew] = m_constants.try_emplace(keyOfConstant(constant), next);
        if (isNew) {
            m_code->constants.push_back(constant);
        }
        return entry->second;
    }

    // --- entries

    void push(Place place, std::uint32_t index) { m_stack.push_back({place, index}); }

    /// Pushes the temporary of the next depth and gives its register.
    std::uint16_t pushTemporary() {
        const std::uint32_t index = temporary(m_stack.size());
        push(Place::Temporary, index);
        return reg(index);
    }

    Entry pop() {
        const Entry top = m_stack.back();
        m_stack.pop_back();
        return top;
    }

    /// Puts the entry at `depth` into its temporary.
    void materialize(std::size_t depth) {
        Entry& entry = m_stack[depth];
        if (entry.place == Place::Temporary) {
            return;
        }
        const std::uint16_t target = reg(temporary(depth));
        if (entry.place == Place::Local) {
            emit(EngineOp::PassLocal, 0, target, reg(entry.index), 0);
        } else {
            const bool isConstant = entry.place == Place::Constant;
            emitWide(isConstant ? EngineOp::PassConstant : EngineOp::PassGlobal, 0, target, entry.index * 2);
        }
        entry = {Place::Temporary, temporary(depth)};
    }

    /// Puts the value of an entry into a register that may still hold another one.
    void loadInto(std::uint16_t target, const Entry& entry) {
        switch (entry.place) {
            case Place::Local:
                return emit(EngineOp::CopyLocal, 0, target, reg(entry.index), 0);
            case Place::Temporary:
                return emit(EngineOp::MoveTemporary, 0, target, reg(entry.index), 0);
            case Place::Constant:
                return emitWide(EngineOp::LoadConstant, 0, target, entry.index * 2);
            case Place::Global:
                return emitWide(EngineOp::LoadGlobal, 0, target, entry.index * 2);
        }
    }

    void materializeAll() {
        for (std::size_t depth = 0; depth < m_stack.size(); ++depth) {
            materialize(depth);
        }
    }

    /// Entries that stand for what is about to change have to take their value first.
    void detach(const Entry& changing) {
        for (std::size_t depth = 0; depth < m_stack.size(); ++depth) {
            if (m_stack[depth] == changing) {
                materialize(depth);
            }
        }
    }

    /// A call may rebind any global.
    void detachGlobals() {
        for (std::size_t depth = 0; depth < m_stack.size(); ++depth) {
            if (m_stack[depth].place == Place::Global) {
                materialize(depth);
            }
        }
    }

    /// Makes sure that the entry at `depth` can be named by a 16-bit operand.
    void makeNameable(std::size_t depth) {
        if (m_stack[depth].index > kLargestOperand) {
            materialize(depth);
        }
    }

    void makeRegister(std::size_t depth) {
        if (letterOf(m_stack[depth]) != Letter::R) {
            materialize(depth);
        }
    }

    static std::uint8_t mark(const Entry& entry, std::uint8_t bit) {
        return entry.place == Place::Temporary || entry.dies ? bit : std::uint8_t{0};
    }

    // --- instructions

    void translateBlock(std::size_t number) {
        const Block& block = m_flow.blocks[number];
        m_blockStart = m_code->instructions.size();
        m_starts[block.begin] = m_blockStart;
        m_assignment.enterBlock(number);
        m_stack.clear();
        for (std::int32_t depth = 0; depth < m_flow.depths[block.begin]; ++depth) {
            pushTemporary();
        }
        std::size_t index = block.begin;
        while (index < block.end && !m_failed) {
            if (index != block.begin) {
                m_starts[index] = m_code->instructions.size();
            }
            m_line = m_function.code[index].line;
            index += translateInstruction(index, block.end);
        }
        const OpCode last = m_function.code[block.end - 1].op;
        if (last != OpCode::Jump && last != OpCode::JumpIfFalse && last != OpCode::Return) {
            materializeAll();
        }
    }

    /// Translates the instruction at `index`, or a short sequence that starts there; how many it was.
    std::size_t translateInstruction(std::size_t index, std::size_t blockEnd) {
        const Instruction& instruction = m_function.code[index];
        if (translateAppend(index)) {
            return 1;
        }
        switch (instruction.op) {
            case OpCode::PushConst:
                push(Place::Constant, addConstant(m_program.constants[static_cast<std::size_t>(instruction.a)]));
                return 1;
            case OpCode::LoadName:
                loadName(index);
                return 1;
            case OpCode::StoreName:
                storeName(index);
                return 1;
            case OpCode::Pop:
                popEntry(m_livePops[index]);
                return 1;
            case OpCode::Negate:
                negate();
                return 1;
            case OpCode::Not:
                unary(EngineOp::Not);
                return 1;
            case OpCode::And:
                logical(EngineOp::And);
                return 1;
            case OpCode::Or:
                logical(EngineOp::Or);
                return 1;
            case OpCode::Jump:
                jump(index);
                return 1;
            case OpCode::JumpIfFalse:
                conditionalJump(static_cast<std::size_t>(instruction.a), false);
                return 1;
            case OpCode::Call:
                return call(index, blockEnd);
            case OpCode::DefineFunction:
                defineFunction(index);
                return 1;
            case OpCode::Return:
                returnEntry();
                return 1;
            case OpCode::MakeArray:
                makeArray(static_cast<std::size_t>(instruction.a));
                return 1;
            case OpCode::GetIndex:
                getIndex();
                return 1;
            case OpCode::SetIndex:
                return setIndex(index, blockEnd);
            default:
                binary(instruction.op);
                return 1;
        }
    }

    void loadName(std::size_t index) {
        const std::uint32_t global = m_globalSlots[index];
        if (global != kNotGlobal) {
            if (!m_assignment.isGlobalDefined(global)) {
                emitWide(EngineOp::CheckGlobal, 0, 0, std::size_t{global} * 2);
                m_assignment.noteGlobal(global);
            }
            return push(Place::Global, global);
        }
        const std::int32_t local = localSlotAt(m_function, index);
        if (m_assignment.isLocalAssigned(local)) {
            m_stack.push_back({Place::Local, static_cast<std::uint32_t>(local), isOverwrittenNext(index, local)});
            return;
        }
        const std::string& name = *getStringConstantPtr(m_program, m_function.code[index].a);
        const std::size_t fallback = m_code->fallbacks.size();
        m_code->fallbacks.push_back({reg(static_cast<std::uint32_t>(local)), m_globals.ensureSlot(name)});
        m_code->marksUnassigned = true;
        emitWide(EngineOp::LoadLocalOrGlobal, 0, pushTemporary(), fallback);
    }

    /// True when the local read at `index` is written at the end of the same statement, as in `x = x + a + b`, and not
    /// read in between. Its value may then be used up on the way: should the statement fail, the local is gone too.
    [[nodiscard]] bool isOverwrittenNext(std::size_t index, std::int32_t local) const {
        constexpr std::size_t kLongestStatement = 48;
        const std::size_t end = std::min(m_function.code.size(), index + kLongestStatement);
        for (std::size_t i = index + 1; i < end && !m_isBlockStart[i]; ++i) {
            const OpCode op = m_function.code[i].op;
            if (op == OpCode::StoreName) {
                return localSlotAt(m_function, i) == local && m_flow.depths[i] == m_flow.depths[index] + 1;
            }
            if (op == OpCode::Pop || op == OpCode::Jump || op == OpCode::JumpIfFalse || op == OpCode::Return ||
                (op == OpCode::LoadName && localSlotAt(m_function, i) == local)) {
                return false;
            }
        }
        return false;
    }

    /// Carries out what an append chain has at `index`; false when that is nothing.
    bool translateAppend(std::size_t index) {
        if (m_nextAppend == m_appends.size()) {
            return false;
        }
        const AppendChain& chain = m_appends[m_nextAppend];
        if (index == chain.load) {
            loadName(index);
            materialize(m_stack.size() - 1);
        } else if (index == chain.firstAdd) {
            // From here on the sum takes two places on the stack.
            materialize(m_stack.size() - 1);
            emit(EngineOp::BeginAppend, 0, reg(m_stack[m_stack.size() - 2].index), 0, 0);
        } else if (index == chain.store) {
            const std::uint32_t global = m_globalSlots[index];
            materialize(m_stack.size() - 1);
            m_stack.resize(m_stack.size() - 2);
            const Entry target{Place::Global, global};
            detach(target);
            emitWide(EngineOp::EndAppend, 0, reg(temporary(m_stack.size())), std::size_t{global} * 2);
            m_assignment.noteGlobal(global);
            m_stack.push_back(target);
            ++m_nextAppend;
        } else {
            return false;
        }
        return true;
    }

    void storeName(std::size_t index) {
        const std::uint32_t global = m_globalSlots[index];
        if (global != kNotGlobal) {
            storeGlobal(global);
            m_assignment.noteGlobal(global);
            return;
        }
        const auto local = static_cast<std::uint32_t>(localSlotAt(m_function, index));
        const Entry value = pop();
        const Entry target{Place::Local, local};
        if (value != target) {
            detach(target);
            moveInto(local, value);
        }
        m_assignment.noteLocal(static_cast<std::int32_t>(local));
        m_stack.push_back(target);
    }

    /// Moves an entry that is off the stack into a register below the temporaries.
    void moveInto(std::uint32_t target, const Entry& value) {
        EngineInstruction* last = lastInBlock();
        if (value.place == Place::Temporary && last != nullptr) {
            if (writesA(last->op) && last->a == reg(value.index)) {
                last->a = reg(target);
                shortenIncrease(*last);
                return;
            }
            if (isCall(last->op) && last->b == reg(value.index)) {
                last->b = reg(target);
                return;
            }
        }
        loadInto(reg(target), value);
    }

    /// Makes the addition to a register into that register, if that is what the instruction is, one of two operands.
    static void shortenIncrease(EngineInstruction& addition) {
        if ((addition.op == EngineOp::AddRR || addition.op == EngineOp::AddRK) && addition.a == addition.b) {
            addition.op = addition.op == EngineOp::AddRR ? EngineOp::IncreaseR : EngineOp::IncreaseK;
            addition.b = addition.c;
        }
    }

    void storeGlobal(std::uint32_t slot) {
        const Entry value = pop();
        const Entry target{Place::Global, slot};
        if (value != target) {
            detach(target);
            EngineInstruction* last = lastInBlock();
            const bool isFresh = value.place == Place::Temporary && last != nullptr && last->a == reg(value.index);
            if (isFresh && slot <= kLargestOperand && isArithmetic(last->op) && !writesGlobal(last->op)) {
                last->op = plus(last->op, kPairs);
                last->a = operand(slot);
            } else if (value.place == Place::Local) {
                emitWide(EngineOp::StoreGlobalCopy, 0, reg(value.index), std::size_t{slot} * 2);
            } else {
                m_stack.push_back(value);
                materialize(m_stack.size() - 1);
                emitWide(EngineOp::StoreGlobalMove, 0, reg(pop().index), std::size_t{slot} * 2);
            }
        }
        m_stack.push_back(target);
    }

    void popEntry(bool isLive) {
        const Entry value = pop();
        if (isLive) {
            moveInto(m_lastValue, value);
        } else if (value.place == Place::Temporary) {
            emit(EngineOp::Drop, 0, reg(value.index), 0, 0);
        }
    }

    void negate() {
        // The negation of a number constant is a constant: it cannot fail.
        if (m_stack.back().place == Place::Constant) {
            const RubyValue& constant = m_code->constants[m_stack.back().index];
            if (constant.isNumeric()) {
                const RubyValue negated = negateValue(constant, m_program, m_line);
                m_stack.pop_back();
                return push(Place::Constant, addConstant(negated));
            }
        }
        unary(EngineOp::Negate);
    }

    void unary(EngineOp op) {
        makeRegister(m_stack.size() - 1);
        const Entry value = pop();
        emit(op, mark(value, kTemporaryB), pushTemporary(), reg(value.index), 0);
    }

    void logical(EngineOp op) {
        const std::size_t right = m_stack.size() - 1;
        makeRegister(right - 1);
        makeRegister(right);
        const Entry rightEntry = pop();
        const Entry leftEntry = pop();
        emit(op, static_cast<std::uint8_t>(mark(leftEntry, kTemporaryB) | mark(rightEntry, kTemporaryC)),
             pushTemporary(), reg(leftEntry.index), reg(rightEntry.index));
    }

    void binary(OpCode op) {
        const std::size_t right = m_stack.size() - 1;
        makeNameable(right - 1);
        makeNameable(right);
        if (letterOf(m_stack[right - 1]) == Letter::K && letterOf(m_stack[right]) == Letter::K) {
            materialize(right - 1);
        }
        Entry rightEntry = pop();
        Entry leftEntry = pop();
        EngineOp base = EngineOp::AddRR;
        switch (op) {
            case OpCode::Add:
                break;
            case OpCode::Subtract:
                base = EngineOp::SubtractRR;
                break;
            case OpCode::Multiply:
                base = EngineOp::MultiplyRR;
                break;
            case OpCode::Divide:
                base = EngineOp::DivideRR;
                break;
            case OpCode::Modulo:
                base = EngineOp::ModuloRR;
                break;
            case OpCode::Equal:
                base = EngineOp::EqualRR;
                break;
            case OpCode::NotEqual:
                base = EngineOp::NotEqualRR;
                break;
            case OpCode::Less:
                base = EngineOp::LessRR;
                break;
            case OpCode::LessEqual:
                base = EngineOp::LessEqualRR;
                break;
            case OpCode::Greater:
                // a > b is b < a: both operands are there already, so their order is not seen.
                base = EngineOp::LessRR;
                std::swap(leftEntry, rightEntry);
                break;
            default:
                base = EngineOp::LessEqualRR;
                std::swap(leftEntry, rightEntry);
                break;
        }
        const EngineOp paired = plus(base, pairOffset(letterOf(leftEntry), letterOf(rightEntry)));
        const auto marks = static_cast<std::uint8_t>(mark(leftEntry, kTemporaryB) | mark(rightEntry, kTemporaryC));
        const std::uint16_t target = pushTemporary();
        emit(paired, marks, target, operand(leftEntry.index), operand(rightEntry.index));
    }

    // --- jumps

    void emitJump(EngineOp op, std::uint8_t n, std::uint16_t a, std::size_t target) {
        m_patches.push_back({m_code->instructions.size(), target, false});
        emitWide(op, n, a, 0);
    }

    void emitShortJump(EngineOp op, std::uint8_t n, std::uint16_t a, std::uint16_t b, std::size_t target) {
        m_patches.push_back({m_code->instructions.size(), target, true});
        emit(op, n, a, b, 0);
    }

    void jump(std::size_t index) {
        const auto target = static_cast<std::size_t>(m_function.code[index].a);
        materializeAll();
        if (const std::size_t conditionEnd = loopConditionEnd(index, target); conditionEnd != 0) {
            return repeatCondition(target, conditionEnd);
        }
        emitJump(EngineOp::Jump, 0, 0, target);
    }

    /// When the jump at `index` closes a loop whose condition, at `target`, is short and leaves the loop to just after
    /// the jump: the index of the condition's JumpIfFalse. Otherwise 0.
    [[nodiscard]] std::size_t loopConditionEnd(std::size_t index, std::size_t target) const {
        constexpr std::size_t kLongestCondition = 24;
        if (target >= index || !m_stack.empty() || m_flow.depths[target] != 0) {
            return 0;
        }
        for (std::size_t i = target; i < index && i - target < kLongestCondition; ++i) {
            const Instruction& instruction = m_function.code[i];
            if (instruction.op == OpCode::JumpIfFalse) {
                const bool leaves = static_cast<std::size_t>(instruction.a) == index + 1 && m_flow.depths[i] == 1;
                return leaves && m_function.code[i - 1].op != OpCode::PushConst ? i : 0;
            }
            if (instruction.op == OpCode::Jump || instruction.op == OpCode::Return ||
                (i != target && m_isBlockStart[i])) {
                return 0;
            }
        }
        return 0;
    }

    /// A loop tests its condition once more at its end, which saves the jump back to the test at its start.
    void repeatCondition(std::size_t begin, std::size_t end) {
        std::size_t index = begin;
        while (index < end && !m_failed) {
            m_line = m_function.code[index].line;
            index += translateInstruction(index, end);
        }
        if (!m_failed) {
            conditionalJump(end + 1, true);
        }
    }

    void conditionalJump(std::size_t target, bool whenTrue) {
        const Entry condition = pop();
        if (condition.place == Place::Constant) {
            const bool jumps = m_code->constants[condition.index].isTruthy() == whenTrue;
            materializeAll();
            if (jumps) {
                emitJump(EngineOp::Jump, 0, 0, target);
            }
            return;
        }
        if (m_stack.empty() && fuseJump(condition, target, whenTrue)) {
            return;
        }
        m_stack.push_back(condition);
        makeRegister(m_stack.size() - 1);
        const Entry inRegister = pop();
        materializeAll();
        emitJump(whenTrue ? EngineOp::JumpIfTrue : EngineOp::JumpIfFalse, mark(inRegister, kTemporaryA),
                 reg(inRegister.index), target);
    }

    /// Makes one instruction of the jump and what was just emitted to compute its condition.
    bool fuseJump(const Entry& condition, std::size_t target, bool whenTrue) {
        const EngineInstruction* last = lastInBlock();
        if (condition.place != Place::Temporary || last == nullptr || last->a != reg(condition.index) ||
            !writesA(last->op)) {
            return false;
        }
        const EngineInstruction test = *last;
        if (test.op == EngineOp::Not) {
            dropLast();
            const bool isTemporary = (test.n & kTemporaryB) != 0;
            if (!isTemporary || !fuseTest(test.b, target, !whenTrue)) {
                emitJump(whenTrue ? EngineOp::JumpIfFalse : EngineOp::JumpIfTrue,
                         isTemporary ? kTemporaryA : std::uint8_t{0}, test.b, target);
            }
            return true;
        }
        return fuseTest(reg(condition.index), target, whenTrue);
    }

    /// Fuses a comparison, logical operation or look-up, if that is what was emitted last, whose result is in `result`.
    bool fuseTest(std::uint16_t result, std::size_t target, bool whenTrue) {
        const EngineInstruction* last = lastInBlock();
        if (m_longJumps || last == nullptr || last->a != result) {
            return false;
        }
        const EngineInstruction test = *last;
        EngineOp op = EngineOp::Jump;
        if (isComparison(test.op)) {
            const unsigned offset = static_cast<unsigned>(test.op) - static_cast<unsigned>(EngineOp::EqualRR);
            op = plus(whenTrue ? EngineOp::JumpIfEqualRR : EngineOp::JumpUnlessEqualRR, offset);
        } else if (test.op == EngineOp::And) {
            op = whenTrue ? EngineOp::JumpIfBoth : EngineOp::JumpUnlessBoth;
        } else if (test.op == EngineOp::Or) {
            op = whenTrue ? EngineOp::JumpIfEither : EngineOp::JumpUnlessEither;
        } else if (isBetween(test.op, EngineOp::GetIndexRR, EngineOp::GetIndexGG)) {
            const unsigned offset = static_cast<unsigned>(test.op) - static_cast<unsigned>(EngineOp::GetIndexRR);
            op = plus(whenTrue ? EngineOp::JumpIfIndexRR : EngineOp::JumpUnlessIndexRR, offset);
        } else {
            return false;
        }
        dropLast();
        // The operands move from b and c to a and b, and so do their marks.
        emitShortJump(op, static_cast<std::uint8_t>(test.n >> 1), test.b, test.c, target);
        return true;
    }

    void dropLast() {
        m_line = m_code->lines.back();
        m_code->instructions.pop_back();
        m_code->lines.pop_back();
    }

    bool patchJumps() {
        for (const Patch& patch : m_patches) {
            EngineInstruction& jump = m_code->instructions[patch.instruction];
            const auto distance =
                static_cast<std::int64_t>(m_starts[patch.target]) - static_cast<std::int64_t>(patch.instruction) - 1;
            if (!patch.isShort) {
                jump.setWide(static_cast<std::int32_t>(distance));
            } else if (distance >= std::numeric_limits<std::int16_t>::min() &&
                       distance <= std::numeric_limits<std::int16_t>::max()) {
                jump.c = static_cast<std::uint16_t>(distance);
            } else {
                m_needsLongJumps = true;
                return false;
            }
        }
        return true;
    }

    // --- calls and containers

    /// The built-in that a callee entry stands for right now, if the engine has an instruction for it.
    [[nodiscard]] RubyFunctionHandle::Shortcut shortcutOf(const Entry& callee) const {
        if (callee.place != Place::Global || callee.index > kLargestOperand || !m_globals.isDefined(callee.index) ||
            !m_globals.value(callee.index).isFunction()) {
            return RubyFunctionHandle::Shortcut::None;
        }
        return static_cast<const RubyFunctionHandle*>(m_globals.value(callee.index).data.box)->shortcut;
    }

    std::size_t call(std::size_t index, std::size_t blockEnd) {
        constexpr std::size_t kMostArguments = 255;
        constexpr std::size_t kDeepestWindow = 255;
        const auto count = static_cast<std::size_t>(m_function.code[index].a);
        if (count > kMostArguments) {
            m_failed = true;
            return 1;
        }
        if (index == m_guard.call) {
            m_line = 0;
        }
        const std::size_t callee = m_stack.size() - count - 1;
        if (callee <= kDeepestWindow) {
            const RubyFunctionHandle::Shortcut shortcut = shortcutOf(m_stack[callee]);
            if (shortcut == RubyFunctionHandle::Shortcut::Len && count == 1) {
                callLen(callee);
                return 1;
            }
            const bool dropsResult =
                index + 1 < blockEnd && m_function.code[index + 1].op == OpCode::Pop && !m_livePops[index + 1];
            if (shortcut == RubyFunctionHandle::Shortcut::ArrayPush && count == 2 && dropsResult) {
                callArrayPush(callee);
                return 2;
            }
        }
        callGeneral(callee, count);
        return 1;
    }

    void callLen(std::size_t callee) {
        makeRegister(callee + 1);
        const Entry argument = pop();
        const Entry function = pop();
        detachGlobals();
        const std::uint16_t target = pushTemporary();
        emit(EngineOp::Len, static_cast<std::uint8_t>(callee), target, reg(argument.index), operand(function.index));
    }

    void callArrayPush(std::size_t callee) {
        makeRegister(callee + 1);
        makeRegister(callee + 2);
        const Entry value = pop();
        const Entry array = pop();
        const Entry function = pop();
        detachGlobals();
        emit(EngineOp::ArrayPush, static_cast<std::uint8_t>(callee), reg(value.index), reg(array.index),
             operand(function.index));
        emit(EngineOp::Drop, 0, reg(temporary(callee)), 0, 0);
    }

    void callGeneral(std::size_t callee, std::size_t count) {
        for (std::size_t depth = callee + 1; depth < m_stack.size(); ++depth) {
            materialize(depth);
        }
        const bool byGlobal = m_stack[callee].place == Place::Global && m_stack[callee].index <= kLargestOperand;
        if (!byGlobal) {
            materialize(callee);
        }
        const Entry calleeEntry = m_stack[callee];
        m_stack.resize(callee);
        detachGlobals();
        const std::uint16_t window = pushTemporary();
        const auto n = static_cast<std::uint8_t>(count);
        if (byGlobal) {
            emit(EngineOp::CallGlobal, n, window, window, operand(calleeEntry.index));
        } else {
            emit(EngineOp::CallRegister, n, window, window, 0);
        }
    }

    void defineFunction(std::size_t index) {
        const Instruction& instruction = m_function.code[index];
        const std::uint32_t slot = m_globalSlots[index];
        detach({Place::Global, slot});
        const std::size_t definition = m_code->definitions.size();
        m_code->definitions.push_back({*getStringConstantPtr(m_program, instruction.a), instruction.b, slot});
        emitWide(EngineOp::DefineFunction, 0, 0, definition);
        m_assignment.noteGlobal(slot);
    }

    void returnEntry() {
        if (m_stack.empty()) {
            return emit(EngineOp::ReturnNil, 0, 0, 0, 0);
        }
        const Entry value = pop();
        switch (value.place) {
            case Place::Constant:
                return emitWide(EngineOp::ReturnConstant, 0, 0, value.index * 2);
            case Place::Global:
                return emitWide(EngineOp::ReturnGlobal, 0, 0, value.index * 2);
            default:
                return emit(EngineOp::ReturnLocal, 0, reg(value.index), 0, 0);
        }
    }

    void makeArray(std::size_t count) {
        const std::size_t first = m_stack.size() - count;
        for (std::size_t depth = first; depth < m_stack.size(); ++depth) {
            materialize(depth);
        }
        m_stack.resize(first);
        const std::uint16_t target = pushTemporary();
        if (count > std::numeric_limits<std::uint16_t>::max()) {
            m_failed = true;
            return;
        }
        emit(EngineOp::MakeArray, 0, target, target, static_cast<std::uint16_t>(count));
    }

    void getIndex() {
        const std::size_t index = m_stack.size() - 1;
        makeNameable(index - 1);
        makeNameable(index);
        if (letterOf(m_stack[index - 1]) == Letter::K) {
            materialize(index - 1);
        }
        const Entry indexEntry = pop();
        const Entry container = pop();
        const unsigned row = letterOf(container) == Letter::R ? 0 : 3;
        const EngineOp op = plus(EngineOp::GetIndexRR, row + static_cast<unsigned>(letterOf(indexEntry)));
        const auto marks = static_cast<std::uint8_t>(mark(container, kTemporaryB) | mark(indexEntry, kTemporaryC));
        const std::uint16_t target = pushTemporary();
        emit(op, marks, target, operand(container.index), operand(indexEntry.index));
    }

    /// True when the instruction at `index` stores into just the variable that `entry` stands for.
    [[nodiscard]] bool storesBack(std::size_t index, std::size_t blockEnd, const Entry& entry) const {
        if (index >= blockEnd || m_function.code[index].op != OpCode::StoreName) {
            return false;
        }
        if (m_globalSlots[index] != kNotGlobal) {
            return entry == Entry{Place::Global, m_globalSlots[index]};
        }
        return entry == Entry{Place::Local, static_cast<std::uint32_t>(localSlotAt(m_function, index))};
    }

    std::size_t setIndex(std::size_t index, std::size_t blockEnd) {
        const std::size_t value = m_stack.size() - 1;
        const std::size_t container = value - 2;
        for (std::size_t depth = container; depth <= value; ++depth) {
            makeNameable(depth);
        }
        // The container is changed where it is only when it is stored back there at once; otherwise the change of a
        // string must not be seen in the variable.
        const bool inPlace = storesBack(index + 1, blockEnd, m_stack[container]) && !isElsewhere(container);
        if (!inPlace) {
            materialize(container);
        }
        const Entry valueEntry = pop();
        const Entry indexEntry = pop();
        const Entry containerEntry = pop();
        const auto marks = static_cast<std::uint8_t>(mark(indexEntry, kTemporaryB) | mark(valueEntry, kTemporaryC));
        const unsigned row = letterOf(containerEntry) == Letter::R ? 0 : 9;
        const unsigned offset =
            row + 3 * static_cast<unsigned>(letterOf(indexEntry)) + static_cast<unsigned>(letterOf(valueEntry));
        emit(plus(EngineOp::SetIndexRRR, offset), marks, operand(containerEntry.index), operand(indexEntry.index),
             operand(valueEntry.index));
        // What was read as a local about to be overwritten is its new value by now, and stays.
        push(containerEntry.place, containerEntry.index);
        return inPlace ? 2 : 1;
    }

    /// True when another entry, or the index or value itself, stands for the same variable as the entry at `depth`.
    [[nodiscard]] bool isElsewhere(std::size_t depth) const {
        for (std::size_t i = 0; i < m_stack.size(); ++i) {
            if (i != depth && m_stack[i] == m_stack[depth]) {
                return true;
            }
        }
        return false;
    }

    const Program& m_program;
    const CompiledFunction& m_function;
    const bool m_isMain;
    GlobalTable& m_globals;
    const Flow m_flow;
    const GuardCall m_guard;
    const std::vector<std::uint32_t> m_globalSlots;
    const std::vector<bool> m_livePops;
    DefiniteAssignment m_assignment;
    const std::vector<AppendChain> m_appends;
    std::unique_ptr<Code> m_code;
    std::unordered_map<ConstantKey, std::uint32_t, ConstantKeyHash> m_constants;
    std::vector<Entry> m_stack;
    std::vector<Patch> m_patches;
    /// Register instruction at which each stack instruction starts.
    std::vector<std::size_t> m_starts;
    std::vector<bool> m_isBlockStart;
    /// The first of them that is not behind.
    std::size_t m_nextAppend = 0;
    std::size_t m_blockStart = 0;
    std::uint32_t m_lastValue = 0;
    std::uint32_t m_line = 0;
    bool m_longJumps = false;
    bool m_needsLongJumps = false;
    bool m_failed = false;
};

}  // namespace

std::unique_ptr<Code> translateFunction(const Program& program, std::int32_t functionIndex, GlobalTable& globals) {
    const CompiledFunction& function = program.functions[static_cast<std::size_t>(functionIndex)];
    std::optional<Flow> flow = analyzeFlow(program, function);
    if (!flow) {
        return nullptr;
    }
    for (const bool longJumps : {false, true}) {
        Translator translator(program, functionIndex, globals, *flow);
        std::unique_ptr<Code> code = translator.translate(longJumps);
        if (code != nullptr || !translator.needsLongJumps()) {
            return code;
        }
    }
    return nullptr;
}

}  // namespace morvel::ruby::internal
