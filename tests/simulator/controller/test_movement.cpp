#include "simulator/geometry/tipsolver.h"
#include "tests/simulator/parsedframe.h"
#include "tests/simulator/talk.h"

#include <cmath>
#include <gtest/gtest.h>

using kestrel_simulator::ControllerSetup;
using kestrel_simulator::Pose;
using Outcome = kestrel_simulator::TipSolution::Outcome;

/// "sim move": a tool that is moved as somebody says, in the data lines.

namespace {

ControllerSetup quiet() {
    ControllerSetup setup;
    setup.noise.position = 0.0;
    setup.occlusions = false;
    return setup;
}

// What the data lines say of a tool.
std::vector<Pose> posesOf(Talk& talk, int tool, int frames) {
    KestrelParser parser;
    std::vector<Pose> poses;
    for (int i = 0; i < frames; ++i) {
        parseFrame(parser, talk.nextFrame());
        const auto* record = parser.getMeaTool(tool);
        if (record->quality >= 0.0) {
            poses.push_back({Eigen::Map<const Eigen::Vector3d>(record->loc),
                             Eigen::Map<const Eigen::Matrix3d>(record->rot)});
        }
    }
    return poses;
}

kestrel_simulator::TipSolution solutionOf(const std::string& motion) {
    Talk talk(quiet());
    startMeasurement(talk, {"6dmt2"});
    EXPECT_EQ(talk.act("sim move tool b04 " + motion), "ok");
    return kestrel_simulator::solveTip(posesOf(talk, 3, 360));
}

double distance(const std::vector<double>& a, const std::vector<double>& b) {
    return std::hypot(a.at(0) - b.at(0), a.at(1) - b.at(1), a.at(2) - b.at(2));
}

// From here on the reported position is that of the tip.
void useTheTrueTip(Talk& talk, const std::string& tool) {
    EXPECT_EQ(talk.set("sim tip_used " + tool + " " + talk.get("sim tip " + tool)), "ok");
}

} // namespace

TEST(Movement, ofEachNameIsTaken) {
    Talk talk(quiet());
    EXPECT_EQ(talk.get("sim pivots"), "cone, planar, twist, slip, still");
    EXPECT_EQ(talk.get("sim motions"), talk.get("sim pivots") + ", hold, wander");
    for (const char* name : {"cone", "planar", "twist", "slip", "still", "hold", "wander"}) {
        EXPECT_EQ(talk.act("sim move tool b01 " + std::string(name)), "ok") << name;
    }
    for (const char* name : {"cone", "planar", "twist", "slip", "still"}) {
        EXPECT_EQ(talk.set("sim pivot " + std::string(name)), "ok") << name;
        EXPECT_EQ(talk.get("sim pivot"), name);
    }
}

TEST(Movement, leavesAsManyButtonsAsThereAreToBePressed) {
    Talk talk(quiet());
    EXPECT_EQ(talk.get("sim buttons"), "4");
    EXPECT_EQ(talk.act("sim press tool b01 15"), "ok");
    EXPECT_EQ(talk.act("sim press tool b01 16"), "err 4");
}

TEST(Movement, ofEachPivotIsInTheDataLinesWhatItsNameSays) {
    EXPECT_EQ(solutionOf("cone").outcome, Outcome::Solved);
    EXPECT_EQ(solutionOf("planar").outcome, Outcome::Planar);
    EXPECT_EQ(solutionOf("twist").outcome, Outcome::Twist);
    EXPECT_EQ(solutionOf("still").outcome, Outcome::Still);
    EXPECT_EQ(solutionOf("hold").outcome, Outcome::Still);
    EXPECT_GT(solutionOf("slip").residual, 1.0);
    EXPECT_GT(solutionOf("wander").residual, 5.0);
}

TEST(Movement, ofAConeLetsOneFindTheTrueTipFromTheDataLines) {
    Talk talk(quiet());
    startMeasurement(talk, {"6dmt2"});
    talk.act("sim move tool b04 cone");
    const auto solution = kestrel_simulator::solveTip(posesOf(talk, 3, 360));
    const std::vector<double> truth = talk.numbers("sim tip b04");
    EXPECT_LT(distance({solution.tip.x(), solution.tip.y(), solution.tip.z()}, truth), 0.01);
    EXPECT_LT(solution.residual, 0.002) << "three decimals of a mm, and six of the rotation";
}

