#include "simulator/geometry/pivot.h"
#include "simulator/geometry/posenoise.h"
#include "simulator/geometry/tipsolver.h"

#include <Eigen/LU>
#include <cmath>
#include <gtest/gtest.h>
#include <vector>

using kestrel_simulator::Pivot;
using kestrel_simulator::Pose;
using kestrel_simulator::PoseNoise;
using kestrel_simulator::Probe;
using kestrel_simulator::solveTip;
using kestrel_simulator::Swing;
using kestrel_simulator::TipSolution;
using Outcome = TipSolution::Outcome;

namespace {

const Eigen::Vector3d trueTip(3.0, -7.0, 180.0);
constexpr std::size_t count = 240;

// Measured poses of the body of a probe with that tip, evenly spaced over one period of the swing.
std::vector<Pose> pivotPoses(Pivot pivot, const Eigen::Vector3d& tip, std::size_t poses,
                             const PoseNoise& noise, std::mt19937_64& random) {
    Probe probe;
    probe.tip = tip;
    Swing swing;
    swing.pivot = pivot;
    swing.from = {Eigen::Vector3d(120.0, -80.0, 15.0),
                  kestrel_simulator::rotationFromAngles({180.0, 0.0, 25.0})};
    std::vector<Pose> measured;
    for (std::size_t i = 0; i < poses; ++i) {
        const double time =
            (static_cast<double>(i) + 0.5) / static_cast<double>(poses) * swing.period;
        measured.push_back(
            noise.measured(swing.tipPose(probe, time).withOrigin(-probe.tip), random));
    }
    return measured;
}

TipSolution solve(Pivot pivot, double noise, std::uint64_t seed) {
    std::mt19937_64 random(seed);
    return solveTip(pivotPoses(pivot, trueTip, count, PoseNoise{noise}, random));
}

} // namespace

TEST(TipSolver, findsTheTipExactlyWithoutNoise) {
    const TipSolution solution = solve(Pivot::Cone, 0.0, 1);
    EXPECT_EQ(solution.outcome, Outcome::Solved);
    EXPECT_LT((solution.tip - trueTip).norm(), 1e-8);
    EXPECT_LT(solution.residual, 1e-8);
}

TEST(TipSolver, mapsTheTipToTheFixedPointFromEveryPose) {
    std::mt19937_64 random(1);
    const auto poses = pivotPoses(Pivot::Cone, trueTip, count, PoseNoise{0.0}, random);
    const TipSolution solution = solveTip(poses);
    for (const Pose& pose : poses) {
        EXPECT_LT((pose.apply(solution.tip) - solution.fixedPoint).norm(), 1e-8);
    }
}

TEST(TipSolver, reportsTheRmsDistanceAsResidual) {
    std::mt19937_64 random(5);
    const auto poses = pivotPoses(Pivot::Cone, trueTip, count, PoseNoise{0.1}, random);
    const TipSolution solution = solveTip(poses);
    double squares = 0.0;
    for (const Pose& pose : poses) {
        squares += (pose.apply(solution.tip) - solution.fixedPoint).squaredNorm();
    }
    EXPECT_NEAR(solution.residual, std::sqrt(squares / count), 1e-12);
    // noise of the position in three directions, of the rotation in the two across the shaft
    const double arm = trueTip.norm() / 100.0;
    EXPECT_NEAR(solution.residual, 0.1 * std::sqrt(3.0 + 2.0 * arm * arm), 0.03);
}

TEST(TipSolver, predictsItsOwnError) {
    constexpr int runs = 150;
    int within = 0;
    double normalised = 0.0;
    Eigen::Vector3d mean = Eigen::Vector3d::Zero();
    for (int seed = 0; seed < runs; ++seed) {
        const TipSolution solution =
            solve(Pivot::Cone, 0.05, static_cast<std::uint64_t>(seed) + 100);
        ASSERT_EQ(solution.outcome, Outcome::Solved);
        const Eigen::Vector3d error = solution.tip - trueTip;
        mean += error / runs;
        within += error.norm() <= solution.uncertainty() ? 1 : 0;
        normalised += error.dot(solution.covariance.inverse() * error) / runs;
    }
    EXPECT_GE(within, runs * 98 / 100);
    // 3 for a covariance that is exactly right
    EXPECT_GT(normalised, 2.0);
    EXPECT_LT(normalised, 4.0);
    EXPECT_LT(mean.norm(), 0.01) << "the estimate is biased";
}

