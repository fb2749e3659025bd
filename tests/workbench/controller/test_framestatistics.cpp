#include "workbench/controller/framestatistics.h"

#include <gtest/gtest.h>
#include <vector>

using kestrel_wire::FrameGaps;
using workbench::FrameStatistics;
using Clock = FrameStatistics::Clock;

namespace {

constexpr auto frameInterval = std::chrono::milliseconds(20);

TEST(FrameStatistics, theCounterIsReadFromTheFrLineAlone) {
    EXPECT_EQ(FrameStatistics::frameCounter("fr 0"), 0);
    EXPECT_EQ(FrameStatistics::frameCounter("fr 4294967295"), 4294967295);
    for (const char* line : {"", "fr", "fr ", "fr x", "fra 1", "ts 1.5", "6d 0", " fr 1"}) {
        EXPECT_EQ(FrameStatistics::frameCounter(line), -1) << line;
    }
}

TEST(FrameStatistics, beforeTheFirstFrameThereIsNoAge) {
    FrameStatistics statistics;
    EXPECT_LT(statistics.snapshot().lastFrameAge, 0.0);
    EXPECT_EQ(statistics.snapshot().frames, 0U);
}

TEST(FrameStatistics, theRateIsThatOfTheLastSecond) {
    FrameStatistics statistics;
    Clock::time_point now = Clock::now();
    for (int i = 0; i < 100; ++i) {
        statistics.addFrame(i, now);
        now += frameInterval;
    }
    EXPECT_NEAR(statistics.snapshot(now).framesPerSecond, 50.0, 0.5);
    now += std::chrono::seconds(2);
    EXPECT_NEAR(statistics.snapshot(now).framesPerSecond, 0.0, 1e-9);
    EXPECT_NEAR(statistics.snapshot(now).lastFrameAge, 2.02, 1e-6);
}

TEST(FrameStatistics, gapsAreLossesAndNewBeginningsAreNot) {
    FrameStatistics statistics;
    for (const int counter : {5, 6, 9, 10, 1, 2, 4}) {
        statistics.addFrame(counter);
    }
    EXPECT_EQ(statistics.snapshot().lostFrames, 3U);
    statistics.addFrame(2000000000);
    EXPECT_EQ(statistics.snapshot().lostFrames, 3U + 1999999995U);
    statistics.addFrame(-1); // a frame without a counter
    EXPECT_EQ(statistics.snapshot().frames, 9U);
}

struct Sequence {
    const char* name;
    std::vector<std::uint32_t> counters;
    std::uint64_t lost;
};

class FrameGapsOf : public testing::TestWithParam<Sequence> {};

TEST_P(FrameGapsOf, aSequence) {
    FrameGaps gaps;
    for (const std::uint32_t counter : GetParam().counters) {
        gaps.add(counter);
    }
    EXPECT_EQ(gaps.lost(), GetParam().lost);
}

constexpr std::uint32_t last = 4294967295;

INSTANTIATE_TEST_SUITE_P(
    Counters, FrameGapsOf,
    testing::Values(
        Sequence{"none", {}, 0}, Sequence{"beginsAnywhere", {70000}, 0},
        Sequence{"inOrder", {1, 2, 3}, 0}, Sequence{"swapped", {1, 3, 2, 4}, 0},
        Sequence{"turnedAround", {1, 5, 4, 3, 2, 6}, 0}, Sequence{"lateAndLost", {1, 5, 3, 6}, 2},
        Sequence{"veryLate", {1, 1001, 500, 1002}, 998},
        Sequence{"wrap", {last - 1, last, 0, 1}, 0}, Sequence{"wrapWithGap", {last - 1, 2}, 3},
        Sequence{"swappedAtTheWrap", {last - 1, 0, last, 1}, 0},
        Sequence{"swappedBehindTheWrap", {last, 1, 0, 2}, 0},
        Sequence{"largeGap", {1, 100003}, 100001}, Sequence{"hugeGap", {0, 3000000000}, 2999999999},
        Sequence{"twice", {1, 2, 2, 3}, 0}, Sequence{"twiceLater", {1, 2, 3, 2, 4}, 0},
        Sequence{"twiceAfterItCameLate", {1, 3, 2, 2, 4}, 0},
        Sequence{"anew", {5000, 5001, 1, 2, 3}, 0}, Sequence{"anewNearby", {10, 11, 1, 2, 4}, 1},
        Sequence{"anewWithTheSameFirst", {1, 2, 1, 2, 3, 5}, 1},
        Sequence{"anewFarFromTheEnd", {3000000000, 1, 2, 4}, 1},
        Sequence{"anewForgetsWhatWasMissing", {5000, 5003, 1, 2, 5001}, 2 + 4998}),
    [](const auto& sequence) { return sequence.param.name; });

TEST(FrameStatistics, unreadableLinesAndForeignDatagramsAreCounted) {
    FrameStatistics statistics;
    statistics.addFrame(1);
    statistics.addRejectedLine(10);
    statistics.addRejectedLine(30);
    statistics.addRejectedLine(20);
    statistics.addForeign();
    EXPECT_EQ(statistics.snapshot().rejectedLines, 3U);
    EXPECT_EQ(statistics.snapshot().longestRejected, 30U);
    EXPECT_EQ(statistics.snapshot().foreign, 1U);
    statistics.reset();
    EXPECT_EQ(statistics.snapshot().rejectedLines, 0U);
    EXPECT_EQ(statistics.snapshot().frames, 0U);
}

} // namespace
