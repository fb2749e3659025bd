#include "workbench/controller/data/framecheck.h"

#include <gtest/gtest.h>

using workbench::FrameCheck;

namespace {

const std::string goodTools = "6dmt2 1 1 [0 1.0 1 1.5][1 2 3][1 0 0 0 1 0 0 0 1][1][0 0 0 0 0 0]";
const std::string badTools = "6dmt2 1 1 [0 1.0 1 1.5][1 2 x][1 0 0 0 1 0 0 0 1][1][0 0 0 0 0 0]";

bool check(FrameCheck& check, const std::vector<std::string>& lines) {
    return check.isReadable({lines.begin(), lines.end()});
}

TEST(FrameCheck, aWholeFrameIsReadable) {
    FrameCheck frames;
    EXPECT_TRUE(check(frames, {"fr 1", "ts 0.016", "6dcal 1", goodTools}));
}

TEST(FrameCheck, aLineThatWasReadableBeforeSpoilsItsFrame) {
    FrameCheck frames;
    EXPECT_TRUE(check(frames, {"fr 1", goodTools}));
    EXPECT_FALSE(check(frames, {"fr 2", badTools}));
    EXPECT_FALSE(check(frames, {"fr x", goodTools}));
    EXPECT_TRUE(check(frames, {"fr 3", goodTools}));
}

TEST(FrameCheck, aKindThatWasNeverReadableDoesNot) {
    FrameCheck frames;
    EXPECT_TRUE(check(frames, {"fr 1", badTools}));
    EXPECT_TRUE(check(frames, {"fr 2", badTools}));
}

TEST(FrameCheck, anUnknownKindDoesNot) {
    FrameCheck frames;
    EXPECT_TRUE(check(frames, {"fr 1", "tomorrow 1 2 3 [x]"}));
    EXPECT_TRUE(check(frames, {"tomorrow"}));
}

TEST(FrameCheck, bytesThatNoLineHasDo) {
    FrameCheck frames;
    for (const char* line : {"fr \x80", "6d\x01 1", "\xff", "tomorrow \x7f"}) {
        EXPECT_FALSE(check(frames, {"fr 1", line})) << line;
    }
    EXPECT_FALSE(check(frames, {std::string("fr 1\0", 5)}));
}

TEST(FrameCheck, allLinesOfASpoiltFrameAreSeen) {
    FrameCheck frames;
    EXPECT_FALSE(check(frames, {"\xff", goodTools}));
    EXPECT_FALSE(check(frames, {"fr 1", badTools}));
}

TEST(FrameCheck, manyUnknownKindsAreForgotten) {
    FrameCheck frames;
    for (int i = 0; i < 1000; ++i) {
        EXPECT_TRUE(check(frames, {"kind" + std::to_string(i) + " 1"}));
    }
}

} // namespace
