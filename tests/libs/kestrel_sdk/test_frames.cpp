#include "tests/libs/kestrel_sdk/lines.h"

#include <gtest/gtest.h>
#include <stdexcept>
#include <type_traits>

TEST(Frames, aNewParserKnowsNothing) {
    KestrelParser parser;
    EXPECT_EQ(parser.getFrameCounter(), 0U);
    EXPECT_EQ(parser.getTimeStamp(), -1.0);
    EXPECT_EQ(parser.getNumBody(), 0);
    EXPECT_EQ(parser.getNumWand(), 0);
    EXPECT_EQ(parser.getNumMeaTool(), 0);
    EXPECT_EQ(parser.getNumMeaRef(), 0);
    EXPECT_EQ(parser.getNumHand(), 0);
    EXPECT_EQ(parser.getNumHuman(), 0);
    EXPECT_EQ(parser.getNumInertial(), 0);
    EXPECT_EQ(parser.getNumMarker(), 0);
}

TEST(Frames, aStartForgetsTheFrameAndKeepsTheTables) {
    OpenParser parser;
    for (const char* line : {"fr 12", "ts 1.5", "6dcal 3", "glcal 2", "6dmt 0", "6df 0"}) {
        ASSERT_TRUE(parse(parser, line).accepted) << line;
    }
    ASSERT_TRUE(parse(parser, join("6d 1 [0 0.5]", pose)).accepted);
    parser.startFrame();
    EXPECT_EQ(parser.getFrameCounter(), 0U);
    EXPECT_EQ(parser.getTimeStamp(), -1.0);
    EXPECT_EQ(parser.loc_num_bodycal, -1);
    EXPECT_EQ(parser.loc_num_handcal, -1);
    EXPECT_EQ(parser.loc_num_meatool, 0);
    EXPECT_EQ(parser.loc_num_wand1, 0);
    ASSERT_EQ(parser.getNumBody(), 1);
    EXPECT_EQ(parser.getBody(0)->quality, 0.5);
}

TEST(Frames, counterAndTimeStampAreRead) {
    KestrelParser parser;
    EXPECT_TRUE(parse(parser, "fr 4294967295").accepted);
    EXPECT_EQ(parser.getFrameCounter(), 4294967295U);
    EXPECT_TRUE(parse(parser, "ts 86399.125").accepted);
    EXPECT_EQ(parser.getTimeStamp(), 86399.125);
}

TEST(Frames, anUnreadableCounterIsZero) {
    KestrelParser parser;
    parse(parser, "fr 12");
    EXPECT_FALSE(parse(parser, "fr x").accepted);
    EXPECT_EQ(parser.getFrameCounter(), 0U);
}

TEST(Frames, anUnreadableTimeStampIsMinusOne) {
    KestrelParser parser;
    parse(parser, "ts 12");
    EXPECT_FALSE(parse(parser, "ts ").accepted);
    EXPECT_EQ(parser.getTimeStamp(), -1.0);
}

TEST(Frames, unreadableCalibrationCountsFailAndStoreZero) {
    OpenParser parser;
    EXPECT_FALSE(parse(parser, "6dcal x").accepted);
    EXPECT_FALSE(parse(parser, "glcal x").accepted);
    EXPECT_EQ(parser.loc_num_bodycal, 0);
    EXPECT_EQ(parser.loc_num_handcal, 0);
}

TEST(Frames, wandsAndOldToolsAreNoStandardBodies) {
    KestrelParser parser;
    parser.startFrame();
    ASSERT_TRUE(parse(parser, "6dcal 10").accepted);
    ASSERT_TRUE(parse(parser, join("6df 2 [0 1 0]", pose, "[1 1 0]", pose)).accepted);
    ASSERT_TRUE(
        parse(parser, join("6dmt 3 [0 1 0]", pose, "[1 1 0]", pose, "[2 1 0]", pose)).accepted);
    parser.endFrame();
    EXPECT_EQ(parser.getNumBody(), 5);
    EXPECT_EQ(parser.getBody(4)->id, 4);
    EXPECT_EQ(parser.getBody(4)->quality, -1.0);
}

