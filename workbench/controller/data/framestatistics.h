#pragma once

#include "libs/kestrel_wire/framegaps.h"
#include "workbench/controller/data/bootclock.h"

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string_view>

namespace workbench {

/// Counts what arrives on the data port. Fed from the data thread, read from any.
class FrameStatistics {
public:
    using Clock = BootClock;

    struct Snapshot {
        std::uint64_t frames = 0;     ///< since the last reset
        std::uint64_t unreadable = 0; ///< frames that arrived garbled; not among the others
        /// Told by the frame counter, see kestrel_wire::FrameGaps. While frames fail to come in a
        /// measurement those that ought to have come are among them, from the rate before; the next
        /// frame's counter tells how many they were.
        std::uint64_t lostFrames = 0;
        bool lossIsEstimated = false;    ///< some of them are not told by the counter yet
        std::uint64_t foreign = 0;       ///< datagrams that did not come from the controller
        std::uint64_t rejectedLines = 0; ///< lines that a receiver could not read
        std::size_t longestRejected = 0; ///< characters of the longest of them
        double framesPerSecond = 0.0;    ///< over the last second or so
        double usualInterval = 0.0; ///< seconds between frames, lost ones too; 0: not known yet
        double lastFrameAge = -1.0; ///< seconds since a readable one; below 0: none yet
    };

    void reset();

    /// A longer silence within a measurement is a loss while it lasts, in seconds.
    static constexpr double longestSilence = 0.5;

    /// Frames are expected only while the controller measures.
    void setMeasuring(bool measuring);

    /// One datagram; `counter` is what its "fr" line says, below 0 when it has none.
    void addFrame(std::int64_t counter, Clock::time_point now = Clock::now());
    void addUnreadableFrame();
    void addForeign();
    /// The counter of the next frame follows none: a replay went elsewhere. What was lost before is
    /// forgotten.
    void beginNewSequence();
    void addRejectedLine(std::size_t length);

    Snapshot snapshot(Clock::time_point now = Clock::now());

    /// The frame counter of a line "fr <counter>", -1 for any other line.
    static std::int64_t frameCounter(std::string_view line);

private:
    void measureRate(Clock::time_point now);
    double rateBefore() const;
    std::uint64_t produced() const { return m_counts.frames + m_gaps.lost(); }

    std::mutex m_mutex;
    Snapshot m_counts;
    kestrel_wire::FrameGaps m_gaps;
    bool m_measuring = false;
    double m_lastInterval = 0.0;    // 0: not known
    double m_controllersRate = 0.0; // frames/s, lost ones among them; 0: not known yet
    Clock::time_point m_producedSince;
    std::uint64_t m_producedThen = 0;
    Clock::time_point m_lastFrame;
    Clock::time_point m_rateSince;
    std::uint64_t m_framesThen = 0;
};

} // namespace workbench
