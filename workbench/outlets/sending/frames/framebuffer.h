#pragma once

#include "libs/kestrel_wire/utctime.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace workbench {

/// Frames of data lines on their way from the line path, which never waits and does as little as
/// can be: it copies the wanted lines behind those of the frames before. One thread takes them
/// out.
class FrameBuffer {
public:
    struct Frame {
        kestrel_wire::UtcMilliseconds arrival = 0;
        std::size_t end = 0; ///< in the text; it begins where the frame before it ends
    };
    struct Batch {
        std::string text; ///< lines, each with a NUL behind it
        std::vector<Frame> frames;
        bool isEnd = false; ///< nothing will follow
    };

    static constexpr std::size_t usualBytes = 16 * 1024 * 1024;

    /// For so long after a frame that has come soon after another one it looks for the next one by
    /// itself.
    static constexpr std::chrono::milliseconds usualWatch{100};

    explicit FrameBuffer(std::size_t mostBytes = usualBytes,
                         std::chrono::milliseconds watch = usualWatch)
        : m_mostBytes(mostBytes)
        , m_watch(watch) {}

    /// Any thread. Keeps the lines that a FrameDecoder wants. A frame that does not fit is dropped
    /// and counted.
    void add(const std::vector<std::string_view>& lines, kestrel_wire::UtcMilliseconds arrival);

    /// Waits for frames or the end, and swaps what there is with `batch`, whose memory is used
    /// again. While frames come fast they are looked for every two milliseconds, so that add() need
    /// not wake anybody; slow ones are slept for.
    void take(Batch& batch);

    void end(); ///< take() returns from now on at once

    std::uint64_t dropped() const;

private:
    const std::size_t m_mostBytes;
    const std::chrono::milliseconds m_watch;
    std::chrono::steady_clock::time_point m_lastTake; // of the one thread
    bool m_isFast = false;

    mutable std::mutex m_mutex; // of what follows
    std::condition_variable m_wake;
    Batch m_batch;
    bool m_isAsleep = false;
    std::uint64_t m_dropped = 0;
};

} // namespace workbench
