#include "KestrelParse.h"

#include <array>
#include <gtest/gtest.h>
#include <string>

using namespace KestrelSDK_Parse;

namespace {

/// The text from `at` on, "<null>" for a null pointer.
std::string restAt(const char* at) {
    return at == nullptr ? "<null>" : at;
}

template <class Number>
struct Read {
    Number value;
    std::string rest;
};

Read<int> readInt(std::string text) {
    int value = 77;
    const char* end = string_get_i(text.data(), &value);
    return {value, restAt(end)};
}

Read<unsigned int> readUnsigned(std::string text) {
    unsigned int value = 77;
    const char* end = string_get_ui(text.data(), &value);
    return {value, restAt(end)};
}

Read<double> readDouble(std::string text) {
    double value = 77;
    const char* end = string_get_d(text.data(), &value);
    return {value, restAt(end)};
}

} // namespace

TEST(Integers, aPrefixTellsTheBase) {
    EXPECT_EQ(readInt("010").value, 8);
    EXPECT_EQ(readInt("0x1F").value, 31);
    EXPECT_EQ(readInt("10").value, 10);
    EXPECT_EQ(readUnsigned("010").value, 8U);
    EXPECT_EQ(readUnsigned("0x1f").value, 31U);
}

TEST(Integers, leadingWhiteSpaceIsSkipped) {
    const Read<int> read = readInt("  -7x");
    EXPECT_EQ(read.value, -7);
    EXPECT_EQ(read.rest, "x");
    EXPECT_EQ(readInt(" \t\n\v\f\r+5").value, 5);
}

TEST(Integers, nothingReadStoresZeroAndReturnsNull) {
    const Read<int> read = readInt("abc");
    EXPECT_EQ(read.value, 0);
    EXPECT_EQ(read.rest, "<null>");
    EXPECT_EQ(readUnsigned("").value, 0U);
    EXPECT_EQ(readUnsigned("-").rest, "<null>");
}

TEST(Integers, theFirstCharacterThatCannotContinueEndsTheNumber) {
    const Read<int> read = readInt("12]");
    EXPECT_EQ(read.value, 12);
    EXPECT_EQ(read.rest, "]");
    EXPECT_EQ(readInt("089").value, 0);
    EXPECT_EQ(readInt("089").rest, "89");
}

TEST(Integers, anIncompleteHexadecimalPrefixIsAZero) {
    const Read<int> read = readInt("0xg");
    EXPECT_EQ(read.value, 0);
    EXPECT_EQ(read.rest, "xg");
}

TEST(Reals, readAsMuchAsANumberCanBe) {
    EXPECT_EQ(readDouble("12]").rest, "]");
    EXPECT_EQ(readDouble(" -1.25e2 3").value, -125.0);
    EXPECT_EQ(readDouble(" -1.25e2 3").rest, " 3");
    EXPECT_EQ(readDouble("1e").rest, "e");
    EXPECT_EQ(readDouble("0x1.8p1").value, 3.0);
    EXPECT_EQ(readDouble("infinity]").rest, "]");
}

TEST(Reals, nothingReadStoresZeroAndReturnsNull) {
    for (const char* text : {"", "abc", ".", "-", "e5", "[1", "  "}) {
        EXPECT_EQ(readDouble(text).value, 0.0) << text;
        EXPECT_EQ(readDouble(text).rest, "<null>") << text;
    }
}

TEST(Reals, floatsAreNarrowedDoubles) {
    std::string text = "0.1 1e300 x";
    float value = 0;
    char* end = string_get_f(text.data(), &value);
    EXPECT_EQ(value, static_cast<float>(0.1));
    end = string_get_f(end, &value);
    EXPECT_EQ(value, std::numeric_limits<float>::infinity());
    EXPECT_EQ(string_get_f(end, &value), nullptr);
    EXPECT_EQ(value, 0.0F);
}

TEST(Words, aBlankEndsAWord) {
    std::string text = "  one two";
    std::string word;
    const char* end = string_get_word(text.data(), word);
    EXPECT_EQ(word, "one");
    EXPECT_EQ(restAt(end), " two");
}

TEST(Words, theLastWordEndsAtTheNul) {
    std::string text = " two\t2";
    std::string word;
    const char* end = string_get_word(text.data(), word);
    EXPECT_EQ(word, "two\t2");
    EXPECT_EQ(end, text.data() + text.size());
}

TEST(Words, blanksAloneHoldNoWord) {
    std::string word;
    for (std::string text : {"   ", ""}) {
        EXPECT_EQ(string_get_word(text.data(), word), nullptr);
    }
}

