#include "TipSolver.h"

#include "PoseChecks.h"

#include <Eigen/Cholesky>
#include <Eigen/Eigenvalues>
#include <algorithm>
#include <cmath>
#include <iterator>

namespace kestrel_probe {

namespace {

using Eigen::Matrix3d;
using Eigen::Vector3d;
using Matrix = Eigen::Map<const Matrix3d>;
using Vector = Eigen::Map<const Vector3d>;
using Outcome = TipSolution::Outcome;

struct Means {
    explicit Means(const std::vector<Pose>& poses) {
        for (const Pose& pose : poses) {
            rotation += Matrix(pose.rotation);
            position += Vector(pose.position);
        }
        const auto count = static_cast<double>(poses.size());
        rotation /= count;
        position /= count;
    }
    Matrix3d rotation = Matrix3d::Zero();
    Vector3d position = Vector3d::Zero();
};

Outcome outcomeOf(const Matrix3d& spread, double originSpread) {
    const Eigen::SelfAdjointEigenSolver<Matrix3d> axes(spread, Eigen::EigenvaluesOnly);
    if (spread.trace() < tipsolver::stillness) {
        return Outcome::Still;
    }
    if (axes.eigenvalues()[0] < tipsolver::oneAxis) {
        return originSpread < tipsolver::originStill ? Outcome::Twist : Outcome::Planar;
    }
    return Outcome::Solved;
}

} // namespace

TipSolution solveTip(const std::vector<Pose>& poses) {
    TipSolution solution;
    std::vector<Pose> proper;
    proper.reserve(poses.size());
    std::copy_if(poses.begin(), poses.end(), std::back_inserter(proper), &isProper);
    if (proper.size() < tipsolver::minimumPoses) {
        return solution;
    }
    // The resting point is eliminated: it is the mean of the tips, whatever the tip.
    const Means means(proper);
    Matrix3d normal = Matrix3d::Zero();
    Vector3d right = Vector3d::Zero();
    double originSquares = 0.0;
    for (const Pose& pose : proper) {
        const Matrix3d rotation = Matrix(pose.rotation) - means.rotation;
        const Vector3d position = Vector(pose.position) - means.position;
        normal += rotation.transpose() * rotation;
        right -= rotation.transpose() * position;
        originSquares += position.squaredNorm();
    }
    const auto count = static_cast<double>(proper.size());
    solution.outcome = outcomeOf(normal / count, std::sqrt(originSquares / count));
    if (solution.outcome != Outcome::Solved) {
        return solution;
    }
    const Eigen::LDLT<Matrix3d> factors(normal);
    const Vector3d tip = factors.solve(right);
    const Vector3d resting = means.rotation * tip + means.position;
    double squares = 0.0;
    for (const Pose& pose : proper) {
        squares += (Matrix(pose.rotation) * tip + Vector(pose.position) - resting).squaredNorm();
    }
    const double variance = squares / (3.0 * count - 6.0);
    const Matrix3d covariance = variance * factors.solve(Matrix3d::Identity());
    solution.residual = std::sqrt(squares / count);
    std::copy_n(tip.data(), 3, solution.tip);
    std::copy_n(resting.data(), 3, solution.restingPoint);
    std::copy_n(covariance.data(), 9, solution.covariance);
    return solution;
}

} // namespace kestrel_probe
