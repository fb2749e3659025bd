#include "tests/libs/kestrel_sdk/lines.h"

#include <gtest/gtest.h>

TEST(Bodies, aLineFillsTheRecordsThatItNames) {
    KestrelParser parser;
    EXPECT_TRUE(parse(parser, join("6d 2 [2 0.5]", pose, " [0 1.0]", pose)).accepted);
    ASSERT_EQ(parser.getNumBody(), 3);
    EXPECT_EQ(parser.getBody(0)->quality, 1.0);
    EXPECT_TRUE(hasPose(*parser.getBody(0)));
    EXPECT_EQ(parser.getBody(1)->quality, -1.0);
    EXPECT_TRUE(hasNoPose(*parser.getBody(1)));
    EXPECT_EQ(parser.getBody(2)->id, 2);
    EXPECT_EQ(parser.getBody(2)->quality, 0.5);
}

TEST(Bodies, anIdBeyondTheTableGrowsIt) {
    KestrelParser parser;
    EXPECT_TRUE(parse(parser, join("6d 1 [5 0.7]", pose)).accepted);
    ASSERT_EQ(parser.getNumBody(), 6);
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(parser.getBody(i)->id, i);
        EXPECT_EQ(parser.getBody(i)->quality, -1.0);
        EXPECT_TRUE(hasNoPose(*parser.getBody(i)));
    }
    EXPECT_EQ(parser.getBody(5)->quality, 0.7);
}

TEST(Bodies, thoseNotListedAreNotTrackedAndKeepTheirPose) {
    KestrelParser parser;
    ASSERT_TRUE(parse(parser, join("6d 2 [0 1]", pose, "[1 1]", pose)).accepted);
    EXPECT_TRUE(parse(parser, join("6d 1 [1 0.5]", pose)).accepted);
    EXPECT_EQ(parser.getNumBody(), 2);
    EXPECT_EQ(parser.getBody(0)->quality, -1.0);
    EXPECT_TRUE(hasPose(*parser.getBody(0)));
    EXPECT_EQ(parser.getBody(1)->quality, 0.5);
}

TEST(Bodies, aCountBelowOneMarksAllNotTracked) {
    for (const char* line : {"6d 0", "6d -3"}) {
        KestrelParser parser;
        ASSERT_TRUE(parse(parser, join("6d 2 [0 1]", pose, "[1 1]", pose)).accepted);
        EXPECT_TRUE(parse(parser, line).accepted);
        ASSERT_EQ(parser.getNumBody(), 2);
        EXPECT_EQ(parser.getBody(0)->quality, -1.0);
        EXPECT_EQ(parser.getBody(1)->quality, -1.0);
    }
}

TEST(Bodies, anUnreadableCountFailsAfterMarkingAllNotTracked) {
    KestrelParser parser;
    ASSERT_TRUE(parse(parser, join("6d 1 [0 1]", pose)).accepted);
    EXPECT_FALSE(parse(parser, "6d x").accepted);
    EXPECT_EQ(parser.getBody(0)->quality, -1.0);
}

TEST(Bodies, whatWasFilledBeforeAFailureStays) {
    KestrelParser parser;
    EXPECT_FALSE(parse(parser, join("6d 2 [0 0.5]", pose, "[1 0.25][1 2 3][1 2]")).accepted);
    ASSERT_EQ(parser.getNumBody(), 2);
    EXPECT_EQ(parser.getBody(0)->quality, 0.5);
    EXPECT_EQ(parser.getBody(1)->quality, 0.25);
    EXPECT_EQ(parser.getBody(1)->loc[2], 3.0);
}

TEST(Bodies, aBlockWithoutItsBracketStoresNothing) {
    KestrelParser parser;
    EXPECT_FALSE(parse(parser, "6d 1 [0 0.5][1 2 3").accepted);
    ASSERT_EQ(parser.getNumBody(), 1);
    EXPECT_TRUE(hasNoPose(*parser.getBody(0)));
}

TEST(Inertials, aLineFillsTheRecordsThatItNames) {
    KestrelParser parser;
    EXPECT_TRUE(parse(parser, join("6di 1 [2 3 0.25]", pose)).accepted);
    ASSERT_EQ(parser.getNumInertial(), 3);
    EXPECT_EQ(parser.getInertial(2)->id, 2);
    EXPECT_EQ(parser.getInertial(2)->st, 3);
    EXPECT_EQ(parser.getInertial(2)->error, 0.25);
    EXPECT_TRUE(hasPose(*parser.getInertial(2)));
    EXPECT_EQ(parser.getInertial(1)->id, 1);
    EXPECT_EQ(parser.getInertial(1)->st, 0);
}

TEST(Inertials, everyLineClearsAllRecordsFirst) {
    for (const char* line : {"6di 0", "6di -1", "6di x"}) {
        KestrelParser parser;
        ASSERT_TRUE(parse(parser, join("6di 1 [1 3 0.25]", pose)).accepted);
        EXPECT_EQ(parse(parser, line).accepted, line[4] != 'x');
        ASSERT_EQ(parser.getNumInertial(), 2);
        EXPECT_EQ(parser.getInertial(1)->id, 1);
        EXPECT_EQ(parser.getInertial(1)->st, 0);
        EXPECT_EQ(parser.getInertial(1)->error, 0.0);
        EXPECT_TRUE(hasNoPose(*parser.getInertial(1)));
    }
}

TEST(Markers, areReadInOrderWithTheIdsOfTheLine) {
    KestrelParser parser;
    EXPECT_TRUE(parse(parser, "3d 2 [7 0.5][1 2 3] [3 1.0][4 5 6]").accepted);
    ASSERT_EQ(parser.getNumMarker(), 2);
    EXPECT_EQ(parser.getMarker(0)->id, 7);
    EXPECT_EQ(parser.getMarker(0)->quality, 0.5);
    EXPECT_EQ(parser.getMarker(0)->loc[2], 3.0);
    EXPECT_EQ(parser.getMarker(1)->id, 3);
    EXPECT_EQ(parser.getMarker(1)->loc[0], 4.0);
}

TEST(Markers, theTableGrowsAndNeverShrinks) {
    OpenParser parser;
    ASSERT_TRUE(parse(parser, "3d 3 [0 1][1 2 3][1 1][1 2 3][2 1][1 2 3]").accepted);
    EXPECT_TRUE(parse(parser, "3d 1 [0 1][4 5 6]").accepted);
    EXPECT_EQ(parser.getNumMarker(), 1);
    EXPECT_EQ(parser.act_marker.size(), 3U);
    EXPECT_EQ(parser.getMarker(1), nullptr);
    EXPECT_TRUE(parse(parser, "3d 0").accepted);
    EXPECT_EQ(parser.getNumMarker(), 0);
}

TEST(Markers, anUnreadableCountIsZeroAndFails) {
    KestrelParser parser;
    ASSERT_TRUE(parse(parser, "3d 1 [0 1][1 2 3]").accepted);
    EXPECT_FALSE(parse(parser, "3d x").accepted);
    EXPECT_EQ(parser.getNumMarker(), 0);
}

TEST(Markers, thoseBehindAFailureAreNotTracked) {
    KestrelParser parser;
    EXPECT_FALSE(parse(parser, "3d 3 [0 1][1 2 3] [1 0.5][oops]").accepted);
    ASSERT_EQ(parser.getNumMarker(), 3);
    EXPECT_EQ(parser.getMarker(0)->quality, 1.0);
    EXPECT_EQ(parser.getMarker(1)->quality, 0.5);
    EXPECT_EQ(parser.getMarker(2)->quality, -1.0);
}
