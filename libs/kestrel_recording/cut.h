#pragma once

#include "libs/kestrel_recording/walk.h"

namespace kestrel_recording {

/// What became of a cut.
struct CutReport {
    Outcome outcome;
    std::uint64_t frames = 0;
    /// Of all frames, when none of them is in the range.
    std::optional<TimeRange> recorded;
};

/// Writes the frames of a time range as a recording of the same version. Header and time stamps
/// stay as they are: times of both recordings mean the same.
///
/// What was taken of a recording that turns out to be malformed has been handed to `sink` already.
CutReport cut(std::istream& stream, const TimeRange& range, const Sink& sink, const Watch& watch);

} // namespace kestrel_recording
