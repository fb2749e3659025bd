#pragma once

#include <string>

/// Scanners for the controller's text: replies and data lines.
///
/// Each takes a pointer into a NUL-terminated text, reads one item, stores it and returns the
/// position just behind the item, or a null pointer when there is none. They chain: the result of
/// one is the input of the next. None writes to the text, depends on the locale, touches errno,
/// keeps state, allocates or throws; the two that fill a string do what std::string does. None
/// reads behind the text's NUL, but string_nextline(), which takes a buffer of a given length: it
/// needs no NUL there, reads on over one within a line, and nothing behind the buffer's end.
namespace KestrelSDK_Parse {

/// Start of the next line of a buffer of `len` characters that begins at `str`, seen from `start`:
/// behind the rest of this line and behind any run of line feeds and carriage returns. Null at the
/// end of the buffer, at a NUL behind the line breaks, or when `start` is outside the buffer. The
/// line that it returns ends with the buffer, which the other scanners do not know: they need a NUL
/// there, one behind the `len` characters or the last one of them.
char* string_nextline(char* str, char* start, int len);

/// One integer as strtol reads it with base 0 ("0x1f" is 31, "010" is 8), converted to int.
/// Stores 0 when there is none.
char* string_get_i(char* str, int* i);

/// One integer as strtoul reads it with base 0, converted to unsigned int. Stores 0 when there is
/// none.
char* string_get_ui(char* str, unsigned int* ui);

/// One number as strtod reads it in the "C" locale, to the last bit. Stores 0 when there is none.
char* string_get_d(char* str, double* d);

/// As string_get_d(), narrowed to float.
char* string_get_f(char* str, float* f);

/// The first block "[...]" of numbers in `str`. `fmt` says what is read in order: "i" into the next
/// place of `idat`, "f" into `fdat`, "d" into `ddat`; "f" and "d" count their places together.
/// Numbers behind the last expected one are ignored. Null when there is no complete block, when it
/// holds too few numbers or when `fmt` holds another character; numbers read until then are stored.
/// Returns the position behind the closing bracket.
char* string_get_block(char* str, const char* fmt, int* idat, float* fdat, double* ddat);

/// One word, delimited by blanks (spaces only). Returns the position of the blank behind it or of
/// the text's NUL; null when there is no word.
char* string_get_word(char* str, std::string& w);

/// The text between the next two double quotes. Returns the position behind the second one; null
/// when one is missing.
char* string_get_quoted_text(char* str, std::string& qt);

/// Position of the value when `str` begins with the parameter name `p`, else null. Leading zeros of
/// numbers and the number of blanks between words may differ: "b01" matches "b1" and "b001". The
/// one character behind the name is taken for the separator, whatever it is.
char* string_cmp_parameter(char* str, const char* p);

} // namespace KestrelSDK_Parse
