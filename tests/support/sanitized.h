#pragma once

/// Whether this is built with a sanitizer that has an allocator of its own.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool hasSanitizersAllocator = true;
#elif defined(__has_feature)
inline constexpr bool hasSanitizersAllocator =
    __has_feature(address_sanitizer) || __has_feature(thread_sanitizer);
#else
inline constexpr bool hasSanitizersAllocator = false;
#endif
