#pragma once

#include "workbench/outlets/mqtt/mqttlink.h"
#include "workbench/outlets/mqtt/unsettledresults.h"
#include "workbench/outlets/sending/channelmodule.h"
#include "workbench/outlets/sending/resultspool.h"

#include <chrono>
#include <deque>
#include <memory>
#include <optional>
#include <string>

namespace workbench {

/// mqtt:// and mqtts://: below PREFIX/STATION/ the topics poses (the object of appendFrameJson(),
/// at most 20 a second, QoS 0), state ("online" or "offline", retained, the last will) and results
/// (resultMessage(), QoS 1). Results wait in a spool until the broker has confirmed them, over lost
/// connections and restarts, and come in their order; after either some may come again, with the
/// same id: those, too, that were confirmed just before, for a broker that is killed may not have
/// written them down.
class MqttChannel : public OutletChannel {
public:
    static constexpr std::chrono::milliseconds poseInterval{50};

    MqttChannel(const OutletUrl& url, const ChannelSurroundings& surroundings);
    ~MqttChannel() override;

    std::chrono::milliseconds frameInterval() const override { return poseInterval; }
    bool takesResults() const override { return !m_isTrial; }
    bool keepsResults() const override { return !m_isTrial; }
    void tend() override;
    OutletWord word() const override;
    Delivery send(const TrackedFrame& frame) override;
    void send(const ModuleResult& result) override;
    void keep() override;
    void close() override;

private:
    using Clock = std::chrono::steady_clock;

    bool openSpool();
    void spoolUnspooled();
    void passResults();
    void settle();

    const QString m_station;
    const BrokerSettings m_settings;
    const bool m_isTrial;
    ResultSpool m_spool;
    std::unique_ptr<MqttLink> m_link; // once there is a spool, or need not be one
    unsigned m_session = 0;
    std::optional<ResultSpool::Line> m_next; // which the link had no room for
    UnsettledResults m_unsettled;            // of this session
    std::deque<std::string> m_unspooled;     // which the disk has not taken yet
    Clock::time_point m_nextTry;             // to write to it
    QString m_trouble;                       // with it
    quint64 m_dropped = 0;
};

} // namespace workbench
