#pragma once

#include "libs/kestrel_wire/lineframer.h"
#include "libs/kestrel_wire/printftext.h"

#include <cstdarg>
#include <cstddef>
#include <string>

namespace kestrel_wire {

/// A host whose modules name parameters in printf's style, and that wants to read them as texts.
/// `Contract` is the host contract; its five operations with a format end in those without one.
/// They are called in the caller's thread, with `parameter` null where the format is not valid or
/// the text would be longer than `maxLength`; `format` is what was passed, for a message.
template <class Contract, std::size_t maxLength = maxLineLength>
class FormattedHost : public Contract {
public:
    __attribute__((format(printf, 3, 4))) int get_parameter_string(char* reply, const char* format,
                                                                   ...) override {
        std::va_list arguments;
        va_start(arguments, format);
        const Text text(format, arguments);
        va_end(arguments);
        return getString(reply, text.get(), format);
    }

    __attribute__((format(printf, 3, 4))) int get_parameter_int(int* value, const char* format,
                                                                ...) override {
        std::va_list arguments;
        va_start(arguments, format);
        const Text text(format, arguments);
        va_end(arguments);
        return getInt(value, text.get(), format);
    }

    __attribute__((format(printf, 3, 4))) int
    get_parameter_double(double* value, const char* format, ...) override {
        std::va_list arguments;
        va_start(arguments, format);
        const Text text(format, arguments);
        va_end(arguments);
        return getDouble(value, text.get(), format);
    }

    __attribute__((format(printf, 3, 4))) int get_parameter_bool(bool* value, const char* format,
                                                                 ...) override {
        std::va_list arguments;
        va_start(arguments, format);
        const Text text(format, arguments);
        va_end(arguments);
        return getBool(value, text.get(), format);
    }

    __attribute__((format(printf, 2, 3))) int set_parameter(const char* format, ...) override {
        std::va_list arguments;
        va_start(arguments, format);
        const Text text(format, arguments);
        va_end(arguments);
        return set(text.get(), format);
    }

protected:
    virtual int getString(char* reply, const std::string* parameter, const char* format) = 0;
    virtual int getInt(int* value, const std::string* parameter, const char* format) = 0;
    virtual int getDouble(double* value, const std::string* parameter, const char* format) = 0;
    virtual int getBool(bool* value, const std::string* parameter, const char* format) = 0;
    virtual int set(const std::string* setting, const char* format) = 0;

private:
    class Text {
    public:
        Text(const char* format, std::va_list arguments)
            : m_good(printfText(m_text, maxLength, format, arguments)) {}
        const std::string* get() const { return m_good ? &m_text : nullptr; }

    private:
        std::string m_text;
        bool m_good;
    };
};

} // namespace kestrel_wire
