#include "KestrelAngles.h"

#include <cmath>

namespace KestrelSDK_Angles {

namespace {

constexpr double degreesPerRadian = 57.29577951308232;

}

RotationAngles rotationAngles(const double (&rot)[9]) {
    RotationAngles angles;
    angles.ry = std::asin(rot[6]) * degreesPerRadian;
    const bool degenerate = (rot[8] == 0.0 && rot[7] == 0.0) || (rot[0] == 0.0 && rot[3] == 0.0);
    if (degenerate) {
        angles.rx = std::atan2(rot[5], rot[4]) * degreesPerRadian;
        angles.rz = 0.0;
    } else {
        angles.rx = -std::atan2(rot[7], rot[8]) * degreesPerRadian;
        angles.rz = -std::atan2(rot[3], rot[0]) * degreesPerRadian;
    }
    return angles;
}

} // namespace KestrelSDK_Angles
