#include "libs/kestrel_probe/PivotFit.h"
#include "tests/libs/kestrel_probe/pivotruns.h"

#include <Eigen/Dense>
#include <algorithm>
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <limits>

using Eigen::Matrix3d;
using Eigen::Vector3d;
using kestrel_probe::PivotFit;
using kestrel_probe::PivotResult;
using kestrel_probe::Pose;
using pivotruns::cone;
using pivotruns::posesOf;

namespace {

PivotFit fitOf(const std::vector<Pose>& poses) {
    PivotFit fit;
    for (const Pose& pose : poses) {
        fit.add(pose);
    }
    return fit;
}

PivotFit fitOf(const pivotruns::Cell& cell, std::uint64_t seed = 1) {
    return fitOf(pivotruns::poses(cell, seed));
}

pivotruns::Cell exactCell() {
    pivotruns::Cell cell;
    cell.noise = 0.0;
    return cell;
}

Pose still(double seconds) {
    return {{1.0, 2.0, 3.0}, {1, 0, 0, 0, 1, 0, 0, 0, 1}, seconds};
}

void expectTip(const std::optional<PivotResult>& result, double within) {
    ASSERT_TRUE(result.has_value());
    for (int i = 0; i < 3; ++i) {
        EXPECT_NEAR(result->tip[i], pivotruns::tipError[i], within) << "axis " << i;
    }
}

} // namespace

TEST(PivotFit, findsTheErrorOfATipWithoutNoise) {
    const std::optional<PivotResult> result = fitOf(exactCell()).solve();
    expectTip(result, 1e-9);
    EXPECT_NEAR(result->restingPoint[0], 120.0, 1e-9);
    EXPECT_NEAR(result->restingPoint[1], -80.0, 1e-9);
    EXPECT_NEAR(result->restingPoint[2], 15.0, 1e-9);
    EXPECT_NEAR(result->residual, 0.0, 1e-9);
    EXPECT_NEAR(result->radius95, 0.0, 1e-9);
    EXPECT_NEAR(result->slip, 0.0, 1e-9);
}

TEST(PivotFit, tenMetresFromTheOriginCostNoDigits) {
    pivotruns::Cell cell;
    const PivotResult near = *fitOf(cell).solve();
    cell.distance = 10000.0;
    const PivotResult far = *fitOf(cell).solve();
    for (int i = 0; i < 3; ++i) {
        EXPECT_NEAR(far.tip[i], near.tip[i], 1e-8);
    }
    EXPECT_NEAR(far.restingPoint[0], near.restingPoint[0] + 10000.0, 1e-7);
    EXPECT_NEAR(far.radius95, near.radius95, 1e-8);
}

TEST(PivotFit, rotationsStandColumnByColumn) {
    std::vector<Pose> poses = posesOf([](double t) { return cone(t, 0.5, 0.5); }, 60.0, 10.0);
    expectTip(fitOf(poses).solve(), 1e-9);
    for (Pose& pose : poses) {
        const Matrix3d rows = Eigen::Map<const Matrix3d>(pose.rotation).transpose();
        Eigen::Map<Matrix3d>(pose.rotation) = rows;
    }
    const std::optional<PivotResult> result = fitOf(poses).solve();
    ASSERT_TRUE(result.has_value());
    EXPECT_GT(result->residual, 0.05);
}

TEST(PivotFit, residualIsTheRootMeanSquareDistance) {
    pivotruns::Cell cell;
    cell.noise = 0.3;
    const PivotFit fit = fitOf(cell);
    // Each tip scatters by the position's noise and by the rotation's at the end of the known
    // lever.
    const double across = cell.noise * pivotruns::rotationNoise * cell.lever;
    const double expected = std::sqrt(3.0 * cell.noise * cell.noise + 2.0 * across * across);
    EXPECT_NEAR(fit.solve()->residual, expected, 0.05 * expected);
}

TEST(PivotFit, noiseInTheRotationsDoesNotPullTheTip) {
    pivotruns::Cell cell;
    cell.cone = 10.0;
    cell.noise = 0.3;
    cell.seconds = 20.0;
    Vector3d mean = Vector3d::Zero();
    const int runs = 60;
    for (int run = 0; run < runs; ++run) {
        mean += Vector3d(fitOf(cell, 1000U + static_cast<unsigned>(run)).solve()->tip) / runs;
    }
    EXPECT_LT((mean - Vector3d(pivotruns::tipError)).norm(), 0.1);
}

TEST(PivotFit, covarianceIsSymmetricAndItsGreatestAxisMakesTheRadius) {
    const PivotResult result = *fitOf(pivotruns::Cell{}).solve();
    const Eigen::Map<const Matrix3d> covariance(result.covariance);
    EXPECT_EQ(covariance, covariance.transpose());
    const Eigen::SelfAdjointEigenSolver<Matrix3d> axes(covariance);
    EXPECT_GT(axes.eigenvalues()[0], 0.0);
    EXPECT_NEAR(result.radius95, std::sqrt(3.0 * 11.0 / 9.0 * 3.8625 * axes.eigenvalues()[2]),
                1e-12);
}