TEST(Frames, newToolsAreStandardBodies) {
    KestrelParser parser;
    parser.startFrame();
    ASSERT_TRUE(parse(parser, "6dcal 4").accepted);
    ASSERT_TRUE(parse(parser, join("6dmt 1 [0 1 0]", pose)).accepted);
    ASSERT_TRUE(parse(parser, "6dmt2 1 0").accepted);
    parser.endFrame();
    EXPECT_EQ(parser.getNumBody(), 4);
}

TEST(Frames, anEndShrinksTheBodies) {
    OpenParser parser;
    ASSERT_TRUE(parse(parser, join("6d 1 [5 0.5]", pose)).accepted);
    ASSERT_TRUE(parse(parser, "6dcal 2").accepted);
    parser.endFrame();
    EXPECT_EQ(parser.getNumBody(), 2);
    EXPECT_EQ(parser.act_body.size(), 2U);
    EXPECT_EQ(parser.getBody(2), nullptr);
}

TEST(Frames, anEndBringsTheHandsToTheirCount) {
    KestrelParser parser;
    parser.startFrame();
    ASSERT_TRUE(parse(parser, "glcal 2").accepted);
    parser.endFrame();
    ASSERT_EQ(parser.getNumHand(), 2);
    EXPECT_EQ(parser.getHand(1)->id, 1);
    EXPECT_EQ(parser.getHand(1)->quality, -1.0);
    EXPECT_EQ(parser.getHand(1)->nfinger, 0);
    EXPECT_TRUE(hasNoPose(*parser.getHand(1)));
}

TEST(Frames, withoutCalibrationCountsAnEndLeavesTheTables) {
    KestrelParser parser;
    parser.startFrame();
    ASSERT_TRUE(parse(parser, join("6d 1 [3 0.5]", pose)).accepted);
    ASSERT_TRUE(parse(parser, join("gl 1 [2 0.5 0 0]", pose)).accepted);
    parser.endFrame();
    EXPECT_EQ(parser.getNumBody(), 4);
    EXPECT_EQ(parser.getNumHand(), 3);
}

TEST(Frames, aWholeFrameIsReadLineByLine) {
    KestrelParser parser;
    for (int frame = 1; frame <= 3; ++frame) {
        parser.startFrame();
        EXPECT_TRUE(parse(parser, "fr " + std::to_string(frame)).accepted);
        EXPECT_TRUE(parse(parser, "6dcal 2").accepted);
        EXPECT_TRUE(parse(parser, join("6d 1 [1 0.5]", pose)).accepted);
        parser.endFrame();
        EXPECT_EQ(parser.getFrameCounter(), static_cast<unsigned int>(frame));
        ASSERT_EQ(parser.getNumBody(), 2);
        EXPECT_EQ(parser.getBody(0)->quality, -1.0);
        EXPECT_TRUE(hasPose(*parser.getBody(1)));
    }
}

TEST(Dispatch, thePrefixIncludesItsBlank) {
    KestrelParser parser;
    parse(parser, "fr 7");
    for (const char* line : {"frx 12", "fr", "", " fr 12", "FR 12", "6dmt3 1", "6dx 1", "3dx 5"}) {
        const Parsed parsed = parse(parser, line);
        EXPECT_TRUE(parsed.accepted) << line;
        EXPECT_EQ(parsed.rest, line);
    }
    EXPECT_EQ(parser.getFrameCounter(), 7U);
}

TEST(Dispatch, everyPrefixLeadsToItsOwnTable) {
    KestrelParser parser;
    EXPECT_TRUE(parse(parser, join("6d 1 [0 1]", pose)).accepted);
    EXPECT_TRUE(parse(parser, join("6df 2 [0 1 0]", pose, "[1 1 0]", pose)).accepted);
    EXPECT_TRUE(parse(parser, "6dmtr 4 0").accepted);
    EXPECT_TRUE(parse(parser, join("gl 1 [4 1 0 0]", pose)).accepted);
    EXPECT_TRUE(parse(parser, "6dj 6 0").accepted);
    EXPECT_TRUE(parse(parser, join("6di 1 [6 1 0]", pose)).accepted);
    EXPECT_TRUE(parse(parser, join("3d 1 [8 1]", position)).accepted);
    EXPECT_TRUE(parse(parser, join("6dmt 1 [0 1 0]", pose)).accepted);
    EXPECT_EQ(parser.getNumBody(), 1);
    EXPECT_EQ(parser.getNumWand(), 2);
    EXPECT_EQ(parser.getNumMeaTool(), 1);
    EXPECT_EQ(parser.getNumMeaRef(), 4);
    EXPECT_EQ(parser.getNumHand(), 5);
    EXPECT_EQ(parser.getNumHuman(), 6);
    EXPECT_EQ(parser.getNumInertial(), 7);
    EXPECT_EQ(parser.getNumMarker(), 1);
    EXPECT_TRUE(parse(parser, "6df2 1 0").accepted);
    EXPECT_TRUE(parse(parser, "6dmt2 9 0").accepted);
    EXPECT_EQ(parser.getNumWand(), 1);
    EXPECT_EQ(parser.getNumMeaTool(), 0);
}

