#include "tests/simulator/talk.h"

#include <cmath>
#include <gtest/gtest.h>

using kestrel_simulator::ControllerSetup;
using kestrel_simulator::Pivot;

namespace {

constexpr double step = 2.0; // seconds of a calibration step

ControllerSetup withPivot(Pivot pivot = Pivot::Cone) {
    ControllerSetup setup;
    setup.calibration.stepSeconds = step;
    setup.calibration.pivot = pivot;
    return setup;
}

void runToItsEnd(Talk& talk) {
    ASSERT_EQ(talk.act("cal measurementtool start"), "ok");
    talk.wait(step + 1.0);
}

// A controller whose first calibration has just ended.
struct AfterCalibration : Talk {
    explicit AfterCalibration(Pivot pivot = Pivot::Cone)
        : Talk(withPivot(pivot)) {
        runToItsEnd(*this);
    }
};

// What a client that polls sees of a calibration.
std::string status(Talk& talk) {
    std::string seen;
    for (const char* parameter : {"active", "step_active", "progress", "step_progress"}) {
        seen += (seen.empty() ? "" : ", ") + talk.get(std::string("status ") + parameter);
    }
    return seen;
}

std::string accept(Talk& talk) {
    return talk.act("measurementtool accept_new_calibration");
}

double distance(const std::vector<double>& a, const std::vector<double>& b) {
    return std::hypot(a.at(0) - b.at(0), a.at(1) - b.at(1), a.at(2) - b.at(2));
}

} // namespace

TEST(Calibration, describesItsTypes) {
    Talk talk;
    EXPECT_EQ(talk.get("cal available measurementtool"), "yes");
    EXPECT_EQ(talk.get("cal type_desc measurementtool"), "\"Measurement Tool tip calibration\"");
    EXPECT_EQ(talk.get("cal number_of_steps measurementtool"), "1");
    EXPECT_EQ(talk.say("get cal step_pause measurementtool s01"),
              "kestrel2 set cal step_pause measurementtool s01 yes 5");
    EXPECT_EQ(talk.get("cal step_desc measurementtool s01"), "\"Pivot the tool about its tip\"");
    EXPECT_EQ(talk.get("cal step_duration measurementtool s01"), "6");
    EXPECT_EQ(talk.get("cal step_desc measurementtool s02"), "err 5");
    EXPECT_EQ(talk.get("cal number_of_steps volume"), "2");
    EXPECT_EQ(talk.get("cal type_desc volume"), "\"Volume calibration\"");
    EXPECT_EQ(talk.say("get cal step_pause volume s02"),
              "kestrel2 set cal step_pause volume s02 yes 5");
    EXPECT_EQ(talk.get("cal step_desc volume s02"), "\"Move the bar through the whole volume\"");
    EXPECT_EQ(talk.get("cal step_desc volume s03"), "err 5");
    EXPECT_EQ(talk.get("cal type_desc nonsense"), "err 5");
    EXPECT_EQ(talk.act("cal nonsense start"), "err 5");
    EXPECT_EQ(talk.act("cal nonsense stop"), "err 5");
}

TEST(Calibration, mayHaveNoPause) {
    ControllerSetup setup;
    setup.calibration.pauseSeconds = 0;
    Talk talk(setup);
    EXPECT_EQ(talk.get("cal step_pause measurementtool s01"), "no");
}

TEST(Calibration, ofOneStepGoesThroughItsStates) {
    Talk talk(withPivot());
    EXPECT_EQ(talk.get("status active"), "none");
    EXPECT_EQ(talk.get("status step_active"), "none");
    EXPECT_EQ(talk.act("cal measurementtool start"), "ok");
    EXPECT_EQ(status(talk), "cal, cal 1, 0.000, 1 0.000");
    talk.wait(0.5);
    EXPECT_EQ(status(talk), "cal, cal 1, 0.250, 1 0.250");
    talk.wait(1.5);
    EXPECT_EQ(status(talk), "cal, cal 1, 1.000, 1 1.000") << "the result is being computed";
    talk.wait(0.6);
    EXPECT_EQ(talk.get("status active"), "none");
    EXPECT_EQ(talk.get("status step_active"), "none");
    EXPECT_EQ(talk.get("status err"), "\"\"");
}

