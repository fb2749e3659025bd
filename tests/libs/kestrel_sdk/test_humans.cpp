#include "tests/libs/kestrel_sdk/lines.h"

#include <gtest/gtest.h>

namespace {

constexpr const char* finger = "[1.5 -2.5 3.5][11 12 13 14 15 16 17 18 19][0.5 10 1 20 2 30]";
constexpr const char* joint = "[7 0.5][1 2 3 4 5 6][11 12 13 14 15 16 17 18 19]";

std::string repeated(const std::string& text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i) {
        all += text;
    }
    return all;
}

} // namespace

TEST(Hands, aLineFillsTheHandAndItsFingers) {
    KestrelParser parser;
    EXPECT_TRUE(parse(parser, join("gl 1 [1 0.5 2 2]", pose, finger, finger)).accepted);
    ASSERT_EQ(parser.getNumHand(), 2);
    const auto& hand = *parser.getHand(1);
    EXPECT_EQ(hand.id, 1);
    EXPECT_EQ(hand.quality, 0.5);
    EXPECT_EQ(hand.lr, 2);
    EXPECT_EQ(hand.nfinger, 2);
    EXPECT_TRUE(hasPose(hand));
    EXPECT_TRUE(hasPose(hand.finger[1]));
    EXPECT_TRUE(hasNoPose(hand.finger[2]));
}

TEST(Hands, lengthsAndAnglesAlternateFromTheTipInwards) {
    KestrelParser parser;
    ASSERT_TRUE(parse(parser, join("gl 1 [0 0.5 0 1]", pose, finger)).accepted);
    const auto& tip = parser.getHand(0)->finger[0];
    EXPECT_EQ(tip.radiustip, 0.5);
    EXPECT_EQ(tip.lengthphalanx[0], 10);
    EXPECT_EQ(tip.anglephalanx[0], 1);
    EXPECT_EQ(tip.lengthphalanx[1], 20);
    EXPECT_EQ(tip.anglephalanx[1], 2);
    EXPECT_EQ(tip.lengthphalanx[2], 30);
}

TEST(Hands, everyLineClearsAllHandsFirst) {
    for (const char* line : {"gl 0", "gl -1", "gl x"}) {
        KestrelParser parser;
        ASSERT_TRUE(parse(parser, join("gl 1 [1 0.5 2 1]", pose, finger)).accepted);
        EXPECT_EQ(parse(parser, line).accepted, line[3] != 'x');
        ASSERT_EQ(parser.getNumHand(), 2);
        const auto& hand = *parser.getHand(1);
        EXPECT_EQ(hand.id, 1);
        EXPECT_EQ(hand.quality, -1.0);
        EXPECT_EQ(hand.lr, 0);
        EXPECT_EQ(hand.nfinger, 0);
        EXPECT_TRUE(hasNoPose(hand));
        EXPECT_EQ(hand.finger[0].radiustip, 0.0);
    }
}

TEST(Hands, fiveFingersAreTheMost) {
    KestrelParser parser;
    EXPECT_TRUE(parse(parser, join("gl 1 [0 0.5 1 5]", pose, repeated(finger, 5))).accepted);
    EXPECT_TRUE(hasPose(parser.getHand(0)->finger[4]));
    EXPECT_FALSE(parse(parser, join("gl 1 [0 0.25 1 6]", pose, repeated(finger, 6))).accepted);
    EXPECT_EQ(parser.getHand(0)->quality, 0.25);
    EXPECT_EQ(parser.getHand(0)->lr, 1);
    EXPECT_EQ(parser.getHand(0)->nfinger, 0);
}

TEST(Humans, aLineFillsTheJointsOfTheListedModels) {
    KestrelParser parser;
    EXPECT_TRUE(parse(parser, join("6dj 2 1 [1 2]", joint, joint)).accepted);
    ASSERT_EQ(parser.getNumHuman(), 2);
    EXPECT_EQ(parser.getHuman(0)->id, 0);
    EXPECT_EQ(parser.getHuman(0)->num_joints, 0);
    const auto& human = *parser.getHuman(1);
    EXPECT_EQ(human.id, 1);
    EXPECT_EQ(human.num_joints, 2);
    EXPECT_EQ(human.joint[1].id, 7);
    EXPECT_EQ(human.joint[1].quality, 0.5);
    EXPECT_EQ(human.joint[1].loc[0], 1);
    EXPECT_EQ(human.joint[1].loc[2], 3);
    EXPECT_EQ(human.joint[1].ang[0], 4);
    EXPECT_EQ(human.joint[1].ang[2], 6);
    EXPECT_EQ(human.joint[1].rot[8], 19);
}

TEST(Humans, everyLineClearsAllModels) {
    for (const char* line : {"6dj 1 0", "6dj 1 -1", "6dj 1 x"}) {
        KestrelParser parser;
        ASSERT_TRUE(parse(parser, join("6dj 1 1 [0 1]", joint)).accepted);
        EXPECT_EQ(parse(parser, line).accepted, line[6] != 'x');
        ASSERT_EQ(parser.getNumHuman(), 1);
        EXPECT_EQ(parser.getHuman(0)->num_joints, 0);
        EXPECT_EQ(parser.getHuman(0)->joint[0].quality, 0.0);
    }
}

TEST(Humans, theFirstCountIsTheTablesSize) {
    KestrelParser parser;
    EXPECT_TRUE(parse(parser, "6dj 3 0").accepted);
    EXPECT_EQ(parser.getNumHuman(), 3);
    EXPECT_EQ(parser.getHuman(2)->id, 2);
    EXPECT_TRUE(parse(parser, "6dj 1 0").accepted);
    EXPECT_EQ(parser.getNumHuman(), 1);
    EXPECT_FALSE(parse(parser, "6dj x").accepted);
    EXPECT_EQ(parser.getNumHuman(), 1);
}

TEST(Humans, anIdNeverGrowsTheTable) {
    KestrelParser parser;
    EXPECT_FALSE(parse(parser, join("6dj 2 1 [2 1]", joint)).accepted);
    EXPECT_EQ(parser.getNumHuman(), 2);
}

TEST(Humans, twentyJointsFit) {
    KestrelParser parser;
    EXPECT_TRUE(parse(parser, "6dj 1 1 [0 20]" + repeated(joint, 20)).accepted);
    EXPECT_EQ(parser.getHuman(0)->num_joints, 20);
    EXPECT_EQ(parser.getHuman(0)->joint[19].rot[0], 11);
}
