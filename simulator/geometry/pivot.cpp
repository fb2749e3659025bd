#include "simulator/geometry/pivot.h"

#include <array>
#include <cmath>

namespace kestrel_simulator {

namespace {

constexpr double fullTurn = 6.28318530717958647692;
constexpr double swing = 0.45; // rad, from the upright
constexpr double twist = 1.0;  // rad, either way
constexpr double slipLength = 4.0;

struct NamedPivot {
    Pivot pivot;
    std::string_view name;
};

constexpr std::array<NamedPivot, 5> pivots = {{{Pivot::Cone, "cone"},
                                               {Pivot::Planar, "planar"},
                                               {Pivot::Twist, "twist"},
                                               {Pivot::Slip, "slip"},
                                               {Pivot::Still, "still"}}};

// `share` is how much of the calibration has passed, 0 to 1
Eigen::Vector3d turnOf(Pivot pivot, const Eigen::Vector3d& shaft, double share) {
    const double tilt = swing * (0.65 + 0.35 * std::sin(fullTurn * 7.0 * share));
    const double direction = fullTurn * 5.0 * share;
    switch (pivot) {
    case Pivot::Cone:
    case Pivot::Slip:
        return {tilt * std::cos(direction), tilt * std::sin(direction),
                0.2 * std::sin(fullTurn * 2.0 * share)};
    case Pivot::Planar:
        return {swing * std::sin(direction), 0.0, 0.0};
    case Pivot::Twist:
        return shaft * (twist * std::sin(direction));
    case Pivot::Still:
        break;
    }
    return Eigen::Vector3d::Zero();
}

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

std::optional<Pivot> findPivot(std::string_view name) {
    for (const NamedPivot& each : pivots) {
        if (each.name == name) {
            return each.pivot;
        }
    }
    return std::nullopt;
}

std::string_view pivotName(Pivot pivot) {
    for (const NamedPivot& each : pivots) {
        if (each.pivot == pivot) {
            return each.name;
        }
    }
    return {};
}

Pose PoseNoise::measured(const Pose& pose, std::mt19937_64& random) const {
    const Eigen::Vector3d shift = normalVector(position, random);
    const Eigen::Vector3d turn = normalVector(rotation(), random);
    return {pose.position + shift, pose.rotation * rotationFromVector(turn)};
}

std::vector<Pose> pivotPoses(Pivot pivot, const Eigen::Vector3d& tip, std::size_t count,
                             const PoseNoise& noise, std::mt19937_64& random) {
    const Eigen::Vector3d shaft = tip.normalized();
    const Eigen::Matrix3d upright = rotationFromAngles({180.0, 0.0, 25.0});
    std::vector<Pose> poses;
    poses.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const double share = (static_cast<double>(i) + 0.5) / static_cast<double>(count);
        Eigen::Vector3d fixedPoint(120.0, -80.0, 15.0);
        if (pivot == Pivot::Slip && share > 0.5) {
            fixedPoint.x() += slipLength;
        }
        Pose pose;
        pose.rotation = upright * rotationFromVector(turnOf(pivot, shaft, share));
        pose.position = fixedPoint - pose.rotation * tip;
        poses.push_back(noise.measured(pose, random));
    }
    return poses;
}

} // namespace kestrel_simulator
