#include "simulator/geometry/posenoise.h"

namespace kestrel_simulator {

namespace {

Eigen::Vector3d normalVector(double deviation, std::mt19937_64& random) {
    if (deviation <= 0.0) {
        return Eigen::Vector3d::Zero();
    }
    std::normal_distribution<double> normal(0.0, deviation);
    const double x = normal(random);
    const double y = normal(random);
    return {x, y, normal(random)};
}

} // namespace

Pose PoseNoise::measured(const Pose& pose, std::mt19937_64& random) const {
    const Eigen::Vector3d shift = normalVector(position, random);
    const Eigen::Vector3d turn = normalVector(rotation(), random);
    return {pose.position + shift, pose.rotation * rotationFromVector(turn)};
}

} // namespace kestrel_simulator
