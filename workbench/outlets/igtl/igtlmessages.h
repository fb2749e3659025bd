#pragma once

#include "workbench/outlets/sending/frames/trackedframe.h"
#include "workbench/outlets/sending/resultmessage.h"

#include <string>

namespace workbench {

/// Appends a TRANSFORM message for each body that is tracked, by the name that the live display
/// has for it ("M1", "MR1"), with the time of the frame's arrival: matrix, mm. One that is not
/// tracked, or has a number that is not finite, has none.
void appendTransforms(const TrackedFrame& frame, std::string& messages);

/// Appends a POINT message for a result of the type "point" whose position is whole: of the device
/// named as the tool, with the point's name, position and radius in mm. Nothing for any other
/// result.
void appendPoint(const ModuleResult& result, std::string& messages);

} // namespace workbench
