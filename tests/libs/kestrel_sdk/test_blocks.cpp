#include "KestrelParse.h"

#include <array>
#include <gtest/gtest.h>
#include <string>

using namespace KestrelSDK_Parse;

namespace {

/// One call of string_get_block() with places to spare.
struct Block {
    std::array<int, 4> ints{};
    std::array<float, 4> floats{};
    std::array<double, 10> doubles{};
    std::string text;
    std::ptrdiff_t end = -1; ///< offset of the returned position; -1 for null

    Block(const char* line, const char* format)
        : text(line) {
        const char* at =
            string_get_block(text.data(), format, ints.data(), floats.data(), doubles.data());
        if (at != nullptr) {
            end = at - text.data();
        }
    }
};

} // namespace

TEST(Blocks, integersAndDoublesGoToTheirOwnPlaces) {
    const Block block("[1 2.5 3 4]", "idii");
    EXPECT_EQ(block.end, 11);
    EXPECT_EQ(block.ints, (std::array<int, 4>{1, 3, 4, 0}));
    EXPECT_EQ(block.doubles[0], 2.5);
    EXPECT_EQ(block.doubles[1], 0.0);
}

TEST(Blocks, floatsAndDoublesShareOneCounter) {
    const Block block("[1 2 3 4]", "fdfd");
    EXPECT_EQ(block.floats, (std::array<float, 4>{1, 0, 3, 0}));
    EXPECT_EQ(block.doubles[0], 0);
    EXPECT_EQ(block.doubles[1], 2);
    EXPECT_EQ(block.doubles[2], 0);
    EXPECT_EQ(block.doubles[3], 4);
}

TEST(Blocks, theFirstBracketsCount) {
    const Block block("junk 9 ] [7] [8]", "i");
    EXPECT_EQ(block.ints[0], 7);
    EXPECT_EQ(block.end, 12);
}

TEST(Blocks, numbersBehindTheLastExpectedOneAreIgnored) {
    const Block block("[1 2 oops]x", "i");
    EXPECT_EQ(block.ints[0], 1);
    EXPECT_EQ(block.end, 10);
}

TEST(Blocks, anEmptyFormatReadsAnyBlock) {
    EXPECT_EQ(Block("[]", "").end, 2);
    EXPECT_EQ(Block("[ 1 ]", "").end, 5);
}

TEST(Blocks, tooFewNumbersFailAndLeaveTheTextAsItWas) {
    const Block block("[1 2][3]", "iii");
    EXPECT_EQ(block.end, -1);
    EXPECT_EQ(block.text, "[1 2][3]");
    EXPECT_EQ(block.ints, (std::array<int, 4>{1, 2, 0, 0}));
}

TEST(Blocks, aSuccessLeavesTheTextAsItWas) {
    EXPECT_EQ(Block("[1 2][3]", "ii").text, "[1 2][3]");
}

TEST(Blocks, aMissingBracketFailsAndStoresNothing) {
    for (const char* line : {"", "1 2]", "[1 2", "] [1 2", "]["}) {
        const Block block(line, "i");
        EXPECT_EQ(block.end, -1) << line;
        EXPECT_EQ(block.ints[0], 0) << line;
    }
}

TEST(Blocks, anUnknownFormatCharacterFails) {
    const Block block("[1 2 3]", "ixi");
    EXPECT_EQ(block.end, -1);
    EXPECT_EQ(block.ints, (std::array<int, 4>{1, 0, 0, 0}));
}

TEST(Blocks, noNumberRunsOverTheClosingBracket) {
    const Block block("[1 nan(]2)", "id");
    EXPECT_EQ(block.ints[0], 1);
    EXPECT_NE(block.doubles[0], block.doubles[0]);
    EXPECT_EQ(block.end, 8);
}

TEST(Blocks, aTextThatMayNotBeWrittenIsRead) {
    static const char line[] = "[4 5]";
    std::array<int, 2> ints{};
    EXPECT_NE(string_get_block(const_cast<char*>(line), "ii", ints.data(), nullptr, nullptr),
              nullptr);
    EXPECT_EQ(ints[1], 5);
}
