#pragma once

#include "libs/kestrel_wire/command.h"

#include <string>
#include <string_view>

namespace kestrel_wire {

/// The reply to a set or an action that was carried out.
inline constexpr std::string_view okReply = "kestrel2 ok";

/// "kestrel2 set <parameter> <value>".
std::string valueReply(std::string_view parameter, std::string_view value);

/// "kestrel2 err <number> "<text>"". Double quotes in the text become single ones and control
/// characters blanks, so the quoted text is always whole and on one line.
std::string errorReply(ErrorNumber number, std::string_view text);

/// A reply line as its receiver sees it.
struct Reply {
    enum class Kind {
        Ok,       ///< exactly "kestrel2 ok"
        Value,    ///< the value of the parameter that was asked for
        Error,    ///< a refusal of the controller
        Malformed ///< anything else: cut, garbled, or the answer to another question
    };
    Kind kind = Kind::Malformed;
    std::string value;     ///< Kind::Value: what stands behind the parameter, possibly empty
    int errorNumber = 0;   ///< Kind::Error: above 0
    std::string errorText; ///< Kind::Error: without the quotes
};

/// Reads a reply line (without its end). `parameter` is what was asked for with "get"; it is
/// compared as the controllers write it, with any zero padding of numbers and any number of
/// blanks. Empty for a set or an action: then only "kestrel2 ok" and errors are well-formed.
Reply parseReply(std::string_view line, std::string_view parameter);

} // namespace kestrel_wire
