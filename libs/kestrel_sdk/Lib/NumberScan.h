#pragma once

#include <cstdint>
#include <cstring>

/// The number conversions behind the scanners; private to the library.
///
/// A scan...() function reads one number at `text` as its C counterpart does in the "C" locale (the
/// integers with base 0) and returns the position behind it, or null (and stores 0) when there is
/// none. The usual spellings are read here, inline; scanAny...() read every spelling.
///
/// The digits are read one by one on purpose: the numbers of a data line have the same number of
/// decimals frame after frame, so the processor guesses where each ends and starts with the next
/// one before this one is converted.
namespace KestrelSDK_Parse::Numbers {

const char* scanAnyInt(const char* text, int& value) noexcept;
const char* scanAnyUnsigned(const char* text, unsigned int& value) noexcept;
const char* scanAnyDouble(const char* text, double& value) noexcept;

/// The powers of ten that a double holds exactly.
inline constexpr double powersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                         1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                         1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

inline bool isSpace(char c) noexcept {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

inline unsigned int digitOf(char c) noexcept {
    return static_cast<unsigned int>(c) - '0';
}
inline bool isDigit(char c) noexcept {
    return digitOf(c) <= 9;
}

/// Whether the number may go on behind its digits: an exponent, a hexadecimal number and the like.
inline bool isLetter(char c) noexcept {
    const auto upper = static_cast<unsigned char>(c & ~0x20);
    return upper >= 'A' && upper <= 'Z';
}

/// Position behind white space and a minus sign. The sign is added, not branched on: signs come at
/// random. A plus sign is unusual.
inline const char* skipMinus(const char* text, std::uint64_t& negative) noexcept {
    while (isSpace(*text)) {
        ++text;
    }
    negative = *text == '-' ? 1 : 0;
    return text + negative;
}

/// `number`, at most 2^53, without rounding. From a signed integer: a compiler may convert an
/// unsigned one by a subtraction, which turns 0 into -0 when it rounds downward.
inline double exactDouble(std::uint64_t number) noexcept {
    return static_cast<double>(static_cast<std::int64_t>(number));
}

/// `magnitude` with the given sign, again without a branch.
inline double withSign(double magnitude, std::uint64_t negative) noexcept {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &magnitude, sizeof bits);
    bits |= negative << 63U;
    std::memcpy(&magnitude, &bits, sizeof bits);
    return magnitude;
}

/// Position behind the decimal digits at `text`, which are appended to `number`; overflows silently
/// behind the 19th digit.
inline const char* appendDigits(const char* text, std::uint64_t& number) noexcept {
    for (; isDigit(*text); ++text) {
        number = number * 10 + digitOf(*text);
    }
    return text;
}

inline const char* scanInt(const char* text, int& value) noexcept {
    constexpr int mostDigits = 9;
    std::uint64_t negative = 0;
    const char* first = skipMinus(text, negative);
    std::uint64_t number = 0;
    const char* end = appendDigits(first, number);
    const auto count = end - first;
    const bool octal = *first == '0' && count > 1;
    if (count == 0 || count > mostDigits || octal || isLetter(*end)) {
        return scanAnyInt(text, value);
    }
    const auto magnitude = static_cast<int>(number);
    value = negative != 0 ? -magnitude : magnitude;
    return end;
}

inline const char* scanDouble(const char* text, double& value) noexcept {
    constexpr int mostDigits = 15;
    std::uint64_t negative = 0;
    const char* first = skipMinus(text, negative);
    std::uint64_t number = 0;
    const char* end = appendDigits(first, number);
    auto count = end - first;
    std::ptrdiff_t decimals = 0;
    if (*end == '.') {
        const char* firstDecimal = end + 1;
        end = appendDigits(firstDecimal, number);
        decimals = end - firstDecimal;
        count += decimals;
    }
    if (count == 0 || count > mostDigits || isLetter(*end)) {
        return scanAnyDouble(text, value);
    }
    // Both are exact, so their quotient is exact to the last bit in every rounding mode.
    value = withSign(exactDouble(number), negative) / powersOfTen[decimals];
    return end;
}

/// Bytes "0.000000" as a number, and what makes the highest bit of each byte that is neither a
/// digit nor the point appear when those are subtracted.
inline constexpr std::uint64_t zeroFraction = 0x3030303030302e30U;
inline constexpr std::uint64_t aboveNine = 0x7676767676767f76U;
inline constexpr std::uint64_t highestBits = 0x8080808080808080U;

/// Eight decimal digits, the first in the lowest byte, as a number.
inline std::uint64_t eightDigits(std::uint64_t digits) noexcept {
    constexpr std::uint64_t pairs = 0x000000ff000000ffU;
    digits = digits * 10 + (digits >> 8U); // pairs, in every other byte
    digits = (digits & pairs) * (100U + (1000000ULL << 32U)) +
             ((digits >> 16U) & pairs) * (1U + (10000ULL << 32U));
    return digits >> 32U;
}

/// As scanDouble(), and faster where it finds the spelling of a rotation's numbers, "-0.123456".
/// The bytes before `end` can be read. It has one shape, so that it is no guess where the next one
/// begins.
inline const char* scanFraction(const char* text, const char* end, double& value) noexcept {
    constexpr std::ptrdiff_t size = 8;
    text += *text == ' ' ? 1 : 0;
    const std::uint64_t negative = *text == '-' ? 1 : 0;
    const char* first = text + negative;
    const bool isLittleEndian = __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__;
    if (!isLittleEndian || end - first <= size || (first[size] != ' ' && first[size] != ']')) {
        return scanDouble(text, value);
    }
    std::uint64_t digits = 0;
    std::memcpy(&digits, first, sizeof digits);
    digits -= zeroFraction;
    if ((((digits + aboveNine) | digits) & highestBits) != 0) {
        return scanDouble(text, value);
    }
    // The point counts as a zero among the decimals.
    const std::uint64_t whole = digits & 0xffU;
    const std::uint64_t millionths = eightDigits(digits) - whole * 9000000U;
    value = withSign(exactDouble(millionths), negative) / powersOfTen[6];
    return first + size;
}

} // namespace KestrelSDK_Parse::Numbers
