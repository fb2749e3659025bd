#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Reading and writing words and numbers, locale-free.
namespace kestrel_simulator::text {

using Words = std::vector<std::string>;

/// The words between any number of blanks.
Words split(std::string_view line);

/// The words from `first` on, joined by single blanks.
std::string join(const Words& words, std::size_t first = 0);

/// The whole of `word` as a decimal number. False when it is none or out of range.
bool readInt(std::string_view word, int& value);

/// The whole of `word` as a finite number.
bool readDouble(std::string_view word, double& value);

/// "yes" or "no" and nothing else.
std::optional<bool> readYesNo(std::string_view word);

std::string yesNo(bool value);

/// The number behind a one-letter prefix: 3 for "b03" and prefix 'b'. 0 when it is no such name.
int readNumbered(std::string_view word, char prefix);

/// "b03" for 3 and prefix 'b'.
std::string numbered(char prefix, int number);

/// The shortest text that reads back as the same number.
std::string shortest(double value);

/// Fixed notation, as C's printf writes it in the "C" locale.
std::string fixed(double value, int decimals);

/// The same, appended to `text`.
void appendFixed(std::string& text, double value, int decimals);

} // namespace kestrel_simulator::text
