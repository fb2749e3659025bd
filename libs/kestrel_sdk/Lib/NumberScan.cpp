#include "NumberScan.h"

#include <cerrno>
#include <cfenv>
#include <cfloat>
#include <cstdlib>
#include <fast_float/fast_float.h>
#include <locale.h>
#include <system_error>

namespace KestrelSDK_Parse::Numbers {
namespace {

static_assert(FLT_EVAL_METHOD == 0, "quotients must round to double at once");

constexpr std::int64_t exactIntegers = 1LL << 53U;

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

/// A decimal integer of up to 18 digits that is not octal, hexadecimal or the like.
const char* scanDecimal(const char* text, std::int64_t& value) noexcept {
    constexpr int mostDigits = 18;
    bool negative = false;
    const char* first = skipSign(text, negative);
    const char* end = first;
    std::int64_t magnitude = 0;
    while (isDigit(*end) && end - first < mostDigits) {
        magnitude = magnitude * 10 + (*end - '0');
        ++end;
    }
    const bool octal = *first == '0' && end - first > 1;
    if (end == first || octal || isDigit(*end) || isLetter(*end)) {
        return nullptr;
    }
    value = negative ? -magnitude : magnitude;
    return end;
}

/// The spelling of a decimal number without its sign.
struct Decimal {
    std::int64_t digits = 0; ///< all digits as one integer
    int count = 0;           ///< number of digits
    int exponent = 0;        ///< of ten
    const char* end = nullptr;
};

constexpr int mostDigits = 18;

void readDigits(Decimal& decimal) noexcept {
    while (isDigit(*decimal.end) && decimal.count <= mostDigits) {
        if (decimal.count < mostDigits) {
            decimal.digits = decimal.digits * 10 + (*decimal.end - '0');
        }
        ++decimal.count;
        ++decimal.end;
    }
}

/// Reads an exponent when there is one; false when it is too long to be told here.
bool readExponent(Decimal& decimal) noexcept {
    constexpr int mostExponentDigits = 4;
    bool negative = *(decimal.end + 1) == '-';
    const char* first = decimal.end + 1 + (negative || *(decimal.end + 1) == '+' ? 1 : 0);
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
    decimal.end = first;
    readDigits(decimal);
    if (*decimal.end == 'x' || *decimal.end == 'X') {
        return false;
    }
    if (*decimal.end == '.') {
        ++decimal.end;
        const int whole = decimal.count;
        readDigits(decimal);
        decimal.exponent = whole - decimal.count;
    }
    if (decimal.count == 0 || decimal.count > mostDigits) {
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
    bool negative = false;
    const char* first = skipSign(text, negative);
    Decimal decimal;
    if (!readDecimal(first, decimal)) {
        return scanOddDouble(text, value);
    }
    constexpr int exactPowers = 22;
    if (decimal.digits <= exactIntegers && decimal.exponent >= -exactPowers &&
        decimal.exponent <= exactPowers) {
        const auto magnitude = static_cast<double>(decimal.digits);
        const double number = negative ? -magnitude : magnitude;
        value = decimal.exponent < 0 ? number / powersOfTen[-decimal.exponent]
                                     : number * powersOfTen[decimal.exponent];
        return decimal.end;
    }
    double magnitude = 0;
    // It rounds to nearest whatever the rounding mode; the C library follows the mode.
    if (std::fegetround() != FE_TONEAREST ||
        fast_float::from_chars(first, decimal.end, magnitude).ec != std::errc()) {
        return scanOddDouble(text, value);
    }
    value = negative ? -magnitude : magnitude;
    return decimal.end;
}

} // namespace KestrelSDK_Parse::Numbers
