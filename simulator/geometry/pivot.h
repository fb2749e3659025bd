#pragma once

#include "simulator/geometry/pose.h"

#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace kestrel_simulator {

/// How the probe is moved during a tip calibration.
enum class Pivot {
    Cone,   ///< "cone": swung in all directions about the resting tip, as it should be
    Planar, ///< "planar": swung to and fro in one plane
    Twist,  ///< "twist": turned about its own axis
    Slip,   ///< "slip": as cone, but the tip slips by 4 mm half-way
    Still   ///< "still": not moved at all
};

std::optional<Pivot> findPivot(std::string_view name);
std::string_view pivotName(Pivot pivot);

/// Noise of measured poses: normally distributed, independent from pose to pose.
struct PoseNoise {
    /// Standard deviation of each coordinate of the position, mm.
    double position = 0.05;

    /// Standard deviation of each component of the rotation vector, rad: that of markers with the
    /// noise above, 100 mm around the origin.
    double rotation() const { return position / 100.0; }

    Pose measured(const Pose& pose, std::mt19937_64& random) const;
};

/// The measured poses of a body whose true tip is `tip` (body coordinates, mm), evenly spaced over
/// one calibration.
std::vector<Pose> pivotPoses(Pivot pivot, const Eigen::Vector3d& tip, std::size_t count,
                             const PoseNoise& noise, std::mt19937_64& random);

} // namespace kestrel_simulator
