#pragma once

#include <QByteArray>

#include <atomic>
#include <mosquitto.h>
#include <mutex>
#include <thread>
#include <vector>

/// Somebody at a broker, without TLS, who sees everything and misses nothing of QoS 1: the broker
/// keeps it for him while he is away.
class Subscriber {
public:
    struct Message {
        QByteArray topic;
        QByteArray payload;
        bool isRetained = false;
    };

    explicit Subscriber(quint16 port, const QByteArray& user = {}, const QByteArray& password = {});
    ~Subscriber();
    Subscriber(const Subscriber&) = delete;
    Subscriber& operator=(const Subscriber&) = delete;

    /// While he is away what is published by others may be lost to him.
    bool isSubscribed() const { return m_isSubscribed; }

    /// All that has come, in its order.
    std::vector<Message> messages() const;
    /// The payloads of one topic.
    std::vector<QByteArray> payloads(const QByteArray& topic) const;
    /// The last payload of a topic; empty when there is none.
    QByteArray last(const QByteArray& topic) const;

private:
    void run();

    const quint16 m_port;
    mosquitto* m_mosquitto;
    std::atomic<bool> m_isSubscribed{false};
    std::atomic<bool> m_isEnding{false};
    mutable std::mutex m_mutex; // of the messages
    std::vector<Message> m_messages;
    std::thread m_thread;
};
