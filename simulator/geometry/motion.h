#pragma once

#include "simulator/geometry/pose.h"

#include <cstdint>

namespace kestrel_simulator {

/// A number in [0, 1) that depends on nothing but its arguments.
double hashedUniform(std::uint64_t seed, std::uint64_t stream, std::uint64_t index);

/// How a hand moves a probe: to a point, a rest there with a button pressed now and then, on to the
/// next point. A smooth function of time for a given seed.
class ToolMotion {
public:
    ToolMotion(std::uint64_t seed, int index);

    /// Pose with the true tip as origin, in the room, at `time` seconds.
    Pose tipPose(double time) const;

    /// Bit k is button k.
    unsigned buttons(double time) const;

    /// Whether somebody stands in the cameras' way.
    bool occluded(double time) const;

    /// Where the tip of the probe in this hand is in the coordinates of its body (mm).
    Eigen::Vector3d tip() const;

    /// How wrong a controller is about that tip that was calibrated long ago (mm).
    Eigen::Vector3d tipError() const;

private:
    struct Resting {
        Eigen::Vector3d position;
        Eigen::Vector3d angles;
    };

    double uniform(std::uint64_t purpose, std::uint64_t index) const;
    Resting restingAt(std::uint64_t stop) const;

    std::uint64_t m_seed;
    int m_index;
};

/// How a body moves that nobody holds: it stands (even index) or drifts slowly.
class StandingMotion {
public:
    StandingMotion(std::uint64_t seed, int index);

    Pose pose(double time) const;

private:
    std::uint64_t m_seed;
    int m_index;
};

} // namespace kestrel_simulator
