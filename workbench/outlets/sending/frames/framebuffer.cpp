#include "workbench/outlets/sending/frames/framebuffer.h"

#include "workbench/outlets/sending/frames/framedecoder.h"

#include <utility>

namespace workbench {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds lookInterval{2};
constexpr std::chrono::milliseconds slowFrames{5};

} // namespace

void FrameBuffer::add(const std::vector<std::string_view>& lines,
                      kestrel_wire::UtcMilliseconds arrival) {
    bool wakes = false;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        std::string& text = m_batch.text;
        const std::size_t before = text.size();
        for (const std::string_view line : lines) {
            if (FrameDecoder::isWanted(line)) {
                // What others see of a line ends at a NUL, too.
                text.append(line.substr(0, line.find('\0'))).push_back('\0');
            }
        }
        if (text.size() > m_mostBytes) {
            text.resize(before);
            ++m_dropped;
            return;
        }
        if (text.size() == before) {
            return;
        }
        m_batch.frames.push_back({arrival, text.size()});
        wakes = m_isAsleep;
        m_isAsleep = false;
    }
    if (wakes) {
        m_wake.notify_one();
    }
}

void FrameBuffer::take(Batch& batch) {
    batch.text.clear();
    batch.frames.clear();
    batch.isEnd = false;
    const Clock::time_point begin = Clock::now();
    const Clock::time_point watchfulUntil = m_isFast ? begin + m_watch : begin;
    std::unique_lock<std::mutex> lock(m_mutex);
    while (m_batch.frames.empty() && !m_batch.isEnd) {
        if (Clock::now() < watchfulUntil) {
            m_wake.wait_for(lock, lookInterval);
        } else {
            m_isAsleep = true;
            m_wake.wait(lock, [this] { return !m_isAsleep || m_batch.isEnd; });
        }
    }
    std::swap(batch, m_batch);
    m_batch.isEnd = batch.isEnd;
    const Clock::time_point end = Clock::now();
    m_isFast = end - m_lastTake < slowFrames;
    m_lastTake = end;
}

void FrameBuffer::end() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_batch.isEnd = true;
    m_wake.notify_one();
}

std::uint64_t FrameBuffer::dropped() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_dropped;
}

} // namespace workbench
