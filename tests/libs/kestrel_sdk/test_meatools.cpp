#include "tests/libs/kestrel_sdk/lines.h"

#include <gtest/gtest.h>

namespace {

constexpr const char* covariance = "[1 2 3 4 5 6]";

} // namespace

TEST(MeaTools, aLineFillsOneRecordPerTool) {
    OpenParser parser;
    EXPECT_TRUE(parse(parser, join("6dmt 2 [0 0.5 5]", pose, " [1 -1.0 0]", pose)).accepted);
    ASSERT_EQ(parser.getNumMeaTool(), 2);
    EXPECT_EQ(parser.loc_num_meatool, 2);
    const auto& tool = *parser.getMeaTool(0);
    EXPECT_EQ(tool.id, 0);
    EXPECT_EQ(tool.quality, 0.5);
    EXPECT_EQ(tool.num_button, 4);
    for (int i = 0; i < 16; ++i) {
        EXPECT_EQ(tool.button[i], i == 0 || i == 2 ? 1 : 0);
    }
    EXPECT_TRUE(hasPose(tool));
    EXPECT_EQ(tool.tipradius, 0.0);
    EXPECT_EQ(parser.getMeaTool(1)->id, 1);
    EXPECT_EQ(parser.getMeaTool(1)->quality, -1.0);
}

TEST(MeaTools, onlyFourBitsAreButtons) {
    KestrelParser parser;
    ASSERT_TRUE(parse(parser, join("6dmt 1 [0 1 65535]", pose)).accepted);
    EXPECT_EQ(parser.getMeaTool(0)->button[3], 1);
    EXPECT_EQ(parser.getMeaTool(0)->button[4], 0);
}

TEST(MeaTools, theOldLineForgetsWhatTheNewOneCarried) {
    KestrelParser parser;
    ASSERT_TRUE(
        parse(parser, join("6dmt2 1 1 [0 1 16 0.5]", pose, "[65535]", covariance)).accepted);
    ASSERT_TRUE(parse(parser, join("6dmt 1 [0 1 0]", pose)).accepted);
    const auto& tool = *parser.getMeaTool(0);
    EXPECT_EQ(tool.num_button, 4);
    EXPECT_EQ(tool.button[15], 0);
    EXPECT_EQ(tool.tipradius, 0.0);
    for (const double entry : tool.cov) {
        EXPECT_EQ(entry, 0.0);
    }
}

TEST(MeaTools, noneEmptyTheTable) {
    for (const char* line : {"6dmt 0", "6dmt -1", "6dmt2 4 0", "6dmt2 4 -1"}) {
        OpenParser parser;
        ASSERT_TRUE(parse(parser, join("6dmt 1 [0 1 0]", pose)).accepted);
        EXPECT_TRUE(parse(parser, line).accepted);
        EXPECT_EQ(parser.getNumMeaTool(), 0);
        EXPECT_TRUE(parser.act_meatool.empty());
        EXPECT_EQ(parser.loc_num_meatool, 0);
    }
}

TEST(MeaTools, theFirstToolMustBeNumberZero) {
    KestrelParser parser;
    EXPECT_FALSE(parse(parser, join("6dmt 1 [1 0.9 5]", pose)).accepted);
    EXPECT_FALSE(parse(parser, join("6dmt2 1 1 [1 0.9 0 1]", pose, "[]", covariance)).accepted);
}

TEST(MeaTools, aFailureKeepsTheCountAndWhatWasFilled) {
    KestrelParser parser;
    EXPECT_FALSE(parse(parser, join("6dmt 3 [0 0.5 1]", pose, "[2 0.5 1]", pose)).accepted);
    ASSERT_EQ(parser.getNumMeaTool(), 3);
    EXPECT_EQ(parser.getMeaTool(0)->quality, 0.5);
    EXPECT_EQ(parser.getMeaTool(1)->quality, -1.0);
    EXPECT_EQ(parser.getMeaTool(1)->num_button, 0);
    EXPECT_TRUE(hasNoPose(*parser.getMeaTool(2)));
}

TEST(MeaTools, aFailureLeavesTheRestOfThePreviousFrame) {
    KestrelParser parser;
    ASSERT_TRUE(parse(parser, join("6dmt 2 [0 0.5 1]", pose, "[1 0.5 1]", pose)).accepted);
    EXPECT_FALSE(parse(parser, join("6dmt 2 [0 0.75 1]", pose, "[oops]")).accepted);
    EXPECT_EQ(parser.getMeaTool(0)->quality, 0.75);
    EXPECT_EQ(parser.getMeaTool(1)->quality, 0.5);
}

TEST(MeaTools, anUnreadableCountLeavesEverything) {
    OpenParser parser;
    ASSERT_TRUE(parse(parser, join("6dmt 1 [0 0.5 1]", pose)).accepted);
    for (const char* line : {"6dmt x", "6dmt2 x", "6dmt2 5 x"}) {
        EXPECT_FALSE(parse(parser, line).accepted) << line;
        EXPECT_EQ(parser.getNumMeaTool(), 1);
        EXPECT_EQ(parser.loc_num_meatool, 1);
    }
}

