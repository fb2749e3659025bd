#include "KestrelPick.h"
#include "tests/libs/kestrel_sdk/lines.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

using KestrelSDK_Datatypes::Kestrel_MeaTool_Type_d;
using KestrelSDK_Pick::Found;
using KestrelSDK_Pick::meaTool;

namespace {

const std::string threeTools =
    join("6dmt2 4 3 [0 0.5 2 0.75]", pose, "[3][1 2 3 4 5 6] [1 -1.0 0 1]", pose,
         "[][6 5 4 3 2 1][2 1e-1 20 0x2]", pose, "[65535][1 1 1 1 1 1]");

bool same(const Kestrel_MeaTool_Type_d& one, const Kestrel_MeaTool_Type_d& other) {
    return one.id == other.id && one.quality == other.quality &&
           one.num_button == other.num_button &&
           std::equal(std::begin(one.button), std::end(one.button), other.button) &&
           std::equal(std::begin(one.loc), std::end(one.loc), other.loc) &&
           std::equal(std::begin(one.rot), std::end(one.rot), other.rot) &&
           one.tipradius == other.tipradius;
}

// What a parser that takes the whole line says of each of its tools is said of the one alone.
void expectAgreement(const std::string& line) {
    KestrelParser parser;
    const bool accepted = parser.parseLine(line.c_str());
    for (int index = 0; index < 4; ++index) {
        Kestrel_MeaTool_Type_d tool{};
        const Found found = meaTool(line.c_str(), index, tool);
        if (accepted) {
            const Kestrel_MeaTool_Type_d* const whole = parser.getMeaTool(index);
            ASSERT_EQ(found, whole != nullptr ? Found::Yes : Found::NotListed) << line;
            EXPECT_TRUE(whole == nullptr || same(tool, *whole)) << line;
        }
    }
}

} // namespace

TEST(Pick, aToolIsReadAsTheParserDoes) {
    expectAgreement(threeTools);
    Kestrel_MeaTool_Type_d tool{};
    ASSERT_EQ(meaTool(threeTools.c_str(), 2, tool), Found::Yes);
    EXPECT_EQ(tool.id, 2);
    EXPECT_EQ(tool.quality, 0.1);
    EXPECT_EQ(tool.num_button, 16);
    EXPECT_EQ(tool.button[15], 1);
    EXPECT_EQ(tool.tipradius, 2.0);
    EXPECT_TRUE(hasPose(tool));
    EXPECT_EQ(tool.cov[5], 0.0);
}

TEST(Pick, whatIsNotListedIsNotMalformed) {
    Kestrel_MeaTool_Type_d tool{};
    tool.id = 77;
    for (const int index : {-1, 3, 65534}) {
        EXPECT_EQ(meaTool(threeTools.c_str(), index, tool), Found::NotListed) << index;
    }
    for (const char* line : {"", "6dmt2", "6dmt 1 [0 1 0]", "fr 1", "6dmt2 4 0", "6dmt2 4 -1"}) {
        EXPECT_EQ(meaTool(line, 0, tool), Found::NotListed) << line;
    }
    EXPECT_EQ(tool.id, 77);
}

TEST(Pick, aLineThatCannotBeReadIsMalformed) {
    Kestrel_MeaTool_Type_d tool{};
    for (const char* line : {"6dmt2 ", "6dmt2 1", "6dmt2 x", "6dmt2 1 x", "6dmt2 1 65536",
                             "6dmt2 1 1", "6dmt2 1 1 [1 1.0 0 0]", "6dmt2 1 1 [0 1.0 -1 0]",
                             "6dmt2 1 1 [0 1 0 0][1 2 3][1 0 0 0 1 0 0 0 1][][1 2 3 4 5 6"}) {
        EXPECT_EQ(meaTool(line, 0, tool), Found::Malformed) << line;
    }
    EXPECT_EQ(meaTool("6dmt2 2 2 [0][][][][]", 1, tool), Found::Malformed) << "entry missing";
    EXPECT_EQ(meaTool("6dmt2 2 2 [0][][]", 1, tool), Found::Malformed) << "block missing";
}

TEST(Pick, neighboursAreNotRead) {
    const std::string line =
        join("6dmt2 3 3 [x][][][][] [1 1.0 0 0]", pose, "[][1 2 3 4 5 6] [what else");
    Kestrel_MeaTool_Type_d tool{};
    EXPECT_EQ(meaTool(line.c_str(), 0, tool), Found::Malformed);
    EXPECT_EQ(meaTool(line.c_str(), 1, tool), Found::Yes);
    EXPECT_TRUE(hasPose(tool));
    EXPECT_EQ(meaTool(line.c_str(), 2, tool), Found::Malformed);
}

TEST(Pick, damagedLinesAreReadAsByTheParserOrNot) {
    for (std::size_t at = 0; at < threeTools.size(); ++at) {
        expectAgreement(threeTools.substr(0, at));
        for (const char* put : {"[", "]", " ", "9", "-", ""}) {
            expectAgreement(std::string(threeTools).replace(at, 1, put));
        }
    }
}
