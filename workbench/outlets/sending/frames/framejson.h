#pragma once

#include "workbench/outlets/sending/frames/trackedframe.h"

#include <string>

namespace workbench {

/// "M1" or "MR1", as the live display names them.
std::string bodyLabel(TrackedBody::Kind kind, int number);

/// Whether the arrival of a frame is told as "utc", a text, besides.
enum class FrameTimes { TimeStamp, TimeStampAndUtc };

/// Appends one JSON object on one line, without a line end. Nothing in it depends on the locale.
///
/// - "timestamp": seconds; the controller's, or those of the arrival since 1970 when the frame has
///   none. "frame": the frame counter, left out when the frame has none.
/// - For each body an object of its name: "tracked"; "x", "y", "z" in mm with as many digits as it
///   takes to read back the same number; "rx", "ry", "rz" in degrees with six decimals, those of
///   the live display; "qw", "qx", "qy", "qz" with nine decimals, qw not negative; "quality". Pose
///   is left out when the body is not tracked.
/// - For tools besides: "buttons", 0 or 1 for each; "radius" in mm, left out when it is not known;
///   "reference": "MR1" or "none", left out when it is not known.
///
/// A number that is not finite is null, for JSON has no word for it.
void appendFrameJson(const TrackedFrame& frame, FrameTimes times, std::string& text);

/// `utf8` as a JSON string with its quotes. Bytes that are no UTF-8 become U+FFFD.
void appendJsonString(const std::string& utf8, std::string& text);

} // namespace workbench
