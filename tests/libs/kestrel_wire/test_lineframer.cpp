#include "libs/kestrel_wire/lineframer.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

using kestrel_wire::LineFramer;
using kestrel_wire::maxLineLength;

namespace {

bool feed(LineFramer& framer, const std::string& bytes) {
    return framer.feed(bytes.data(), bytes.size());
}

std::vector<std::string> takeAll(LineFramer& framer) {
    std::vector<std::string> lines;
    std::string line;
    while (framer.takeLine(line)) {
        lines.push_back(line);
    }
    return lines;
}

using Lines = std::vector<std::string>;

} // namespace

TEST(LineFramer, cutsAtLineFeeds) {
    LineFramer framer;
    EXPECT_TRUE(feed(framer, "one\ntwo\n\nthree"));
    EXPECT_EQ(takeAll(framer), (Lines{"one", "two", ""}));
    EXPECT_EQ(framer.pendingSize(), 5U);
}

TEST(LineFramer, dropsOneCarriageReturnBeforeTheLineFeedOnly) {
    LineFramer framer;
    feed(framer, "one\r\ntwo\r\r\nth\rree\n\r\n");
    EXPECT_EQ(takeAll(framer), (Lines{"one", "two\r", "th\rree", ""}));
}

TEST(LineFramer, keepsNulBytesInsideALine) {
    LineFramer framer;
    feed(framer, std::string("a\0b\n", 4));
    EXPECT_EQ(takeAll(framer), (Lines{std::string("a\0b", 3)}));
}

TEST(LineFramer, takingFromAnEmptyFramerLeavesTheLineUntouched) {
    LineFramer framer;
    std::string line = "old";
    EXPECT_FALSE(framer.takeLine(line));
    EXPECT_EQ(line, "old");
}

TEST(LineFramer, theSizeOfThePiecesMakesNoDifference) {
    const std::string stream = "kestrel2 get a b\r\n\nx\r\r\n" + std::string(300, 'y') + "\nrest";
    LineFramer whole;
    feed(whole, stream);
    const Lines expected = takeAll(whole);
    for (std::size_t piece = 1; piece < 9; ++piece) {
        LineFramer framer;
        Lines lines;
        for (std::size_t at = 0; at < stream.size(); at += piece) {
            feed(framer, stream.substr(at, piece));
            const Lines taken = takeAll(framer);
            lines.insert(lines.end(), taken.begin(), taken.end());
        }
        EXPECT_EQ(lines, expected) << "pieces of " << piece;
        EXPECT_EQ(framer.pendingSize(), 4U);
    }
}

TEST(LineFramer, aLineOfExactlyTheLimitPasses) {
    for (const char* end : {"\n", "\r\n"}) {
        LineFramer framer;
        EXPECT_TRUE(feed(framer, std::string(maxLineLength, 'x')));
        EXPECT_TRUE(feed(framer, end));
        const Lines lines = takeAll(framer);
        ASSERT_EQ(lines.size(), 1U);
        EXPECT_EQ(lines[0].size(), 64U * 1024U);
    }
}

TEST(LineFramer, oneByteBeyondTheLimitOverflowsWithOrWithoutLineEnd) {
    for (const char* end : {"", "\n", "\r\n"}) {
        LineFramer framer;
        EXPECT_FALSE(feed(framer, std::string(maxLineLength + 1, 'x') + end));
        EXPECT_TRUE(framer.overflowed());
        EXPECT_TRUE(takeAll(framer).empty());
    }
}

TEST(LineFramer, anOverflowInManyPiecesIsFoundAtTheSameByte) {
    LineFramer framer;
    for (std::size_t i = 0; i < maxLineLength; ++i) {
        ASSERT_TRUE(feed(framer, "x"));
    }
    EXPECT_FALSE(feed(framer, "x"));
}

TEST(LineFramer, linesBeforeAnOverflowCanStillBeTaken) {
    LineFramer framer(10);
    EXPECT_FALSE(feed(framer, "one\ntwo\n" + std::string(11, 'x') + "\nthree\n"));
    EXPECT_EQ(takeAll(framer), (Lines{"one", "two"}));
}

TEST(LineFramer, anOverflowedStreamTakesNothingMoreUntilCleared) {
    LineFramer framer(4);
    feed(framer, "12345");
    EXPECT_FALSE(feed(framer, "\nok\n"));
    EXPECT_EQ(framer.pendingSize(), 0U);
    framer.clear();
    EXPECT_TRUE(feed(framer, "ok\n"));
    EXPECT_EQ(takeAll(framer), (Lines{"ok"}));
}

TEST(LineFramer, aLongStreamOfLinesDoesNotGrow) {
    LineFramer framer(100);
    std::string line;
    for (int i = 0; i < 100000; ++i) {
        ASSERT_TRUE(feed(framer, "0123456789\n"));
        ASSERT_TRUE(framer.takeLine(line));
        ASSERT_EQ(line.size(), 10U);
    }
}
