#include "tests/libs/kestrel_sdk/lines.h"

#include <gtest/gtest.h>

TEST(Wands, aLineFillsOneRecordPerDevice) {
    OpenParser parser;
    EXPECT_TRUE(parse(parser, join("6df 2 [0 0.5 5]", pose, "[1 1.0 0]", pose)).accepted);
    ASSERT_EQ(parser.getNumWand(), 2);
    EXPECT_EQ(parser.loc_num_wand1, 2);
    const auto& wand = *parser.getWand(0);
    EXPECT_EQ(wand.id, 0);
    EXPECT_EQ(wand.quality, 0.5);
    EXPECT_EQ(wand.num_button, 8);
    EXPECT_EQ(wand.num_joystick, 2);
    for (int i = 0; i < 8; ++i) {
        EXPECT_EQ(wand.button[i], i == 0 || i == 2 ? 1 : 0);
    }
    EXPECT_TRUE(hasPose(wand));
    EXPECT_EQ(parser.getWand(1)->id, 1);
}

TEST(Wands, theJoystickComesFromTheButtonBits) {
    struct Row {
        int bits;
        double first;
        double second;
    };
    for (const Row& row : {Row{0, 0, 0}, Row{32, -1, 0}, Row{128, 1, 0}, Row{160, -1, 0},
                           Row{16, 0, -1}, Row{64, 0, 1}, Row{80, 0, -1}, Row{255, -1, -1}}) {
        KestrelParser parser;
        ASSERT_TRUE(
            parse(parser, join("6df 1 [0 1 ", std::to_string(row.bits), "]", pose)).accepted);
        EXPECT_EQ(parser.getWand(0)->joystick[0], row.first) << row.bits;
        EXPECT_EQ(parser.getWand(0)->joystick[1], row.second) << row.bits;
    }
}

TEST(Wands, bitsOfTheJoystickAreButtonsToo) {
    KestrelParser parser;
    ASSERT_TRUE(parse(parser, join("6df 1 [0 1 160]", pose)).accepted);
    for (int i = 0; i < 8; ++i) {
        EXPECT_EQ(parser.getWand(0)->button[i], i == 5 || i == 7 ? 1 : 0);
    }
}

TEST(Wands, theIdsMustBeInOrder) {
    KestrelParser parser;
    EXPECT_FALSE(parse(parser, join("6df 1 [1 1 0]", pose)).accepted);
    EXPECT_EQ(parser.getNumWand(), 1);
}

TEST(Wands, aCountBelowOneEmptiesTheTable) {
    for (const char* line : {"6df 0", "6df -2"}) {
        OpenParser parser;
        ASSERT_TRUE(parse(parser, join("6df 1 [0 1 0]", pose)).accepted);
        EXPECT_TRUE(parse(parser, line).accepted);
        EXPECT_EQ(parser.getNumWand(), 0);
        EXPECT_EQ(parser.loc_num_wand1, 0);
        EXPECT_TRUE(parser.act_wand.empty());
    }
}

TEST(Wands, anUnreadableCountLeavesTheTable) {
    KestrelParser parser;
    ASSERT_TRUE(parse(parser, join("6df 1 [0 1 0]", pose)).accepted);
    EXPECT_FALSE(parse(parser, "6df x").accepted);
    EXPECT_EQ(parser.getNumWand(), 1);
}

TEST(Wands2, aLineFillsTheListedDevices) {
    OpenParser parser;
    EXPECT_TRUE(parse(parser, join("6df2 2 1 [0 0.5 6 3]", pose, "[37 0.25 -0.5 1]")).accepted);
    ASSERT_EQ(parser.getNumWand(), 2);
    EXPECT_EQ(parser.loc_num_wand1, 0);
    const auto& wand = *parser.getWand(0);
    EXPECT_EQ(wand.quality, 0.5);
    EXPECT_EQ(wand.num_button, 6);
    EXPECT_EQ(wand.num_joystick, 3);
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(wand.button[i], i == 0 || i == 2 || i == 5 ? 1 : 0);
    }
    EXPECT_EQ(wand.joystick[0], 0.25);
    EXPECT_EQ(wand.joystick[1], -0.5);
    EXPECT_EQ(wand.joystick[2], 1.0);
    EXPECT_TRUE(hasPose(wand));
    EXPECT_EQ(parser.getWand(1)->quality, -1.0);
}

TEST(Wands2, withoutButtonsTheBlockHoldsNoBitWord) {
    KestrelParser parser;
    EXPECT_TRUE(parse(parser, join("6df2 1 1 [0 1 0 2]", pose, "[0.5 0.75]")).accepted);
    EXPECT_EQ(parser.getWand(0)->joystick[0], 0.5);
    EXPECT_EQ(parser.getWand(0)->joystick[1], 0.75);
    EXPECT_TRUE(parse(parser, join("6df2 1 1 [0 1 0 0]", pose, "[]")).accepted);
    EXPECT_TRUE(parse(parser, join("6df2 1 1 [0 1 8 0]", pose, "[255]")).accepted);
    EXPECT_EQ(parser.getWand(0)->button[7], 1);
}

TEST(Wands2, listingNoneKeepsTheDefinedOnes) {
    KestrelParser parser;
    EXPECT_TRUE(parse(parser, "6df2 3 0").accepted);
    EXPECT_EQ(parser.getNumWand(), 3);
    EXPECT_TRUE(parse(parser, "6df2 3 -1").accepted);
    EXPECT_EQ(parser.getNumWand(), 3);
}

TEST(Wands2, aMissingSecondCountFailsBehindTheFirst) {
    KestrelParser parser;
    const Parsed parsed = parse(parser, "6df2 3 x");
    EXPECT_FALSE(parsed.accepted);
    EXPECT_EQ(parsed.rest, " x");
    EXPECT_EQ(parser.getNumWand(), 3);
}

TEST(Wands2, tooManyButtonsFailBehindTheQuality) {
    KestrelParser parser;
    ASSERT_TRUE(parse(parser, join("6df2 1 1 [0 1 2 0]", pose, "[3]")).accepted);
    EXPECT_FALSE(parse(parser, join("6df2 1 1 [0 0.25 9 0]", pose, "[3]")).accepted);
    EXPECT_EQ(parser.getWand(0)->quality, 0.25);
    EXPECT_EQ(parser.getWand(0)->num_button, 2);
}

TEST(Wands2, theIdsMustBeInOrder) {
    KestrelParser parser;
    EXPECT_FALSE(parse(parser, join("6df2 2 1 [1 1 0 0]", pose, "[]")).accepted);
}
