#include "tests/libs/kestrel_sdk/lines.h"

#include <cstring>
#include <gtest/gtest.h>
#include <random>

namespace {

constexpr int most = 65535;

/// A parser with something in every table.
OpenParser filledParser() {
    OpenParser parser;
    for (const std::string& line :
         {join("6d 2 [0 0.5]", pose, "[1 0.5]", pose), join("6df 1 [0 0.5 0]", pose),
          join("6dmt 2 [0 0.5 0]", pose, "[1 0.5 0]", pose), join("6dmtr 2 1 [1 0.5]", pose),
          join("gl 1 [1 0.5 1 0]", pose), join("6dj 1 1 [0 1][3 0.5][1 2 3 4 5 6]", rotation),
          join("6di 1 [1 1 0.5]", pose), join("3d 1 [4 0.5]", position), std::string("6dcal 9"),
          std::string("glcal 2")}) {
        EXPECT_TRUE(parse(parser, line).accepted) << line;
    }
    return parser;
}

/// A line of each kind with every block that it can have.
std::vector<std::string> wholeLines() {
    const std::string covariance = "[1 2 3 4 5 6]";
    const std::vector<std::string> lines = {
        "fr 7",
        "ts 2",
        "6dcal 3",
        "glcal 2",
        join("6d 1 [0 0.5]", pose),
        join("6df 1 [0 0.5 5]", pose),
        join("6df2 2 2 [0 1.0 2 3]", pose, "[3 0.5 -0.5 1][1 1.0 0 1]", pose, "[0.5]"),
        join("6dmt 1 [0 0.5 5]", pose),
        join("6dmt2 2 2 [0 1.0 3 1.5]", pose, "[5]", covariance, "[1 1.0 0 1.5]", pose, "[]",
             covariance),
        join("6dmtr 4 1 [2 0.5]", pose),
        join("gl 1 [0 0.5 1 1]", pose, pose, "[0.5 10 1 20 2 30]"),
        join("6dj 1 1 [0 1][7 0.5][1 2 3 4 5 6]", rotation),
        join("6di 1 [0 3 0.25]", pose),
        join("3d 1 [4 0.5]", position),
    };
    for (const std::string& line : lines) {
        OpenParser parser;
        EXPECT_TRUE(parse(parser, line).accepted) << line;
    }
    return lines;
}

template <class Record>
bool sameTable(const std::vector<Record>& a, const std::vector<Record>& b) {
    if (a.size() != b.size()) {
        return false;
    }
    return a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(Record)) == 0;
}

bool sameTables(const OpenParser& a, const OpenParser& b) {
    return sameTable(a.act_body, b.act_body) && sameTable(a.act_wand, b.act_wand) &&
           sameTable(a.act_meatool, b.act_meatool) && sameTable(a.act_mearef, b.act_mearef) &&
           sameTable(a.act_hand, b.act_hand) && sameTable(a.act_human, b.act_human) &&
           sameTable(a.act_inertial, b.act_inertial) && sameTable(a.act_marker, b.act_marker);
}

bool sameCounts(const OpenParser& a, const OpenParser& b) {
    return a.act_num_body == b.act_num_body && a.act_num_wand == b.act_num_wand &&
           a.act_num_meatool == b.act_num_meatool && a.act_num_mearef == b.act_num_mearef &&
           a.act_num_hand == b.act_num_hand && a.act_num_human == b.act_num_human &&
           a.act_num_inertial == b.act_num_inertial && a.act_num_marker == b.act_num_marker &&
           a.loc_num_bodycal == b.loc_num_bodycal && a.loc_num_handcal == b.loc_num_handcal &&
           a.loc_num_wand1 == b.loc_num_wand1 && a.loc_num_meatool == b.loc_num_meatool;
}

} // namespace

TEST(HostileLines, askingForTooManyRecordsChangesNothing) {
    const OpenParser before = filledParser();
    for (const char* count : {"65536", "2147483647", "0x10000"}) {
        for (const char* start :
             {"6d ", "6df ", "6df2 ", "6df2 1 ", "6dmt ", "6dmt2 1 ", "6dmtr ", "6dmtr 1 ", "gl ",
              "6dj ", "6dj 1 ", "6di ", "3d ", "6dcal ", "glcal "}) {
            OpenParser parser = before;
            const std::string line = join(std::string(start), count, " 1 [0 0.25 0 0]", pose);
            EXPECT_FALSE(parse(parser, line).accepted) << line;
            EXPECT_TRUE(sameTables(parser, before) && sameCounts(parser, before)) << line;
        }
    }
}

