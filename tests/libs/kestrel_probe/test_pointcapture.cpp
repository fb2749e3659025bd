#include "libs/kestrel_probe/PointCapture.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

using kestrel_probe::CapturedPoint;
using kestrel_probe::PointCapture;
using State = kestrel_probe::PointCapture::State;

namespace {

constexpr double start = 1000.0; // of the samples' clock

// Samples at 100 Hz, begun together with the capture.
class Hand {
public:
    explicit Hand(PointCapture& capture)
        : m_capture(capture) {}

    void at(double x, double y = 0.0, double z = 0.0, int samples = 1) {
        for (int i = 0; i < samples; ++i) {
            m_capture.add({{x, y, z}, now()});
            ++m_frame;
        }
    }
    void skip(double seconds) { m_frame += std::lround(seconds * 100.0); }
    double now() const { return start + static_cast<double>(m_frame) / 100.0; }

private:
    PointCapture& m_capture;
    long m_frame = 0;
};

} // namespace

TEST(PointCapture, isIdleUntilBegun) {
    PointCapture capture;
    capture.add({{1.0, 2.0, 3.0}, start});
    capture.lose();
    capture.wait(start + 10.0);
    EXPECT_EQ(capture.state(), State::Idle);
    EXPECT_EQ(capture.progress(), 0.0);
    EXPECT_FALSE(capture.point().has_value());
}

TEST(PointCapture, summarisesSamplesOfATipHeldStill) {
    PointCapture capture;
    capture.begin(0.03, 1.0, start);
    capture.add({{10.0, 20.0, 5.0}, start + 0.00});
    capture.add({{10.2, 20.0, 5.0}, start + 0.01});
    capture.add({{10.0, 20.4, 5.0}, start + 0.02});
    EXPECT_EQ(capture.state(), State::Holding);
    capture.add({{10.2, 20.4, 5.0}, start + 0.03});
    ASSERT_EQ(capture.state(), State::Captured);
    const CapturedPoint point = *capture.point();
    EXPECT_NEAR(point.mean[0], 10.1, 1e-12);
    EXPECT_NEAR(point.mean[1], 20.2, 1e-12);
    EXPECT_NEAR(point.mean[2], 5.0, 1e-12);
    EXPECT_NEAR(point.deviation[0], std::sqrt(4 * 0.01 / 3), 1e-12);
    EXPECT_NEAR(point.deviation[1], std::sqrt(4 * 0.04 / 3), 1e-12);
    EXPECT_EQ(point.deviation[2], 0.0);
    EXPECT_NEAR(point.greatestDistance, std::hypot(0.1, 0.2), 1e-12);
    EXPECT_EQ(point.samples, 4U);
    EXPECT_NEAR(point.duration, 0.03, 1e-9);
    EXPECT_EQ(capture.restarts(), 0U);
}

TEST(PointCapture, progressIsTheShareOfTheDuration) {
    PointCapture capture;
    Hand hand(capture);
    capture.begin(1.0, 1.0, start);
    EXPECT_EQ(capture.progress(), 0.0);
    hand.at(0, 0, 0, 26);
    EXPECT_NEAR(capture.progress(), 0.25, 1e-9);
    hand.at(0, 0, 0, 75);
    EXPECT_EQ(capture.progress(), 1.0);
    EXPECT_EQ(capture.state(), State::Captured);
    hand.at(50.0); // a point that is captured is not touched any more
    EXPECT_EQ(capture.point()->samples, 101U);
}

TEST(PointCapture, beginsAnewWhenTheTipLeavesTheTolerance) {
    PointCapture capture;
    Hand hand(capture);
    capture.begin(0.5, 0.2, start);
    hand.at(0, 0, 0, 40);
    hand.at(0.3);
    EXPECT_EQ(capture.restarts(), 1U);
    EXPECT_EQ(capture.progress(), 0.0);
    hand.at(0.3, 0, 0, 49);
    EXPECT_EQ(capture.state(), State::Holding);
    hand.at(0.3);
    ASSERT_EQ(capture.state(), State::Captured);
    EXPECT_NEAR(capture.point()->mean[0], 0.3, 1e-12);
    EXPECT_EQ(capture.point()->samples, 51U);
}

TEST(PointCapture, aDistanceOfExactlyTheToleranceIsWithin) {
    PointCapture capture;
    Hand hand(capture);
    capture.begin(0.5, 0.25, start);
    hand.at(0, 0, 0, 20);
    hand.at(0.25);
    EXPECT_EQ(capture.restarts(), 0U);
}

