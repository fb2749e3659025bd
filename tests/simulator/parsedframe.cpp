#include "tests/simulator/parsedframe.h"

#include <gtest/gtest.h>

void startMeasurement(Talk& talk, const std::vector<std::string>& channels) {
    for (const std::string& channel : channels) {
        EXPECT_EQ(talk.set("output active chmon " + channel + " yes"), "ok");
    }
    EXPECT_EQ(talk.act("tracking start"), "ok");
}

void parseFrame(KestrelParser& parser, std::vector<std::string> lines) {
    EXPECT_FALSE(lines.empty());
    parser.startFrame();
    for (std::string& line : lines) {
        char* position = line.data();
        EXPECT_TRUE(parser.parseLine(&position)) << line;
        EXPECT_EQ(std::string(position).find('['), std::string::npos) << line;
    }
    parser.endFrame();
}
