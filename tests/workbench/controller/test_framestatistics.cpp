#include "workbench/controller/framestatistics.h"

#include <gtest/gtest.h>

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
        statistics.addFrame(i, 0, now);
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
        statistics.addFrame(counter, 0);
    }
    EXPECT_EQ(statistics.snapshot().lostFrames, 3U);
    statistics.addFrame(2000000000, 0); // no controller loses that many
    EXPECT_EQ(statistics.snapshot().lostFrames, 3U);
    statistics.addFrame(-1, 0); // a frame without a counter
    EXPECT_EQ(statistics.snapshot().frames, 9U);
}

TEST(FrameStatistics, unreadableLinesAndForeignDatagramsAreCounted) {
    FrameStatistics statistics;
    statistics.addFrame(1, 2);
    statistics.addFrame(2, 1);
    statistics.addForeign();
    EXPECT_EQ(statistics.snapshot().rejectedLines, 3U);
    EXPECT_EQ(statistics.snapshot().foreign, 1U);
    statistics.reset();
    EXPECT_EQ(statistics.snapshot().rejectedLines, 0U);
    EXPECT_EQ(statistics.snapshot().frames, 0U);
}

} // namespace
