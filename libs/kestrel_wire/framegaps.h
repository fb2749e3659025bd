#pragma once

#include <cstdint>
#include <deque>

namespace kestrel_wire {

/// Counts the frames that are missing in a sequence of frame counters. The counter has 32 bits and
/// goes on with 0 after its last value. A frame that comes late takes back what its absence was
/// counted for; a counter that begins anew is no loss.
class FrameGaps {
public:
    /// A frame that so many others have overtaken is not waited for.
    static constexpr std::uint32_t longestDelay = 1000;
    /// More than that across the counter's end is not a loss but a new beginning.
    static constexpr std::uint32_t largestGapAtWrap = 1000000;

    void reset() { *this = FrameGaps(); }
    void add(std::uint32_t counter);
    std::uint64_t lost() const { return m_lost; }

private:
    struct Gap {
        std::uint32_t first = 0;
        std::uint32_t size = 0;
    };

    bool takeMissing(std::uint32_t counter);
    void await(const Gap& gap);
    void moveOn(std::uint32_t counter);
    void beginAnew(std::uint32_t counter);

    bool m_any = false;
    std::uint32_t m_last = 0;
    bool m_maybeNew = false;      // the frame before was a duplicate, or the first of a new count
    std::uint32_t m_newFirst = 0; // its counter
    std::deque<Gap> m_missing;
    std::uint64_t m_lost = 0;
};

} // namespace kestrel_wire
