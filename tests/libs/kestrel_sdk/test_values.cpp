#include "tests/libs/kestrel_sdk/lines.h"

#include <gtest/gtest.h>
#include <limits>
#include <type_traits>
#include <utility>

// A parser as a value: const, copied, moved.

namespace {

/// A parser with one record more in every table than in the one before, and all counts of a frame.
OpenParser filledParser() {
    OpenParser parser;
    parser.startFrame();
    for (const std::string& line :
         {std::string("fr 12"), std::string("ts 1.5"), std::string("6dcal 20"),
          std::string("glcal 7"), join("6d 1 [0 0.5]", pose),
          join("6df 2 [0 0.5 0]", pose, "[1 0.5 0]", pose),
          join("6dmt 3 [0 0.5 0]", pose, "[1 0.5 0]", pose, "[2 0.5 0]", pose),
          join("6dmtr 4 1 [1 0.5]", pose), join("gl 1 [4 0.5 1 0]", pose),
          join("6dj 6 1 [1 1][3 0.5][1 2 3 4 5 6]", rotation), join("6di 1 [6 1 0.5]", pose),
          join("3d 1 [4 0.5]", position)}) {
        EXPECT_TRUE(parse(parser, line).accepted) << line;
    }
    return parser;
}

void expectFilled(const OpenParser& parser) {
    EXPECT_EQ(parser.getFrameCounter(), 12U);
    EXPECT_EQ(parser.getTimeStamp(), 1.5);
    EXPECT_EQ(parser.loc_num_bodycal, 20);
    EXPECT_EQ(parser.loc_num_handcal, 7);
    EXPECT_EQ(parser.loc_num_wand1, 2);
    EXPECT_EQ(parser.loc_num_meatool, 3);
    ASSERT_EQ(parser.getNumBody(), 1);
    EXPECT_TRUE(hasPose(*parser.getBody(0)));
    ASSERT_EQ(parser.getNumWand(), 2);
    EXPECT_TRUE(hasPose(*parser.getWand(1)));
    ASSERT_EQ(parser.getNumMeaTool(), 3);
    EXPECT_TRUE(hasPose(*parser.getMeaTool(2)));
    ASSERT_EQ(parser.getNumMeaRef(), 4);
    EXPECT_TRUE(hasPose(*parser.getMeaRef(1)));
    ASSERT_EQ(parser.getNumHand(), 5);
    EXPECT_TRUE(hasPose(*parser.getHand(4)));
    ASSERT_EQ(parser.getNumHuman(), 6);
    EXPECT_EQ(parser.getHuman(1)->joint[0].id, 3);
    ASSERT_EQ(parser.getNumInertial(), 7);
    EXPECT_TRUE(hasPose(*parser.getInertial(6)));
    ASSERT_EQ(parser.getNumMarker(), 1);
    EXPECT_EQ(parser.getMarker(0)->loc[2], 3.5);
}

void expectNew(const OpenParser& parser) {
    EXPECT_EQ(parser.getFrameCounter(), 0U);
    EXPECT_EQ(parser.getTimeStamp(), -1.0);
    EXPECT_EQ(parser.loc_num_bodycal, -1);
    EXPECT_EQ(parser.loc_num_handcal, -1);
    EXPECT_EQ(parser.loc_num_wand1, 0);
    EXPECT_EQ(parser.loc_num_meatool, 0);
    EXPECT_EQ(parser.getNumBody(), 0);
    EXPECT_EQ(parser.getNumWand(), 0);
    EXPECT_EQ(parser.getNumMeaTool(), 0);
    EXPECT_EQ(parser.getNumMeaRef(), 0);
    EXPECT_EQ(parser.getNumHand(), 0);
    EXPECT_EQ(parser.getNumHuman(), 0);
    EXPECT_EQ(parser.getNumInertial(), 0);
    EXPECT_EQ(parser.getNumMarker(), 0);
    EXPECT_TRUE(parser.act_body.empty());
    EXPECT_TRUE(parser.act_wand.empty());
    EXPECT_TRUE(parser.act_meatool.empty());
    EXPECT_TRUE(parser.act_mearef.empty());
    EXPECT_TRUE(parser.act_hand.empty());
    EXPECT_TRUE(parser.act_human.empty());
    EXPECT_TRUE(parser.act_inertial.empty());
    EXPECT_TRUE(parser.act_marker.empty());
    EXPECT_EQ(parser.getBody(0), nullptr);
    EXPECT_EQ(parser.getMeaTool(0), nullptr);
}

} // namespace

TEST(Values, aMovedParserTakesItsRecordsAlong) {
    OpenParser from = filledParser();
    const auto* tool = from.getMeaTool(2);
    OpenParser to(std::move(from));
    expectFilled(to);
    EXPECT_EQ(to.getMeaTool(2), tool);
}

TEST(Values, aMovedFromParserIsAsNewlyMade) {
    OpenParser from = filledParser();
    const OpenParser to(std::move(from));
    expectNew(from); // NOLINT(bugprone-use-after-move): what it is then is promised
    EXPECT_TRUE(parse(from, join("6dmt 1 [0 0.5 0]", pose)).accepted);
    EXPECT_EQ(from.getNumMeaTool(), 1);
    expectFilled(to);
}

