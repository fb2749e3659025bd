#pragma once

#include "libs/kestrel_wire/recording.h"

#include <cstdint>
#include <fstream>
#include <functional>
#include <iosfwd>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

namespace kestrel_recording {

/// How a walk over a recording ended.
struct Outcome {
    enum class Ending {
        Whole,     ///< well-formed to its end
        Truncated, ///< the last line is cut, as by a crash; all before it was taken
        Malformed, ///< all before the line at fault was taken
        Stopped,   ///< its owner wanted no more
        NotWritten ///< what it made could not be written
    };

    Ending ending = Ending::Whole;
    std::size_t line = 0; ///< 1-based, the one that is cut or at fault
    std::string reason;   ///< English, of a malformed recording
};

/// Takes what a walk makes, piece by piece. False: it could not be written, the walk ends.
using Sink = std::function<bool(std::string_view)>;

constexpr std::size_t pieceSize = 256 * 1024; ///< that goes to a sink at once

/// Is told the bytes that were taken from the recording, about once for every MiB. False: the walk
/// ends.
using Watch = std::function<bool(std::uint64_t)>;

/// A range of time stamps, both ends belong to it. Time stamp 0 is the recording's start.
struct TimeRange {
    std::uint64_t from = 0;                                       ///< microseconds
    std::uint64_t to = std::numeric_limits<std::uint64_t>::max(); ///< microseconds

    bool contains(std::uint64_t time) const { return time >= from && time <= to; }
};

/// Goes through a recording of any size, one line in memory at a time.
class Walk {
public:
    /// An empty `watch` is never asked.
    Walk(std::istream& stream, Watch watch);

    /// To be called once, first. False: the walk is over.
    bool readHeader(kestrel_wire::RecordingHeader& header);

    /// False: the walk is over. What it fills is valid until the next call.
    bool next(kestrel_wire::RecordView& record);

    /// Of the record that was read last.
    const std::optional<kestrel_wire::ClockMark>& clock() const { return m_reader.clock(); }

    /// Reads on to the recording's end, where the walk is not over, and tells the times of its
    /// first and its last record. None when it has no record.
    const std::optional<TimeRange>& readTimes();

    std::uint64_t bytesTaken() const { return m_reader.bytesTaken(); }

    /// Once the walk is over, or has been left early.
    Outcome outcome() const;

private:
    bool take(kestrel_wire::RecordingReader::Result result);

    kestrel_wire::RecordingReader m_reader;
    Watch m_watch;
    std::uint64_t m_told = 0;
    std::optional<TimeRange> m_times; // of what has been read
    bool m_isOver = false;
    Outcome m_outcome;
};

/// Reads a recording to its end: whether it is whole, and where it is not.
Outcome check(std::istream& stream, const Watch& watch);

/// The recording in `path` for a walk. False with a reason in English when it cannot be read or is
/// no ordinary file: a folder, pipe or device may never end or wait for ever.
bool openRecording(const std::string& path, std::ifstream& file, std::string& error);

} // namespace kestrel_recording
