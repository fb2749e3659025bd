#pragma once

#include <cstdarg>
#include <string>

namespace kestrel_wire {

/// A printf-style text as the "C" locale writes it, whatever the locale of the process ("1.500",
/// never "1,500"). False when the format is not valid or the text would be longer than
/// `maxLength`; `text` is empty then.
bool printfText(std::string& text, std::size_t maxLength, const char* format,
                std::va_list arguments);

} // namespace kestrel_wire