TEST(Values, moveAssignmentReplacesWhatWasThere) {
    OpenParser from = filledParser();
    OpenParser to;
    ASSERT_TRUE(parse(to, join("6d 1 [9 0.5]", pose)).accepted);
    to = std::move(from);
    expectFilled(to);
    expectNew(from); // NOLINT(bugprone-use-after-move): what it is then is promised
}

TEST(Values, aParserMovedToItselfStays) {
    OpenParser parser = filledParser();
    OpenParser& same = parser;
    parser = std::move(same);
    expectFilled(parser);
}

TEST(Values, aCopyIsIndependent) {
    const OpenParser from = filledParser();
    OpenParser to = from;
    ASSERT_TRUE(parse(to, "6dmt 0").accepted);
    expectFilled(from);
    to = from;
    expectFilled(to);
}

TEST(Values, movingNeverThrows) {
    static_assert(std::is_nothrow_move_constructible_v<KestrelParser>);
    static_assert(std::is_nothrow_move_assignable_v<KestrelParser>);
    static_assert(std::is_copy_constructible_v<KestrelParser>);
    static_assert(std::is_copy_assignable_v<KestrelParser>);
}

TEST(Values, aConstParserGivesConstRecords) {
    KestrelParser parser;
    ASSERT_TRUE(parser.parseLine("6dmt 1 [0 0.5 0][1.5 -2.5 3.5][1 0 0 0 1 0 0 0 1]"));
    const KestrelParser& seen = parser;
    using Tool = KestrelSDK_Datatypes::Kestrel_MeaTool_Type_d;
    static_assert(std::is_same_v<decltype(seen.getMeaTool(0)), const Tool*>);
    static_assert(std::is_same_v<decltype(parser.getMeaTool(0)), Tool*>);
    EXPECT_EQ(seen.getMeaTool(0), parser.getMeaTool(0));
    EXPECT_EQ(seen.getMeaTool(1), nullptr);
    EXPECT_EQ(seen.getMeaTool(-1), nullptr);
}

namespace {

template <class Parser>
void expectNothingAt(Parser& parser, int index) {
    EXPECT_EQ(parser.getBody(index), nullptr);
    EXPECT_EQ(parser.getWand(index), nullptr);
    EXPECT_EQ(parser.getMeaTool(index), nullptr);
    EXPECT_EQ(parser.getMeaRef(index), nullptr);
    EXPECT_EQ(parser.getHand(index), nullptr);
    EXPECT_EQ(parser.getHuman(index), nullptr);
    EXPECT_EQ(parser.getInertial(index), nullptr);
    EXPECT_EQ(parser.getMarker(index), nullptr);
}

} // namespace

TEST(Values, thereIsNoRecordOutsideOfTheCounts) {
    OpenParser parser = filledParser();
    const OpenParser& seen = parser;
    for (const int index :
         {-1, std::numeric_limits<int>::min(), 100, std::numeric_limits<int>::max()}) {
        SCOPED_TRACE(index);
        expectNothingAt(parser, index);
        expectNothingAt(seen, index);
    }
}

TEST(Values, aConstRecordGetterIsCheckedLikeTheOther) {
    OpenParser parser = filledParser();
    parser.act_num_body = 2;
    const OpenParser& seen = parser;
    EXPECT_THROW(seen.getBody(1), std::out_of_range);
}

namespace {

/// Counts its lines.
class CountingParser : public KestrelParser {
public:
    using KestrelParser::parseLine;
    bool parseLine(char** line) override {
        ++lines;
        return KestrelParser::parseLine(line);
    }
    int lines = 0;
};

} // namespace

TEST(ConstText, isParsedLikeAnyOther) {
    const std::string line = join("6dmt 1 [0 0.5 0]", pose);
    KestrelParser parser;
    EXPECT_TRUE(parser.parseLine(line.c_str()));
    ASSERT_EQ(parser.getNumMeaTool(), 1);
    EXPECT_TRUE(hasPose(*parser.getMeaTool(0)));
    EXPECT_FALSE(parser.parseLine("6dmt 1 [0 0.5"));
    EXPECT_TRUE(parser.parseLine("an unknown line"));
    EXPECT_EQ(line, join("6dmt 1 [0 0.5 0]", pose));
}

TEST(ConstText, noLineIsRejected) {
    KestrelParser parser;
    EXPECT_FALSE(parser.parseLine(nullptr));
    EXPECT_FALSE(parser.parseLine(static_cast<char**>(nullptr)));
    EXPECT_FALSE(parser.parseLine(static_cast<const char*>(nullptr)));
}

TEST(ConstText, goesThroughTheParserThatDerives) {
    CountingParser counting;
    KestrelParser& parser = counting;
    EXPECT_TRUE(parser.parseLine("fr 7"));
    EXPECT_TRUE(counting.parseLine("fr 8"));
    EXPECT_EQ(counting.lines, 2);
    EXPECT_EQ(counting.getFrameCounter(), 8U);
}
