// Shared by the robustness tests: build properties, outcomes of runs, and the general test support.
#pragma once

#include <cstddef>
#include <string>

#include "morvel/ruby/vm.h"
#include "support/files.h"
#include "support/output.h"
#include "support/process.h"
#include "support/temporary_directory.h"
#include "support/threads.h"

namespace morvel::ruby::tests {

/// Whether the build is optimised, so that tests can afford more repetitions.
#if defined(__OPTIMIZE__)
inline constexpr bool kOptimised = true;
#else
inline constexpr bool kOptimised = false;
#endif

#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool kAddressSanitizer = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
inline constexpr bool kAddressSanitizer = true;
#else
inline constexpr bool kAddressSanitizer = false;
#endif
#else
inline constexpr bool kAddressSanitizer = false;
#endif

#if defined(__SANITIZE_THREAD__)
inline constexpr bool kThreadSanitizer = true;
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
inline constexpr bool kThreadSanitizer = true;
#else
inline constexpr bool kThreadSanitizer = false;
#endif
#else
inline constexpr bool kThreadSanitizer = false;
#endif

/// Runs source code and returns the text of its value, or "error: " and the message.
[[nodiscard]] std::string outcome(RubyVM& vm, const std::string& source);

/// The same on a new VM.
[[nodiscard]] std::string outcome(const std::string& source);

/// True if the VM still works; checked after every failure.
[[nodiscard]] bool isUsable(RubyVM& vm);

/// `text` repeated `times` times.
[[nodiscard]] std::string repeated(const std::string& text, std::size_t times);

}  // namespace morvel::ruby::tests
