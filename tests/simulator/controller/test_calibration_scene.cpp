#include "tests/simulator/talk.h"

#include <cmath>
#include <gtest/gtest.h>

using kestrel_simulator::ControllerSetup;
using kestrel_simulator::Pivot;

/// A calibration computes with what the scene shows of the tool while it runs.

namespace {

constexpr double step = 2.0;  // seconds of the step
constexpr double whole = 3.0; // and of the computation behind it

const char* const notSeen = "\"The Measurement Tool was not seen often enough\"";
const char* const notMoved = "\"The Measurement Tool was not moved, the tip cannot be determined\"";

ControllerSetup setup() {
    ControllerSetup setup;
    setup.calibration.stepSeconds = step;
    setup.occlusions = false;
    return setup;
}

void start(Talk& talk, const std::string& tool = "b04") {
    ASSERT_EQ(talk.set("sim calibration_tool " + tool), "ok");
    ASSERT_EQ(talk.act("cal measurementtool start"), "ok");
}

void calibrate(Talk& talk, const std::string& tool = "b04") {
    start(talk, tool);
    talk.wait(whole);
}

double distance(const std::vector<double>& a, const std::vector<double>& b) {
    return std::hypot(a.at(0) - b.at(0), a.at(1) - b.at(1), a.at(2) - b.at(2));
}

// Whether the last result is the truth within what it says of itself.
void expectTruth(Talk& talk, const std::string& tool) {
    ASSERT_EQ(talk.get("status active"), "none") << talk.get("status err");
    const std::vector<double> result = talk.numbers("sim calibration");
    ASSERT_EQ(result.size(), 5U);
    EXPECT_LE(distance(result, talk.numbers("sim tip " + tool)), result[4]);
}

} // namespace

TEST(CalibrationScene, aPinnedToolIsNotMoved) {
    Talk talk(setup());
    EXPECT_EQ(talk.act("sim place tool b04 1 2 3 4 5 6"), "ok");
    calibrate(talk);
    EXPECT_EQ(talk.get("status active"), "err");
    EXPECT_EQ(talk.get("status err"), notMoved);
}

TEST(CalibrationScene, aHiddenToolIsNotSeenOftenEnough) {
    Talk talk(setup());
    talk.act("sim occlude tool b04 yes");
    calibrate(talk);
    EXPECT_EQ(talk.get("status err"), notSeen);
    EXPECT_EQ(talk.act("measurementtool accept_new_calibration"), "err 8");
}

TEST(CalibrationScene, aToolWhoseReferenceIsHiddenIsNotSeenEither) {
    Talk talk(setup());
    talk.act("sim occlude reference b01 yes");
    calibrate(talk, "b01");
    EXPECT_EQ(talk.get("status err"), notSeen);
    talk.act("sim occlude reference b01 no");
    calibrate(talk, "b01");
    expectTruth(talk, "b01");
}

TEST(CalibrationScene, framesThatDoNotComeAreMissing) {
    Talk talk(setup());
    start(talk);
    talk.set("sim sync no");
    talk.wait(step);
    talk.set("sim sync yes");
    talk.wait(1.0);
    EXPECT_EQ(talk.get("status err"), notSeen);
}

TEST(CalibrationScene, aToolThatIsHiddenForAWhileIsCalibratedWithTheRest) {
    Talk talk(setup());
    start(talk);
    talk.act("sim occlude tool b04 yes");
    talk.wait(0.4 * step);
    talk.act("sim occlude tool b04 no");
    talk.wait(whole);
    expectTruth(talk, "b04");
}

TEST(CalibrationScene, everyFrameCountsWhateverTheRate) {
    ControllerSetup slow = setup();
    slow.rate = 9.0; // 18 frames in a step
    Talk talk(slow);
    calibrate(talk);
    EXPECT_EQ(talk.get("status err"), notSeen);
    talk.set("sim rate 20");
    calibrate(talk);
    expectTruth(talk, "b04");
    const double few = talk.numbers("sim calibration")[4];
    talk.set("sim rate 1000");
    calibrate(talk);
    expectTruth(talk, "b04");
    EXPECT_LT(talk.numbers("sim calibration")[4], 0.3 * few) << "fifty times as many poses";
}

