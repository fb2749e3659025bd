#include "simulator/words/text.h"

#include <array>
#include <charconv>
#include <cmath>

namespace kestrel_simulator::text {

namespace {

template <typename Number>
bool readWhole(std::string_view word, Number& value) {
    Number read{};
    const char* const end = word.data() + word.size();
    const auto [stop, failure] = std::from_chars(word.data(), end, read);
    if (failure != std::errc() || stop != end) {
        return false;
    }
    value = read;
    return true;
}

} // namespace

Words split(std::string_view line) {
    Words words;
    while (true) {
        const std::size_t start = line.find_first_not_of(' ');
        if (start == std::string_view::npos) {
            return words;
        }
        line.remove_prefix(start);
        const std::string_view word = line.substr(0, line.find(' '));
        words.emplace_back(word);
        line.remove_prefix(word.size());
    }
}

std::string join(const Words& words, std::size_t first) {
    std::string line;
    for (std::size_t i = first; i < words.size(); ++i) {
        line += (i > first ? " " : "") + words[i];
    }
    return line;
}

bool readInt(std::string_view word, int& value) {
    return readWhole(word, value);
}

bool readDouble(std::string_view word, double& value) {
    double read = 0.0;
    if (!readWhole(word, read) || !std::isfinite(read)) {
        return false;
    }
    value = read;
    return true;
}

std::optional<bool> readYesNo(std::string_view word) {
    if (word == "yes" || word == "no") {
        return word == "yes";
    }
    return std::nullopt;
}

std::string yesNo(bool value) {
    return value ? "yes" : "no";
}

int readNumbered(std::string_view word, char prefix) {
    int number = 0;
    if (word.size() < 2 || word.front() != prefix || !readInt(word.substr(1), number)) {
        return 0;
    }
    return number > 0 ? number : 0;
}

std::string numbered(char prefix, int number) {
    const std::string digits = std::to_string(number);
    return prefix + std::string(digits.size() < 2 ? "0" : "") + digits;
}

std::string shortest(double value) {
    std::array<char, 32> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    return {buffer.data(), result.ptr};
}

std::string fixed(double value, int decimals) {
    std::string text;
    appendFixed(text, value, decimals);
    return text;
}

void appendFixed(std::string& text, double value, int decimals) {
    std::array<char, 400> buffer{}; // the largest double has 309 digits before the point
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                      std::chars_format::fixed, decimals);
    text.append(buffer.data(), result.ptr);
}

} // namespace kestrel_simulator::text
