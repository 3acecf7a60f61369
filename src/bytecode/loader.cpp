#include <algorithm>
#include <bit>
#include <unordered_map>

#include "bytecode/image.h"
#include "compiler/metadata.h"
#include "morvel/ruby/error.h"
#include "value/hash.h"

namespace morvel::ruby::internal {

namespace {

// The magic number and the version.
constexpr std::size_t kHeaderSize = kBytecodeMagic.size() + sizeof(std::uint32_t);
// The smallest encodings of a constant, of a string, and of a function: they bound how many entries the rest of an
// image can hold, whatever its counts say.
constexpr std::size_t kSmallestConstant = 1;
constexpr std::size_t kSmallestString = 4;
constexpr std::size_t kSmallestFunction = kSmallestString + 2 * sizeof(std::uint32_t);

class ImageReader {
public:
    explicit ImageReader(std::span<const std::uint8_t> bytes) : m_bytes(bytes) {}

    [[nodiscard]] std::size_t left() const { return m_bytes.size() - m_position; }

    void skip(std::size_t count) { m_position += count; }

    std::uint8_t readByte() {
        if (left() < 1) {
            throw RubyError("bytecode is truncated");
        }
        return m_bytes[m_position++];
    }

    std::uint32_t readU32() { return static_cast<std::uint32_t>(readLittleEndian(sizeof(std::uint32_t))); }

    std::int32_t readI32() { return static_cast<std::int32_t>(readU32()); }

    std::uint64_t readU64() { return readLittleEndian(sizeof(std::uint64_t)); }

    std::string_view readText() { return readString(m_bytes, m_position); }

    /// How many entries of at least `smallest` bytes to reserve room for when the image claims `count`.
    [[nodiscard]] std::size_t room(std::uint32_t count, std::size_t smallest) const {
        return std::min<std::size_t>(count, left() / smallest);
    }

private:
    std::uint64_t readLittleEndian(std::size_t size) {
        if (left() < size) {
            throw RubyError("bytecode is truncated");
        }
        std::uint64_t number = 0;
        for (std::size_t i = 0; i < size; ++i) {
            number |= std::uint64_t{m_bytes[m_position + i]} << (8 * i);
        }
        m_position += size;
        return number;
    }

    std::span<const std::uint8_t> m_bytes;
    std::size_t m_position = 0;
};

class ProgramLoader {
public:
    explicit ProgramLoader(std::span<const std::uint8_t> bytes) : m_reader(bytes) { m_reader.skip(kHeaderSize); }

    Program load() {
        m_program.name = m_reader.readText();
        readConstants();
        readFunctions();
        finalizeProgramMetadata(m_program);
        return std::move(m_program);
    }

private:
    void readConstants() {
        const std::uint32_t count = m_reader.readU32();
        m_program.constants.reserve(m_reader.room(count, kSmallestConstant));
        for (std::uint32_t i = 0; i < count; ++i) {
            m_program.constants.push_back(readConstant());
        }
    }

    RubyValue readConstant() {
        switch (static_cast<RubyValue::Type>(m_reader.readByte())) {
            case RubyValue::Type::Nil:
                return nullptr;
            case RubyValue::Type::Integer:
                return static_cast<std::int64_t>(m_reader.readU64());
            case RubyValue::Type::Float:
                return std::bit_cast<double>(m_reader.readU64());
            case RubyValue::Type::Boolean:
                return m_reader.readByte() != 0;
            case RubyValue::Type::String:
                return sharedText(m_reader.readText());
            case RubyValue::Type::Array:
            case RubyValue::Type::Map:
            case RubyValue::Type::Function:
                break;
        }
        throw RubyError("bytecode constant type is not supported");
    }

    // The constant pool repeats a name for each of its uses; equal strings share their memory.
    const RubyValue& sharedText(std::string_view text) {
        const auto [entry, isNew] = m_texts.try_emplace(text);
        if (isNew) {
            entry->second = RubyValue(text);
        }
        return entry->second;
    }

    void readFunctions() {
        const std::uint32_t count = m_reader.readU32();
        if (count == 0) {
            throw RubyError("bytecode contains no entry function");
        }
        m_program.functions.reserve(m_reader.room(count, kSmallestFunction));
        for (std::uint32_t i = 0; i < count; ++i) {
            readFunction(m_program.functions.emplace_back());
        }
    }

    void readFunction(CompiledFunction& function) {
        function.name = m_reader.readText();
        const std::uint32_t paramCount = m_reader.readU32();
        function.params.reserve(m_reader.room(paramCount, kSmallestString));
        for (std::uint32_t i = 0; i < paramCount; ++i) {
            function.params.emplace_back(m_reader.readText());
        }
        const std::uint32_t codeSize = m_reader.readU32();
        function.code.reserve(m_reader.room(codeSize, kInstructionSize));
        for (std::uint32_t i = 0; i < codeSize; ++i) {
            Instruction& instruction = function.code.emplace_back();
            instruction.op = static_cast<OpCode>(m_reader.readByte());
            instruction.a = m_reader.readI32();
            instruction.b = m_reader.readI32();
            instruction.line = m_reader.readU32();
        }
    }

    ImageReader m_reader;
    Program m_program;
    std::unordered_map<std::string_view, RubyValue, TextHash> m_texts;
};

void checkHeader(std::span<const std::uint8_t> bytes) {
    if (bytes.size() < kHeaderSize) {
        throw RubyError("bytecode file is too small");
    }
    if (!std::equal(kBytecodeMagic.begin(), kBytecodeMagic.end(), bytes.begin())) {
        throw RubyError("invalid bytecode header");
    }
    ImageReader reader(bytes);
    reader.skip(kBytecodeMagic.size());
    const std::uint32_t version = reader.readU32();
    if (version != 1 && version != kBytecodeVersion) {
        throw RubyError("unsupported bytecode version");
    }
}

}  // namespace

Program deserializeProgram(const RubyBytecode& bytecode) {
    checkHeader(bytecode.bytes);
    return ProgramLoader(bytecode.bytes).load();
}

std::string_view readString(std::span<const std::uint8_t> bytes, std::size_t& position) {
    constexpr std::size_t kLengthSize = 4;
    if (bytes.size() - position < kLengthSize) {
        throw RubyError("bytecode is truncated");
    }
    std::size_t length = 0;
    for (std::size_t i = 0; i < kLengthSize; ++i) {
        length |= std::size_t{bytes[position + i]} << (8 * i);
    }
    position += kLengthSize;
    if (length > bytes.size() - position) {
        throw RubyError("bytecode string exceeds file size");
    }
    const auto* text = reinterpret_cast<const char*>(bytes.data() + position);
    position += length;
    return {text, length};
}

}  // namespace morvel::ruby::internal