TEST(CalibrationScene, aLongRunAtAHighRateIsThinnedOut) {
    ControllerSetup large = setup();
    large.rate = 1000.0;
    large.calibration.stepSeconds = 3600.0;
    Talk talk(large);
    start(talk);
    talk.wait(3601.0);
    expectTruth(talk, "b04");
}

TEST(CalibrationScene, noiseIsThatOfTheMeasurement) {
    Talk talk(setup());
    talk.set("sim noise 0");
    calibrate(talk);
    EXPECT_LT(talk.numbers("sim calibration")[3], 1e-5);
    talk.set("sim noise 0.5");
    calibrate(talk);
    expectTruth(talk, "b04");
    EXPECT_GT(talk.numbers("sim calibration")[3], 0.5);
}

TEST(CalibrationScene, whatWasOrderedForTheToolGoesBeforeTheMotionOfTheCalibration) {
    Talk talk(setup());
    talk.act("sim move tool b04 hold");
    calibrate(talk);
    EXPECT_EQ(talk.get("status err"), notMoved);
    talk.act("sim move tool b04 wander");
    talk.set("sim cal_duration 12"); // several turns about different axes
    calibrate(talk);
    talk.wait(10.0);
    EXPECT_EQ(talk.get("status err").substr(0, 33), "\"The tip was not fixed, residual ");
    talk.act("sim release tool b04");
    talk.set("sim cal_duration 2");
    calibrate(talk);
    expectTruth(talk, "b04");
}

TEST(CalibrationScene, theToolIsSwungAboutItsTipWhileARunLastsAndNoLonger) {
    Talk talk(setup());
    Talk undisturbed(setup());
    for (Talk* each : {&talk, &undisturbed}) {
        each->set("sim tip_used b03 0 0 0");
        each->set("sim tip b03 0 0 0"); // the reported position is that of the tip
    }
    talk.wait(7.0);
    const std::vector<double> before = talk.numbers("sim pose tool b03");
    start(talk, "b03");
    talk.wait(0.3);
    const std::vector<double> during = talk.numbers("sim pose tool b03");
    EXPECT_LT(distance(before, during), 1e-5);
    EXPECT_GT(std::hypot(during[3] - before[3], during[4] - before[4]), 10.0) << "degrees";
    talk.wait(whole);
    undisturbed.wait(7.3 + whole);
    EXPECT_EQ(talk.get("sim pose tool b03"), undisturbed.get("sim pose tool b03"));
}

TEST(CalibrationScene, aRunThatIsStoppedLetsTheToolGo) {
    Talk talk(setup());
    Talk undisturbed(setup());
    start(talk);
    for (Talk* each : {&talk, &undisturbed}) {
        each->wait(0.5);
    }
    EXPECT_NE(talk.get("sim pose tool b04"), undisturbed.get("sim pose tool b04"));
    talk.act("cal measurementtool stop");
    EXPECT_EQ(talk.get("sim pose tool b04"), undisturbed.get("sim pose tool b04"));
}

TEST(CalibrationScene, aTipThatSlipsFarIsNotFixed) {
    ControllerSetup slipping = setup();
    slipping.calibration.pivot = Pivot::Slip;
    Talk talk(slipping);
    calibrate(talk);
    const double usual = talk.numbers("sim calibration")[3];
    EXPECT_EQ(talk.set("sim slip b04 2"), "ok");
    calibrate(talk);
    EXPECT_NEAR(talk.numbers("sim calibration")[3], usual / 2.0, 0.2);
    EXPECT_EQ(talk.set("sim slip b04 20"), "ok");
    calibrate(talk);
    EXPECT_EQ(talk.get("status err").substr(0, 33), "\"The tip was not fixed, residual ");
}
