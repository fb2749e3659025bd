#pragma once

#include <Eigen/Core>

namespace kestrel_simulator {

constexpr double fullTurn = 6.28318530717958647692; ///< rad

/// Position (mm) and orientation of a body in some frame: maps the body's coordinates into it.
struct Pose {
    Eigen::Vector3d position = Eigen::Vector3d::Zero();
    Eigen::Matrix3d rotation = Eigen::Matrix3d::Identity();

    Eigen::Vector3d apply(const Eigen::Vector3d& point) const {
        return position + rotation * point;
    }
    Pose inverse() const;

    /// The same orientation, with `point` of the body as its origin.
    Pose withOrigin(const Eigen::Vector3d& point) const { return {apply(point), rotation}; }
};

/// `inner` is given in the coordinates of `outer`'s body.
Pose operator*(const Pose& outer, const Pose& inner);

/// Rx(rx) * Ry(ry) * Rz(rz) for the angles (rx, ry, rz) in degrees.
Eigen::Matrix3d rotationFromAngles(const Eigen::Vector3d& degrees);

/// The angles (rx, ry, rz) of a rotation in degrees, ry within -90 to 90. Where they are not unique
/// (ry = +-90) rz is 0.
Eigen::Vector3d anglesFromRotation(const Eigen::Matrix3d& rotation);

/// The rotation about `vector` by its length in radians.
Eigen::Matrix3d rotationFromVector(const Eigen::Vector3d& vector);

} // namespace kestrel_simulator
