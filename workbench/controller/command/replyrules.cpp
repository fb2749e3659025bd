#include "workbench/controller/command/replyrules.h"

#include "KestrelParse.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <string>

namespace workbench::replyrules {

namespace {

// The scanners skip white space in front; a value that begins with it is not wholly a number.
bool mayBeginNumber(const std::string& text) {
    return !text.empty() && std::strchr(" \t\n\v\f\r", text.front()) == nullptr;
}

bool isWhole(const std::string& text, const char* end) {
    return end == text.data() + text.size();
}

bool scanDouble(std::string& text, double* value) {
    return mayBeginNumber(text) &&
           isWhole(text, KestrelSDK_Parse::string_get_d(text.data(), value)) &&
           std::isfinite(*value);
}

} // namespace

int copyText(char* reply, std::string_view text) {
    reply[0] = '\0';
    if (text.size() >= replySize) {
        return ReplyTooLong;
    }
    if (text.find('\0') != std::string_view::npos) {
        return MalformedReply;
    }
    std::memcpy(reply, text.data(), text.size());
    reply[text.size()] = '\0';
    return Success;
}

int toInt(std::string_view text, int* value) {
    std::string buffer(text);
    int number = 0;
    if (!mayBeginNumber(buffer) ||
        !isWhole(buffer, KestrelSDK_Parse::string_get_i(buffer.data(), &number))) {
        return MalformedReply;
    }
    // The scanner narrows what strtol gives; the same digits read as a double tell the range.
    double asDouble = 0.0;
    if (!scanDouble(buffer, &asDouble) || asDouble < std::numeric_limits<int>::min() ||
        asDouble > std::numeric_limits<int>::max()) {
        return MalformedReply;
    }
    *value = number;
    return Success;
}

int toDouble(std::string_view text, double* value) {
    std::string buffer(text);
    double number = 0.0;
    if (!scanDouble(buffer, &number)) {
        return MalformedReply;
    }
    *value = number;
    return Success;
}

int toBool(std::string_view text, bool* value) {
    if (text != "yes" && text != "no") {
        return MalformedReply;
    }
    *value = text == "yes";
    return Success;
}

} // namespace workbench::replyrules
