// What the robustness tests share: what they are built with, how a run went, and the support of all tests.
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

/// Whether the compiler optimises, so that tests may repeat more.
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

/// Runs source text and gives the text of its value, or "error: " and the message.
[[nodiscard]] std::string outcome(RubyVM& vm, const std::string& source);

/// The same on a VM of its own.
[[nodiscard]] std::string outcome(const std::string& source);

/// True when the VM still computes: to be asked after every failure.
[[nodiscard]] bool isUsable(RubyVM& vm);

/// A text several times over.
[[nodiscard]] std::string repeated(const std::string& text, std::size_t times);

}  // namespace morvel::ruby::tests