TEST(Movement, aboutTheTipKeepsItWhereItWasAndBeginsWithoutAJump) {
    for (const char* motion : {"cone", "planar", "twist", "still"}) {
        Talk talk(quiet());
        useTheTrueTip(talk, "b02");
        talk.wait(4.5);
        const std::vector<double> before = talk.numbers("sim pose tool b02");
        EXPECT_EQ(talk.act(std::string("sim move tool b02 ") + motion), "ok");
        const std::vector<double> after = talk.numbers("sim pose tool b02");
        for (std::size_t i = 0; i < 6; ++i) {
            EXPECT_NEAR(after[i], before[i], 1e-5) << motion;
        }
        for (int i = 0; i < 100; ++i) {
            talk.wait(0.1);
            EXPECT_LT(distance(talk.numbers("sim pose tool b02"), before), 1e-5) << motion;
        }
    }
}

TEST(Movement, thatSlipsDoesSoHalfWayByItsLengthAndBack) {
    Talk talk(quiet());
    useTheTrueTip(talk, "b03");
    const std::vector<double> before = talk.numbers("sim pose tool b03");
    EXPECT_EQ(talk.get("sim slip b03"), "4.000000");
    EXPECT_EQ(talk.set("sim slip b03 1.5"), "ok");
    talk.act("sim move tool b03 slip 2");
    for (const double expected : {0.0, 1.5, 0.0, 1.5}) {
        talk.wait(expected == 0.0 ? 0.9 : 0.2);
        EXPECT_NEAR(distance(talk.numbers("sim pose tool b03"), before), expected, 1e-5);
        talk.wait(expected == 0.0 ? 0.0 : 0.9);
    }
}

TEST(Movement, repeatsItselfAfterItsSeconds) {
    Talk talk(quiet());
    talk.act("sim move tool b03 cone 1.5");
    talk.wait(1.0);
    const std::vector<double> first = talk.numbers("sim pose tool b03");
    talk.wait(0.7);
    EXPECT_GT(std::abs(talk.numbers("sim pose tool b03")[3] - first[3]), 1.0);
    talk.wait(0.8);
    const std::vector<double> again = talk.numbers("sim pose tool b03");
    for (std::size_t i = 0; i < 6; ++i) {
        EXPECT_NEAR(again[i], first[i], 1e-5);
    }
}

TEST(Movement, holdStaysAndWanderAndReleaseReturnToTheToolsOwnPath) {
    Talk talk(quiet());
    Talk undisturbed(quiet());
    talk.wait(1.0);
    const std::string held = talk.get("sim pose tool b01");
    EXPECT_EQ(talk.act("sim move tool b01 hold"), "ok");
    talk.wait(3.0);
    undisturbed.wait(4.0);
    EXPECT_EQ(talk.get("sim pose tool b01"), held);
    EXPECT_NE(undisturbed.get("sim pose tool b01"), held);
    EXPECT_EQ(talk.act("sim move tool b01 wander"), "ok");
    EXPECT_EQ(talk.get("sim pose tool b01"), undisturbed.get("sim pose tool b01"));
    talk.act("sim move tool b01 cone");
    talk.act("sim release tool b01");
    EXPECT_EQ(talk.get("sim pose tool b01"), undisturbed.get("sim pose tool b01"));
}

TEST(Movement, beginsWhereTheToolWasPlaced) {
    Talk talk(quiet());
    useTheTrueTip(talk, "b01");
    talk.act("sim place tool b01 10 20 30 170 5 -15");
    talk.act("sim move tool b01 cone");
    EXPECT_LT(distance(talk.numbers("sim pose tool b01"), {10, 20, 30}), 1e-5);
    talk.wait(2.0);
    EXPECT_LT(distance(talk.numbers("sim pose tool b01"), {10, 20, 30}), 1e-5);
    EXPECT_EQ(talk.act("sim place tool b01 1 2 3 0 0 0"), "ok");
    talk.wait(1.0);
    EXPECT_LT(distance(talk.numbers("sim pose tool b01"), {1, 2, 3}), 1e-5);
}

TEST(Movement, ofASwungToolIsHiddenNowAndThenAsThatOfAnyOther) {
    Talk talk;
    startMeasurement(talk, {"6dmt2"});
    talk.act("sim move tool b01 cone");
    const std::size_t seen = posesOf(talk, 0, 60 * 60).size();
    EXPECT_LT(seen, 3600U);
    EXPECT_GT(seen, 3000U);
}

