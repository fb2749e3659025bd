#pragma once

#include <cstdint>
#include <string>

namespace kestrel_recording {

/// Each appends a number to `text`, with a decimal point and no grouping whatever the locale.

void appendInteger(std::uint64_t number, std::string& text);

/// Microseconds as seconds with six decimals.
void appendSeconds(std::uint64_t microseconds, std::string& text);

/// As many digits as it takes to read back the same number, without an exponent; "nan", "inf",
/// "-inf".
void appendNumber(double number, std::string& text);

/// With a fixed number of decimals, rounded as printf does; "nan", "inf", "-inf".
void appendNumber(double number, int decimals, std::string& text);

} // namespace kestrel_recording
