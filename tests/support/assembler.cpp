#include "support/assembler.h"

namespace morvel::ruby::tests {

using internal::CompiledFunction;
using internal::Instruction;
using internal::OpCode;
using internal::Program;

Instruction op(OpCode code, std::int32_t a, std::int32_t b) {
    Instruction instruction;
    instruction.op = code;
    instruction.a = a;
    instruction.b = b;
    return instruction;
}

Instruction opNumber(std::uint8_t number, std::int32_t a, std::int32_t b) {
    return op(static_cast<OpCode>(number), a, b);
}

CompiledFunction function(std::string name, std::vector<std::string> params, std::vector<Instruction> code) {
    CompiledFunction made;
    made.name = std::move(name);
    made.params = std::move(params);
    made.code = std::move(code);
    std::uint32_t line = 0;
    for (Instruction& instruction : made.code) {
        instruction.line = ++line;
    }
    return made;
}

Program makeProgram(std::vector<RubyValue> constants, std::vector<Instruction> main,
                    std::vector<CompiledFunction> functions) {
    Program program;
    program.name = "hand";
    program.constants = std::move(constants);
    program.functions.push_back(function("<main>", {}, std::move(main)));
    for (CompiledFunction& further : functions) {
        program.functions.push_back(std::move(further));
    }
    return program;
}

RubyBytecode assemble(std::vector<RubyValue> constants, std::vector<Instruction> main,
                      std::vector<CompiledFunction> functions) {
    return internal::serializeProgram(makeProgram(std::move(constants), std::move(main), std::move(functions)));
}

ImageBytes& ImageBytes::raw(const std::string& bytes) {
    m_image.bytes.insert(m_image.bytes.end(), bytes.begin(), bytes.end());
    return *this;
}

ImageBytes& ImageBytes::u8(unsigned number) {
    m_image.bytes.push_back(static_cast<std::uint8_t>(number));
    return *this;
}

ImageBytes& ImageBytes::u32(std::uint32_t number) {
    for (int shift = 0; shift < 32; shift += 8) {
        u8(number >> shift & 0xff);
    }
    return *this;
}

ImageBytes& ImageBytes::u64(std::uint64_t number) {
    return u32(static_cast<std::uint32_t>(number)).u32(static_cast<std::uint32_t>(number >> 32));
}

ImageBytes& ImageBytes::text(const std::string& bytes) {
    return u32(static_cast<std::uint32_t>(bytes.size())).raw(bytes);
}

ImageBytes& ImageBytes::record(unsigned op, std::int32_t a, std::int32_t b, std::uint32_t line) {
    return u8(op).i32(a).i32(b).u32(line);
}

}  // namespace morvel::ruby::tests
