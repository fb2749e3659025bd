#pragma once

#include <array>

namespace kestrel_recording {

/// The unit quaternion (w, x, y, z) of a rotation matrix, nine numbers column by column; w is not
/// negative. Of nine numbers that are no rotation something of length 1 or four NaNs.
std::array<double, 4> quaternionOf(const double (&rot)[9]);

} // namespace kestrel_recording
