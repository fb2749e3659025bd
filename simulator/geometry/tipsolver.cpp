#include "simulator/geometry/tipsolver.h"

#include <Eigen/Cholesky>
#include <Eigen/Eigenvalues>
#include <cmath>

namespace kestrel_simulator {

namespace {

using Outcome = TipSolution::Outcome;

struct Means {
    Eigen::Matrix3d rotation = Eigen::Matrix3d::Zero();
    Eigen::Vector3d position = Eigen::Vector3d::Zero();
};

Means meansOf(const std::vector<Pose>& poses) {
    Means means;
    for (const Pose& pose : poses) {
        means.rotation += pose.rotation;
        means.position += pose.position;
    }
    const auto count = static_cast<double>(poses.size());
    means.rotation /= count;
    means.position /= count;
    return means;
}

Outcome judge(const Eigen::Matrix3d& spread, double originSpread) {
    const Eigen::SelfAdjointEigenSolver<Eigen::Matrix3d> axes(spread, Eigen::EigenvaluesOnly);
    if (spread.trace() < tipsolver::stillness) {
        return Outcome::Still;
    }
    if (axes.eigenvalues()[0] < tipsolver::oneAxis) {
        return originSpread < tipsolver::originStill ? Outcome::Twist : Outcome::Planar;
    }
    return Outcome::Solved;
}

} // namespace

double TipSolution::uncertainty() const {
    return 3.0 * std::sqrt(covariance.trace());
}

TipSolution solveTip(const std::vector<Pose>& poses) {
    TipSolution solution;
    if (poses.size() < tipsolver::minimumPoses) {
        return solution;
    }
    // The fixed point is eliminated: it is the mean of the tips, whatever the tip.
    const Means means = meansOf(poses);
    Eigen::Matrix3d normal = Eigen::Matrix3d::Zero();
    Eigen::Vector3d right = Eigen::Vector3d::Zero();
    double originSquares = 0.0;
    for (const Pose& pose : poses) {
        const Eigen::Matrix3d rotation = pose.rotation - means.rotation;
        const Eigen::Vector3d position = pose.position - means.position;
        normal += rotation.transpose() * rotation;
        right -= rotation.transpose() * position;
        originSquares += position.squaredNorm();
    }
    const auto count = static_cast<double>(poses.size());
    solution.outcome = judge(normal / count, std::sqrt(originSquares / count));
    if (solution.outcome != Outcome::Solved) {
        return solution;
    }
    const Eigen::LDLT<Eigen::Matrix3d> factors(normal);
    solution.tip = factors.solve(right);
    solution.fixedPoint = means.rotation * solution.tip + means.position;
    double squares = 0.0;
    for (const Pose& pose : poses) {
        squares += (pose.apply(solution.tip) - solution.fixedPoint).squaredNorm();
    }
    solution.residual = std::sqrt(squares / count);
    const double variance = squares / (3.0 * count - 6.0);
    solution.covariance = variance * factors.solve(Eigen::Matrix3d::Identity());
    return solution;
}

} // namespace kestrel_simulator
