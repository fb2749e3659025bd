#include "simulator/controller/scene/cameras.h"

namespace kestrel_simulator {

Cameras::Cameras(const Scene& scene, const PoseNoise& noise, std::uint64_t seed)
    : m_scene(scene)
    , m_noise(noise)
    , m_random(seed) {}

std::optional<Pose> Cameras::toolBody(int tool, double time) {
    if (!m_scene.isToolTracked(tool, time)) {
        return std::nullopt;
    }
    return m_noise.measured(m_scene.toolBody(tool, time), m_random);
}

std::optional<Pose> Cameras::reference(int index, double time) {
    if (!m_scene.isReferenceTracked(index)) {
        return std::nullopt;
    }
    return m_noise.measured(m_scene.reference(index, time), m_random);
}

Pose Cameras::standardBody(int index, double time) {
    return m_noise.measured(m_scene.standardBody(index, time), m_random);
}

Eigen::Matrix3d Cameras::tipCovariance(const Pose& body, const Eigen::Vector3d& tip) const {
    const Eigen::Vector3d arm = body.rotation * tip;
    const double turn = m_noise.rotation() * m_noise.rotation();
    Eigen::Matrix3d covariance =
        turn * (arm.squaredNorm() * Eigen::Matrix3d::Identity() - arm * arm.transpose());
    covariance.diagonal().array() += m_noise.position * m_noise.position;
    return covariance;
}

} // namespace kestrel_simulator
