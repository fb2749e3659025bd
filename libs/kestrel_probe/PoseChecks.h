#pragma once

#include "PivotFit.h"

namespace kestrel_probe {

/// Whether all numbers of the pose are finite and its matrix is a rotation, to within
/// PivotFit::rotationTolerance.
bool isProper(const Pose& pose);

} // namespace kestrel_probe
