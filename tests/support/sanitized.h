#pragma once

namespace kovanix {

/// Whether the program is built with the sanitizers, whose allocator and checks make measures of memory and
/// time another matter.
#ifdef __SANITIZE_ADDRESS__
constexpr bool sanitized = true;
#else
constexpr bool sanitized = false;
#endif

}  // namespace kovanix
