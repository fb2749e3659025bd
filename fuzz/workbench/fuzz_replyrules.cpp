#include "libs/kestrel_wire/lineframer.h"
#include "libs/kestrel_wire/reply.h"
#include "workbench/controller/command/replyrules.h"

#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

constexpr char guard = 0x5a;

void require(bool good) {
    if (!good) {
        std::abort();
    }
}

// The way of one reply from the socket into a module's variables.
void readReply(const std::string& line, const std::string& parameter) {
    using Kind = kestrel_wire::Reply::Kind;
    const kestrel_wire::Reply reply = kestrel_wire::parseReply(line, parameter);
    require(reply.kind != Kind::Error || reply.errorNumber > 0);
    require(reply.kind != Kind::Value || !parameter.empty());

    std::array<char, workbench::replyrules::replySize + 8> buffer{};
    buffer.fill(guard);
    for (const std::string& text : {line, reply.value}) {
        const int result = workbench::replyrules::copyText(buffer.data(), text);
        for (std::size_t i = workbench::replyrules::replySize; i < buffer.size(); ++i) {
            require(buffer[i] == guard);
        }
        require(result == 0 ? text == buffer.data() : buffer[0] == '\0');
    }
    int whole = 0;
    double number = 0.0;
    bool truth = false;
    const bool isWhole = workbench::replyrules::toInt(reply.value, &whole) == 0;
    const bool isNumber = workbench::replyrules::toDouble(reply.value, &number) == 0;
    const bool isTruth = workbench::replyrules::toBool(reply.value, &truth) == 0;
    require(!isWhole || isNumber);
    require(!(isNumber && isTruth));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // The first line of the input is what was asked for, the rest comes from the controller.
    const std::string input(reinterpret_cast<const char*>(data), size);
    const std::size_t end = input.find('\n');
    const std::string parameter = input.substr(0, end);
    if (end == std::string::npos) {
        return 0;
    }
    kestrel_wire::LineFramer framer;
    framer.feed(input.data() + end + 1, input.size() - end - 1);
    std::string line;
    while (framer.takeLine(line)) {
        readReply(line, parameter);
        readReply(line, std::string());
    }
    return 0;
}
