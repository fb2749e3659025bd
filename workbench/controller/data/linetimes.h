#pragma once

#include "workbench/controller/data/bootclock.h"

#include <cstddef>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace workbench {

/// When each kind of data line was taken last. A controller sends every active line with every
/// frame: whoever shows one that has ceased to come shows old data, however many frames still
/// arrive. The two formats of the tools' line are one kind. Fed from the data thread, read from
/// any.
class LineTimes {
public:
    /// Whether somebody takes the lines of a channel.
    using IsWanted = std::function<bool(std::string_view channel)>;

    struct Oldest {
        std::string channel;
        double age = 0.0;       ///< seconds
        bool isRefused = false; ///< it comes, but who could read it before cannot any more
    };

    /// Receivers take lines of up to this length; longer ones they may refuse.
    static constexpr std::size_t longestForAll = 10239; // characters

    void reset();

    /// A line of a readable frame; refused when somebody who could read its like before could not.
    void add(std::string_view channel, std::size_t length, bool isRefused,
             BootClock::time_point now = BootClock::now());

    /// Among the wanted lines that have come, the one that has not for the longest.
    std::optional<Oldest> oldest(const IsWanted& isWanted,
                                 BootClock::time_point now = BootClock::now()) const;

    /// Whether a frame of these lines has all the wanted ones that came before, and none of a
    /// length that was refused.
    bool areAllIn(const std::vector<std::string_view>& lines, const IsWanted& isWanted) const;

private:
    struct Kind {
        std::string channel; // of the last line
        BootClock::time_point taken;
        std::size_t refusedLength = 0; // the shortest refused one since; 0: none
    };

    std::vector<Kind> wanted(const IsWanted& isWanted) const;

    mutable std::mutex m_mutex;
    std::vector<Kind> m_kinds;
};

} // namespace workbench
