#include "PoseChecks.h"

#include <Eigen/Dense>
#include <algorithm>
#include <cmath>

namespace kestrel_probe {

namespace {

bool isFinite(const Pose& pose) {
    const auto finite = [](double value) { return std::isfinite(value); };
    return finite(pose.seconds) && std::all_of(pose.position, pose.position + 3, finite) &&
           std::all_of(pose.rotation, pose.rotation + 9, finite);
}

bool isRotation(const double* rotation) {
    const Eigen::Map<const Eigen::Matrix3d> matrix(rotation);
    const Eigen::Matrix3d off = matrix.transpose() * matrix - Eigen::Matrix3d::Identity();
    return off.cwiseAbs().maxCoeff() <= PivotFit::rotationTolerance && matrix.determinant() > 0.0;
}

} // namespace

bool isProper(const Pose& pose) {
    return isFinite(pose) && isRotation(pose.rotation);
}

} // namespace kestrel_probe
