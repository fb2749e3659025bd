#include "tests/simulator/parsedframe.h"
#include "tests/simulator/talk.h"

#include <cmath>
#include <gtest/gtest.h>

using kestrel_simulator::ControllerSetup;

namespace {

constexpr double degreesPerRadian = 57.29577951308232;

ControllerSetup quiet() {
    ControllerSetup setup;
    setup.noise.position = 0.0;
    setup.occlusions = false;
    return setup;
}

// as the display computes them
std::vector<double> angles(const double (&rot)[9]) {
    return {-std::atan2(rot[7], rot[8]) * degreesPerRadian, std::asin(rot[6]) * degreesPerRadian,
            -std::atan2(rot[3], rot[0]) * degreesPerRadian};
}

void expectPose(const std::vector<double>& pose, const double (&loc)[3], const double (&rot)[9]) {
    ASSERT_EQ(pose.size(), 6U);
    const std::vector<double> shown = angles(rot);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_NEAR(loc[i], pose[i], 0.0006);
        EXPECT_NEAR(shown[i], pose[i + 3], 0.0005);
    }
}

} // namespace

TEST(Bodies, sayTheTruePosesWithoutNoise) {
    ControllerSetup setup = quiet();
    setup.rate = 10.0;
    Talk talk(setup);
    talk.set("measurementtool reference_of_tool b03 b02");
    startMeasurement(talk, {"6dmt2", "6dmtr"});
    KestrelParser parser;
    for (int frame = 0; frame < 50; ++frame) {
        parseFrame(parser, talk.nextFrame());
        for (int i = 0; i < 4; ++i) {
            const auto* tool = parser.getMeaTool(i);
            const std::string body = " b0" + std::to_string(i + 1);
            expectPose(talk.numbers("sim pose tool" + body), tool->loc, tool->rot);
            EXPECT_NEAR(tool->tipradius, talk.numbers("measurementtool tip_radius" + body)[0],
                        0.0005);
        }
        for (int i = 0; i < 2; ++i) {
            const auto* reference = parser.getMeaRef(i);
            expectPose(talk.numbers("sim pose reference b0" + std::to_string(i + 1)),
                       reference->loc, reference->rot);
        }
    }
}

TEST(Bodies, holdAPlacedToolWhereItWasPut) {
    Talk talk(quiet());
    startMeasurement(talk, {"6dmt2", "6dmtr"});
    EXPECT_EQ(talk.act("sim place tool b01 10.5 -20 30 5 -6 170"), "ok");
    EXPECT_EQ(talk.act("sim place reference b02 1 2 3 -90 45 0.5"), "ok");
    KestrelParser parser;
    for (int i = 0; i < 5; ++i) {
        parseFrame(parser, talk.nextFrame());
        expectPose({10.5, -20, 30, 5, -6, 170}, parser.getMeaTool(0)->loc,
                   parser.getMeaTool(0)->rot);
        expectPose({1, 2, 3, -90, 45, 0.5}, parser.getMeaRef(1)->loc, parser.getMeaRef(1)->rot);
        talk.wait(3.0);
    }
    EXPECT_EQ(talk.act("sim release tool b01"), "ok");
    EXPECT_EQ(talk.act("sim release reference b02"), "ok");
    EXPECT_NE(talk.numbers("sim pose tool b01")[0], 10.5);
    EXPECT_NE(talk.numbers("sim pose reference b02")[0], 1.0);
}

TEST(Bodies, giveAToolRelativeToItsReference) {
    Talk talk(quiet());
    const std::vector<double> relative = talk.numbers("sim pose tool b01");
    talk.act("sim place reference b01 100 0 0 0 0 90");
    talk.act("sim release tool b01");
    const std::vector<double> turned = talk.numbers("sim pose tool b01");
    talk.set("measurementtool reference_of_tool b01 none");
    const std::vector<double> room = talk.numbers("sim pose tool b01");
    EXPECT_NE(relative[0], room[0]);
    EXPECT_NEAR(turned[0], room[1], 1e-5);
    EXPECT_NEAR(turned[1], 100.0 - room[0], 1e-5);
    EXPECT_NEAR(turned[2], room[2], 1e-5);
}

