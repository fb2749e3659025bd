#include "workbench/controller/framestatistics.h"

#include "KestrelParse.h"

#include <algorithm>
#include <string>

namespace workbench {

namespace {

constexpr double rateInterval = 1.0;

double seconds(FrameStatistics::Clock::duration duration) {
    return std::chrono::duration<double>(duration).count();
}

} // namespace

void FrameStatistics::reset() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_counts = Snapshot();
    m_gaps.reset();
    m_framesThen = 0;
}

void FrameStatistics::addFrame(std::int64_t counter, Clock::time_point now) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_counts.frames == 0) {
        m_rateSince = now;
    }
    ++m_counts.frames;
    m_lastFrame = now;
    if (counter >= 0) {
        m_gaps.add(static_cast<std::uint32_t>(counter));
        m_counts.lostFrames = m_gaps.lost();
    }
}

void FrameStatistics::addForeign() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    ++m_counts.foreign;
}

void FrameStatistics::addRejectedLine(std::size_t length) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    ++m_counts.rejectedLines;
    m_counts.longestRejected = std::max(m_counts.longestRejected, length);
}

FrameStatistics::Snapshot FrameStatistics::snapshot(Clock::time_point now) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_counts.frames > 0) {
        m_counts.lastFrameAge = seconds(now - m_lastFrame);
        const double interval = seconds(now - m_rateSince);
        if (interval >= rateInterval) {
            m_counts.framesPerSecond =
                static_cast<double>(m_counts.frames - m_framesThen) / interval;
            m_framesThen = m_counts.frames;
            m_rateSince = now;
        }
    }
    return m_counts;
}

std::int64_t FrameStatistics::frameCounter(std::string_view line) {
    if (line.substr(0, 3) != "fr ") {
        return -1;
    }
    std::string text(line.substr(3));
    unsigned int counter = 0;
    return KestrelSDK_Parse::string_get_ui(text.data(), &counter) == nullptr
               ? -1
               : static_cast<std::int64_t>(counter);
}

} // namespace workbench
