#pragma once

#include "libs/kestrel_wire/utctime.h"

#include <cstdint>

namespace kestrel_wire {

/// What the wall clock showed at a time stamp.
struct ClockMark {
    std::uint64_t microseconds = 0; ///< as in Record
    UtcMilliseconds utc = 0;

    /// The wall clock at another time stamp, not earlier than this mark's, if nobody has set the
    /// clock in between. At most lastUtc.
    UtcMilliseconds at(std::uint64_t otherMicroseconds) const;
};

/// Tells a writer when to put a clock mark between its frames: once a minute, and when the wall
/// clock has gone another way than the time stamps since the last mark, as it does when somebody
/// sets it or the computer sleeps.
class ClockMarks {
public:
    static constexpr std::uint64_t interval = 60'000'000; ///< microseconds
    static constexpr UtcMilliseconds largestDeviation = 100;

    /// `start` as in the header of the recording.
    explicit ClockMarks(UtcMilliseconds start)
        : m_last{0, start} {}

    /// Whether the frame at `now` needs a mark before it; it counts as written then. Time stamps do
    /// not go backwards.
    bool isDue(const ClockMark& now);

private:
    ClockMark m_last;
};

} // namespace kestrel_wire
