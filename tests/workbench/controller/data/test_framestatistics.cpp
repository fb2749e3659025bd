#include "workbench/controller/data/framestatistics.h"

#include <cmath>
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

TEST(FrameStatistics, aCounterThatGoesElsewhereIsNoLossWhenItIsKnownTo) {
    FrameStatistics statistics;
    statistics.setMeasuring(true);
    Clock::time_point now = Clock::now();
    for (const int counter : {1, 2, 4, 900, 901, 903}) {
        if (counter == 900) {
            EXPECT_EQ(statistics.snapshot(now).lostFrames, 1U);
            statistics.beginNewSequence();
            EXPECT_EQ(statistics.snapshot(now).lostFrames, 0U);
        }
        now += frameInterval;
        statistics.addFrame(counter, now);
    }
    const auto counts = statistics.snapshot(now);
    EXPECT_EQ(counts.frames, 6U) << "they have come";
    EXPECT_EQ(counts.lostFrames, 1U) << "902";
    EXPECT_NEAR(counts.lastFrameAge, 0.0, 1e-9);
}

// What the statistics say so long after `frames` frames of `interval`, every other one lost.
FrameStatistics::Snapshot silence(int frames, double seconds, bool measuring) {
    FrameStatistics statistics;
    statistics.setMeasuring(measuring);
    Clock::time_point now = Clock::now();
    for (int i = 0; i < frames; ++i) {
        now += frameInterval;
        statistics.addFrame(2 * i, now);
    }
    return statistics.snapshot(now + std::chrono::microseconds(std::llround(seconds * 1e6)));
}

TEST(FrameStatistics, aSilenceWithinAMeasurementIsALossWhileItLasts) {
    constexpr int frames = 200;
    constexpr double rate = 100.0; // of the controller
    EXPECT_EQ(silence(frames, 0.4, true).lostFrames, frames - 1U);
    EXPECT_FALSE(silence(frames, 0.4, true).lossIsEstimated);
    for (const double seconds : {0.6, 3.0, 30.0, 86400.0}) {
        const auto counts = silence(frames, seconds, true);
        EXPECT_NEAR(static_cast<double>(counts.lostFrames), frames - 1 + seconds * rate,
                    1.0 + seconds * rate * 0.01);
        EXPECT_TRUE(counts.lossIsEstimated);
    }
}

TEST(FrameStatistics, aShortMeasurementHasARateToo) {
    EXPECT_NEAR(static_cast<double>(silence(20, 10.0, true).lostFrames), 19 + 1000, 1.0);
    EXPECT_EQ(silence(1, 10.0, true).lostFrames, 0U); // nobody knows how many
    EXPECT_EQ(silence(0, 10.0, true).lostFrames, 0U);
}

TEST(FrameStatistics, whereNothingIsMeasuredNothingIsLost) {
    EXPECT_EQ(silence(200, 30.0, false).lostFrames, 199U);
    EXPECT_FALSE(silence(200, 30.0, false).lossIsEstimated);
}

TEST(FrameStatistics, theNextFrameTellsWhatWasLost) {
    FrameStatistics statistics;
    statistics.setMeasuring(true);
    Clock::time_point now = Clock::now();
    int counter = 0;
    for (; counter < 200; ++counter) {
        now += frameInterval;
        statistics.addFrame(counter, now);
    }
    now += std::chrono::seconds(10);
    EXPECT_NEAR(static_cast<double>(statistics.snapshot(now).lostFrames), 500.0, 5.0);
    statistics.addFrame(counter + 321, now);
    EXPECT_EQ(statistics.snapshot(now).lostFrames, 321U);
    EXPECT_FALSE(statistics.snapshot(now).lossIsEstimated);
    // The silence is no part of the rate that the next one is estimated from.
    for (int i = 0; i < 100; ++i) {
        now += frameInterval;
        statistics.addFrame(++counter + 321, now);
    }
    now += std::chrono::seconds(10);
    EXPECT_NEAR(static_cast<double>(statistics.snapshot(now).lostFrames), 321.0 + 500.0, 5.0);
}

TEST(FrameStatistics, aSingleSilenceIsNotTheUsualInterval) {
    FrameStatistics statistics;
    Clock::time_point now = Clock::now();
    const auto usualAfter = [&](double seconds) {
        now += std::chrono::milliseconds(std::llround(seconds * 1000.0));
        statistics.addFrame(-1, now);
        return statistics.snapshot(now).usualInterval;
    };
    EXPECT_EQ(usualAfter(1.0), 0.0);
    EXPECT_EQ(usualAfter(30.0), 0.0);
    EXPECT_NEAR(usualAfter(1.0), 1.0, 1e-6);
    EXPECT_NEAR(usualAfter(1.0), 1.0, 1e-6);
    EXPECT_NEAR(usualAfter(60.0), 1.0, 1e-6);
    EXPECT_NEAR(usualAfter(0.02), 0.02, 1e-6);
    statistics.reset();
    EXPECT_EQ(usualAfter(1.0), 0.0);
    EXPECT_EQ(usualAfter(1.0), 0.0);
}

TEST(FrameStatistics, aFrameThatCannotBeReadIsNoSignOfLife) {
    FrameStatistics statistics;
    const Clock::time_point start = Clock::now();
    statistics.addFrame(1, start);
    statistics.addUnreadableFrame();
    const auto counts = statistics.snapshot(start + std::chrono::seconds(1));
    EXPECT_EQ(counts.frames, 1U);
    EXPECT_EQ(counts.unreadable, 1U);
    EXPECT_NEAR(counts.lastFrameAge, 1.0, 1e-6);
    statistics.reset();
    EXPECT_EQ(statistics.snapshot().unreadable, 0U);
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
