#include "libs/kestrel_wire/command.h"

#include <algorithm>

namespace kestrel_wire {

namespace {

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && text.front() == ' ') {
        text.remove_prefix(1);
    }
    while (!text.empty() && text.back() == ' ') {
        text.remove_suffix(1);
    }
    return text;
}

// the first word of `text`, which is left with the rest behind the blanks
std::string_view takeWord(std::string_view& text) {
    const std::string_view word = text.substr(0, text.find(' '));
    text = trimmed(text.substr(word.size()));
    return word;
}

bool isControl(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 || byte == 0x7f;
}

std::string joined(std::string_view verb, std::string_view text) {
    std::string line(protocolWord);
    line.append(verb).append(text);
    return line;
}

} // namespace

bool parseCommand(std::string_view line, Command& command, std::string& reason) {
    if (std::any_of(line.begin(), line.end(), isControl)) {
        reason = "control characters in the command";
        return false;
    }
    std::string_view rest = trimmed(line);
    if (takeWord(rest) != protocolWord) {
        reason = "a command begins with kestrel2";
        return false;
    }
    if (rest.empty()) {
        reason = "empty command";
        return false;
    }
    const std::string_view whole = rest;
    const std::string_view verb = takeWord(rest);
    if (verb == "get" || verb == "set") {
        if (rest.empty()) {
            reason = "no parameter";
            return false;
        }
        command.kind = verb == "get" ? CommandKind::Get : CommandKind::Set;
        command.text = rest;
    } else {
        command.kind = CommandKind::Action;
        command.text = whole;
    }
    return true;
}

std::string getCommand(std::string_view parameter) {
    return joined(" get ", parameter);
}

std::string setCommand(std::string_view parameterAndValue) {
    return joined(" set ", parameterAndValue);
}

std::string withSingleBlanks(std::string_view line) {
    std::string result;
    for (const char c : trimmed(line)) {
        if (c != ' ' || result.back() != ' ') {
            result += c;
        }
    }
    return result;
}

} // namespace kestrel_wire
