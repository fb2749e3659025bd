#include "simulator/geometry/tipsolver.h"

#include <cmath>

namespace kestrel_simulator {

using Eigen::Map;
using Eigen::Matrix3d;
using Eigen::Vector3d;

double TipSolution::uncertainty() const {
    return 3.0 * std::sqrt(covariance.trace());
}

TipSolution solveTip(const std::vector<Pose>& poses) {
    std::vector<kestrel_probe::Pose> reported(poses.size());
    for (std::size_t i = 0; i < poses.size(); ++i) {
        Map<Vector3d>(reported[i].position) = poses[i].position;
        Map<Matrix3d>(reported[i].rotation) = poses[i].rotation;
    }
    const kestrel_probe::TipSolution found = kestrel_probe::solveTip(reported);
    TipSolution solution;
    solution.outcome = found.outcome;
    solution.tip = Map<const Vector3d>(found.tip);
    solution.fixedPoint = Map<const Vector3d>(found.restingPoint);
    solution.residual = found.residual;
    solution.covariance = Map<const Matrix3d>(found.covariance);
    return solution;
}

} // namespace kestrel_simulator