TEST(Calibration, ofTwoStepsWaitsForItsSecondStep) {
    Talk talk(withPivot());
    EXPECT_EQ(talk.act("cal volume start_step s02"), "err 8");
    EXPECT_EQ(talk.act("cal volume start"), "ok");
    EXPECT_EQ(status(talk), "cal, cal 1, 0.000, 1 0.000");
    talk.wait(1.0);
    EXPECT_EQ(status(talk), "cal, cal 1, 0.250, 1 0.500");
    for (const double seconds : {1.0, 10.0}) {
        talk.wait(seconds);
        EXPECT_EQ(status(talk), "cal, pause 2, 0.500, 1 1.000");
    }
    EXPECT_EQ(talk.act("cal volume start_step s01"), "err 8");
    EXPECT_EQ(talk.act("cal measurementtool start_step s02"), "err 8");
    EXPECT_EQ(talk.act("cal volume start_step s02"), "ok");
    talk.wait(1.0);
    EXPECT_EQ(status(talk), "cal, cal 2, 0.750, 2 0.500");
    talk.wait(1.0);
    EXPECT_EQ(status(talk), "cal, cal 2, 1.000, 2 1.000");
    talk.wait(0.6);
    EXPECT_EQ(talk.get("status step_active"), "none");
    EXPECT_EQ(talk.get("status active"), "none");
}

TEST(Calibration, waitsForItsSecondStepAsLongAsItsAnnouncedPauseAndAMinute) {
    for (const int pause : {5, 3600}) {
        Talk talk(withPivot());
        EXPECT_EQ(talk.set("sim cal_pause " + std::to_string(pause)), "ok");
        talk.act("cal volume start");
        talk.wait(step + pause + 59.0);
        EXPECT_EQ(talk.get("status step_active"), "pause 2") << pause;
        talk.wait(2.0);
        EXPECT_EQ(talk.get("status step_active"), "err") << pause;
        EXPECT_EQ(talk.get("status err"), "\"The second step was not started in time\"");
    }
}

TEST(Calibration, pausesForFiveSecondsUnlessToldOtherwise) {
    Talk talk;
    EXPECT_EQ(talk.get("sim cal_pause"), "5");
    EXPECT_EQ(talk.set("sim cal_pause 3601"), "err 4");
    EXPECT_EQ(talk.set("sim cal_pause 3600"), "ok");
    EXPECT_EQ(talk.get("sim cal_pause"), "3600");
}

TEST(Calibration, withoutAPauseGoesOnWithItsSecondStepByItself) {
    ControllerSetup setup = withPivot();
    setup.calibration.pauseSeconds = 0;
    Talk talk(setup);
    EXPECT_EQ(talk.get("cal step_pause volume s02"), "no");
    EXPECT_EQ(talk.act("cal volume start"), "ok");
    talk.wait(step - 0.2);
    EXPECT_EQ(status(talk), "cal, cal 1, 0.450, 1 0.900");
    talk.wait(0.4);
    EXPECT_EQ(status(talk), "cal, cal 2, 0.550, 2 0.100");
    EXPECT_EQ(talk.act("cal volume start_step s02"), "err 8");
    talk.wait(step);
    EXPECT_EQ(status(talk), "cal, cal 2, 1.000, 2 1.000");
    talk.wait(0.5);
    EXPECT_EQ(talk.get("status active"), "none");
    EXPECT_EQ(talk.act("cal volume start"), "ok");
    talk.wait(100.0);
    EXPECT_EQ(talk.get("status active"), "none") << "nobody asked in between";
}

TEST(Calibration, computesLongEnoughToBeSeenHoweverShortItsStep) {
    ControllerSetup setup = withPivot();
    setup.calibration.stepSeconds = 0.05;
    setup.rate = 1000.0;
    Talk talk(setup);
    talk.act("cal measurementtool start");
    int seen = 0;
    for (int poll = 0; poll < 20; ++poll) {
        talk.wait(0.2);
        seen +=
            talk.get("status active") == "cal" && talk.get("status progress") == "1.000" ? 1 : 0;
    }
    EXPECT_GE(seen, 2);
    EXPECT_EQ(talk.get("status active"), "none");
}

