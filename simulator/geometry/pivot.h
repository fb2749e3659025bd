#pragma once

#include "simulator/geometry/pose.h"

#include <optional>
#include <string>
#include <string_view>

namespace kestrel_simulator {

/// How a probe is swung about its tip.
enum class Pivot {
    Cone,   ///< "cone": in all directions about the resting tip, as it should be
    Planar, ///< "planar": to and fro in one plane
    Twist,  ///< "twist": turned about its own axis
    Slip,   ///< "slip": as cone, but the tip slips away half-way and back at the end
    Still   ///< "still": not at all
};

std::optional<Pivot> findPivot(std::string_view name);
std::string_view pivotName(Pivot pivot);

/// All names: "cone, planar, ...".
std::string pivotNames();

/// A probe as it truly is.
struct Probe {
    static constexpr double maxLength = 1000.0; ///< of a coordinate of the tip and of the lever
    static constexpr double minLever = 1.0;
    static constexpr double maxSlip = 100.0;

    Eigen::Vector3d tip = Eigen::Vector3d::Zero(); ///< in the body's coordinates, mm
    double slip = 4.0;                             ///< mm that the tip slips in "slip"

    /// Direction from the body's origin to the tip.
    Eigen::Vector3d shaft() const;

    /// Distance of the tip from the body's origin, mm. Setting it keeps the shaft's direction.
    double lever() const { return tip.norm(); }
    void setLever(double length);
};

/// A swing that has begun: five rounds in a period, then all over again. The hand swings out
/// softly; but for that jumps come only from a tip that slips.
struct Swing {
    static constexpr double usualPeriod = 6.0;
    static constexpr double minPeriod = 0.05;
    static constexpr double maxPeriod = 3600.0;

    Pivot pivot = Pivot::Cone;
    Pose from;                   ///< of the probe at the beginning, with its tip as origin
    double begin = 0.0;          ///< seconds
    double period = usualPeriod; ///< seconds

    /// Pose with the tip as origin, not before the beginning.
    Pose tipPose(const Probe& probe, double time) const;
};

} // namespace kestrel_simulator
