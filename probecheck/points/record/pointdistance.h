#pragma once

#include "probecheck/points/record/pointrecord.h"

#include <optional>

namespace points {

/// Tracking noise lasts over some frames: samples nearer in time than this are not counted as
/// readings of their own. Enough for noise whose correlation fades within 0.1 s by a factor of e.
inline constexpr double secondsPerReading = 0.2;

/// A length in mm and the half width of its 95 % interval; without one when a point was held for
/// less than 0.2 s, which tells nothing about the noise of its mean.
struct UncertainLength {
    double length = 0.0;
    std::optional<double> uncertainty;
};

/// Radius in mm of the region around a point's mean that holds the tip's true position 95 times in
/// 100, as far as the tracker's noise goes: t · sqrt((s_x² + s_y² + s_z²) / m). m = 1 + duration /
/// 0.2 s is the number of independent readings, t is Student's factor for m - 1 of them rounded
/// down. The sum of the axes stands for the worst direction, however their noise hangs together.
std::optional<double> radius95(const PointRecord& point);

/// e + U against the tolerance: e the greatest distance of a sample from the mean, U the radius.
kestrel_probe::Verdict verdictOf(const PointRecord& point);

/// Points measured from different references, or from one that is not known, have no distance.
bool areComparable(const PointRecord& a, const PointRecord& b);

/// The distance of two points and its uncertainty U = t · sqrt(u_a² + u_b²), with u = (|d_x| s_x +
/// |d_y| s_y + |d_z| s_z) / sqrt(m) along the line d between them, which is the most that it can be
/// however the axes' noise hangs together; all directions count for points so near to each other
/// that the line's own direction is uncertain. t belongs to the readings of the point with fewer.
/// Empty when the points are not comparable.
std::optional<UncertainLength> distanceOf(const PointRecord& a, const PointRecord& b);

/// A distance against a nominal length.
struct NominalComparison {
    double error; ///< mm, measured less nominal
    kestrel_probe::Verdict verdict;
};

/// A length without uncertainty is undecided.
NominalComparison compareToNominal(const UncertainLength& measured, double nominal,
                                   double tolerance);

} // namespace points
