#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kestrel_wire {

/// Milliseconds since the beginning of 1970, UTC, leap seconds not counted.
using UtcMilliseconds = std::int64_t;

/// The last millisecond of the year 9999; the format has four digits for a year.
inline constexpr UtcMilliseconds lastUtc = 253402300799999;

/// `time`, from 0 to lastUtc, as "2026-11-22T03:40:12.345Z". What lies outside becomes the nearer
/// end.
std::string formatUtc(UtcMilliseconds time);

/// The reverse of formatUtc(). False, and `time` untouched, when `text` is not of exactly that
/// form or no time from 1970 to 9999; a leap second is none.
bool parseUtc(std::string_view text, UtcMilliseconds& time);

} // namespace kestrel_wire
