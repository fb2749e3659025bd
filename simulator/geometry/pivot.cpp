#include "simulator/geometry/pivot.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kestrel_simulator {

namespace {

constexpr double swingAngle = 0.45; // rad, from where it began
constexpr double twistAngle = 1.0;  // rad, either way
constexpr double softShare = 0.05;  // of a period

struct NamedPivot {
    Pivot pivot;
    std::string_view name;
};

constexpr std::array<NamedPivot, 5> pivots = {{{Pivot::Cone, "cone"},
                                               {Pivot::Planar, "planar"},
                                               {Pivot::Twist, "twist"},
                                               {Pivot::Slip, "slip"},
                                               {Pivot::Still, "still"}}};

Eigen::Vector3d turnOf(Pivot pivot, const Eigen::Vector3d& shaft, double periods) {
    const double tilt = swingAngle * (0.65 + 0.35 * std::sin(fullTurn * 7.0 * periods));
    const double direction = fullTurn * 5.0 * periods;
    switch (pivot) {
    case Pivot::Cone:
    case Pivot::Slip:
        return {tilt * std::cos(direction), tilt * std::sin(direction),
                0.2 * std::sin(fullTurn * 2.0 * periods)};
    case Pivot::Planar:
        return {swingAngle * std::sin(direction), 0.0, 0.0};
    case Pivot::Twist:
        return shaft * (twistAngle * std::sin(direction));
    case Pivot::Still:
        break;
    }
    return Eigen::Vector3d::Zero();
}

double swungOut(double periods) {
    const double share = std::clamp(periods / softShare, 0.0, 1.0);
    return share * share * (3.0 - 2.0 * share);
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

std::string pivotNames() {
    std::string names;
    for (const NamedPivot& each : pivots) {
        names.append(names.empty() ? "" : ", ").append(each.name);
    }
    return names;
}

Eigen::Vector3d Probe::shaft() const {
    const double length = tip.norm();
    return length > 0.0 ? Eigen::Vector3d(tip / length) : Eigen::Vector3d::UnitZ();
}

void Probe::setLever(double length) {
    tip = length * shaft();
}

Pose Swing::tipPose(const Probe& probe, double time) const {
    const double periods = (time - begin) / period;
    const Eigen::Vector3d turn = swungOut(periods) * turnOf(pivot, probe.shaft(), periods);
    Pose pose = {from.position, from.rotation * rotationFromVector(turn)};
    if (pivot == Pivot::Slip && periods - std::floor(periods) > 0.5) {
        pose.position.x() += probe.slip;
    }
    return pose;
}

} // namespace kestrel_simulator
