#include "libs/kestrel_probe/TipSolver.h"
#include "tests/libs/kestrel_probe/pivotruns.h"

#include <Eigen/Dense>
#include <algorithm>
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

using Eigen::Matrix3d;
using Eigen::Vector3d;
using kestrel_probe::Pose;
using kestrel_probe::solveTip;
using kestrel_probe::TipSolution;
using pivotruns::cone;
using pivotruns::posesOf;
using Outcome = TipSolution::Outcome;

namespace {

const Vector3d trueTip(3.0, -7.0, 180.0);

// A second at the rate that gives so many poses.
std::vector<Pose> conePoses(int count) {
    return posesOf([](double t) { return cone(t, 0.45, 1.0); }, count - 1.0, 1.0, trueTip);
}

std::vector<Pose> noisyPoses(double noise, std::uint64_t seed) {
    pivotruns::Cell cell;
    cell.cone = 45.0;
    cell.noise = noise;
    return pivotruns::poses(cell, seed);
}

void expectNear(const double* found, const Vector3d& expected, double within) {
    for (int i = 0; i < 3; ++i) {
        EXPECT_NEAR(found[i], expected[i], within) << "axis " << i;
    }
}

Vector3d tipOf(const Pose& pose, const TipSolution& solution) {
    return Eigen::Map<const Matrix3d>(pose.rotation) * Eigen::Map<const Vector3d>(solution.tip) +
           Eigen::Map<const Vector3d>(pose.position);
}

} // namespace

TEST(TipSolver, findsTheTipAndWhereItRestsWithoutNoise) {
    const TipSolution solution = solveTip(conePoses(240));
    EXPECT_EQ(solution.outcome, Outcome::Solved);
    expectNear(solution.tip, trueTip, 1e-8);
    expectNear(solution.restingPoint, Vector3d::Zero(), 1e-8);
    EXPECT_NEAR(solution.residual, 0.0, 1e-8);
    for (const double value : solution.covariance) {
        EXPECT_NEAR(value, 0.0, 1e-8);
    }
}

TEST(TipSolver, caresNeitherForTheTimesNorForTheOrderOfThePoses) {
    std::vector<Pose> poses = noisyPoses(0.1, 3);
    const TipSolution solution = solveTip(poses);
    std::reverse(poses.begin(), poses.end());
    for (Pose& pose : poses) {
        pose.seconds = 0.0;
    }
    const TipSolution again = solveTip(poses);
    EXPECT_EQ(again.outcome, Outcome::Solved);
    expectNear(again.tip, Vector3d(solution.tip), 1e-9);
}

TEST(TipSolver, residualIsTheRootMeanSquareDistance) {
    const std::vector<Pose> poses = noisyPoses(0.1, 5);
    const TipSolution solution = solveTip(poses);
    double squares = 0.0;
    for (const Pose& pose : poses) {
        squares += (tipOf(pose, solution) - Vector3d(solution.restingPoint)).squaredNorm();
    }
    EXPECT_GT(solution.residual, 0.1);
    EXPECT_NEAR(solution.residual, std::sqrt(squares / static_cast<double>(poses.size())), 1e-12);
}

TEST(TipSolver, predictsItsOwnErrorUnderIndependentNoise) {
    constexpr int runs = 150;
    double normalised = 0.0;
    Vector3d mean = Vector3d::Zero();
    for (int run = 0; run < runs; ++run) {
        const TipSolution solution = solveTip(noisyPoses(0.05, 100U + static_cast<unsigned>(run)));
        ASSERT_EQ(solution.outcome, Outcome::Solved);
        const Vector3d off = Vector3d(solution.tip) - Vector3d(pivotruns::tipError);
        const Matrix3d covariance = Eigen::Map<const Matrix3d>(solution.covariance);
        EXPECT_TRUE(covariance.isApprox(covariance.transpose()));
        mean += off / runs;
        normalised += off.dot(covariance.inverse() * off) / runs;
    }
    // 3 for a covariance that is exactly right
    EXPECT_GT(normalised, 2.0);
    EXPECT_LT(normalised, 4.0);
    EXPECT_LT(mean.norm(), 0.01);
}

namespace {

struct Undetermined {
    const char* name;
    std::function<Vector3d(double)> turn;
    Outcome outcome;
};

class UndeterminedMotion : public testing::TestWithParam<Undetermined> {};

std::vector<Undetermined> undeterminedMotions() {
    return {
        {"still", [](double) { return Vector3d(Vector3d::Zero()); }, Outcome::Still},
        {"hardlyTurned", [](double t) { return cone(t, 0.05, 1.0); }, Outcome::Still},
        {"planar", [](double t) { return Vector3d(0.45 * std::sin(3.0 * t), 0.0, 0.0); },
         Outcome::Planar},
        {"twist", [](double t) { return Vector3d(trueTip.normalized() * std::sin(3.0 * t)); },
         Outcome::Twist},
    };
}

std::string nameOf(const testing::TestParamInfo<Undetermined>& motion) {
    return motion.param.name;
}

} // namespace

TEST_P(UndeterminedMotion, isNamedAndGivesNoNumber) {
    const TipSolution solution = solveTip(posesOf(GetParam().turn, 60.0, 4.0, trueTip));
    EXPECT_EQ(solution.outcome, GetParam().outcome);
    expectNear(solution.tip, Vector3d::Zero(), 0.0);
    expectNear(solution.restingPoint, Vector3d::Zero(), 0.0);
    EXPECT_EQ(solution.residual, 0.0);
    for (const double value : solution.covariance) {
        EXPECT_EQ(value, 0.0);
    }
}

INSTANTIATE_TEST_SUITE_P(TipSolver, UndeterminedMotion, testing::ValuesIn(undeterminedMotions()),
                         &nameOf);

TEST(TipSolver, wantsTwentyPoses) {
    EXPECT_EQ(solveTip({}).outcome, Outcome::TooFewPoses);
    EXPECT_EQ(solveTip(conePoses(19)).outcome, Outcome::TooFewPoses);
    EXPECT_EQ(solveTip(conePoses(20)).outcome, Outcome::Solved);
}

TEST(TipSolver, aPoseThatIsNoneIsAsIfItWereNotThere) {
    std::vector<Pose> poses = conePoses(20);
    Pose wild = poses.front();
    wild.position[1] = std::numeric_limits<double>::quiet_NaN();
    poses.push_back(wild);
    wild = poses.front();
    wild.rotation[0] += 0.5;
    poses.push_back(wild);
    const TipSolution solution = solveTip(poses);
    EXPECT_EQ(solution.outcome, Outcome::Solved);
    expectNear(solution.tip, trueTip, 1e-8);
    poses.erase(poses.begin());
    EXPECT_EQ(solveTip(poses).outcome, Outcome::TooFewPoses);
}