TEST(Calibration, canPauseBeforeItsFirstStep) {
    Talk talk(withPivot());
    EXPECT_EQ(talk.set("sim cal_initial_pause 3"), "ok");
    EXPECT_EQ(talk.act("cal volume start"), "ok");
    EXPECT_EQ(talk.get("status step_active"), "pause 1");
    talk.wait(3.5);
    EXPECT_EQ(talk.get("status step_active"), "cal 1");
    EXPECT_EQ(talk.get("status step_progress"), "1 0.250");
}

TEST(Calibration, doesNotStartInTheWrongState) {
    Talk talk;
    talk.act("tracking start");
    EXPECT_EQ(talk.act("cal measurementtool start"), "err 8");
    talk.act("tracking stop");
    talk.set("sim sync no");
    EXPECT_EQ(talk.act("cal measurementtool start"), "err 8");
    talk.set("sim sync yes");
    talk.set("sim cal_available no");
    EXPECT_EQ(talk.act("cal measurementtool start"), "err 8");
    talk.set("sim cal_available yes");
    EXPECT_EQ(talk.act("cal measurementtool start"), "ok");
    EXPECT_EQ(talk.act("cal measurementtool start"), "err 8");
    EXPECT_EQ(talk.act("cal volume stop"), "err 8");
    EXPECT_EQ(talk.act("tracking start"), "err 8");
    EXPECT_EQ(talk.set("measurementtool number_of_tools 1"), "err 8");
    EXPECT_EQ(accept(talk), "err 8");
}

TEST(Calibration, hasAResultThatAgreesWithTheTruthWithinItsUncertainty) {
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
        ControllerSetup setup = withPivot();
        setup.seed = seed;
        Talk talk(setup);
        runToItsEnd(talk);
        ASSERT_EQ(talk.get("status active"), "none");
        EXPECT_EQ(talk.get("measurementtool calibration_body_id"), "b04");
        const std::vector<double> result = talk.numbers("sim calibration");
        ASSERT_EQ(result.size(), 5U);
        EXPECT_LE(distance(result, talk.numbers("sim tip b04")), result[4]);
        EXPECT_NEAR(talk.numbers("measurementtool calibration_tip_residual")[0], result[3], 1e-4);
        EXPECT_GT(result[3], 0.05);
        EXPECT_LT(result[3], 0.5);
    }
}

TEST(Calibration, movesTheTipInTheDataByWhatWasComputedOnAcceptance) {
    Talk talk(withPivot());
    talk.set("sim noise 0");
    talk.set("sim calibration_tool b01");
    const std::vector<double> old = talk.numbers("sim tip_used b01");
    runToItsEnd(talk);
    EXPECT_EQ(talk.numbers("sim tip_used b01"), old);
    talk.act("sim place tool b01 100 200 300 0 0 0");
    EXPECT_EQ(accept(talk), "ok");
    const std::vector<double> now = talk.numbers("sim tip_used b01");
    EXPECT_LT(distance(now, talk.numbers("sim tip b01")), 1e-5);
    const std::vector<double> pose = talk.numbers("sim pose tool b01");
    EXPECT_GT(distance(pose, {100, 200, 300}), 0.5);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_NEAR(pose[i] - 100.0 * static_cast<double>(i + 1), now[i] - old[i], 1e-5);
    }
    talk.set("output active chmon 6dmt2 yes");
    talk.act("tracking start");
    const std::string expected = "[" + kestrel_simulator::text::fixed(pose[0], 3) + " ";
    EXPECT_NE(talk.nextLine("6dmt2").find(expected), std::string::npos);
}

