#pragma once

#include "KestrelParse.h"

#include <cstdlib>
#include <cstring>
#include <locale.h>
#include <sstream>
#include <string>

/// The C library's conversions in the "C" locale, as models of the scanners; for tests and fuzzing.
namespace Agreement {

inline locale_t cLocale() {
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
}

/// Empty when scanner and model read the same value, to the last bit, and stop at the same
/// character; else what differs.
template <class Number, class Scan, class Model>
std::string difference(char* text, Scan scan, Model model) {
    Number scanned{};
    const char* scannedEnd = scan(text, &scanned);
    char* end = nullptr;
    const auto expected = static_cast<Number>(model(text, &end));
    const char* expectedEnd = end == text ? nullptr : end;
    if (scannedEnd == expectedEnd && std::memcmp(&scanned, &expected, sizeof scanned) == 0) {
        return {};
    }
    std::ostringstream message;
    message << '"' << text << "\": " << scanned << " instead of " << expected << ", stopped at "
            << (scannedEnd == nullptr ? -1 : scannedEnd - text) << " instead of "
            << (expectedEnd == nullptr ? -1 : expectedEnd - text);
    return message.str();
}

/// As above, over the four scanners of numbers.
inline std::string difference(char* text) {
    const auto toLong = [](char* s, char** end) { return strtol_l(s, end, 0, cLocale()); };
    const auto toUnsigned = [](char* s, char** end) { return strtoul_l(s, end, 0, cLocale()); };
    const auto toDouble = [](char* s, char** end) { return strtod_l(s, end, cLocale()); };
    using namespace KestrelSDK_Parse;
    return difference<int>(text, string_get_i, toLong) +
           difference<unsigned int>(text, string_get_ui, toUnsigned) +
           difference<float>(text, string_get_f, toDouble) +
           difference<double>(text, string_get_d, toDouble);
}

} // namespace Agreement