TEST(MeaTools2, aLineFillsOneRecordPerListedTool) {
    OpenParser parser;
    EXPECT_TRUE(parse(parser, join("6dmt2 7 2 [0 0.5 3 1.25]", pose, "[5]", covariance,
                                   "[1 -1.0 0 2.5]", pose, "[]", covariance))
                    .accepted);
    ASSERT_EQ(parser.getNumMeaTool(), 2);
    EXPECT_EQ(parser.loc_num_meatool, 0);
    const auto& tool = *parser.getMeaTool(0);
    EXPECT_EQ(tool.quality, 0.5);
    EXPECT_EQ(tool.num_button, 3);
    for (int i = 0; i < 16; ++i) {
        EXPECT_EQ(tool.button[i], i == 0 || i == 2 ? 1 : 0);
    }
    EXPECT_EQ(tool.tipradius, 1.25);
    EXPECT_TRUE(hasPose(tool));
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(tool.cov[i], i + 1);
    }
    EXPECT_EQ(parser.getMeaTool(1)->id, 1);
    EXPECT_EQ(parser.getMeaTool(1)->num_button, 0);
    EXPECT_EQ(parser.getMeaTool(1)->tipradius, 2.5);
}

TEST(MeaTools2, sixteenButtonsAreTheMost) {
    KestrelParser parser;
    EXPECT_TRUE(
        parse(parser, join("6dmt2 3 1 [0 1.0 20 0.5]", pose, "[1048577]", covariance)).accepted);
    ASSERT_EQ(parser.getNumMeaTool(), 1);
    const auto& tool = *parser.getMeaTool(0);
    EXPECT_EQ(tool.num_button, 16);
    EXPECT_EQ(tool.button[0], 1);
    for (int i = 1; i < 16; ++i) {
        EXPECT_EQ(tool.button[i], 0);
    }
    EXPECT_EQ(tool.tipradius, 0.5);
}

TEST(MeaTools2, oneWordIsReadHoweverManyButtonsAreTold) {
    KestrelParser parser;
    EXPECT_TRUE(parse(parser, join("6dmt2 1 1 [0 1 40 0]", pose, "[3 9]", covariance)).accepted);
    EXPECT_EQ(parser.getMeaTool(0)->button[1], 1);
    EXPECT_FALSE(parse(parser, join("6dmt2 1 1 [0 1 40 0]", pose, "[]", covariance)).accepted);
}

TEST(MeaTools2, aToolWithoutButtonsHasAnEmptyBlock) {
    KestrelParser parser;
    EXPECT_TRUE(parse(parser, join("6dmt2 2 1 [0 1.0 0 0.5]", pose, "[]", covariance)).accepted);
    EXPECT_EQ(parser.getMeaTool(0)->num_button, 0);
    EXPECT_EQ(parser.getMeaTool(0)->cov[5], 6.0);
}

TEST(MeaTools2, buttonsBeyondTheCountAreReleased) {
    KestrelParser parser;
    ASSERT_TRUE(parse(parser, join("6dmt2 1 1 [0 1 16 0]", pose, "[65535]", covariance)).accepted);
    ASSERT_TRUE(parse(parser, join("6dmt2 1 1 [0 1 2 0]", pose, "[65535]", covariance)).accepted);
    for (int i = 0; i < 16; ++i) {
        EXPECT_EQ(parser.getMeaTool(0)->button[i], i < 2 ? 1 : 0);
    }
}

TEST(MeaTools2, aMissingBlockFails) {
    KestrelParser parser;
    EXPECT_FALSE(parse(parser, join("6dmt2 1 1 [0 1 1 0]", pose, "[1]")).accepted);
    EXPECT_FALSE(parse(parser, join("6dmt2 1 1 [0 1 1 0]", pose, covariance)).accepted);
}

TEST(MeaRefs, thoseNotListedAreNotTracked) {
    KestrelParser parser;
    EXPECT_TRUE(parse(parser, join("6dmtr 4 1 [2 0.8]", pose)).accepted);
    ASSERT_EQ(parser.getNumMeaRef(), 4);
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(parser.getMeaRef(i)->id, i);
        EXPECT_EQ(parser.getMeaRef(i)->quality, i == 2 ? 0.8 : -1.0);
    }
    EXPECT_TRUE(hasPose(*parser.getMeaRef(2)));
    EXPECT_TRUE(hasNoPose(*parser.getMeaRef(3)));
}

TEST(MeaRefs, entriesComeInAnyOrder) {
    KestrelParser parser;
    EXPECT_TRUE(parse(parser, join("6dmtr 3 2 [2 0.5]", pose, "[0 0.25]", pose)).accepted);
    EXPECT_EQ(parser.getMeaRef(2)->quality, 0.5);
    EXPECT_EQ(parser.getMeaRef(0)->quality, 0.25);
}

TEST(MeaRefs, anIdBeyondTheTableFails) {
    KestrelParser parser;
    EXPECT_FALSE(parse(parser, join("6dmtr 4 1 [4 0.8]", pose)).accepted);
    EXPECT_EQ(parser.getNumMeaRef(), 4);
    EXPECT_FALSE(parse(parser, join("6dmtr 4 1 [-1 0.8]", pose)).accepted);
}

TEST(MeaRefs, listingNoneMarksAllNotTracked) {
    for (const char* line : {"6dmtr 2 0", "6dmtr 2 -1", "6dmtr 2 x"}) {
        KestrelParser parser;
        ASSERT_TRUE(parse(parser, join("6dmtr 2 1 [1 0.5]", pose)).accepted);
        EXPECT_EQ(parse(parser, line).accepted, line[8] != 'x');
        EXPECT_EQ(parser.getMeaRef(1)->quality, -1.0);
        EXPECT_TRUE(hasPose(*parser.getMeaRef(1)));
    }
}

TEST(MeaRefs, theFirstCountIsTheTablesSize) {
    KestrelParser parser;
    ASSERT_TRUE(parse(parser, "6dmtr 4 0").accepted);
    EXPECT_TRUE(parse(parser, "6dmtr 1 0").accepted);
    EXPECT_EQ(parser.getNumMeaRef(), 1);
    EXPECT_TRUE(parse(parser, "6dmtr -4 0").accepted);
    EXPECT_EQ(parser.getNumMeaRef(), 0);
}
