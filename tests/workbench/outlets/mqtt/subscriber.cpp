#include "tests/workbench/outlets/mqtt/subscriber.h"

#include <QtTest>

#include <chrono>

namespace {

constexpr int patience = 30000;
constexpr int loopMs = 20;
constexpr std::chrono::milliseconds retry{50};

} // namespace

Subscriber::Subscriber(quint16 port, const QByteArray& user, const QByteArray& password)
    : m_port(port) {
    ::mosquitto_lib_init();
    m_mosquitto = ::mosquitto_new("subscriber", false, this);
    if (!user.isEmpty()) {
        ::mosquitto_username_pw_set(m_mosquitto, user.constData(), password.constData());
    }
    ::mosquitto_connect_callback_set(m_mosquitto, [](mosquitto* self, void*, int code) {
        if (code == 0) {
            ::mosquitto_subscribe(self, nullptr, "#", 1);
        }
    });
    ::mosquitto_subscribe_callback_set(m_mosquitto,
                                       [](mosquitto*, void* self, int, int, const int*) {
                                           static_cast<Subscriber*>(self)->m_isSubscribed = true;
                                       });
    ::mosquitto_message_callback_set(
        m_mosquitto, [](mosquitto*, void* object, const mosquitto_message* message) {
            auto* const self = static_cast<Subscriber*>(object);
            const std::lock_guard<std::mutex> lock(self->m_mutex);
            self->m_messages.push_back(
                {message->topic,
                 QByteArray(static_cast<const char*>(message->payload), message->payloadlen),
                 message->retain});
        });
    m_thread = std::thread([this] { run(); });
    if (!QTest::qWaitFor([this] { return m_isSubscribed.load(); }, patience)) {
        qFatal("the broker does not take a subscriber");
    }
}

Subscriber::~Subscriber() {
    m_isEnding = true;
    m_thread.join();
    ::mosquitto_destroy(m_mosquitto);
}

void Subscriber::run() {
    while (!m_isEnding) {
        if (::mosquitto_connect(m_mosquitto, "127.0.0.1", m_port, 10) == MOSQ_ERR_SUCCESS) {
            while (!m_isEnding && ::mosquitto_loop(m_mosquitto, loopMs, 1) == MOSQ_ERR_SUCCESS) {
            }
        }
        m_isSubscribed = false;
        std::this_thread::sleep_for(retry);
    }
    ::mosquitto_disconnect(m_mosquitto);
}

std::vector<Subscriber::Message> Subscriber::messages() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_messages;
}

std::vector<QByteArray> Subscriber::payloads(const QByteArray& topic) const {
    std::vector<QByteArray> found;
    for (const Message& message : messages()) {
        if (message.topic == topic) {
            found.push_back(message.payload);
        }
    }
    return found;
}

QByteArray Subscriber::last(const QByteArray& topic) const {
    const std::vector<QByteArray> all = payloads(topic);
    return all.empty() ? QByteArray() : all.back();
}
