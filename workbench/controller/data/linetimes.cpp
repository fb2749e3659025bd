#include "workbench/controller/data/linetimes.h"

#include "libs/kestrel_wire/recording.h"

#include <algorithm>

namespace workbench {

namespace {

constexpr std::size_t mostLines = 64; // of which a controller has some fifteen

bool isToolsLine(std::string_view channel) {
    return channel == "6dmt" || channel == "6dmt2";
}

bool isSameKind(std::string_view one, std::string_view other) {
    return one == other || (isToolsLine(one) && isToolsLine(other));
}

} // namespace

void LineTimes::reset() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_kinds.clear();
}

void LineTimes::add(std::string_view channel, std::size_t length, bool isRefused,
                    BootClock::time_point now) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto kind = std::find_if(m_kinds.begin(), m_kinds.end(), [&](const Kind& known) {
        return isSameKind(known.channel, channel);
    });
    if (kind == m_kinds.end()) {
        if (!isRefused && m_kinds.size() < mostLines) {
            m_kinds.push_back({std::string(channel), now, 0});
        }
        return;
    }
    if (isRefused) {
        kind->refusedLength =
            kind->refusedLength == 0 ? length : std::min(kind->refusedLength, length);
        return;
    }
    kind->channel.assign(channel);
    kind->taken = now;
    kind->refusedLength = 0;
}

// Nobody is asked with the mutex held.
std::vector<LineTimes::Kind> LineTimes::wanted(const IsWanted& isWanted) const {
    std::vector<Kind> kinds;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        kinds = m_kinds;
    }
    kinds.erase(std::remove_if(kinds.begin(), kinds.end(),
                               [&](const Kind& kind) { return !isWanted(kind.channel); }),
                kinds.end());
    return kinds;
}

std::optional<LineTimes::Oldest> LineTimes::oldest(const IsWanted& isWanted,
                                                   BootClock::time_point now) const {
    const std::vector<Kind> kinds = wanted(isWanted);
    const auto oldest =
        std::min_element(kinds.begin(), kinds.end(), [](const Kind& one, const Kind& other) {
            return one.taken < other.taken;
        });
    if (oldest == kinds.end()) {
        return std::nullopt;
    }
    return Oldest{oldest->channel, BootClock::seconds(now - oldest->taken),
                  oldest->refusedLength > 0};
}

bool LineTimes::areAllIn(const std::vector<std::string_view>& lines,
                         const IsWanted& isWanted) const {
    const std::vector<Kind> kinds = wanted(isWanted);
    return std::all_of(kinds.begin(), kinds.end(), [&](const Kind& kind) {
        return std::any_of(lines.begin(), lines.end(), [&](std::string_view line) {
            return isSameKind(kind.channel, kestrel_wire::channelOf(line)) &&
                   (kind.refusedLength == 0 || line.size() < kind.refusedLength ||
                    line.size() <= longestForAll);
        });
    });
}

} // namespace workbench