TEST(QuotedTexts, areWhatStandsBetweenTheNextTwoQuotes) {
    std::string text = "a \"b c\" \"\"x";
    std::string quoted;
    char* end = string_get_quoted_text(text.data(), quoted);
    EXPECT_EQ(quoted, "b c");
    EXPECT_EQ(restAt(end), " \"\"x");
    end = string_get_quoted_text(end, quoted);
    EXPECT_EQ(quoted, "");
    EXPECT_EQ(restAt(end), "x");
}

TEST(QuotedTexts, needBothQuotes) {
    std::string quoted = "before";
    for (std::string text : {"none", "\"one"}) {
        EXPECT_EQ(string_get_quoted_text(text.data(), quoted), nullptr);
        EXPECT_EQ(quoted, "before");
    }
}

namespace {

std::string nextLine(std::string buffer, int start = 0) {
    return restAt(
        string_nextline(buffer.data(), buffer.data() + start, static_cast<int>(buffer.size())));
}

} // namespace

TEST(NextLine, skipsTheRestOfTheLineAndARunOfLineBreaks) {
    EXPECT_EQ(nextLine("a\r\n\r\nb"), "b");
    EXPECT_EQ(nextLine("a\nb\nc", 2), "c");
    EXPECT_EQ(nextLine("\n\rb"), "b");
}

TEST(NextLine, isNullAtTheEnd) {
    EXPECT_EQ(nextLine("a\n"), "<null>");
    EXPECT_EQ(nextLine("a"), "<null>");
    EXPECT_EQ(nextLine(""), "<null>");
    EXPECT_EQ(nextLine("a\nb", 3), "<null>");
    EXPECT_EQ(nextLine(std::string("a\n\0b", 4)), "<null>");
}

TEST(NextLine, neverLooksBehindTheBuffer) {
    std::string buffer = "a\nb";
    EXPECT_EQ(string_nextline(buffer.data(), buffer.data(), 2), nullptr);
    EXPECT_EQ(string_nextline(buffer.data(), buffer.data(), 1), nullptr);
    EXPECT_EQ(string_nextline(buffer.data(), buffer.data() + 3, 2), nullptr);
}

TEST(NextLine, isNullForAStartBeforeTheBuffer) {
    std::string text = "a\nb\nc";
    EXPECT_EQ(string_nextline(text.data() + 2, text.data(), 3), nullptr);
}

namespace {

std::string valueBehind(std::string text, const char* parameter) {
    return restAt(string_cmp_parameter(text.data(), parameter));
}

} // namespace

TEST(Parameters, theValueStandsBehindTheName) {
    EXPECT_EQ(valueBehind("status active 1", "status active"), "1");
    EXPECT_EQ(valueBehind("status active   1", "status active"), "1");
    EXPECT_EQ(valueBehind("status active=1", "status active"), "1");
}

TEST(Parameters, leadingZerosOfNumbersDoNotCount) {
    EXPECT_EQ(valueBehind("b1 x", "b01"), "x");
    EXPECT_EQ(valueBehind("b001 x", "b01"), "x");
    EXPECT_EQ(valueBehind("b01 x", "b1"), "x");
    EXPECT_EQ(valueBehind("007 x", "7"), "x");
    EXPECT_EQ(valueBehind("b000 x", "b0"), "x");
}

TEST(Parameters, zerosInsideANumberCount) {
    EXPECT_EQ(valueBehind("b101 x", "b11"), "<null>");
    EXPECT_EQ(valueBehind("b100 x", "b100"), "x");
    EXPECT_EQ(valueBehind("b10 x", "b100"), "<null>");
}

TEST(Parameters, oneBlankMeetsAnyNumberOfBlanks) {
    EXPECT_EQ(valueBehind("a    b x", "a b"), "x");
    EXPECT_EQ(valueBehind("a b x", "a    b"), "x");
    EXPECT_EQ(valueBehind("ab x", "a b"), "<null>");
    EXPECT_EQ(valueBehind("a b x", "ab"), "<null>");
}

TEST(Parameters, anyOtherDifferenceIsAMismatch) {
    EXPECT_EQ(valueBehind("Status 1", "status"), "<null>");
    EXPECT_EQ(valueBehind("stat", "status"), "<null>");
    EXPECT_EQ(valueBehind("", "status"), "<null>");
}

TEST(Parameters, aNameWithoutAValueEndsAtTheNul) {
    EXPECT_EQ(valueBehind("status", "status"), "");
    EXPECT_EQ(valueBehind("status ", "status"), "");
}
