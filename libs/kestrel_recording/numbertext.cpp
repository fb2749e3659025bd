#include "libs/kestrel_recording/numbertext.h"

#include <array>
#include <charconv>
#include <cmath>

namespace kestrel_recording {

namespace {

constexpr std::uint64_t microsecondsPerSecond = 1000000;
constexpr std::size_t secondsDecimals = 6;
using Digits = std::array<char, 352>; // the longest: a double's greatest number with decimals

} // namespace

void appendInteger(std::uint64_t number, std::string& text) {
    Digits digits;
    text.append(digits.data(),
                std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr);
}

void appendSeconds(std::uint64_t microseconds, std::string& text) {
    appendInteger(microseconds / microsecondsPerSecond, text);
    text += '.';
    const std::string decimals = std::to_string(microseconds % microsecondsPerSecond);
    text.append(secondsDecimals - decimals.size(), '0').append(decimals);
}

void appendNumber(double number, std::string& text) {
    Digits digits;
    // A nan has no sign that would mean anything.
    text.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(),
                                             std::isnan(number) ? std::abs(number) : number,
                                             std::chars_format::fixed)
                                   .ptr);
}

void appendNumber(double number, int decimals, std::string& text) {
    if (!std::isfinite(number)) {
        appendNumber(number, text);
        return;
    }
    Digits digits;
    text.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number,
                                             std::chars_format::fixed, decimals)
                                   .ptr);
}

} // namespace kestrel_recording
