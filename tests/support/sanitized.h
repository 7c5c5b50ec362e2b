#pragma once

namespace velmora::test {

/// Whether the tests run under the address sanitizer, which makes them several times slower and keeps memory for a
/// while that was given back.
#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool sanitized = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
inline constexpr bool sanitized = true;
#else
inline constexpr bool sanitized = false;
#endif
#else
inline constexpr bool sanitized = false;
#endif

} // namespace velmora::test
