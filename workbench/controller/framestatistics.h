#pragma once

#include "libs/kestrel_wire/framegaps.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string_view>

namespace workbench {

/// Counts what arrives on the data port. Fed from the data thread, read from any.
class FrameStatistics {
public:
    using Clock = std::chrono::steady_clock;

    struct Snapshot {
        std::uint64_t frames = 0;        ///< since the last reset
        std::uint64_t lostFrames = 0;    ///< told by the frame counter; see kestrel_wire::FrameGaps
        std::uint64_t foreign = 0;       ///< datagrams that did not come from the controller
        std::uint64_t rejectedLines = 0; ///< lines that a receiver could not read
        std::size_t longestRejected = 0; ///< characters of the longest of them
        double framesPerSecond = 0.0;    ///< over the last second or so
        double lastFrameAge = -1.0;      ///< seconds; below 0: no frame yet
    };

    void reset();

    /// One datagram; `counter` is what its "fr" line says, below 0 when it has none.
    void addFrame(std::int64_t counter, Clock::time_point now = Clock::now());
    void addForeign();
    void addRejectedLine(std::size_t length);

    Snapshot snapshot(Clock::time_point now = Clock::now());

    /// The frame counter of a line "fr <counter>", -1 for any other line.
    static std::int64_t frameCounter(std::string_view line);

private:
    std::mutex m_mutex;
    Snapshot m_counts;
    kestrel_wire::FrameGaps m_gaps;
    Clock::time_point m_lastFrame;
    Clock::time_point m_rateSince;
    std::uint64_t m_framesThen = 0;
};

} // namespace workbench
