#pragma once

#include "host_api/requester.h"
#include "workbench/outlets/sending/frames/framedecoder.h"
#include "workbench/window/plot/tipring.h"

#include <mutex>
#include <optional>
#include <vector>

namespace workbench {

class RequesterRegistry;

/// The tip of one tool in each frame, on its way from the line path to whoever draws it. A sample's
/// time is the controller's; that of its arrival when the frame has none.
class TipFeed final : public Requester {
public:
    explicit TipFeed(RequesterRegistry& registry, std::size_t mostWaiting = TipRing::usualCapacity);
    ~TipFeed();
    TipFeed(const TipFeed&) = delete;
    TipFeed& operator=(const TipFeed&) = delete;

    /// Off at first. What waits is forgotten.
    void setSubscribed(bool isSubscribed);

    /// A tool by its number, from 1. What waits of another one is forgotten.
    void choose(int tool);

    struct Batch {
        std::vector<TipSample> samples;
        std::optional<TrackedFrame> latest; ///< since the measurement began
        double latestCame = 0.0;            ///< seconds of BootClock
    };
    /// Moves out what has come since the last time; the memory of `batch` is used again. Any
    /// thread.
    void take(Batch& batch);

    // Any thread; they never wait for more than the reading of a line.
    int set_ascii_data(const char* channel, const char* line) override;
    void set_mea_started() override { forgetFrame(); }
    void set_mea_stopped() override { forgetFrame(); }

private:
    void forgetFrame();
    void takeFrame();

    RequesterRegistry& m_registry;
    const std::size_t m_mostWaiting;
    bool m_isSubscribed = false;

    std::mutex m_mutex; // of what follows; held for the reading of a line
    FrameDecoder m_decoder;
    int m_tool = 1;
    std::vector<TipSample> m_waiting;
    std::optional<TrackedFrame> m_latest;
    double m_latestCame = 0.0;
};

} // namespace workbench
