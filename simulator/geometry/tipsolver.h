#pragma once

#include "simulator/geometry/pose.h"

#include <cstddef>
#include <vector>

namespace kestrel_simulator {

/// What a least squares fit of a fixed tip to the poses of its body says.
struct TipSolution {
    enum class Outcome {
        Solved,
        TooFewPoses, ///< fewer than tipsolver::minimumPoses
        Still,       ///< the body did not turn
        Twist,       ///< it turned about its own axis only: the tip may be anywhere along it
        Planar       ///< it turned about one axis only: the tip's place along it is open
    };
    Outcome outcome = Outcome::TooFewPoses;
    Eigen::Vector3d tip = Eigen::Vector3d::Zero();        ///< in the body's coordinates, mm
    Eigen::Vector3d fixedPoint = Eigen::Vector3d::Zero(); ///< in the room, mm
    double residual = 0.0; ///< RMS distance of the poses' tips from the fixed point, mm
    Eigen::Matrix3d covariance = Eigen::Matrix3d::Zero(); ///< of `tip`, mm^2

    /// Three standard deviations of the tip's distance from the true one, mm:
    /// 3 * sqrt(trace(covariance)).
    double uncertainty() const;
};

/// Thresholds between a motion that determines the tip and one that does not. A pose's turn counts
/// as its deviation from the mean rotation; see docs/calibration.md.
namespace tipsolver {
inline constexpr std::size_t minimumPoses = 20;
inline constexpr double stillness = 0.01;  ///< mean squared deviation of all axes together
inline constexpr double oneAxis = 0.005;   ///< of the axis that turned least
inline constexpr double originStill = 3.0; ///< mm, RMS, of the body's origin
} // namespace tipsolver

/// Finds the tip t and the fixed point c that minimise sum |R_i t + p_i - c|^2 over the poses
/// (R_i, p_i). Only `outcome` is set when the motion does not determine the tip.
TipSolution solveTip(const std::vector<Pose>& poses);

} // namespace kestrel_simulator