TEST(Dispatch, aNullLineIsRejected) {
    KestrelParser parser;
    EXPECT_FALSE(parser.parseLine(nullptr));
    char* line = nullptr;
    EXPECT_FALSE(parser.parseLine(&line));
}

TEST(Dispatch, readingStopsBehindTheLastItem) {
    KestrelParser parser;
    EXPECT_EQ(parse(parser, "fr 12 rest").rest, " rest");
    EXPECT_EQ(parse(parser, "fr x").rest, "x");
    EXPECT_EQ(parse(parser, join("6d 1 [0 1]", pose, " rest")).rest, " rest");
    EXPECT_EQ(parse(parser, join("6d 2 [0 1]", pose, "[oops")).rest, "[oops");
    EXPECT_EQ(parse(parser, "6d 1 [0 1][1 2]").rest, "[1 2]");
    EXPECT_EQ(parse(parser, "6d x").rest, "x");
}

TEST(Getters, anIndexOutsideTheCountGivesNull) {
    KestrelParser parser;
    ASSERT_TRUE(parse(parser, join("6d 1 [1 1]", pose)).accepted);
    EXPECT_NE(parser.getBody(0), nullptr);
    EXPECT_NE(parser.getBody(1), nullptr);
    EXPECT_EQ(parser.getBody(2), nullptr);
    EXPECT_EQ(parser.getBody(-1), nullptr);
    for (const int index : {-2147483647 - 1, -1, 0}) {
        KestrelParser none;
        EXPECT_EQ(none.getBody(index), nullptr) << index;
        EXPECT_EQ(none.getWand(index), nullptr) << index;
        EXPECT_EQ(none.getMeaTool(index), nullptr) << index;
        EXPECT_EQ(none.getMeaRef(index), nullptr) << index;
        EXPECT_EQ(none.getHand(index), nullptr) << index;
        EXPECT_EQ(none.getHuman(index), nullptr) << index;
        EXPECT_EQ(none.getInertial(index), nullptr) << index;
        EXPECT_EQ(none.getMarker(index), nullptr) << index;
    }
}

TEST(Getters, aCountBeyondTheTableRaisesOutOfRange) {
    OpenParser parser;
    parser.act_num_body = parser.act_num_wand = parser.act_num_meatool = parser.act_num_mearef = 1;
    parser.act_num_hand = parser.act_num_human = parser.act_num_inertial = 1;
    parser.act_num_marker = 1;
    EXPECT_THROW(parser.getBody(0), std::out_of_range);
    EXPECT_THROW(parser.getWand(0), std::out_of_range);
    EXPECT_THROW(parser.getMeaTool(0), std::out_of_range);
    EXPECT_THROW(parser.getMeaRef(0), std::out_of_range);
    EXPECT_THROW(parser.getHand(0), std::out_of_range);
    EXPECT_THROW(parser.getHuman(0), std::out_of_range);
    EXPECT_THROW(parser.getInertial(0), std::out_of_range);
    EXPECT_THROW(parser.getMarker(0), std::out_of_range);
}

TEST(Getters, aDerivedParserIsReachedThroughItsBase) {
    static_assert(std::has_virtual_destructor_v<KestrelParser>);
    class Counting : public KestrelParser {
    public:
        int lines = 0;
        bool parseLine(char** line) override {
            ++lines;
            return KestrelParser::parseLine(line);
        }
    };
    Counting counting;
    KestrelParser& parser = counting;
    parse(parser, "fr 1");
    EXPECT_EQ(counting.lines, 1);
    EXPECT_EQ(counting.getFrameCounter(), 1U);
}
