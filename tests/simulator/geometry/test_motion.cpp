#include "simulator/geometry/motion.h"

#include <gtest/gtest.h>

TEST(Motion, ofToolsIsSmoothRestsAndPresses) {
    const kestrel_simulator::ToolMotion motion(3, 1);
    int resting = 0;
    int pressed = 0;
    constexpr double step = 0.01;
    constexpr int steps = 4000;
    for (int i = 0; i < steps; ++i) {
        const auto now = motion.tipPose(i * step);
        const auto next = motion.tipPose((i + 1) * step);
        const double distance = (next.position - now.position).norm();
        EXPECT_LT(distance, 15.0) << "at " << i * step;
        EXPECT_LT((next.rotation - now.rotation).norm(), 0.1) << "at " << i * step;
        resting += distance < 1e-9 ? 1 : 0;
        pressed += motion.buttons(i * step) != 0 ? 1 : 0;
    }
    EXPECT_GT(resting, steps / 4);
    EXPECT_LT(resting, steps / 2);
    EXPECT_GT(pressed, steps / 20);
}

TEST(Motion, ofReferencesIsStandingOrDrifting) {
    const kestrel_simulator::StandingMotion standing(3, 0);
    const kestrel_simulator::StandingMotion drifting(3, 1);
    EXPECT_EQ(standing.pose(0.0).position, standing.pose(17.0).position);
    const double way = (drifting.pose(0.0).position - drifting.pose(5.0).position).norm();
    EXPECT_GT(way, 1.0);
    EXPECT_LT(way, 50.0);
}
