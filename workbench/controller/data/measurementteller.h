#pragma once

#include <atomic>
#include <deque>
#include <mutex>

namespace workbench {

class RequesterRegistry;

/// Tells the measurement requesters whether there is anything to measure with: the controller
/// measures and its data come. Once per change, in order. Safe to use from any thread, also from
/// inside a notification, which is then finished first.
class MeasurementTeller {
public:
    explicit MeasurementTeller(RequesterRegistry& registry)
        : m_registry(registry) {}

    /// Whether the controller measures. Data that had stopped are waited for anew.
    void setMeasuring(bool measuring);

    /// The data have stopped: as far as the requesters are concerned the measurement has, until
    /// dataCame().
    void stopData();

    /// Since stopData(): a frame that is not called for by dataCame() changes nothing.
    bool isWaitingForData() const { return m_dataStopped; }

    /// To be called for each frame before it is handed out, so that it finds its requesters
    /// started.
    void dataCame();

private:
    void tell(std::unique_lock<std::mutex>& lock);

    RequesterRegistry& m_registry;
    std::atomic<bool> m_dataStopped{false};
    std::mutex m_mutex; // guards what follows
    bool m_measuring = false;
    bool m_lastWord = false;
    bool m_telling = false;
    std::deque<bool> m_changes; // not yet told
};

} // namespace workbench