TEST(Bodies, carryNoiseOfTheStatedSize) {
    ControllerSetup setup = quiet();
    setup.noise.position = 0.1;
    setup.rate = 1000.0;
    Talk talk(setup);
    talk.act("sim place reference b01 1 2 3 0 0 0");
    startMeasurement(talk, {"6dmtr"});
    KestrelParser parser;
    double squares = 0.0;
    constexpr int frames = 2000;
    for (int i = 0; i < frames; ++i) {
        parseFrame(parser, talk.nextFrame());
        squares += std::pow(parser.getMeaRef(0)->loc[0] - 1.0, 2);
    }
    EXPECT_NEAR(std::sqrt(squares / frames), 0.1, 0.01);
}

TEST(Bodies, stateACovarianceThatFitsTheNoise) {
    ControllerSetup setup = quiet();
    setup.noise.position = 0.1;
    setup.rate = 1000.0;
    Talk talk(setup);
    talk.act("sim place tool b01 0 0 0 20 30 40");
    startMeasurement(talk, {"6dmt2"});
    KestrelParser parser;
    double xx = 0.0;
    double xz = 0.0;
    constexpr int frames = 4000;
    for (int i = 0; i < frames; ++i) {
        parseFrame(parser, talk.nextFrame());
        const auto* tool = parser.getMeaTool(0);
        xx += tool->loc[0] * tool->loc[0] / frames;
        xz += tool->loc[0] * tool->loc[2] / frames;
    }
    const double(&cov)[6] = parser.getMeaTool(0)->cov;
    EXPECT_NEAR(cov[0], xx, 0.1 * xx);
    EXPECT_NEAR(cov[2], xz, 0.1 * xx);
    EXPECT_GT(cov[0] * cov[3] - cov[1] * cov[1], 0.0);
}

TEST(Bodies, showOccludedToolsAndUncalibratedReferencesAsNotTracked) {
    Talk talk(quiet());
    startMeasurement(talk, {"6dmt2", "6dmtr"});
    KestrelParser parser;
    talk.act("sim occlude tool b03 yes");
    talk.set("sim body_calibrated reference b02 no");
    parseFrame(parser, talk.nextFrame());
    EXPECT_EQ(parser.getMeaTool(0)->quality, 1.0);
    EXPECT_EQ(parser.getMeaTool(1)->quality, -1.0) << "measured relative to reference 2";
    EXPECT_EQ(parser.getMeaTool(2)->quality, -1.0);
    EXPECT_EQ(parser.getMeaTool(3)->quality, 1.0) << "tracked, though its tip is not calibrated";
    EXPECT_EQ(parser.getNumMeaRef(), 2);
    EXPECT_EQ(parser.getMeaRef(1)->quality, -1.0);
    talk.act("sim occlude tool b03 no");
    talk.act("sim occlude reference b01 yes");
    parseFrame(parser, talk.nextFrame());
    EXPECT_EQ(parser.getMeaTool(0)->quality, -1.0);
    EXPECT_EQ(parser.getMeaTool(2)->quality, 1.0);
    EXPECT_EQ(parser.getMeaRef(0)->quality, -1.0);
}

TEST(Bodies, showToolsOccludedNowAndThenButNotPlacedOnes) {
    Talk talk;
    talk.act("sim place tool b02 0 0 100 0 0 0");
    startMeasurement(talk, {"6dmt2"});
    KestrelParser parser;
    int lost = 0;
    for (int i = 0; i < 600; ++i) {
        parseFrame(parser, talk.nextFrame());
        lost += parser.getMeaTool(0)->quality == -1.0 ? 1 : 0;
        EXPECT_EQ(parser.getMeaTool(1)->quality, 1.0);
        talk.wait(0.1);
    }
    EXPECT_GT(lost, 5);
    EXPECT_LT(lost, 120);
}

TEST(Bodies, showHeldButtons) {
    Talk talk;
    startMeasurement(talk, {"6dmt", "6dmt2"});
    KestrelParser parser;
    for (const char* old : {"no", "yes"}) {
        talk.set(std::string("measurementtool output_6dmt ") + old);
        talk.act("sim press tool b02 9");
        parseFrame(parser, talk.nextFrame());
        const auto& button = parser.getMeaTool(1)->button;
        EXPECT_EQ(std::vector<int>(button, button + 4), (std::vector<int>{1, 0, 0, 1}));
    }
    EXPECT_EQ(talk.act("sim press tool b02 16"), "err 4");
    EXPECT_EQ(talk.act("sim press reference b02 1"), "err 4");
}
