// Bytecode images: a program's name, constants and functions as a self-contained byte string.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "compiler/program.h"
#include "morvel/ruby/vm.h"

namespace morvel::ruby::internal {

inline constexpr std::string_view kBytecodeMagic = "MTBC";
inline constexpr std::uint32_t kBytecodeVersion = 2;
/// The size of an instruction in an image: the opcode, `a`, `b` and the line.
inline constexpr std::size_t kInstructionSize = 1 + 3 * sizeof(std::uint32_t);

/// The image of a program. Throws RubyError "bytecode serializer only supports scalar constants" for a constant that
/// is an array, a map or a function, and "bytecode image is too large" when a count or length does not fit.
[[nodiscard]] RubyBytecode serializeProgram(const Program& program);

/// The program of an image, ready to run. Any bytes are safe, and the memory taken is bounded by the size of the image.
/// Operands are checked not here but at execution. Throws RubyError, in the order of reading:
/// "bytecode file is too small", "invalid bytecode header", "unsupported bytecode version", "bytecode is truncated",
/// "bytecode string exceeds file size", "bytecode constant type is not supported" or
/// "bytecode contains no entry function".
[[nodiscard]] Program deserializeProgram(const RubyBytecode& bytecode);

/// A count or length in the width that images use. Throws RubyError "bytecode image is too large" from 4 Gi on.
[[nodiscard]] std::uint32_t toImageCount(std::size_t count);

/// Reads the string at `position` and moves `position` past it. Throws RubyError "bytecode is truncated" or
/// "bytecode string exceeds file size".
[[nodiscard]] std::string_view readString(std::span<const std::uint8_t> bytes, std::size_t& position);

}  // namespace morvel::ruby::internal
