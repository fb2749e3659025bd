#include "probecheck/points/record/pointdistance.h"

#include <cmath>
#include <iterator>
#include <limits>

namespace points {

namespace {

using kestrel_probe::Verdict;

double readingsOf(const PointRecord& point) {
    return 1.0 + point.duration / secondsPerReading;
}

/// Student's factor for two-sided 95 %, of the readings less one; empty below one.
std::optional<double> studentsFactor(double readings) {
    static constexpr double factors[] = {12.706, 4.303, 3.182, 2.776, 2.571, 2.447, 2.365, 2.306,
                                         2.262,  2.228, 2.201, 2.179, 2.160, 2.145, 2.131, 2.120,
                                         2.110,  2.101, 2.093, 2.086, 2.080, 2.074, 2.069, 2.064,
                                         2.060,  2.056, 2.052, 2.048, 2.045, 2.042};
    // 0.2 s as a difference of a clock's large numbers is a little less.
    const double freedom = std::floor(readings - 1.0 + 1e-6);
    if (!(freedom >= 1.0)) {
        return std::nullopt;
    }
    const double last = static_cast<double>(std::size(factors));
    return factors[static_cast<int>(std::fmin(freedom, last)) - 1];
}

double square(double value) {
    return value * value;
}

double varianceOfMean(const PointRecord& point) {
    return (square(point.deviation[0]) + square(point.deviation[1]) + square(point.deviation[2])) /
           readingsOf(point);
}

double varianceAlong(const PointRecord& point, const std::array<double, 3>& line, double length) {
    double worst = 0.0;
    for (std::size_t i = 0; i < 3; ++i) {
        worst += std::fabs(line[i] / length) * point.deviation[i];
    }
    return square(worst) / readingsOf(point);
}

} // namespace

std::optional<double> radius95(const PointRecord& point) {
    const std::optional<double> factor = studentsFactor(readingsOf(point));
    if (!factor) {
        return std::nullopt;
    }
    return *factor * std::sqrt(varianceOfMean(point));
}

Verdict verdictOf(const PointRecord& point) {
    const double unknown = std::numeric_limits<double>::quiet_NaN();
    return kestrel_probe::judge(point.greatestDistance, radius95(point).value_or(unknown),
                                point.tolerance);
}

bool areComparable(const PointRecord& a, const PointRecord& b) {
    return a.reference == b.reference && a.reference != unknownReference;
}

std::optional<UncertainLength> distanceOf(const PointRecord& a, const PointRecord& b) {
    if (!areComparable(a, b)) {
        return std::nullopt;
    }
    std::array<double, 3> line{};
    for (std::size_t i = 0; i < 3; ++i) {
        line[i] = b.position[i] - a.position[i];
    }
    UncertainLength distance;
    distance.length = std::hypot(line[0], line[1], line[2]);
    const std::optional<double> factor = studentsFactor(std::fmin(readingsOf(a), readingsOf(b)));
    if (factor) {
        const double anyDirection = *factor * std::sqrt(varianceOfMean(a) + varianceOfMean(b));
        constexpr double directionIsCertain = 3.0; // distance over uncertainty
        distance.uncertainty = distance.length <= directionIsCertain * anyDirection
                                   ? anyDirection
                                   : *factor * std::sqrt(varianceAlong(a, line, distance.length) +
                                                         varianceAlong(b, line, distance.length));
    }
    return distance;
}

NominalComparison compareToNominal(const UncertainLength& measured, double nominal,
                                   double tolerance) {
    const double unknown = std::numeric_limits<double>::quiet_NaN();
    const double error = measured.length - nominal;
    return {error, kestrel_probe::judge(std::fabs(error), measured.uncertainty.value_or(unknown),
                                        tolerance)};
}

} // namespace points