TEST(TipSolver, predictsMoreUncertaintyFromMoreNoise) {
    const double little = solve(Pivot::Cone, 0.02, 9).uncertainty();
    const double much = solve(Pivot::Cone, 0.2, 9).uncertainty();
    EXPECT_GT(little, 0.0);
    EXPECT_NEAR(much / little, 10.0, 0.5);
}

namespace {

struct Undetermined {
    Pivot pivot;
    Outcome outcome;
};

class UndeterminedMotion : public testing::TestWithParam<Undetermined> {};

} // namespace

TEST_P(UndeterminedMotion, isRecognisedWhateverTheNoise) {
    for (const double noise : {0.0, 0.05, 0.5}) {
        for (std::uint64_t seed = 0; seed < 20; ++seed) {
            EXPECT_EQ(solve(GetParam().pivot, noise, seed).outcome, GetParam().outcome) << noise;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(TipSolver, UndeterminedMotion,
                         testing::Values(Undetermined{Pivot::Planar, Outcome::Planar},
                                         Undetermined{Pivot::Twist, Outcome::Twist},
                                         Undetermined{Pivot::Still, Outcome::Still}));

TEST(TipSolver, showsASlippingTipInTheResidual) {
    const TipSolution slip = solve(Pivot::Slip, 0.05, 3);
    EXPECT_EQ(slip.outcome, Outcome::Solved);
    EXPECT_GT(slip.residual, 1.0);
    EXPECT_LT(slip.residual, 3.0);
    EXPECT_LT(solve(Pivot::Cone, 0.05, 3).residual, 0.3);
}

TEST(TipSolver, wantsEnoughPoses) {
    std::mt19937_64 random(1);
    EXPECT_EQ(solveTip({}).outcome, Outcome::TooFewPoses);
    EXPECT_EQ(solveTip(pivotPoses(Pivot::Cone, trueTip, 19, PoseNoise{}, random)).outcome,
              Outcome::TooFewPoses);
    EXPECT_EQ(solveTip(pivotPoses(Pivot::Cone, trueTip, 20, PoseNoise{}, random)).outcome,
              Outcome::Solved);
}

TEST(Pose, anglesAndRotationsBelongToEachOther) {
    for (const Eigen::Vector3d& angles :
         {Eigen::Vector3d(0, 0, 0), Eigen::Vector3d(10, 20, 30), Eigen::Vector3d(-170, 80, 170),
          Eigen::Vector3d(90, -89, -90), Eigen::Vector3d(30, 90, 0),
          Eigen::Vector3d(-30, -90, 0)}) {
        const Eigen::Matrix3d rotation = kestrel_simulator::rotationFromAngles(angles);
        EXPECT_NEAR(rotation.determinant(), 1.0, 1e-12);
        EXPECT_LT((kestrel_simulator::anglesFromRotation(rotation) - angles).norm(), 1e-6);
    }
}

TEST(Pose, rotationIsAboutXThenYThenZ) {
    // the y axis turned about z and then about x
    const Eigen::Matrix3d rotation = kestrel_simulator::rotationFromAngles({90.0, 0.0, 90.0});
    EXPECT_LT((rotation * Eigen::Vector3d::UnitX() - Eigen::Vector3d::UnitZ()).norm(), 1e-12);
    EXPECT_LT((rotation * Eigen::Vector3d::UnitY() + Eigen::Vector3d::UnitX()).norm(), 1e-12);
}

TEST(Pose, inverseUndoesAPose) {
    const Pose pose = {Eigen::Vector3d(1, 2, 3),
                       kestrel_simulator::rotationFromAngles({10, 20, 30})};
    const Pose both = pose * pose.inverse();
    EXPECT_LT(both.position.norm(), 1e-12);
    EXPECT_LT((both.rotation - Eigen::Matrix3d::Identity()).norm(), 1e-12);
}
