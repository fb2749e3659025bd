#include "libs/kestrel_wire/clockmarks.h"

#include <algorithm>

namespace kestrel_wire {

namespace {

constexpr std::uint64_t microsecondsPerMillisecond = 1000;

}

UtcMilliseconds ClockMark::at(std::uint64_t otherMicroseconds) const {
    const std::uint64_t passed = (otherMicroseconds - microseconds) / microsecondsPerMillisecond;
    const auto left =
        static_cast<std::uint64_t>(lastUtc - std::clamp<UtcMilliseconds>(utc, 0, lastUtc));
    return lastUtc - static_cast<UtcMilliseconds>(left - std::min(passed, left));
}

bool ClockMarks::isDue(const ClockMark& now) {
    const UtcMilliseconds deviation = now.utc - m_last.at(now.microseconds);
    if (now.microseconds - m_last.microseconds < interval && deviation <= largestDeviation &&
        deviation >= -largestDeviation) {
        return false;
    }
    m_last = now;
    return true;
}

} // namespace kestrel_wire
