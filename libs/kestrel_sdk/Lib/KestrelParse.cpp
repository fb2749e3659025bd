#include "KestrelParse.h"

#include "NumberScan.h"

#include <cstring>

namespace KestrelSDK_Parse {
namespace {

/// A position of the scan as the caller's own kind of pointer.
char* behind(char* text, const char* end) {
    return end == nullptr ? nullptr : text + (end - text);
}

char* skipBlanks(char* text) {
    while (*text == ' ') {
        ++text;
    }
    return text;
}

bool isLineBreak(char c) {
    return c == '\n' || c == '\r';
}

} // namespace

char* string_nextline(char* str, char* start, int len) {
    const char* end = str + len;
    if (start < str) {
        return nullptr;
    }
    while (start < end && !isLineBreak(*start)) {
        ++start;
    }
    while (start < end && isLineBreak(*start)) {
        ++start;
    }
    return start < end && *start != '\0' ? start : nullptr;
}

char* string_get_i(char* str, int* i) {
    return behind(str, Numbers::scanInt(str, *i));
}

char* string_get_ui(char* str, unsigned int* ui) {
    return behind(str, Numbers::scanAnyUnsigned(str, *ui));
}

char* string_get_d(char* str, double* d) {
    return behind(str, Numbers::scanDouble(str, *d));
}

char* string_get_f(char* str, float* f) {
    double d = 0;
    char* end = string_get_d(str, &d);
    *f = static_cast<float>(d);
    return end;
}

char* string_get_block(char* str, const char* fmt, int* idat, float* fdat, double* ddat) {
    char* open = std::strchr(str, '[');
    char* close = open == nullptr ? nullptr : std::strchr(open, ']');
    if (close == nullptr) {
        return nullptr;
    }
    // No number goes on over a "]", so no scan leaves the block.
    const char* at = open + 1;
    int nextInt = 0;
    int nextReal = 0;
    for (; *fmt != '\0' && at != nullptr; ++fmt) {
        double real = 0;
        switch (*fmt) {
        case 'i':
            at = Numbers::scanInt(at, idat[nextInt++]);
            break;
        case 'f':
            at = Numbers::scanDouble(at, real);
            fdat[nextReal++] = static_cast<float>(real);
            break;
        case 'd':
            at = Numbers::scanDouble(at, ddat[nextReal++]);
            break;
        default:
            at = nullptr;
        }
    }
    return at == nullptr ? nullptr : close + 1;
}

char* string_get_word(char* str, std::string& w) {
    char* first = skipBlanks(str);
    char* end = std::strchr(first, ' ');
    if (end == nullptr) {
        end = first + std::strlen(first);
    }
    w.assign(first, end);
    return end == first ? nullptr : end;
}

char* string_get_quoted_text(char* str, std::string& qt) {
    char* open = std::strchr(str, '"');
    char* close = open == nullptr ? nullptr : std::strchr(open + 1, '"');
    if (close == nullptr) {
        return nullptr;
    }
    qt.assign(open + 1, close);
    return close + 1;
}

char* string_cmp_parameter(char* str, const char* p) {
    bool inNumber = false;
    while (*p != '\0') {
        if (Numbers::isDigit(*p) && !inNumber) {
            while (*p == '0') {
                ++p;
            }
            while (*str == '0') {
                ++str;
            }
            inNumber = true;
            continue;
        }
        if (*p != *str) {
            return nullptr;
        }
        inNumber = Numbers::isDigit(*p);
        const bool blank = *p == ' ';
        ++p;
        ++str;
        while (blank && *p == ' ') {
            ++p;
        }
        if (blank) {
            str = skipBlanks(str);
        }
    }
    return *str == '\0' ? str : skipBlanks(str + 1);
}

} // namespace KestrelSDK_Parse