TEST(Calibration, calibratesATipThatWasNot) {
    Talk talk(withPivot());
    EXPECT_EQ(talk.get("measurementtool tip_calibrated b04"), "no");
    runToItsEnd(talk);
    EXPECT_EQ(talk.get("measurementtool tip_calibrated b04"), "no");
    EXPECT_EQ(accept(talk), "ok");
    EXPECT_EQ(talk.get("measurementtool tip_calibrated b04"), "yes");
}

TEST(Calibration, canBeAcceptedOnce) {
    Talk talk(withPivot());
    EXPECT_EQ(accept(talk), "err 8");
    EXPECT_EQ(talk.get("measurementtool calibration_body_id"), "err 8");
    EXPECT_EQ(talk.get("measurementtool calibration_tip_residual"), "err 8");
    runToItsEnd(talk);
    EXPECT_EQ(accept(talk), "ok");
    EXPECT_EQ(accept(talk), "err 8");
    EXPECT_EQ(talk.get("measurementtool calibration_body_id"), "b04");
}

TEST(Calibration, thatIsStoppedChangesNothing) {
    for (const double when : {0.0, 1.0, step, step + 0.1, step + 1.0}) {
        Talk talk(withPivot());
        const std::vector<double> old = talk.numbers("sim tip_used b04");
        talk.act("cal measurementtool start");
        talk.wait(when);
        EXPECT_EQ(talk.act("cal measurementtool stop"), "ok");
        EXPECT_EQ(talk.get("status active"), "none");
        talk.wait(10.0);
        EXPECT_EQ(talk.get("status active"), "none");
        EXPECT_EQ(accept(talk), "err 8") << when;
        EXPECT_EQ(talk.numbers("sim tip_used b04"), old);
        EXPECT_EQ(talk.get("measurementtool tip_calibrated b04"), "no");
    }
}

TEST(Calibration, aNewStartDiscardsAResultThatWasNotAccepted) {
    AfterCalibration talk;
    talk.act("cal measurementtool start");
    EXPECT_EQ(talk.act("cal measurementtool stop"), "ok");
    EXPECT_EQ(accept(talk), "err 8");
}

TEST(Calibration, aLockedConfigurationRefusesTheAcceptance) {
    AfterCalibration talk;
    talk.act("sim lock yes");
    EXPECT_EQ(accept(talk), "err 7");
    EXPECT_EQ(talk.get("measurementtool tip_calibrated b04"), "no");
}

namespace {

struct BadMotion {
    Pivot pivot;
    const char* reason;
};

class MotionThatDoesNotDetermineTheTip : public testing::TestWithParam<BadMotion> {};

} // namespace

TEST_P(MotionThatDoesNotDetermineTheTip, failsWithAReasonThatSaysSo) {
    AfterCalibration talk(GetParam().pivot);
    EXPECT_EQ(talk.get("status active"), "err");
    EXPECT_EQ(talk.get("status step_active"), "err");
    EXPECT_EQ(talk.say("get status err"),
              std::string("kestrel2 set status err \"") + GetParam().reason + "\"");
    EXPECT_EQ(accept(talk), "err 8");
    EXPECT_EQ(talk.get("measurementtool tip_calibrated b04"), "no");
}

INSTANTIATE_TEST_SUITE_P(
    Calibration, MotionThatDoesNotDetermineTheTip,
    testing::Values(
        BadMotion{Pivot::Planar,
                  "The Measurement Tool was only swung in one plane, the tip cannot be determined"},
        BadMotion{Pivot::Twist, "The Measurement Tool was only turned about its own axis, the tip "
                                "cannot be determined"},
        BadMotion{Pivot::Still,
                  "The Measurement Tool was not moved, the tip cannot be determined"}));

TEST(Calibration, withASlippingTipHasALargeResidual) {
    AfterCalibration talk(Pivot::Slip);
    EXPECT_EQ(talk.get("status active"), "none");
    EXPECT_GT(talk.numbers("measurementtool calibration_tip_residual")[0], 1.0);
}

