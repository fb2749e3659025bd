#pragma once

#include "libs/kestrel_recording/walk.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kestrel_recording {

/// What goes into a CSV file. Empty lists stand for all.
struct CsvOptions {
    std::vector<int> tools;            ///< numbers, from 1
    std::vector<std::string> channels; ///< of csvChannels()
    TimeRange range;
};

/// What became of it.
struct CsvReport {
    Outcome outcome;
    std::uint64_t rows = 0;
    std::uint64_t frames = 0; ///< in the range, with rows or without
    /// Of all frames, when none of them is in the range.
    std::optional<TimeRange> recorded;
    std::uint64_t unreadableLines = 0; ///< of the chosen channels and times; they have no rows
};

/// The channels that make rows: tools from "6dmt" and "6dmt2", which are what is taken when none is
/// chosen, references from "6dmtr", bodies from "6d".
const std::vector<std::string>& csvChannels();

/// The first line of the file, with its end: names and units of the columns.
std::string_view csvHeader();

/// Writes a recording as CSV: csvHeader(), and one row per frame and tool, lines ended by "\n".
/// Nothing in it depends on the locale.
///
/// - seconds: since the recording's start, six decimals; utc: the wall clock, empty when the
///   recording does not know it; frame: the controller's frame counter, empty when it is missing.
/// - tool: as the live display names it, "M1"; "MR1" for a reference, "B1" for a body.
/// - tracked: 1 or 0. Position, angles and quaternion are empty when it is not tracked.
/// - Position and quality have as many digits as it takes to read back the same number; angles are
///   those of the live display, six decimals; the quaternion has nine decimals, qw is not negative.
///   What cannot be computed is "nan".
/// - buttons: pressed buttons as a number, the first one in the lowest bit.
/// - reference: "MR1" or "none" as at the recording's start, whatever was assigned later; empty
///   when the recording does not tell or the row is of no tool.
///
/// What was made of a recording that turns out to be malformed has been handed to `sink` already.
CsvReport writeCsv(std::istream& stream, const CsvOptions& options, const Sink& sink,
                   const Watch& watch);

} // namespace kestrel_recording