TEST(HostileLines, anIdBeyondTheBoundChangesNothing) {
    const OpenParser before = filledParser();
    for (const std::string& line :
         {join("6d 1 [65535 0.25]", pose), join("6d 2 [0 0.25]", pose, "[2147483647 0.25]", pose),
          join("6d 2 [9 0.25]", pose, "[65535 0.25]", pose),
          join("6di 2 [0 1 0.25]", pose, "[65535 1 0.25]", pose),
          join("6di 2 [7 1 0.25]", pose, "[65535 1 0.25]", pose),
          join("gl 2 [0 0.25 1 0]", pose, "[65535 0.25 1 0]", pose),
          join("gl 2 [5 0.25 1 0]", pose, "[65535 0.25 1 0]", pose)}) {
        OpenParser parser = before;
        EXPECT_FALSE(parse(parser, line).accepted) << line;
        EXPECT_TRUE(sameTables(parser, before) && sameCounts(parser, before)) << line;
    }
}

TEST(HostileLines, theBoundItselfIsAllowed) {
    KestrelParser parser;
    EXPECT_TRUE(parse(parser, join("6d 1 [65534 0.5]", pose)).accepted);
    EXPECT_EQ(parser.getNumBody(), most);
    EXPECT_TRUE(parse(parser, "6dmtr 65535 0").accepted);
    EXPECT_EQ(parser.getNumMeaRef(), most);
    EXPECT_FALSE(parse(parser, "6dmt 65535").accepted);
    EXPECT_EQ(parser.getNumMeaTool(), most);
    EXPECT_TRUE(parse(parser, "6dcal 65535").accepted);
    parser.startFrame();
}

TEST(HostileLines, moreWandsAndToolsThanBodiesLeaveNoBodies) {
    KestrelParser parser;
    parser.startFrame();
    ASSERT_TRUE(parse(parser, join("6d 1 [0 1]", pose)).accepted);
    ASSERT_TRUE(parse(parser, "6dcal 1").accepted);
    ASSERT_TRUE(parse(parser, join("6df 2 [0 1 0]", pose, "[1 1 0]", pose)).accepted);
    parser.endFrame();
    EXPECT_EQ(parser.getNumBody(), 0);
}

TEST(HostileLines, negativeCountsCountAsNone) {
    for (const char* line : {"6df -1", "6df2 -1 0", "6dmt -1", "6dmt2 1 -1", "6dmtr -1 0",
                             "6dj -1 0", "3d -1", "6d -1", "gl -1", "6di -1"}) {
        OpenParser parser = filledParser();
        EXPECT_TRUE(parse(parser, line).accepted) << line;
        EXPECT_GE(parser.getNumMarker(), 0);
        EXPECT_GE(parser.loc_num_wand1, 0);
        EXPECT_GE(parser.loc_num_meatool, 0);
    }
}

TEST(HostileLines, aNegativeIdThatChoosesARecordIsRejected) {
    for (const std::string& line :
         {join("6d 1 [-1 0.25]", pose), join("6df 1 [-1 0.25 0]", pose),
          join("6df2 1 1 [-1 0.25 0 0]", pose, "[]"), join("6dmt 1 [-1 0.25 0]", pose),
          join("6dmt2 1 1 [-1 0.25 0 0]", pose, "[]", "[1 2 3 4 5 6]"),
          join("6dmtr 1 1 [-1 0.25]", pose), join("gl 1 [-1 0.25 0 0]", pose),
          std::string("6dj 1 1 [-1 0]"), join("6di 1 [-1 1 0.25]", pose)}) {
        OpenParser parser = filledParser();
        EXPECT_FALSE(parse(parser, line).accepted) << line;
    }
}

TEST(HostileLines, anyNumberIsTheNameOfAMarker) {
    for (const int id : {-1, -2147483647 - 1, 0, 65535, 2147483647}) {
        OpenParser parser = filledParser();
        const std::string line = join("3d 2 [", std::to_string(id), " 0.25]", position, "[",
                                      std::to_string(id), " 0.75]", position);
        EXPECT_TRUE(parse(parser, line).accepted) << line;
        ASSERT_EQ(parser.getNumMarker(), 2);
        EXPECT_EQ(parser.getMarker(0)->id, id);
        EXPECT_EQ(parser.getMarker(0)->quality, 0.25);
        EXPECT_EQ(parser.getMarker(1)->id, id);
        EXPECT_EQ(parser.getMarker(1)->quality, 0.75);
        EXPECT_EQ(parser.getMarker(1)->loc[2], 3.5);
    }
}

