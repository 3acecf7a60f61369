#include <algorithm>
#include <array>
#include <bit>
#include <iterator>
#include <limits>

#include "bytecode/image.h"
#include "morvel/ruby/error.h"

namespace morvel::ruby::internal {

namespace {

class ImageWriter {
public:
    explicit ImageWriter(std::vector<std::uint8_t>& bytes) : m_bytes(bytes) {}

    void writeByte(std::uint8_t byte) { m_bytes.push_back(byte); }

    void writeU32(std::uint32_t number) {
        std::array<std::uint8_t, 4> bytes;
        store(bytes.data(), number);
        m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
    }

    void writeU64(std::uint64_t number) {
        writeU32(static_cast<std::uint32_t>(number));
        writeU32(static_cast<std::uint32_t>(number >> 32));
    }

    void writeCount(std::size_t count) { writeU32(toImageCount(count)); }

    void writeRaw(std::string_view text) { m_bytes.insert(m_bytes.end(), text.begin(), text.end()); }

    void writeString(std::string_view text) {
        writeCount(text.size());
        writeRaw(text);
    }

    void writeInstructions(const std::vector<Instruction>& code) {
        const std::size_t begin = m_bytes.size();
        m_bytes.resize(begin + code.size() * kInstructionSize);
        std::uint8_t* record = m_bytes.data() + begin;
        for (const Instruction& instruction : code) {
            record[0] = static_cast<std::uint8_t>(instruction.op);
            store(record + 1, static_cast<std::uint32_t>(instruction.a));
            store(record + 5, static_cast<std::uint32_t>(instruction.b));
            store(record + 9, instruction.line);
            record += kInstructionSize;
        }
    }

private:
    // Little-endian, whatever the processor's byte order.
    static void store(std::uint8_t* bytes, std::uint32_t number) {
        bytes[0] = static_cast<std::uint8_t>(number);
        bytes[1] = static_cast<std::uint8_t>(number >> 8);
        bytes[2] = static_cast<std::uint8_t>(number >> 16);
        bytes[3] = static_cast<std::uint8_t>(number >> 24);
    }

    std::vector<std::uint8_t>& m_bytes;
};

void writeConstant(ImageWriter& writer, const RubyValue& constant) {
    writer.writeByte(static_cast<std::uint8_t>(constant.type));
    switch (constant.type) {
        case RubyValue::Type::Nil:
            return;
        case RubyValue::Type::Integer:
            writer.writeU64(static_cast<std::uint64_t>(constant.data.integer));
            return;
        case RubyValue::Type::Float:
            writer.writeU64(std::bit_cast<std::uint64_t>(constant.data.floating));
            return;
        case RubyValue::Type::Boolean:
            writer.writeByte(constant.data.boolean ? 1 : 0);
            return;
        case RubyValue::Type::String:
            writer.writeString(constant.asString());
            return;
        case RubyValue::Type::Array:
        case RubyValue::Type::Map:
        case RubyValue::Type::Function:
            break;
    }
    throw RubyError("bytecode serializer only supports scalar constants");
}

void writeFunction(ImageWriter& writer, const CompiledFunction& function) {
    writer.writeString(function.name);
    writer.writeCount(function.params.size());
    for (const std::string& param : function.params) {
        writer.writeString(param);
    }
    writer.writeCount(function.code.size());
    writer.writeInstructions(function.code);
}

std::size_t stringSize(std::string_view text) { return sizeof(std::uint32_t) + toImageCount(text.size()); }

// An upper bound on the size of the image: growing it step by step would touch twice the memory.
std::size_t imageSize(const Program& program) {
    // The type and eight bytes of payload.
    constexpr std::size_t kLongestNumber = 1 + sizeof(std::uint64_t);
    // The version and the numbers of constants and functions. A function needs only two counts.
    constexpr std::size_t kCounts = 3 * sizeof(std::uint32_t);
    std::size_t size = kBytecodeMagic.size() + kCounts + stringSize(program.name);
    for (const RubyValue& constant : program.constants) {
        size += constant.isString() ? 1 + stringSize(constant.asString()) : kLongestNumber;
    }
    for (const CompiledFunction& function : program.functions) {
        size += kCounts + stringSize(function.name) + function.code.size() * kInstructionSize;
        for (const std::string& param : function.params) {
            size += stringSize(param);
        }
    }
    return size;
}

}  // namespace

std::uint32_t toImageCount(std::size_t count) {
    if (count > std::numeric_limits<std::uint32_t>::max()) {
        throw RubyError("bytecode image is too large");
    }
    return static_cast<std::uint32_t>(count);
}

RubyBytecode serializeProgram(const Program& program) {
    RubyBytecode bytecode;
    bytecode.bytes.reserve(imageSize(program));
    bytecode.bytes.assign(kBytecodeMagic.begin(), kBytecodeMagic.end());
    ImageWriter writer(bytecode.bytes);
    writer.writeU32(kBytecodeVersion);
    writer.writeString(program.name);
    writer.writeCount(program.constants.size());
    for (const RubyValue& constant : program.constants) {
        writeConstant(writer, constant);
    }
    writer.writeCount(program.functions.size());
    for (const CompiledFunction& function : program.functions) {
        writeFunction(writer, function);
    }
    return bytecode;
}

}  // namespace morvel::ruby::internal
