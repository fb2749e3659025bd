#include "tests/simulator/talk.h"

#include <gtest/gtest.h>

using kestrel_simulator::ControllerSetup;

namespace {

constexpr double step = 2.0;

ControllerSetup shortSteps() {
    ControllerSetup setup;
    setup.calibration.stepSeconds = step;
    return setup;
}

} // namespace

TEST(CalibrationFaults, errorAtAChosenProgress) {
    Talk talk(shortSteps());
    EXPECT_EQ(talk.act("sim misbehave cal-error 30"), "ok");
    talk.act("cal measurementtool start");
    talk.wait(0.59);
    EXPECT_EQ(talk.get("status active"), "cal");
    talk.wait(0.02);
    EXPECT_EQ(talk.get("status active"), "err");
    EXPECT_EQ(talk.get("status progress"), "0.300");
    EXPECT_EQ(talk.get("status err"), "\"The markers of the Measurement Tool were lost\"");
}

TEST(CalibrationFaults, neverFinishing) {
    Talk talk(shortSteps());
    talk.act("sim misbehave cal-endless");
    talk.act("cal measurementtool start");
    talk.wait(1000.0);
    EXPECT_EQ(talk.get("status active"), "cal");
    EXPECT_EQ(talk.get("status progress"), "0.990");
    EXPECT_EQ(talk.act("cal measurementtool stop"), "ok");
    EXPECT_EQ(talk.get("status active"), "none");
}

TEST(CalibrationFaults, ofTwoStepsStandStillAtAPercentageOfTheWhole) {
    Talk talk(shortSteps());
    talk.act("sim misbehave cal-endless 75");
    talk.act("cal volume start");
    talk.wait(step);
    EXPECT_EQ(talk.get("status step_active"), "pause 2");
    EXPECT_EQ(talk.get("status progress"), "0.500");
    EXPECT_EQ(talk.act("cal volume start_step s02"), "ok");
    talk.wait(1000.0);
    EXPECT_EQ(talk.get("status step_active"), "cal 2");
    EXPECT_EQ(talk.get("status progress"), "0.750");
    EXPECT_EQ(talk.get("status step_progress"), "2 0.500");
    talk.act("cal volume stop");
    talk.act("sim misbehave cal-endless 25");
    talk.act("cal volume start");
    talk.wait(1000.0);
    EXPECT_EQ(talk.get("status step_active"), "cal 1");
    EXPECT_EQ(talk.get("status progress"), "0.250");
    EXPECT_EQ(talk.get("status step_progress"), "1 0.500");
}

TEST(CalibrationFaults, staleStatusIsTheFinalOneOfTheRunBefore) {
    Talk talk(shortSteps());
    talk.act("sim misbehave cal-stale-status 2");
    talk.act("cal measurementtool start");
    EXPECT_EQ(talk.get("status active"), "none");
    EXPECT_EQ(talk.get("status step_active"), "none");
    EXPECT_EQ(talk.get("status active"), "cal");
    talk.act("sim misbehave cal-error 0");
    talk.wait(0.1);
    EXPECT_EQ(talk.get("status active"), "err");
    talk.act("sim behave cal-error");
    talk.act("cal measurementtool start");
    EXPECT_EQ(talk.get("status active"), "err");
    EXPECT_EQ(talk.get("status active"), "err");
    EXPECT_EQ(talk.get("status active"), "cal");
}

TEST(CalibrationFaults, aLostStatusGetsNoReplyAndADuplicatedOneTwo) {
    for (const auto& [name, copies] :
         {std::pair("cal-lost-status", 0), std::pair("cal-duplicate-status", 2)}) {
        Talk talk(shortSteps());
        EXPECT_EQ(talk.plan("get status active").copies, 1);
        EXPECT_EQ(talk.act(std::string("sim misbehave ") + name + " 2"), "ok");
        talk.act("cal measurementtool start");
        EXPECT_EQ(talk.plan("get status active").copies, 1);
        EXPECT_EQ(talk.plan("get status progress").copies, 1);
        EXPECT_EQ(talk.plan("get status active").copies, copies) << name;
        EXPECT_EQ(talk.plan("get status active").copies, 1);
    }
}

TEST(CalibrationFaults, theConnectionIsDroppedOnceAtTheStartWhichIsCarriedOut) {
    Talk talk(shortSteps());
    talk.act("sim misbehave cal-drop-start");
    EXPECT_TRUE(talk.plan("cal measurementtool start").dropConnection);
    EXPECT_FALSE(talk.plan("get status active").dropConnection);
    EXPECT_EQ(talk.get("status active"), "cal");
    EXPECT_EQ(talk.get("sim misbehaviour"), "none");
}

TEST(CalibrationFaults, theConnectionIsDroppedInEachStage) {
    Talk talk(shortSteps());
    const auto drops = [&] {
        const bool first = talk.plan("get status active").dropConnection;
        EXPECT_FALSE(talk.plan("get status active").dropConnection) << "only once";
        return first;
    };
    for (const char* stage : {"step1", "pause", "step2", "calculating"}) {
        talk.act(std::string("sim misbehave cal-drop-") + stage);
    }
    EXPECT_FALSE(drops()) << "no calibration is running";
    talk.act("cal volume start");
    EXPECT_TRUE(drops());
    talk.wait(step);
    EXPECT_TRUE(drops());
    EXPECT_EQ(talk.get("status step_active"), "pause 2");
    talk.act("cal volume start_step s02");
    EXPECT_TRUE(drops());
    EXPECT_EQ(talk.get("status step_active"), "cal 2");
    talk.wait(step);
    EXPECT_TRUE(drops());
    EXPECT_EQ(talk.get("sim misbehaviour"), "none");
}

TEST(CalibrationFaults, theConnectionIsDroppedAtResultAndAcceptance) {
    Talk talk(shortSteps());
    talk.act("sim misbehave cal-drop-result");
    talk.act("sim misbehave cal-drop-accept");
    talk.act("cal measurementtool start");
    talk.wait(step + 1.0);
    EXPECT_TRUE(talk.plan("get measurementtool calibration_body_id").dropConnection);
    EXPECT_FALSE(talk.plan("get measurementtool calibration_body_id").dropConnection);
    EXPECT_TRUE(talk.plan("measurementtool accept_new_calibration").dropConnection);
    EXPECT_EQ(talk.get("measurementtool tip_calibrated b04"), "yes") << "it was carried out";
}
