#include "workbench/controller/data/framestatistics.h"

#include "KestrelParse.h"

#include <algorithm>
#include <string>

namespace workbench {

namespace {

constexpr double rateInterval = 1.0;

} // namespace

void FrameStatistics::reset() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_counts = Snapshot();
    m_gaps.reset();
    m_framesThen = 0;
    m_controllersRate = 0.0;
    m_lastInterval = 0.0;
}

void FrameStatistics::setMeasuring(bool measuring) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_measuring = measuring;
}

void FrameStatistics::addFrame(std::int64_t counter, Clock::time_point now) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_counts.frames == 0) {
        m_rateSince = now;
    }
    const double interval = m_counts.frames == 0 ? 0.0 : BootClock::seconds(now - m_lastFrame);
    const bool wasSilent = m_counts.frames == 0 || interval > longestSilence;
    const std::uint64_t lostThen = m_gaps.lost();
    ++m_counts.frames;
    m_lastFrame = now;
    if (counter >= 0) {
        m_gaps.add(static_cast<std::uint32_t>(counter));
        m_counts.lostFrames = m_gaps.lost();
    }
    // One that loses most of its frames is not slow.
    const std::uint64_t sent = 1 + std::max(m_gaps.lost(), lostThen) - lostThen;
    const double intervalOfSent = interval / static_cast<double>(sent);
    // The shorter of two: a single silence is nothing usual.
    m_counts.usualInterval = std::min(intervalOfSent, m_lastInterval);
    m_lastInterval = intervalOfSent;
    if (wasSilent) {
        m_producedSince = now;
        m_producedThen = produced();
    }
    measureRate(now);
}

// What came late makes fewer of those that were lost.
void FrameStatistics::measureRate(Clock::time_point now) {
    const double interval = BootClock::seconds(now - m_producedSince);
    if (interval >= rateInterval) {
        m_controllersRate =
            static_cast<double>(std::max(produced(), m_producedThen) - m_producedThen) / interval;
        m_producedSince = now;
        m_producedThen = produced();
    }
}

// Over the first second there is no full interval.
double FrameStatistics::rateBefore() const {
    const double interval = BootClock::seconds(m_lastFrame - m_producedSince);
    if (m_controllersRate > 0.0 || interval <= 0.0 || produced() <= m_producedThen) {
        return m_controllersRate;
    }
    return static_cast<double>(produced() - m_producedThen) / interval;
}

void FrameStatistics::addUnreadableFrame() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    ++m_counts.unreadable;
}

void FrameStatistics::addForeign() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    ++m_counts.foreign;
}

void FrameStatistics::beginNewSequence() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_gaps.reset();
    m_counts.lostFrames = 0;
    m_controllersRate = 0.0;
    m_producedSince = m_lastFrame;
    m_producedThen = produced();
}

void FrameStatistics::addRejectedLine(std::size_t length) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    ++m_counts.rejectedLines;
    m_counts.longestRejected = std::max(m_counts.longestRejected, length);
}

FrameStatistics::Snapshot FrameStatistics::snapshot(Clock::time_point now) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_counts.frames > 0) {
        m_counts.lastFrameAge = BootClock::seconds(now - m_lastFrame);
        const double interval = BootClock::seconds(now - m_rateSince);
        if (interval >= rateInterval) {
            m_counts.framesPerSecond =
                static_cast<double>(m_counts.frames - m_framesThen) / interval;
            m_framesThen = m_counts.frames;
            m_rateSince = now;
        }
    }
    Snapshot counts = m_counts;
    if (m_measuring && counts.lastFrameAge > longestSilence && rateBefore() > 0.0) {
        counts.lostFrames += static_cast<std::uint64_t>(counts.lastFrameAge * rateBefore());
        counts.lossIsEstimated = true;
    }
    return counts;
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
