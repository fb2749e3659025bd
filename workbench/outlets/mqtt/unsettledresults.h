#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>

namespace workbench {

/// Results that a broker has confirmed, and may not have written down: it confirms before it
/// writes, and forgets what it has not written when it is killed. One has settled when the broker
/// was still there `writing` later. That is known by what it has confirmed since; where nothing
/// was to be confirmed, by the connection, which ends `silence` after the broker at the latest.
class UnsettledResults {
public:
    using Clock = std::chrono::steady_clock;

    UnsettledResults(Clock::duration writing, Clock::duration silence)
        : m_writing(writing)
        , m_silence(silence) {}

    /// `confirmed`: when the broker's word came; not before those of earlier calls.
    void add(std::uint64_t number, Clock::time_point confirmed) {
        m_results.push_back({number, confirmed});
    }

    /// The number of the next one that has settled, which is forgotten here.
    std::optional<std::uint64_t> takeSettled(Clock::time_point now) {
        if (m_results.empty()) {
            return std::nullopt;
        }
        const Result oldest = m_results.front();
        if (oldest.confirmed + m_writing > m_results.back().confirmed &&
            oldest.confirmed + m_writing + m_silence > now) {
            return std::nullopt;
        }
        m_results.pop_front();
        return oldest.number;
    }

    std::size_t size() const { return m_results.size(); }
    void clear() { m_results.clear(); }

private:
    struct Result {
        std::uint64_t number = 0;
        Clock::time_point confirmed;
    };

    const Clock::duration m_writing;
    const Clock::duration m_silence;
    std::deque<Result> m_results;
};

} // namespace workbench