TEST(Movement, isRefusedWhenItIsNone) {
    Talk talk;
    for (const char* bad : {"tool b01", "tool b01 sideways", "reference b01 cone",
                            "tool b01 cone 0.01", "tool b01 cone 3601"}) {
        EXPECT_EQ(talk.act(std::string("sim move ") + bad), "err 4") << bad;
    }
    EXPECT_EQ(talk.say("sim move tool b01 cone 0"),
              "kestrel2 err 4 \"the value must be from 0.05 to 3600\"");
    EXPECT_EQ(talk.act("sim move tool b05 cone"), "err 5");
    for (const char* bad : {"hold 1", "wander 1", "cone x", "cone 1 2"}) {
        EXPECT_EQ(talk.act(std::string("sim move tool b01 ") + bad), "err 1") << bad;
    }
}

TEST(Probes, haveTheTipLeverAndSlipOfTheSetup) {
    ControllerSetup setup = quiet();
    setup.probes = {{0, Eigen::Vector3d(0.0, 30.0, 40.0), {}, {}},
                    {2, {}, 250.0, {}},
                    {3, Eigen::Vector3d(1.0, 2.0, 3.0), {}, 7.0}};
    Talk talk(setup);
    EXPECT_EQ(talk.get("sim tip b01"), "0.000000 30.000000 40.000000");
    EXPECT_EQ(talk.get("sim lever b01"), "50.000000");
    EXPECT_EQ(talk.get("sim tip b02"), "0.000000 150.000000 200.000000");
    EXPECT_EQ(talk.get("sim slip b02"), "4.000000");
    EXPECT_EQ(talk.get("sim tip b03"), "1.000000 2.000000 3.000000");
    EXPECT_EQ(talk.get("sim slip b03"), "7.000000");
    for (const char* tool : {"b01", "b02", "b03"}) {
        const double error = distance(talk.numbers(std::string("sim tip ") + tool),
                                      talk.numbers(std::string("sim tip_used ") + tool));
        EXPECT_GT(error, 0.5) << "as calibrated long ago";
        EXPECT_LT(error, 3.0);
    }
}

TEST(Probes, canBeChangedWithoutTheControllerKnowing) {
    Talk talk(quiet());
    const std::string believed = talk.get("sim tip_used b01");
    EXPECT_EQ(talk.set("sim lever b01 250"), "ok");
    EXPECT_EQ(talk.get("sim lever b01"), "250.000000");
    EXPECT_EQ(talk.set("sim tip b01 1 -2 90.5"), "ok");
    EXPECT_EQ(talk.get("sim tip b01"), "1.000000 -2.000000 90.500000");
    EXPECT_EQ(talk.get("sim tip_used b01"), believed);
    talk.set("sim calibration_tool b01");
    talk.act("cal measurementtool start");
    talk.wait(7.0);
    EXPECT_EQ(talk.act("measurementtool accept_new_calibration"), "ok");
    EXPECT_LT(distance(talk.numbers("sim tip_used b01"), {1.0, -2.0, 90.5}), 1e-5);
}

TEST(Probes, ofATipThatIsBelievedHaveACalibratedTip) {
    Talk talk(quiet());
    EXPECT_EQ(talk.set("sim tip_used b04 1 2 3"), "ok");
    EXPECT_EQ(talk.get("sim tip_used b04"), "1.000000 2.000000 3.000000");
    EXPECT_EQ(talk.get("measurementtool tip_calibrated b04"), "yes");
}

TEST(Probes, withoutAnyLengthHaveADirectionAllTheSame) {
    Talk talk(quiet());
    EXPECT_EQ(talk.set("sim tip b01 0 0 0"), "ok");
    EXPECT_EQ(talk.set("sim lever b01 5"), "ok");
    EXPECT_EQ(talk.get("sim tip b01"), "0.000000 0.000000 5.000000");
}

TEST(Probes, haveBounds) {
    Talk talk(quiet());
    for (const char* bad : {"tip b01 1 2", "tip b01 1 2 3 4", "tip b01 1 2 x", "tip b01 0 0 1000.1",
                            "tip_used b01 0 -1001 0", "lever b01 0.9", "lever b01 1001",
                            "lever b01 x", "slip b01 -1", "slip b01 101", "slip b01 1 2"}) {
        EXPECT_EQ(talk.set(std::string("sim ") + bad), "err 4") << bad;
    }
    EXPECT_EQ(talk.set("sim tip b05 1 2 3"), "err 5");
    EXPECT_EQ(talk.get("sim slip b05"), "err 5");
    EXPECT_EQ(talk.say("set sim lever b01 0"),
              "kestrel2 err 4 \"the value must be from 1 to 1000\"");
    EXPECT_EQ(talk.say("set sim tip b01 x"),
              "kestrel2 err 4 \"expected x y z from -1000 to 1000\"");
}
