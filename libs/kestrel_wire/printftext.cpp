#include "libs/kestrel_wire/printftext.h"

#include <cstdio>

namespace kestrel_wire {

bool printfText(std::string& text, std::size_t maxLength, const char* format,
                std::va_list arguments) {
    text.clear();
    if (format == nullptr) {
        return false;
    }
    const CLocaleScope scope;
    std::va_list again;
    va_copy(again, arguments);
    char shortText[200];
    const int length = std::vsnprintf(shortText, sizeof shortText, format, arguments);
    const bool good = length >= 0 && static_cast<std::size_t>(length) <= maxLength;
    if (good && static_cast<std::size_t>(length) < sizeof shortText) {
        text.assign(shortText, static_cast<std::size_t>(length));
    } else if (good) {
        text.resize(static_cast<std::size_t>(length));
        std::vsnprintf(text.data(), text.size() + 1, format, again);
    }
    va_end(again);
    return good;
}

} // namespace kestrel_wire
