#pragma once

#include "libs/kestrel_probe/TipSolver.h"
#include "simulator/geometry/pose.h"

#include <vector>

namespace kestrel_simulator {

/// kestrel_probe's solution in the terms of the scene: see there.
struct TipSolution {
    using Outcome = kestrel_probe::TipSolution::Outcome;
    Outcome outcome = Outcome::TooFewPoses;
    Eigen::Vector3d tip = Eigen::Vector3d::Zero();        ///< in the body's coordinates, mm
    Eigen::Vector3d fixedPoint = Eigen::Vector3d::Zero(); ///< in the room, mm
    double residual = 0.0; ///< RMS distance of the poses' tips from the fixed point, mm
    Eigen::Matrix3d covariance = Eigen::Matrix3d::Zero(); ///< of `tip`, mm^2

    /// Three standard deviations of the tip's distance from the true one, mm:
    /// 3 * sqrt(trace(covariance)).
    double uncertainty() const;
};

/// kestrel_probe::solveTip() over these poses of a body.
TipSolution solveTip(const std::vector<Pose>& poses);

} // namespace kestrel_simulator