TEST(HostileLines, anyNumberIsTheNameOfAJoint) {
    for (const int id : {-1, -2147483647 - 1, 0, 65535, 2147483647}) {
        OpenParser parser = filledParser();
        const std::string joint = join("[", std::to_string(id), " 0.5][1 2 3 4 5 6]", rotation);
        EXPECT_TRUE(parse(parser, join("6dj 2 1 [1 2]", joint, joint)).accepted) << joint;
        const auto& human = *parser.getHuman(1);
        ASSERT_EQ(human.num_joints, 2);
        EXPECT_EQ(human.joint[0].id, id);
        EXPECT_EQ(human.joint[1].id, id);
        EXPECT_EQ(human.joint[1].quality, 0.5);
        EXPECT_EQ(human.joint[1].ang[2], 6);
        EXPECT_EQ(human.joint[1].rot[8], 19);
    }
}

TEST(HostileLines, innerCountsOutsideTheRecordsPlacesAreRejected) {
    for (const std::string& line :
         {join("6df2 1 1 [0 0.5 -1 0]", pose, "[]"), join("6df2 1 1 [0 0.5 0 -1]", pose, "[]"),
          join("6df2 1 1 [0 0.5 0 9]", pose, "[1 2 3 4 5 6 7 8 9]"),
          join("6dmt2 1 1 [0 0.5 -1 0]", pose, "[][1 2 3 4 5 6]"), join("gl 1 [0 0.5 0 -1]", pose),
          std::string("6dj 1 1 [0 21]"), std::string("6dj 1 1 [0 -1]")}) {
        OpenParser parser = filledParser();
        EXPECT_FALSE(parse(parser, line).accepted) << line;
        EXPECT_EQ(parser.act_human.empty() ? 0 : parser.act_human[0].num_joints,
                  line.compare(0, 3, "6dj") == 0 ? 0 : 1);
        EXPECT_GE(parser.act_meatool[0].num_button, 0);
    }
}

TEST(HostileLines, moreListedThanDefinedWandsAreRejected) {
    OpenParser parser;
    const std::string wand = join(pose, "[]");
    EXPECT_FALSE(parse(parser, join("6df2 1 2 [0 1 0 0]", wand, "[1 1 0 0]", wand)).accepted);
    EXPECT_EQ(parser.getNumWand(), 1);
    EXPECT_EQ(parser.act_wand.size(), 1U);
}

TEST(HostileLines, everyCutOfALineIsRejected) {
    for (const std::string& line : wholeLines()) {
        for (std::size_t length = line.find(' ') + 1; length < line.size(); ++length) {
            OpenParser parser;
            EXPECT_FALSE(parse(parser, line.substr(0, length)).accepted) << line.substr(0, length);
        }
    }
}

TEST(HostileLines, everyUnreadableNumberOfALineIsRejected) {
    const std::string inNumbers = "0123456789.-";
    for (const std::string& line : wholeLines()) {
        std::size_t first = line.find(' ');
        while ((first = line.find_first_of(inNumbers, first)) != std::string::npos) {
            const std::size_t end = line.find_first_not_of(inNumbers, first);
            std::string spoilt = line;
            spoilt.replace(first, end == std::string::npos ? end : end - first, "x");
            OpenParser parser;
            EXPECT_FALSE(parse(parser, spoilt).accepted) << spoilt;
            first = end;
        }
    }
}

TEST(HostileLines, rubbishNeverThrowsNorLeavesTheTables) {
    std::mt19937 random(20261120);
    const std::string letters = "0123456789    [[[]]]]..--xXeEnaif\t\r\n\xff\x80";
    const std::vector<std::string> starts = {"6d ",    "6df ", "6df2 ",  "6dmt ", "6dmt2 ",
                                             "6dmtr ", "gl ",  "6dj ",   "6di ",  "3d ",
                                             "fr ",    "ts ",  "6dcal ", "glcal "};
    OpenParser parser;
    for (int i = 0; i < 60000; ++i) {
        std::string line = starts[random() % starts.size()] + std::to_string(random() % 4) + " ";
        for (auto length = random() % 120; length > 0; --length) {
            line += letters[random() % letters.size()];
        }
        EXPECT_NO_THROW(parse(parser, line));
        EXPECT_NO_THROW(parser.endFrame());
    }
    EXPECT_EQ(parser.act_body.size(), static_cast<std::size_t>(parser.getNumBody()));
    EXPECT_EQ(parser.act_meatool.size(), static_cast<std::size_t>(parser.getNumMeaTool()));
    EXPECT_LE(parser.act_body.size(), static_cast<std::size_t>(most));
}
