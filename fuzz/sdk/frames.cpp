#include "KestrelParser.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

void require(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "%s\n", what);
        std::abort();
    }
}

bool isCount(int count, int most) {
    return count >= 0 && count <= most;
}

/// A table ends where its count says; gives its records to `check`.
template <class Get, class Check>
void checkTable(KestrelParser& parser, int count, Get get, Check check) {
    require(isCount(count, 65535), "a count is out of bounds");
    require((parser.*get)(count) == nullptr, "there is a record behind the last one");
    for (int i = 0; i < count; ++i) {
        check(*(parser.*get)(i));
    }
}

void checkTables(KestrelParser& parser) {
    const auto any = [](const auto& record) { require(record.id >= 0, "a negative id"); };
    checkTable(parser, parser.getNumBody(), &KestrelParser::getBody, any);
    checkTable(parser, parser.getNumMeaRef(), &KestrelParser::getMeaRef, any);
    checkTable(parser, parser.getNumInertial(), &KestrelParser::getInertial, any);
    checkTable(parser, parser.getNumMarker(), &KestrelParser::getMarker, any);
    checkTable(parser, parser.getNumMeaTool(), &KestrelParser::getMeaTool,
               [](const auto& tool) { require(isCount(tool.num_button, 16), "too many buttons"); });
    checkTable(parser, parser.getNumWand(), &KestrelParser::getWand, [](const auto& wand) {
        require(isCount(wand.num_button, 8), "too many buttons");
        require(isCount(wand.num_joystick, 8), "too many joystick values");
    });
    checkTable(parser, parser.getNumHand(), &KestrelParser::getHand,
               [](const auto& hand) { require(isCount(hand.nfinger, 5), "too many fingers"); });
    checkTable(parser, parser.getNumHuman(), &KestrelParser::getHuman, [](const auto& human) {
        require(isCount(human.num_joints, 20), "too many joints");
    });
}

} // namespace

/// Each line of the input is a data line of one frame.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string input(data, data + size);
    KestrelParser parser;
    parser.startFrame();
    for (std::size_t start = 0; start < input.size();) {
        const std::size_t end = std::min(input.find('\n', start), input.size());
        std::string line = input.substr(start, end - start);
        line.shrink_to_fit();
        const std::string before = line;
        char* at = line.data();
        parser.parseLine(&at);
        require(at >= line.data() && at <= line.data() + line.size(), "it read behind the line");
        require(line == before, "it wrote to the line");
        start = end + 1;
    }
    checkTables(parser);
    parser.endFrame();
    checkTables(parser);
    return 0;
}
