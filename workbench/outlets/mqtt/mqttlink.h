#pragma once

#include "workbench/outlets/sending/outletchannel.h"

#include <QByteArray>
#include <QString>

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace workbench {

/// Where a broker is, who we are there, and which topics are ours.
struct BrokerSettings {
    QByteArray host;
    quint16 port = 0;
    bool isEncrypted = false;
    QByteArray clientId;
    QByteArray user;
    QString passwordFile;
    QString caFile;
    QString certificateFile;
    QString keyFile;
    QByteArray posesTopic;
    QByteArray stateTopic; ///< empty: nobody is told that we are there
    QByteArray resultsTopic;
    std::chrono::milliseconds answerTime{10000};      ///< for the login
    std::chrono::milliseconds confirmationTime{5000}; ///< for a result
};

/// The connection to a broker, with a thread of its own that alone knows the library: it may hang
/// for minutes in a network, and nobody waits for it. Connects again by itself, seldom when the
/// broker refuses us. Thread-safe.
class MqttLink {
public:
    /// Results that the broker may have without having confirmed them.
    static constexpr std::size_t window = 20;

    /// After so much silence the broker is asked whether it is there.
    static constexpr std::chrono::seconds keepAlive{15};
    /// A broker that has gone without a word is noticed so much later, at the latest: it was heard,
    /// it is asked, it has not answered; and the library counts whole seconds.
    static constexpr std::chrono::seconds longestIgnorance{2 * keepAlive + std::chrono::seconds(2)};

    explicit MqttLink(const BrokerSettings& settings);
    /// Takes leave of the broker, for a second at most. A thread that hangs is left to itself.
    ~MqttLink();
    MqttLink(const MqttLink&) = delete;
    MqttLink& operator=(const MqttLink&) = delete;

    OutletWord word() const;

    /// Counts the connections; 0 while there is none. Results that were given to an earlier one are
    /// to be given to this one again.
    unsigned session() const;

    /// False when the broker is not there, or the ones before have to go for these.
    bool sendPoses(std::string text);

    /// False when the window is full or the session is not this one.
    bool sendResult(unsigned session, std::uint64_t number, std::string text);

    struct Confirmed {
        std::uint64_t number = 0;
        std::chrono::steady_clock::time_point time; ///< when the broker's word came
    };
    /// The results that the broker has confirmed in this session, each told once.
    std::vector<Confirmed> takeConfirmed(unsigned session);

private:
    class Connection;
    struct Shared;

    std::shared_ptr<Shared> m_shared;
    std::thread m_thread;
};

} // namespace workbench
