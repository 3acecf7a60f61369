// Builds images by hand, including ones the compiler never produces.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "bytecode/image.h"
#include "compiler/program.h"
#include "morvel/ruby/vm.h"

namespace morvel::ruby::tests {

/// One instruction; its line is set when it becomes part of a function.
[[nodiscard]] internal::Instruction op(internal::OpCode code, std::int32_t a = 0, std::int32_t b = 0);
/// An instruction with any opcode number.
[[nodiscard]] internal::Instruction opNumber(std::uint8_t number, std::int32_t a = 0, std::int32_t b = 0);

/// A function whose instructions are on lines 1, 2, 3, ..., so that an error's line number tells which one failed.
[[nodiscard]] internal::CompiledFunction function(std::string name, std::vector<std::string> params,
                                                  std::vector<internal::Instruction> code);

/// A program named "hand": constants, top-level code, and further functions from index 1 on. The derived tables are
/// not filled.
[[nodiscard]] internal::Program makeProgram(std::vector<RubyValue> constants, std::vector<internal::Instruction> main,
                                            std::vector<internal::CompiledFunction> functions = {});

/// The image of makeProgram.
[[nodiscard]] RubyBytecode assemble(std::vector<RubyValue> constants, std::vector<internal::Instruction> main,
                                    std::vector<internal::CompiledFunction> functions = {});

/// Appends the fields of images byte by byte, independently of the writer under test.
class ImageBytes {
public:
    ImageBytes& raw(const std::string& bytes);
    ImageBytes& u8(unsigned number);
    ImageBytes& u32(std::uint32_t number);
    ImageBytes& i32(std::int32_t number) { return u32(static_cast<std::uint32_t>(number)); }
    ImageBytes& u64(std::uint64_t number);
    /// Byte count, then the bytes.
    ImageBytes& text(const std::string& bytes);
    /// One instruction record.
    ImageBytes& record(unsigned op, std::int32_t a, std::int32_t b, std::uint32_t line);
    /// Magic and version.
    ImageBytes& header(std::uint32_t version = 2) { return raw("MTBC").u32(version); }

    [[nodiscard]] const std::vector<std::uint8_t>& bytes() const { return m_image.bytes; }
    [[nodiscard]] const RubyBytecode& image() const { return m_image; }

private:
    RubyBytecode m_image;
};

}  // namespace morvel::ruby::tests
