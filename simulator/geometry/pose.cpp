#include "simulator/geometry/pose.h"

#include <Eigen/Geometry>
#include <cmath>

namespace kestrel_simulator {

namespace {
constexpr double radiansPerDegree = 3.14159265358979323846 / 180.0;
}

Pose Pose::inverse() const {
    const Eigen::Matrix3d back = rotation.transpose();
    return {-(back * position), back};
}

Pose operator*(const Pose& outer, const Pose& inner) {
    return {outer.apply(inner.position), outer.rotation * inner.rotation};
}

Eigen::Matrix3d rotationFromAngles(const Eigen::Vector3d& degrees) {
    const Eigen::Vector3d angles = degrees * radiansPerDegree;
    return (Eigen::AngleAxisd(angles.x(), Eigen::Vector3d::UnitX()) *
            Eigen::AngleAxisd(angles.y(), Eigen::Vector3d::UnitY()) *
            Eigen::AngleAxisd(angles.z(), Eigen::Vector3d::UnitZ()))
        .toRotationMatrix();
}

Eigen::Vector3d anglesFromRotation(const Eigen::Matrix3d& rotation) {
    const double sine = std::min(1.0, std::max(-1.0, rotation(0, 2)));
    Eigen::Vector3d angles(0.0, std::asin(sine), 0.0);
    constexpr double nearlyUpright = 1e-9;
    if (std::hypot(rotation(1, 2), rotation(2, 2)) < nearlyUpright) {
        angles.x() = std::atan2(rotation(2, 1), rotation(1, 1));
    } else {
        angles.x() = -std::atan2(rotation(1, 2), rotation(2, 2));
        angles.z() = -std::atan2(rotation(0, 1), rotation(0, 0));
    }
    return angles / radiansPerDegree;
}

Eigen::Matrix3d rotationFromVector(const Eigen::Vector3d& vector) {
    const double angle = vector.norm();
    if (angle == 0.0) {
        return Eigen::Matrix3d::Identity();
    }
    return Eigen::AngleAxisd(angle, vector / angle).toRotationMatrix();
}

} // namespace kestrel_simulator
