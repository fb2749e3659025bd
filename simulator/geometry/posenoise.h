#pragma once

#include "simulator/geometry/pose.h"

#include <random>

namespace kestrel_simulator {

/// Noise of measured poses: normally distributed, independent from pose to pose.
struct PoseNoise {
    /// Standard deviation of each coordinate of the position, mm.
    double position = 0.05;

    /// Standard deviation of each component of the rotation vector, rad: that of markers with the
    /// noise above, 100 mm around the origin.
    double rotation() const { return position / 100.0; }

    Pose measured(const Pose& pose, std::mt19937_64& random) const;
};

} // namespace kestrel_simulator
