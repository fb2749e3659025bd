#include "KestrelParse.h"
#include "tests/libs/kestrel_sdk/lines.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <new>
#include <utility>
#include <vector>

namespace {

long allocations = 0;
bool memoryIsGone = false;

} // namespace

// Not inline: the compiler would see malloc and free behind new and delete and call it a mismatch.
[[gnu::noinline]] void* operator new(std::size_t size) {
    ++allocations;
    void* memory = memoryIsGone ? nullptr : std::malloc(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
    std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace {

const std::vector<std::string>& frame() {
    static const std::vector<std::string> lines = {
        "fr 1",
        "ts 1.5",
        "6dcal 8",
        join("6d 2 [0 1.0]", pose, "[2 1.0]", pose),
        join("6df 1 [0 1.0 3]", pose),
        join("6dmt 1 [0 1.0 3]", pose),
        join("6dmtr 3 1 [2 1.0]", pose),
        "glcal 2",
        join("gl 1 [1 1.0 0 1]", pose, pose, "[1 2 3 4 5 6]"),
        join("6dj 2 1 [1 1][0 1.0][1 2 3 4 5 6]", rotation),
        join("6di 1 [1 1 0.5]", pose),
        join("3d 2 [0 1.0]", position, "[1 1e-3]", position),
        "unknown line",
    };
    return lines;
}

bool parseFrame(KestrelParser& parser, std::vector<std::string>& lines) {
    parser.startFrame();
    bool accepted = true;
    for (std::string& line : lines) {
        char* at = line.data();
        accepted = parser.parseLine(&at) && accepted;
    }
    parser.endFrame();
    return accepted;
}

} // namespace

TEST(Allocations, framesWithUnchangedCountsNeedNone) {
    KestrelParser parser;
    std::vector<std::string> lines = frame();
    const long atStart = allocations;
    ASSERT_TRUE(parseFrame(parser, lines));
    const long before = allocations;
    EXPECT_GT(before, atStart);
    for (int i = 0; i < 100; ++i) {
        parseFrame(parser, lines);
    }
    EXPECT_EQ(allocations, before);
}

TEST(Allocations, theNewFormatsNeedNoneEither) {
    KestrelParser parser;
    std::vector<std::string> lines = {join("6df2 2 1 [0 1.0 8 2]", pose, "[255 0.5 -0.5]"),
                                      join("6dmt2 2 2 [0 1.0 4 0.5]", pose, "[5][1 2 3 4 5 6]",
                                           "[1 1.0 16 0.5]", pose, "[5][1 2 3 4 5 6]")};
    ASSERT_TRUE(parseFrame(parser, lines));
    const long before = allocations;
    for (int i = 0; i < 100; ++i) {
        parseFrame(parser, lines);
    }
    EXPECT_EQ(allocations, before);
}

TEST(Allocations, movingAParserNeedsNoneNorDoItsNextFrames) {
    KestrelParser parser;
    std::vector<std::string> lines = frame();
    ASSERT_TRUE(parseFrame(parser, lines));
    const long before = allocations;
    KestrelParser moved(std::move(parser));
    EXPECT_TRUE(parseFrame(moved, lines));
    parser = std::move(moved);
    EXPECT_TRUE(parseFrame(parser, lines));
    EXPECT_EQ(allocations, before);
}

TEST(Allocations, constTextNeedsNone) {
    KestrelParser parser;
    ASSERT_TRUE(parser.parseLine("6dmtr 3 0"));
    const long before = allocations;
    EXPECT_TRUE(parser.parseLine("6dmtr 3 0"));
    EXPECT_EQ(allocations, before);
}

TEST(Allocations, malformedLinesNeedNone) {
    KestrelParser parser;
    std::vector<std::string> lines = frame();
    parseFrame(parser, lines);
    for (std::string& line : lines) {
        line.resize(line.size() - 1);
    }
    const long before = allocations;
    parseFrame(parser, lines);
    EXPECT_EQ(allocations, before);
}

TEST(Allocations, scannersOfNumbersNeedNone) {
    std::string text = "[1 2.5 0x1p3 1e400 12345678901234567890123456789 1e-5]";
    double values[8] = {};
    int ints[8] = {};
    const long before = allocations;
    EXPECT_NE(KestrelSDK_Parse::string_get_block(text.data(), "iddddd", ints, nullptr, values),
              nullptr);
    EXPECT_EQ(allocations, before);
}

TEST(Allocations, aLineThatFindsNoMemoryIsRejected) {
    KestrelParser parser;
    ASSERT_TRUE(parse(parser, join("6dmtr 2 1 [0 0.5]", pose)).accepted);
    std::vector<std::string> lines = {"6dmtr 60000 0", "6dj 60000 0",
                                      join("6d 1 [60000 1.0]", pose), "3d 60000"};
    memoryIsGone = true;
    std::vector<bool>::size_type rejected = 0;
    for (std::string& line : lines) {
        char* at = line.data();
        rejected += parser.parseLine(&at) ? 0 : 1;
    }
    memoryIsGone = false;
    EXPECT_EQ(rejected, lines.size());
    EXPECT_EQ(parser.getNumMeaRef(), 2);
    EXPECT_EQ(parser.getMeaRef(0)->quality, 0.5);
    EXPECT_EQ(parser.getNumHuman(), 0);
    EXPECT_EQ(parser.getNumBody(), 0);
    EXPECT_EQ(parser.getNumMarker(), 0);
}
