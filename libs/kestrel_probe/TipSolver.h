#pragma once

#include "PivotFit.h"

#include <vector>

namespace kestrel_probe {

/// What a plain least squares fit of a resting tip to the poses of its tool says. Lengths in mm.
struct TipSolution {
    /// Whether there is a tip, or why the motion does not determine it.
    enum class Outcome {
        Solved,      ///< there is
        TooFewPoses, ///< fewer than tipsolver::minimumPoses
        Still,       ///< the tool did not turn
        Twist,       ///< it turned about its own axis only: the tip may be anywhere along it
        Planar       ///< it turned about one axis only: the tip's place along it is open
    };
    Outcome outcome = Outcome::TooFewPoses; ///< the others are 0 unless it is Solved
    double tip[3] = {};                     ///< in the tool's axes, from the reported position
    double restingPoint[3] = {};            ///< in the room
    double residual = 0.0;     ///< RMS distance of the poses' tips from the resting point
    double covariance[9] = {}; ///< of `tip`, mm²; symmetric
};

/// Thresholds between a motion that determines the tip and one that does not. A pose's turn counts
/// as its deviation from the mean rotation.
namespace tipsolver {
inline constexpr std::size_t minimumPoses = 20; ///< with fewer there is no tip
inline constexpr double stillness = 0.01;       ///< mean squared deviation of all axes together
inline constexpr double oneAxis = 0.005;        ///< of the axis that turned least
inline constexpr double originStill = 3.0;      ///< mm, RMS, of the reported position
} // namespace tipsolver

/// Finds the tip t and the resting point c that minimise Σ |R t + p - c|² over the poses, in any
/// order and without regard to their times, as controllers calibrate: quick to name what was wrong
/// with a motion, and exact without noise. The covariance s² M⁻¹ is right for noise that is
/// independent from pose to pose; noise in the rotations pulls the tip towards the reported
/// position. PivotFit is free of both, and wants longer runs.
///
/// Only `outcome` is set when the motion does not determine the tip. A pose that is not finite or
/// whose matrix is no rotation is as if it were not there. May be called from any thread; nothing
/// throws but the memory's allocation.
TipSolution solveTip(const std::vector<Pose>& poses);

} // namespace kestrel_probe
