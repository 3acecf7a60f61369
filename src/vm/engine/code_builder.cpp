#include "vm/engine/code_builder.h"

#include <algorithm>
#include <bit>

#include "value/hash.h"
#include "vm/engine/fusion.h"

namespace morvel::ruby::internal {

namespace {

ConstantKey keyOfConstant(const RubyValue& constant) {
    switch (constant.type) {
        case RubyValue::Type::Integer:
            return {constant.type, static_cast<std::uint64_t>(constant.data.integer)};
        case RubyValue::Type::Float:
            return {constant.type, std::bit_cast<std::uint64_t>(constant.data.floating)};
        case RubyValue::Type::Boolean:
            return {constant.type, constant.data.boolean ? 1U : 0U};
        case RubyValue::Type::String:
            return {constant.type, reinterpret_cast<std::uintptr_t>(constant.data.box)};
        case RubyValue::Type::Nil:
        case RubyValue::Type::Array:
        case RubyValue::Type::Map:
        case RubyValue::Type::Function:
            break;
    }
    return {constant.type, 0};
}

bool isShortDistance(std::int64_t distance) {
    return distance >= std::numeric_limits<std::int16_t>::min() && distance <= std::numeric_limits<std::int16_t>::max();
}

}  // namespace

std::size_t ConstantKeyHash::operator()(const ConstantKey& key) const {
    // Constants come from the image, so the hash must be one that the image's author cannot predict.
    return hashInteger(static_cast<std::int64_t>(key.payload)) ^ static_cast<std::size_t>(key.type);
}

void CodeBuilder::beginBlock(std::size_t index) {
    // An empty block behind the jump would start too late without it.
    const bool endsLastBlock = m_blockStart < m_code->instructions.size();
    if (endsLastBlock && !m_patches.empty() && m_patches.back().target == index &&
        m_patches.back().instruction + 1 == m_code->instructions.size() &&
        m_code->instructions.back().op == EngineOp::Jump) {
        m_patches.pop_back();
        dropLast();
    }
    m_blockStart = m_code->instructions.size();
}

void CodeBuilder::emitJump(EngineOp op, std::uint8_t n, std::uint16_t a, std::size_t target) {
    m_patches.push_back({m_code->instructions.size(), target, false});
    emitWide(op, n, a, 0);
}

void CodeBuilder::emitShortJump(EngineOp op, std::uint8_t n, std::uint16_t a, std::uint16_t b, std::size_t target) {
    m_patches.push_back({m_code->instructions.size(), target, true});
    emit(op, n, a, b, 0);
}

void CodeBuilder::dropLast() {
    m_line = m_code->lines.back();
    m_code->instructions.pop_back();
    m_code->lines.pop_back();
}

std::uint32_t CodeBuilder::addConstant(const RubyValue& constant) {
    const auto next = static_cast<std::uint32_t>(m_code->constants.size());
    const auto [entry, isNew] = m_constants.try_emplace(keyOfConstant(constant), next);
    if (isNew) {
        m_code->constants.push_back(constant);
    }
    return entry->second;
}

void CodeBuilder::emitConstantAtStart(std::uint16_t target, const RubyValue& constant) {
    EngineInstruction instruction{EngineOp::PassConstant, 0, target, 0, 0};
    instruction.setWide(static_cast<std::int32_t>(wideOperand(addConstant(constant))));
    emitAtStart(instruction);
}

std::unique_ptr<Code> CodeBuilder::finish() {
    if (!patchJumps()) {
        return nullptr;
    }
    insertStart();
    m_code->blocks = findBlocks(m_code->instructions);
    fusePairs(m_code->instructions, reg(m_code->firstTemporary));
    return std::move(m_code);
}

void CodeBuilder::insertStart() {
    if (m_start.empty()) {
        return;
    }
    // Jumps are relative, so all others can move.
    m_code->instructions.insert(m_code->instructions.begin(), m_start.begin(), m_start.end());
    m_code->lines.insert(m_code->lines.begin(), m_start.size(), m_code->lines.front());
}

bool CodeBuilder::patchJumps() {
    for (const Patch& patch : m_patches) {
        EngineInstruction& jump = m_code->instructions[patch.instruction];
        const auto distanceTo = [&](std::size_t destination) {
            return static_cast<std::int64_t>(destination) - static_cast<std::int64_t>(patch.instruction) - 1;
        };
        const std::int64_t distance = distanceTo(destinationOf(patch.target));
        const std::int64_t direct = distanceTo(m_starts[patch.target]);
        if (!patch.isShort) {
            jump.setWide(static_cast<std::int32_t>(distance));
        } else if (isShortDistance(distance) || isShortDistance(direct)) {
            jump.c = static_cast<std::uint16_t>(isShortDistance(distance) ? distance : direct);
        } else {
            return false;
        }
    }
    return true;
}

std::size_t CodeBuilder::destinationOf(std::size_t target) const {
    // Endless loops may consist of jumps alone.
    constexpr int kMostHops = 8;
    std::size_t destination = m_starts[target];
    for (int hops = 0; hops < kMostHops && destination < m_code->instructions.size() &&
                       m_code->instructions[destination].op == EngineOp::Jump;
         ++hops) {
        const auto next = std::lower_bound(
            m_patches.begin(), m_patches.end(), destination,
            [](const Patch& patch, std::size_t instruction) { return patch.instruction < instruction; });
        destination = m_starts[next->target];
    }
    return destination;
}

}  // namespace morvel::ruby::internal