TEST(PointCapture, aSlowDriftIsNoPoint) {
    // Each sample is near the mean of those before, but not all are near the last mean.
    PointCapture capture;
    Hand hand(capture);
    capture.begin(0.5, 1.0, start);
    for (int i = 0; i <= 50; ++i) {
        hand.at(0.036 * i);
    }
    EXPECT_EQ(capture.state(), State::Captured); // 0.9 mm at most from the mean
    capture.begin(0.5, 1.0, hand.now());
    hand.at(0.0);
    hand.at(0.99);
    hand.at(-0.5);
    hand.at(-0.8, 0, 0, 60);
    EXPECT_EQ(capture.state(), State::Holding);
    EXPECT_EQ(capture.restarts(), 1U);
}

TEST(PointCapture, lostTrackingGivesUp) {
    PointCapture capture;
    Hand hand(capture);
    capture.begin(0.5, 0.2, start);
    hand.at(0, 0, 0, 20);
    capture.lose();
    EXPECT_EQ(capture.state(), State::Lost);
    hand.at(0, 0, 0, 100);
    EXPECT_EQ(capture.state(), State::Lost);
    EXPECT_EQ(capture.progress(), 0.0);
    EXPECT_FALSE(capture.point().has_value());
}

TEST(PointCapture, silenceOfASecondGivesUp) {
    PointCapture capture;
    Hand hand(capture);
    capture.begin(0.5, 0.2, start);
    capture.wait(start + 0.99);
    EXPECT_EQ(capture.state(), State::Holding);
    capture.wait(start + 1.0);
    EXPECT_EQ(capture.state(), State::Silent);

    capture.begin(0.5, 0.2, start);
    hand.at(0, 0, 0, 20);
    capture.wait(hand.now() + 0.5);
    EXPECT_EQ(capture.state(), State::Holding);
    capture.wait(hand.now() + 1.0);
    EXPECT_EQ(capture.state(), State::Silent);
}

TEST(PointCapture, aSampleAfterASecondOfSilenceIsTooLate) {
    PointCapture capture;
    Hand hand(capture);
    capture.begin(0.5, 0.2, start);
    hand.at(0, 0, 0, 20);
    hand.skip(1.0);
    hand.at(0);
    EXPECT_EQ(capture.state(), State::Silent);
}

TEST(PointCapture, whatIsNoSampleIsAsIfItHadNotCome) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    PointCapture capture;
    capture.begin(0.1, 0.2, start);
    capture.add({{0, 0, 0}, start});
    capture.add({{nan, 0, 0}, start + 0.01});
    capture.add({{0, nan, 0}, start + 0.02});
    capture.add({{0, 0, nan}, start + 0.03});
    capture.add({{0, 0, 0}, nan});
    capture.add({{9, 0, 0}, start});        // a time that has been
    capture.add({{9, 0, 0}, start - 0.01}); // and an earlier one
    EXPECT_EQ(capture.restarts(), 0U);
    capture.add({{0, 0, 0}, start + 0.1});
    ASSERT_EQ(capture.state(), State::Captured);
    EXPECT_EQ(capture.point()->samples, 2U);
}

TEST(PointCapture, withoutADurationTwoSamplesMakeAPoint) {
    for (const double none : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
        PointCapture capture;
        capture.begin(none, 1.0, start);
        capture.add({{0, 0, 0}, start});
        EXPECT_EQ(capture.state(), State::Holding);
        EXPECT_EQ(capture.progress(), 0.0);
        capture.add({{0.1, 0, 0}, start + 0.01});
        EXPECT_EQ(capture.state(), State::Captured);
    }
}

TEST(PointCapture, withoutAToleranceNothingMayMove) {
    PointCapture capture;
    Hand hand(capture);
    capture.begin(0.1, -1.0, start);
    hand.at(1.0);
    hand.at(1.0000001);
    EXPECT_EQ(capture.restarts(), 1U);
    hand.at(1.0000001, 0, 0, 10);
    EXPECT_EQ(capture.state(), State::Captured);
}

TEST(PointCapture, beginningAgainForgetsWhatWas) {
    PointCapture capture;
    Hand hand(capture);
    capture.begin(0.1, 1.0, start);
    hand.at(7, 7, 7, 11);
    ASSERT_EQ(capture.state(), State::Captured);
    capture.begin(0.1, 1.0, hand.now());
    EXPECT_EQ(capture.state(), State::Holding);
    EXPECT_FALSE(capture.point().has_value());
    hand.at(-7, 0, 0, 11);
    EXPECT_NEAR(capture.point()->mean[0], -7.0, 1e-12);

    capture.begin(0.1, 1.0, hand.now());
    hand.at(0);
    capture.cancel();
    EXPECT_EQ(capture.state(), State::Idle);
    hand.at(0, 0, 0, 50);
    EXPECT_EQ(capture.state(), State::Idle);
}
