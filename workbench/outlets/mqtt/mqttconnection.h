#pragma once

#include "workbench/outlets/mqtt/mqttshared.h"

#include <chrono>
#include <map>
#include <memory>
#include <mosquitto.h>

namespace workbench {

/// One try to reach the broker and, if it succeeds, the talk with it until its end. On the link's
/// thread alone.
class MqttLink::Connection {
public:
    explicit Connection(Shared& shared);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    enum class Ending {
        Orderly, ///< the link ends
        Lost,    ///< or could not be made
        Refused  ///< the same try will not succeed before somebody changes something
    };
    Ending run();

private:
    using Clock = std::chrono::steady_clock;
    struct Flight {
        std::uint64_t number = 0;
        Clock::time_point since;
    };

    bool prepare();
    bool setPassword();
    bool setCertificates();
    Ending refuse(const QString& text);
    Ending failed(int code);
    Ending talk();
    void publishWaiting();
    void publishResults();
    void noticeStall();
    void takeLeave();
    bool loop(int* code);
    void onConnected(int code);
    void onPublished(int messageId);

    Shared& m_shared;
    mosquitto* m_mosquitto = nullptr;
    std::map<int, Flight> m_flights; // results, by the library's message ids
    int m_answer = -1;               // of the broker to the login; -1: none yet
    int m_farewell = 0;              // message id of the last word
    bool m_isFarewellTaken = false;
    std::string m_lastError; // as the library has logged it
};

} // namespace workbench