TEST(PivotFit, coverageGrowsWithTheCone) {
    const auto coverageOf = [](double degrees) {
        const double tilt = degrees * 3.141592653589793 / 180.0;
        return fitOf(posesOf([tilt](double t) { return cone(t, tilt, 0.5); }, 60.0, 10.0))
            .coverage();
    };
    // A cone of constant tilt: the two axes across turn by half of its square each.
    for (const double degrees : {5.0, 10.0, 20.0, 30.0, 45.0}) {
        const double cosine = std::cos(degrees * 3.141592653589793 / 180.0);
        const double across = 1.0 - std::pow((1.0 + cosine) / 2.0, 2.0);
        EXPECT_NEAR(coverageOf(degrees), std::min(across, 1.0 - cosine * cosine), 2e-3) << degrees;
    }
}

TEST(PivotFit, matricesThatAreRotationsToSomeDigitsOnlyAreNoMotion) {
    PivotFit fit;
    for (int i = 0; i < 300; ++i) {
        Pose pose = still(i / 60.0);
        for (double& element : pose.rotation) {
            element *= 0.997;
        }
        fit.add(pose);
    }
    EXPECT_EQ(fit.poses(), 300U);
    EXPECT_LT(fit.coverage(), 1e-12);
    EXPECT_FALSE(fit.solve().has_value());
}

struct Motion {
    const char* name;
    std::function<Vector3d(double)> turn;
    Vector3d weakest;
};

TEST(PivotFit, motionsThatDoNotDetermineTheTipGiveNoNumber) {
    const Motion motions[] = {
        {"still", [](double) { return Vector3d(0.1, 0.2, 0.3); }, Vector3d::Zero()},
        {"planar", [](double t) { return Vector3d(0.5 * std::sin(3.0 * t), 0.0, 0.0); },
         Vector3d::UnitX()},
        {"twist", [](double t) { return Vector3d(0.0, 0.0, std::sin(3.0 * t)); },
         Vector3d::UnitZ()},
    };
    for (const Motion& motion : motions) {
        const PivotFit fit = fitOf(posesOf(motion.turn, 60.0, 20.0));
        EXPECT_FALSE(fit.solve().has_value()) << motion.name;
        EXPECT_NEAR(fit.coverage(), 0.0, 1e-12) << motion.name;
        EXPECT_FALSE(fit.isTooFast()) << motion.name;
        if (!motion.weakest.isZero()) {
            const std::array<double, 3> axis = fit.weakestAxis();
            EXPECT_NEAR(std::abs(Vector3d(axis.data()).dot(motion.weakest)), 1.0, 1e-9)
                << motion.name;
        }
    }
}

TEST(PivotFit, noiseAloneGivesNoNumber) {
    pivotruns::Cell cell;
    cell.cone = 0.0;
    for (const double noise : {0.05, 0.3, 5.0}) {
        cell.noise = noise;
        for (std::uint64_t seed = 1; seed <= 20; ++seed) {
            EXPECT_FALSE(fitOf(cell, seed).solve().has_value()) << noise << " " << seed;
        }
    }
}

TEST(PivotFit, fastMotionIsRefusedAndSaidToBeTooFast) {
    const PivotFit fast = fitOf(posesOf([](double t) { return cone(t, 0.3, 2.0); }, 240.0, 10.0));
    EXPECT_FALSE(fast.solve().has_value());
    EXPECT_TRUE(fast.isTooFast());
    const PivotFit slow = fitOf(posesOf([](double t) { return cone(t, 0.3, 1.5); }, 240.0, 10.0));
    expectTip(slow.solve(), 1e-9);
    EXPECT_FALSE(slow.isTooFast());
}

TEST(PivotFit, fewPosesOrAShortRunHaveNoResult) {
    const auto turn = [](double t) { return cone(t, 0.5, 0.5); };
    std::vector<Pose> poses = posesOf(turn, 28.0, 59.0 / 28.0);
    ASSERT_EQ(poses.size(), 60U);
    expectTip(fitOf(poses).solve(), 1e-6);
    poses.pop_back();
    EXPECT_FALSE(fitOf(poses).solve().has_value());

    EXPECT_FALSE(fitOf(posesOf(turn, 100.0, 1.99)).solve().has_value());
    expectTip(fitOf(posesOf(turn, 100.0, 2.0)).solve(), 1e-6);
}

TEST(PivotFit, posesWithoutInstrumentsAreNoRun) {
    // Sixty poses at once, and one much later: none of them has poses on both sides.
    std::vector<Pose> poses = posesOf([](double t) { return cone(t, 0.5, 10.0); }, 1000.0, 0.09);
    Pose last = poses.back();
    last.seconds = 3.0;
    poses.push_back(last);
    EXPECT_FALSE(fitOf(poses).solve().has_value());
}

