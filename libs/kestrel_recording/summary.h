#pragma once

#include "libs/kestrel_recording/walk.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kestrel_recording {

/// What is in a recording.
struct Summary {
    struct Channel {
        std::string name;
        std::uint64_t lines = 0;
    };
    struct Tool {
        std::uint64_t frames = 0; ///< with a row of it
        std::uint64_t tracked = 0;
    };

    /// More channels than that are counted together: a garbled recording may have any number.
    static constexpr std::size_t maxChannels = 50;

    kestrel_wire::RecordingHeader header;
    std::uint64_t frames = 0;
    std::uint64_t lostFrames = 0; ///< by the frame counters
    std::uint64_t first = 0;      ///< time stamp of the first frame, microseconds
    std::uint64_t last = 0;       ///< of the last frame
    /// The wall clock at the last frame.
    std::optional<kestrel_wire::UtcMilliseconds> end;
    std::uint64_t longestGap = 0;   ///< between two frames, microseconds
    std::uint64_t longestGapAt = 0; ///< time stamp of the frame before it
    std::vector<Channel> channels;  ///< in the order of their first lines
    std::uint64_t otherLines = 0;   ///< of channels beyond maxChannels
    std::vector<Tool> tools;        ///< number 1 first
    std::uint64_t unreadableLines = 0;

    /// Seconds from the first to the last frame.
    double duration() const { return static_cast<double>(last - first) * 1e-6; }
};

/// Reads a recording to its end, or as far as it is well-formed.
Outcome summarize(std::istream& stream, Summary& summary, const Watch& watch);

} // namespace kestrel_recording
