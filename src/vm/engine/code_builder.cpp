#include "vm/engine/code_builder.h"

#include <bit>

#include "value/hash.h"

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

}  // namespace

std::size_t ConstantKeyHash::operator()(const ConstantKey& key) const {
    // Constants come from the image, so the hash must be one that the image's author cannot predict.
    return hashInteger(static_cast<std::int64_t>(key.payload)) ^ static_cast<std::size_t>(key.type);
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

std::unique_ptr<Code> CodeBuilder::finish() { return patchJumps() ? std::move(m_code) : nullptr; }

bool CodeBuilder::patchJumps() {
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
            return false;
        }
    }
    return true;
}

}  // namespace morvel::ruby::internal