TEST(PivotFit, motionOfPosesWithoutInstrumentsIsNoMotion) {
    // Turned wildly in the first moment only, then still.
    const PivotFit fit = fitOf(
        posesOf([](double t) { return t < 0.09 ? cone(t, 1.5, 12.0) : Vector3d(0.0, 0.0, 0.0); },
                60.0, 3.0));
    EXPECT_GT(fit.coverage(), PivotFit::leastCoverage);
    EXPECT_FALSE(fit.solve().has_value());
}

TEST(PivotFit, whatIsNoPoseIsAsIfItHadNotCome) {
    constexpr double inf = std::numeric_limits<double>::infinity();
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    const std::vector<Pose> good = pivotruns::poses(pivotruns::Cell{}, 1);
    std::vector<Pose> mixed;
    for (std::size_t i = 0; i < good.size(); ++i) {
        mixed.push_back(good[i]);
        Pose bad = good[i];
        bad.seconds += 0.001;
        switch (i % 8) {
        case 0:
            bad.position[i % 3] = nan;
            break;
        case 1:
            bad.rotation[i % 9] = inf;
            break;
        case 2:
            bad.seconds = nan;
            break;
        case 3: // a time that has been
            bad.seconds = good[i].seconds;
            break;
        case 4:
            bad.seconds = good[i].seconds - 1.0;
            break;
        case 5:
            for (double& element : bad.rotation) {
                element *= 1.006; // RᵀR is off by 0.012
            }
            break;
        case 6: // a mirror image
            for (double& element : bad.rotation) {
                element = -element;
            }
            break;
        default:
            std::fill(std::begin(bad.rotation), std::end(bad.rotation), 0.0);
        }
        mixed.push_back(bad);
    }
    const PivotFit fit = fitOf(mixed);
    EXPECT_EQ(fit.poses(), good.size());
    const PivotResult expected = *fitOf(good).solve();
    const PivotResult result = *fit.solve();
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(result.tip[i], expected.tip[i]);
    }
    EXPECT_EQ(result.radius95, expected.radius95);
}

TEST(PivotFit, aRunIsBoundedInTime) {
    PivotFit fit;
    for (int i = 0; i <= 200 * 10; ++i) {
        fit.add(still(i / 10.0));
    }
    EXPECT_EQ(fit.poses(), 1201U);
    EXPECT_DOUBLE_EQ(fit.duration(), 120.0);
}

TEST(PivotFit, whatFellOutNoLongerCounts) {
    // A slip at the beginning, then two good minutes.
    std::vector<Pose> poses = posesOf([](double t) { return cone(t, 0.5, 0.3); }, 30.0, 140.0);
    for (Pose& pose : poses) {
        pose.position[0] += pose.seconds < 10.0 ? 25.0 : 0.0;
    }
    const PivotFit fit = fitOf(poses);
    const std::optional<PivotResult> result = fit.solve();
    expectTip(result, 1e-6);
    EXPECT_LT(result->slip, 1e-6);
    EXPECT_NEAR(
        fit.coverage(),
        fitOf(posesOf([](double t) { return cone(t + 20.0, 0.5, 0.3); }, 30.0, 120.0)).coverage(),
        1e-9);
}

TEST(PivotFit, clearForgetsAll) {
    PivotFit fit = fitOf(pivotruns::Cell{});
    fit.clear();
    EXPECT_EQ(fit.poses(), 0U);
    EXPECT_EQ(fit.duration(), 0.0);
    EXPECT_EQ(fit.coverage(), 0.0);
    EXPECT_EQ(fit.weakestAxis(), (std::array<double, 3>{}));
    EXPECT_FALSE(fit.solve().has_value());
    EXPECT_FALSE(fit.isTooFast());
    // Times and places of before mean nothing to the next run.
    pivotruns::Cell exact = exactCell();
    exact.distance = -5000.0;
    for (const Pose& pose : pivotruns::poses(exact, 2)) {
        fit.add(pose);
    }
    expectTip(fit.solve(), 1e-9);
}

TEST(PivotFit, aTipThatSlipsShows) {
    pivotruns::Cell cell;
    cell.slip = 4.0;
    const PivotResult slipped = *fitOf(cell).solve();
    EXPECT_GT(slipped.slip, PivotFit::slipOverResidual * slipped.residual);
    EXPECT_NEAR(slipped.slip, 4.0, 0.5);
    cell.slip = 0.0;
    const PivotResult good = *fitOf(cell).solve();
    EXPECT_LT(good.slip, PivotFit::slipOverResidual * good.residual);
}

TEST(PivotFit, aGapInTheMiddleIsBridged) {
    std::vector<Pose> poses;
    for (const Pose& pose : pivotruns::poses(exactCell(), 1)) {
        if (pose.seconds < 4.0 || pose.seconds > 6.0) {
            poses.push_back(pose);
        }
    }
    expectTip(fitOf(poses).solve(), 1e-9);
}

TEST(PivotFit, positionsBeyondAllMeasureGiveNoNumber) {
    std::vector<Pose> poses = pivotruns::poses(pivotruns::Cell{}, 1);
    poses[0].position[0] = -1e308;
    poses[300].position[0] = 1e308;
    EXPECT_FALSE(fitOf(poses).solve().has_value());
}
