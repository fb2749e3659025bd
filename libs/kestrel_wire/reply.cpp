#include "libs/kestrel_wire/reply.h"

#include "KestrelParse.h"
#include "libs/kestrel_wire/startswith.h"

#include <algorithm>
#include <charconv>

namespace kestrel_wire {

namespace {

constexpr std::string_view valueIntroduction = "kestrel2 set ";
constexpr std::string_view errorIntroduction = "kestrel2 err ";

bool matches(std::string_view text, const std::string& parameter) {
    std::string buffer(text); // the scanners want a terminated text that they may write to
    return KestrelSDK_Parse::string_cmp_parameter(buffer.data(), parameter.c_str()) != nullptr;
}

// The scanner takes whatever stands behind the name for the separator. It is none when the name in
// the text goes on ("b01" asked, "b012" answered).
bool nameGoesOn(std::string_view name, const std::string& parameter) {
    while (!name.empty() && name.back() == ' ') {
        name.remove_suffix(1);
    }
    if (name.empty() || (name.back() == '0' && parameter.back() == '0')) {
        return false;
    }
    return matches(name.substr(0, name.size() - 1), parameter);
}

Reply parseValue(std::string_view text, std::string_view parameterText) {
    Reply reply;
    const std::string parameter(parameterText);
    std::string buffer(text);
    const char* const value =
        KestrelSDK_Parse::string_cmp_parameter(buffer.data(), parameter.c_str());
    if (!value) {
        return reply;
    }
    const auto nameSize = std::min(static_cast<std::size_t>(value - buffer.data()), text.size());
    if (nameGoesOn(text.substr(0, nameSize), parameter)) {
        return reply;
    }
    reply.kind = Reply::Kind::Value;
    reply.value = text.substr(nameSize);
    return reply;
}

Reply parseError(std::string_view text) {
    Reply reply;
    int number = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (failure != std::errc() || number <= 0) {
        return reply;
    }
    const std::string_view rest = text.substr(static_cast<std::size_t>(end - text.data()));
    if (rest.size() < 3 || !startsWith(rest, " \"") || rest.back() != '"') {
        return reply;
    }
    reply.kind = Reply::Kind::Error;
    reply.errorNumber = number;
    reply.errorText = rest.substr(2, rest.size() - 3);
    return reply;
}

} // namespace

std::string valueReply(std::string_view parameter, std::string_view value) {
    std::string line(valueIntroduction);
    line.append(parameter).append(" ").append(value);
    return line;
}

std::string errorReply(ErrorNumber number, std::string_view text) {
    std::string line(errorIntroduction);
    line.append(std::to_string(static_cast<int>(number))).append(" \"");
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        line.push_back(c == '"' ? '\'' : byte < 0x20 || byte == 0x7f ? ' ' : c);
    }
    line.push_back('"');
    return line;
}

Reply parseReply(std::string_view line, std::string_view parameter) {
    Reply reply;
    if (startsWith(line, errorIntroduction)) {
        return parseError(line.substr(errorIntroduction.size()));
    }
    if (parameter.empty()) {
        if (line == okReply) {
            reply.kind = Reply::Kind::Ok;
        }
        return reply;
    }
    if (line.find('\0') == std::string_view::npos && startsWith(line, valueIntroduction)) {
        line.remove_prefix(valueIntroduction.size());
        line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
        return parseValue(line, parameter);
    }
    return reply;
}

} // namespace kestrel_wire
