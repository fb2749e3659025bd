#pragma once

#include <chrono>
#include <ctime>

namespace workbench {

/// A steady clock that goes on while the computer is suspended: what was measured before is old
/// afterwards. std::chrono::steady_clock stands still meanwhile.
struct BootClock {
    using duration = std::chrono::nanoseconds;
    using rep = duration::rep;
    using period = duration::period;
    using time_point = std::chrono::time_point<BootClock>;
    static constexpr bool is_steady = true;

    static time_point now() {
        std::timespec time{};
        ::clock_gettime(CLOCK_BOOTTIME, &time);
        return time_point(std::chrono::seconds(time.tv_sec) +
                          std::chrono::nanoseconds(time.tv_nsec));
    }

    static double seconds(duration length) { return std::chrono::duration<double>(length).count(); }
};

} // namespace workbench
