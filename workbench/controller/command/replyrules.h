#pragma once

#include "workbench/controller/command/channelresult.h"

#include <string_view>

/// How the value part of a reply becomes what a module asked for. No function depends on the
/// locale, throws or writes more than it says; each leaves `*value` alone when it fails.
namespace workbench::replyrules {

/// Bytes of a module's reply buffer, terminator included.
inline constexpr std::size_t replySize = 200;

/// Copies `text` and a terminator into a buffer of 200 bytes. A text that does not fit, or holds a
/// NUL, leaves an empty reply and an error.
int copyText(char* reply, std::string_view text);

/// A whole number in the notations of strtol (base 0), within the range of `int`.
int toInt(std::string_view text, int* value);

/// A finite number in the notations of strtod.
int toDouble(std::string_view text, double* value);

/// Exactly "yes" or "no".
int toBool(std::string_view text, bool* value);

} // namespace workbench::replyrules
