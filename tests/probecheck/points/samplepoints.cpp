#include "samplepoints.h"

points::PointRecord samplePoint(int number, double x, double y, double z) {
    points::PointRecord point;
    point.number = number;
    point.name = QStringLiteral("P%1").arg(number);
    point.position = {x, y, z};
    point.deviation = {0.03, 0.02, 0.01};
    point.greatestDistance = 0.08;
    point.samples = 61;
    point.duration = 1.0;
    point.utcMs = 1'795'320'000'000 + 1000LL * number;
    point.tolerance = 1.5;
    return point;
}

std::vector<points::PointRecord> samplePoints(int count) {
    std::vector<points::PointRecord> all;
    all.reserve(static_cast<std::size_t>(count));
    for (int number = 1; number <= count; ++number) {
        all.push_back(samplePoint(number, 10.0 * number));
    }
    return all;
}
