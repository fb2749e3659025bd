#pragma once

#include "probecheck/points/pointrecord.h"

#include <vector>

/// A point at this place, held for a second, with a name of its own.
points::PointRecord samplePoint(int number, double x = 0.0, double y = 0.0, double z = 0.0);

/// Points 1 to `count`, 10 mm apart along x.
std::vector<points::PointRecord> samplePoints(int count);