TEST(Calibration, afterAFailureIsPossibleAgainAndTrackingClearsTheFailure) {
    AfterCalibration talk(Pivot::Still);
    EXPECT_EQ(talk.get("status active"), "err");
    EXPECT_EQ(talk.act("tracking start"), "ok");
    EXPECT_EQ(talk.get("status active"), "tracking");
    EXPECT_EQ(talk.act("tracking stop"), "ok");
    EXPECT_EQ(talk.get("status active"), "none");
    talk.set("sim pivot cone");
    runToItsEnd(talk);
    EXPECT_EQ(talk.get("status active"), "none");
    EXPECT_EQ(accept(talk), "ok");
}

TEST(Calibration, isOfTheToolThatWasChosenElseOfTheFirstWithoutTip) {
    AfterCalibration talk;
    EXPECT_EQ(talk.get("measurementtool calibration_body_id"), "b04");
    accept(talk);
    runToItsEnd(talk);
    EXPECT_EQ(talk.get("measurementtool calibration_body_id"), "b01");
    EXPECT_EQ(talk.set("sim calibration_tool b02"), "ok");
    EXPECT_EQ(talk.set("sim calibration_tool b05"), "err 5");
    runToItsEnd(talk);
    EXPECT_EQ(talk.get("measurementtool calibration_body_id"), "b02");
}

TEST(Calibration, isNeverOfAToolWhoseBodyIsNotCalibrated) {
    Talk talk(withPivot());
    talk.set("sim body_calibrated tool b04 no");
    talk.set("sim body_calibrated tool b01 no");
    runToItsEnd(talk);
    EXPECT_EQ(talk.get("measurementtool calibration_body_id"), "b02");
    EXPECT_EQ(talk.set("sim calibration_tool b01"), "ok");
    runToItsEnd(talk);
    EXPECT_EQ(talk.get("measurementtool calibration_body_id"), "b02");
    talk.set("sim body_calibrated tool b01 yes");
    runToItsEnd(talk);
    EXPECT_EQ(talk.get("measurementtool calibration_body_id"), "b01");
    for (const char* body : {"b01", "b02", "b03"}) {
        talk.set(std::string("sim body_calibrated tool ") + body + " no");
    }
    EXPECT_EQ(talk.get("cal available measurementtool"), "no");
    EXPECT_EQ(talk.act("cal measurementtool start"), "err 8");
    EXPECT_EQ(talk.act("cal volume start"), "ok") << "that one is of no tool";
}

TEST(Calibration, ofATipThatWasLostIsTheOriginOfTheBody) {
    Talk talk(withPivot());
    const std::vector<double> origin = {0.0, 0.0, 0.0};
    const std::vector<double> tip = talk.numbers("sim tip_used b01");
    EXPECT_LT(distance(tip, talk.numbers("sim tip b01")), 3.0);
    EXPECT_EQ(talk.set("sim tip_calibrated b01 no"), "ok");
    EXPECT_EQ(talk.numbers("sim tip_used b01"), origin);
    EXPECT_EQ(talk.set("sim tip_calibrated b01 yes"), "ok");
    EXPECT_EQ(talk.numbers("sim tip_used b01"), tip);
    EXPECT_EQ(talk.numbers("sim tip_used b04"), origin);
    EXPECT_EQ(talk.set("sim tip_calibrated b04 yes"), "ok");
    EXPECT_LT(distance(talk.numbers("sim tip_used b04"), talk.numbers("sim tip b04")), 3.0);
}

TEST(Calibration, ofATipThatWasLostMovesTheDataToTheOriginOfTheBody) {
    Talk talk(withPivot());
    talk.set("sim noise 0");
    talk.set("output active chmon 6dmt2 yes");
    talk.act("sim place tool b01 100 200 300 0 0 0");
    const std::vector<double> tip = talk.numbers("sim tip_used b01");
    talk.set("sim tip_calibrated b01 no");
    talk.act("tracking start");
    const std::string line = talk.nextLine("6dmt2");
    const std::string x = kestrel_simulator::text::fixed(100.0 - tip[0], 3);
    const std::string z = kestrel_simulator::text::fixed(300.0 - tip[2], 3);
    EXPECT_NE(line.find("[" + x + " "), std::string::npos) << line;
    EXPECT_NE(line.find(" " + z + "]"), std::string::npos) << line;
}
