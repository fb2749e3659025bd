#include "libs/kestrel_wire/blocklines.h"

#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

using kestrel_wire::BlockLines;
using Result = BlockLines::Result;

namespace {

constexpr std::size_t most = 100000; // longer than what is taken from the stream at once

struct Line {
    std::string text;
    bool hasBackslash = false;
    std::uint64_t offset = 0; // where it begins
};

struct ReadAll {
    std::vector<Line> lines;
    Result result = Result::Line;
    std::size_t pendingSize = 0;
};

ReadAll readAll(const std::string& text, std::size_t maxLength = most) {
    std::istringstream stream(text);
    BlockLines lines(stream, maxLength);
    ReadAll all;
    std::string_view line;
    Line next;
    while ((all.result = lines.next(line)) == Result::Line) {
        EXPECT_EQ(line.data()[line.size()], '\0');
        next.text = line;
        next.hasBackslash = lines.hasBackslash();
        all.lines.push_back(next);
        next.offset = lines.offset();
    }
    all.pendingSize = lines.pendingSize();
    EXPECT_EQ(lines.next(line), all.result) << "stays so";
    return all;
}

} // namespace

TEST(BlockLines, linesComeWithoutTheirEnds) {
    const ReadAll all = readAll("one\n\ntwo\r\n\r\r\n \r \nrest");
    ASSERT_EQ(all.lines.size(), 5U);
    EXPECT_EQ(all.lines[0].text, "one");
    EXPECT_EQ(all.lines[1].text, "");
    EXPECT_EQ(all.lines[2].text, "two");
    EXPECT_EQ(all.lines[3].text, "\r");
    EXPECT_EQ(all.lines[4].text, " \r ");
    EXPECT_EQ(all.result, Result::End);
    EXPECT_EQ(all.pendingSize, 4U);
    EXPECT_EQ(all.lines[3].offset, 10U);
}

TEST(BlockLines, anEmptyStreamHasNone) {
    const ReadAll all = readAll("");
    EXPECT_TRUE(all.lines.empty());
    EXPECT_EQ(all.result, Result::End);
    EXPECT_EQ(all.pendingSize, 0U);
}

TEST(BlockLines, blocksCutLinesAnywhere) {
    // Lines of all lengths around that of a block, so that each of their bytes is cut somewhere.
    std::string text;
    std::vector<std::string> expected;
    for (const std::size_t size : {1U, 7U, 4095U, 65534U, 65535U, 65536U, 65537U, 3U, 99999U}) {
        for (int i = 0; i < 9; ++i) {
            expected.push_back(
                std::string(size + static_cast<std::size_t>(i % 3), static_cast<char>('a' + i)));
            if (i % 4 == 1) {
                expected.back()[size / 2] = '\\';
            }
            text += expected.back() + (i % 2 == 0 ? "\n" : "\r\n");
        }
    }
    const ReadAll all = readAll(text, most + 2);
    ASSERT_EQ(all.lines.size(), expected.size());
    std::uint64_t offset = 0;
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_TRUE(all.lines[i].text == expected[i]) << i;
        EXPECT_EQ(all.lines[i].hasBackslash, i % 9 % 4 == 1) << i;
        EXPECT_EQ(all.lines[i].offset, offset) << i;
        offset += expected[i].size() + (i % 9 % 2 == 0 ? 1 : 2);
    }
    EXPECT_EQ(all.result, Result::End);
    EXPECT_EQ(all.pendingSize, 0U);
}

TEST(BlockLines, aLineHasTheGreatestLengthAtMost) {
    for (const std::size_t limit : {std::size_t{5}, most}) {
        const std::string longest(limit, 'x');
        for (const char* end : {"\n", "\r\n"}) {
            const ReadAll all = readAll("a\n" + longest + end + "b\n", limit);
            EXPECT_EQ(all.lines.size(), 3U);
            EXPECT_EQ(all.result, Result::End);
            const ReadAll longer = readAll("a\n" + longest + "x" + end + "b\n", limit);
            EXPECT_EQ(longer.lines.size(), 1U);
            EXPECT_EQ(longer.result, Result::TooLong);
        }
        EXPECT_EQ(readAll(longest, limit).result, Result::End);
        EXPECT_EQ(readAll(longest + "\r", limit).result, Result::End);
        EXPECT_EQ(readAll(longest + "x", limit).result, Result::TooLong);
    }
}

TEST(BlockLines, aPlaceIsGoneBackTo) {
    std::istringstream stream("a\\\nbc\nd\n");
    BlockLines lines(stream, most);
    std::string_view line;
    ASSERT_EQ(lines.next(line), Result::Line);
    EXPECT_TRUE(lines.hasBackslash());
    const std::uint64_t second = lines.offset();
    while (lines.next(line) == Result::Line) {
    }
    EXPECT_EQ(lines.bytesTaken(), 8U);
    lines.goTo(second);
    ASSERT_EQ(lines.next(line), Result::Line);
    EXPECT_EQ(line, "bc");
    EXPECT_FALSE(lines.hasBackslash());
    lines.goTo(0);
    ASSERT_EQ(lines.next(line), Result::Line);
    EXPECT_EQ(line, "a\\");
    EXPECT_TRUE(lines.hasBackslash());
}
