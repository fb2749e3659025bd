#include "libs/kestrel_recording/quaternion.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kestrel_recording {

namespace {

// The largest of the four is computed from the diagonal, the others by division by it: so none
// loses digits.
std::array<double, 4> unscaledQuaternion(const double (&rot)[9]) {
    const double xx = rot[0];
    const double yy = rot[4];
    const double zz = rot[8];
    const double zyLessYz = rot[5] - rot[7];
    const double xzLessZx = rot[6] - rot[2];
    const double yxLessXy = rot[1] - rot[3];
    const double xyAndYx = rot[1] + rot[3];
    const double xzAndZx = rot[2] + rot[6];
    const double yzAndZy = rot[5] + rot[7];
    const double trace = xx + yy + zz;
    if (trace >= std::max({xx, yy, zz})) {
        return {1.0 + trace, zyLessYz, xzLessZx, yxLessXy};
    }
    if (xx >= yy && xx >= zz) {
        return {zyLessYz, 1.0 + xx - yy - zz, xyAndYx, xzAndZx};
    }
    if (yy >= zz) {
        return {xzLessZx, xyAndYx, 1.0 + yy - xx - zz, yzAndZy};
    }
    return {yxLessXy, xzAndZx, yzAndZy, 1.0 + zz - xx - yy};
}

} // namespace

std::array<double, 4> quaternionOf(const double (&rot)[9]) {
    std::array<double, 4> quaternion = unscaledQuaternion(rot);
    double largest = 0.0;
    for (const double number : quaternion) {
        largest = std::isfinite(number) ? std::max(largest, std::abs(number))
                                        : std::numeric_limits<double>::quiet_NaN();
        if (std::isnan(largest)) {
            break;
        }
    }
    double sum = 0.0;
    for (double& number : quaternion) {
        number /= largest; // no square overflows
        sum += number * number;
    }
    const double scale = (quaternion[0] < 0.0 ? -1.0 : 1.0) / std::sqrt(sum);
    for (double& number : quaternion) {
        number *= scale;
    }
    return quaternion;
}

} // namespace kestrel_recording
