// Translates the stack code of a function into the engine's register form.
#pragma once

#include <cstdint>
#include <memory>

#include "compiler/program.h"
#include "vm/engine/code.h"
#include "vm/engine/global_names.h"

namespace morvel::ruby::internal {

/// The register form of function `functionIndex`; null when the function does not verify or needs more than register
/// operands can name: the baseline interpreter runs it. Names that the function mentions get global slots.
[[nodiscard]] std::unique_ptr<Code> translateFunction(const Program& program, std::int32_t functionIndex,
                                                      GlobalNames& names);

}  // namespace morvel::ruby::internal
