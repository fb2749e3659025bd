#pragma once

#include <cstdint>
#include <cstring>

/// The number conversions behind the scanners; private to the library.
///
/// A scan_...() function reads one number at `text` as its C counterpart does in the "C" locale and
/// returns the position behind it, or null (and stores 0) when there is none. Characters before
/// `limit` may be read whatever they are; with `limit` == `text` nothing behind a NUL is read.
namespace KestrelSDK_Parse::Numbers {

/// Any spelling, at any speed: strtol and strtoul with base 0, and strtod.
const char* scanAnyInt(const char* text, int& value) noexcept;
const char* scanAnyUnsigned(const char* text, unsigned int& value) noexcept;
const char* scanAnyDouble(const char* text, double& value) noexcept;

constexpr double powersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                  1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                  1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

inline bool isSpace(char c) noexcept {
    return c == ' ' || (c >= '\t' && c <= '\r');
}
inline bool isDigit(char c) noexcept {
    return c >= '0' && c <= '9';
}
inline bool isLetter(char c) noexcept {
    const char lower = static_cast<char>(c | 0x20);
    return lower >= 'a' && lower <= 'z';
}

/// The decimal digits at the start of eight characters.
struct DigitRun {
    std::uint64_t value;
    unsigned count; ///< 0 to 7; an eighth digit stays behind the run
};

/// Reads eight characters at once: tells digits from others in one step, then joins them in pairs,
/// fours and eights.
inline DigitRun digitRun(const char* text) noexcept {
    std::uint64_t chars = 0;
    std::memcpy(&chars, text, sizeof chars);
#if __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
    chars = __builtin_bswap64(chars);
#endif
    const std::uint64_t digits = chars ^ 0x3030303030303030U;
    const std::uint64_t others =
        ((digits | (digits + 0x7676767676767676U)) & 0x8080808080808080U) | (1ULL << 63U);
    const auto bits = static_cast<unsigned>(__builtin_ctzll(others)) & ~7U;
    // The digits go to the far end, zeros in front of them.
    std::uint64_t run = (digits << 8U) << (56U - bits);
    run = run * 10 + (run >> 8U);
    run = ((run & 0x000000FF000000FFU) * 0x000F424000000064U +
           ((run >> 16U) & 0x000000FF000000FFU) * 0x0000271000000001U) >>
          32U;
    return {run & 0xFFFFFFFFU, bits / 8};
}

/// Position behind white space and at most one sign.
inline const char* skipSign(const char* text, bool& negative) noexcept {
    while (isSpace(*text)) {
        ++text;
    }
    negative = *text == '-';
    return text + static_cast<int>(negative | (*text == '+'));
}

/// A decimal integer of up to seven digits; null when the text holds anything less usual.
inline const char* scanUsualInteger(const char* text, const char* limit, int& value) noexcept {
    bool negative = false;
    const char* first = skipSign(text, negative);
    if (limit - first < 8) {
        return nullptr;
    }
    const DigitRun run = digitRun(first);
    const char* end = first + run.count;
    const bool octal = *first == '0' && run.count > 1;
    if (run.count == 0 || octal || isDigit(*end) || isLetter(*end)) {
        return nullptr;
    }
    const int magnitude = static_cast<int>(run.value);
    value = negative ? -magnitude : magnitude;
    return end;
}

inline const char* scanInt(const char* text, const char* limit, int& value) noexcept {
    const char* end = scanUsualInteger(text, limit, value);
    return end != nullptr ? end : scanAnyInt(text, value);
}

/// Up to seven digits on each side of the dot: their quotient of two exact numbers is exact to the
/// last bit in every rounding mode. Everything else is left to scanAnyDouble().
inline const char* scanDouble(const char* text, const char* limit, double& value) noexcept {
    bool negative = false;
    const char* first = skipSign(text, negative);
    if (limit - first < 17) {
        return scanAnyDouble(text, value);
    }
    const DigitRun whole = digitRun(first);
    const char* end = first + whole.count;
    DigitRun fraction{0, 0};
    if (*end == '.') {
        fraction = digitRun(end + 1);
        end += 1 + fraction.count;
    }
    if (whole.count + fraction.count == 0 || isDigit(*end) || isLetter(*end)) {
        return scanAnyDouble(text, value);
    }
    constexpr std::uint32_t powers[] = {1, 10, 100, 1000, 10000, 100000, 1000000, 10000000};
    const std::uint64_t all = whole.value * powers[fraction.count] + fraction.value;
    const auto magnitude = static_cast<double>(static_cast<std::int64_t>(all));
    value = (negative ? -magnitude : magnitude) / powersOfTen[fraction.count];
    return end;
}

} // namespace KestrelSDK_Parse::Numbers
