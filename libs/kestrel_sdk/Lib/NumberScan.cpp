#include "NumberScan.h"

#include <cerrno>
#include <cfenv>
#include <cfloat>
#include <cstdlib>
#include <fast_float/fast_float.h>
#include <locale.h>

namespace KestrelSDK_Parse::Numbers {
namespace {

static_assert(FLT_EVAL_METHOD == 0, "quotients must round to double at once");

constexpr int mostDigits = 18; ///< of an integer that surely fits into 64 bits
constexpr std::uint64_t exactIntegers = 1ULL << 53U; ///< up to here a double holds every integer
constexpr int exactPowers = 22;

/// The C library hands out its built-in "C" locale without allocating and never fails to.
locale_t cLocale() noexcept {
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
}

class KeepErrno {
public:
    KeepErrno() noexcept
        : m_kept(errno) {}
    ~KeepErrno() { errno = m_kept; }
    KeepErrno(const KeepErrno&) = delete;
    KeepErrno& operator=(const KeepErrno&) = delete;

private:
    int m_kept;
};

const char* scanOddDouble(const char* text, double& value) noexcept {
    const KeepErrno keepErrno;
    char* end = nullptr;
    value = strtod_l(text, &end, cLocale());
    return end == text ? nullptr : end;
}

const char* skipSign(const char* text, std::uint64_t& negative) noexcept {
    const char* first = skipMinus(text, negative);
    return negative == 0 && *first == '+' ? first + 1 : first;
}

/// A decimal integer of up to 18 digits that is not octal, hexadecimal or the like.
const char* scanDecimal(const char* text, std::int64_t& value) noexcept {
    std::uint64_t negative = 0;
    const char* first = skipSign(text, negative);
    std::uint64_t number = 0;
    const char* end = appendDigits(first, number);
    const auto count = end - first;
    const bool octal = *first == '0' && count > 1;
    if (count == 0 || count > mostDigits || octal || isLetter(*end)) {
        return nullptr;
    }
    const auto magnitude = static_cast<std::int64_t>(number);
    value = negative != 0 ? -magnitude : magnitude;
    return end;
}

/// The spelling of a decimal number without its sign.
struct Decimal {
    std::uint64_t digits = 0; ///< all digits as one integer
    int exponent = 0;         ///< of ten
    const char* end = nullptr;
};

/// Reads an exponent when there is one; false when it is too long to be told here.
bool readExponent(Decimal& decimal) noexcept {
    constexpr int mostExponentDigits = 4;
    const char* first = decimal.end + 1;
    const bool negative = *first == '-';
    first += negative || *first == '+' ? 1 : 0;
    const char* end = first;
    int exponent = 0;
    while (isDigit(*end) && end - first < mostExponentDigits) {
        exponent = exponent * 10 + (*end - '0');
        ++end;
    }
    if (isDigit(*end)) {
        return false;
    }
    if (end != first) {
        decimal.exponent += negative ? -exponent : exponent;
        decimal.end = end;
    }
    return true;
}

/// False when the text at `first` is no decimal number of up to 18 digits.
bool readDecimal(const char* first, Decimal& decimal) noexcept {
    decimal.end = appendDigits(first, decimal.digits);
    auto count = decimal.end - first;
    if (*decimal.end == 'x' || *decimal.end == 'X') {
        return false;
    }
    if (*decimal.end == '.') {
        const char* firstDecimal = decimal.end + 1;
        decimal.end = appendDigits(firstDecimal, decimal.digits);
        const auto decimals = decimal.end - firstDecimal;
        count += decimals;
        decimal.exponent = count > mostDigits ? 0 : -static_cast<int>(decimals);
    }
    if (count == 0 || count > mostDigits) {
        return false;
    }
    return (*decimal.end != 'e' && *decimal.end != 'E') || readExponent(decimal);
}

} // namespace

const char* scanAnyInt(const char* text, int& value) noexcept {
    std::int64_t decimal = 0;
    if (const char* end = scanDecimal(text, decimal)) {
        value = static_cast<int>(decimal);
        return end;
    }
    const KeepErrno keepErrno;
    char* end = nullptr;
    value = static_cast<int>(strtol_l(text, &end, 0, cLocale()));
    return end == text ? nullptr : end;
}

const char* scanAnyUnsigned(const char* text, unsigned int& value) noexcept {
    std::int64_t decimal = 0;
    if (const char* end = scanDecimal(text, decimal)) {
        value = static_cast<unsigned int>(decimal);
        return end;
    }
    const KeepErrno keepErrno;
    char* end = nullptr;
    value = static_cast<unsigned int>(strtoul_l(text, &end, 0, cLocale()));
    return end == text ? nullptr : end;
}

const char* scanAnyDouble(const char* text, double& value) noexcept {
    std::uint64_t negative = 0;
    const char* first = skipSign(text, negative);
    Decimal decimal;
    if (!readDecimal(first, decimal)) {
        return scanOddDouble(text, value);
    }
    if (decimal.digits <= exactIntegers && decimal.exponent >= -exactPowers &&
        decimal.exponent <= exactPowers) {
        const double number = withSign(exactDouble(decimal.digits), negative);
        value = decimal.exponent < 0 ? number / powersOfTen[-decimal.exponent]
                                     : number * powersOfTen[decimal.exponent];
        return decimal.end;
    }
    // fast_float rounds to nearest whatever the rounding mode; the C library follows the mode.
    if (std::fegetround() != FE_TONEAREST) {
        return scanOddDouble(text, value);
    }
    double magnitude = 0;
    fast_float::from_chars(first, decimal.end, magnitude);
    value = withSign(magnitude, negative);
    return decimal.end;
}

} // namespace KestrelSDK_Parse::Numbers
