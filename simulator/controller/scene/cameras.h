#pragma once

#include "simulator/controller/scene/scene.h"
#include "simulator/geometry/posenoise.h"

#include <cstdint>
#include <optional>
#include <random>

namespace kestrel_simulator {

/// What the controller measures of the scene: true poses plus noise, and nothing of what is hidden.
class Cameras {
public:
    /// Scene and noise outlive the cameras; both are read anew for each pose.
    Cameras(const Scene& scene, const PoseNoise& noise, std::uint64_t seed);

    /// Pose of the tool with its body's origin, in the coordinates that it is reported in; none
    /// while it is not tracked.
    std::optional<Pose> toolBody(int tool, double time);

    /// None while it is not tracked.
    std::optional<Pose> reference(int index, double time);

    Pose standardBody(int index, double time);

    /// What the noise of the body's pose does to the given tip of it (mm^2).
    Eigen::Matrix3d tipCovariance(const Pose& body, const Eigen::Vector3d& tip) const;

private:
    const Scene& m_scene;
    const PoseNoise& m_noise;
    std::mt19937_64 m_random;
};

} // namespace kestrel_simulator
