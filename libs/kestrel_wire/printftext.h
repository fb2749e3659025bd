#pragma once

#include <clocale>
#include <cstdarg>
#include <string>

namespace kestrel_wire {

/// The "C" locale for the calling thread, as long as this object lives; other threads keep theirs.
class CLocaleScope {
public:
    CLocaleScope()
        : m_locale(newlocale(LC_ALL_MASK, "C", nullptr))
        , m_before(uselocale(m_locale)) {}
    ~CLocaleScope() {
        uselocale(m_before);
        freelocale(m_locale);
    }
    CLocaleScope(const CLocaleScope&) = delete;
    CLocaleScope& operator=(const CLocaleScope&) = delete;

private:
    locale_t m_locale;
    locale_t m_before;
};

/// A printf-style text as the "C" locale writes it, whatever the locale of the process ("1.500",
/// never "1,500"). False when the format is not valid or the text would be longer than
/// `maxLength`; `text` is empty then.
bool printfText(std::string& text, std::size_t maxLength, const char* format,
                std::va_list arguments);

} // namespace kestrel_wire
