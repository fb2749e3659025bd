#include "workbench/outlets/mqtt/mqttlink.h"

#include "workbench/outlets/mqtt/mqttconnection.h"
#include "workbench/outlets/quietthread.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

namespace workbench {

namespace {

constexpr std::chrono::milliseconds firstPause{500};
constexpr std::chrono::milliseconds longestPause{30000};
constexpr std::chrono::milliseconds refusedPause{60000};
constexpr std::chrono::milliseconds longestEnd{1000};

class LinkTexts {
    Q_DECLARE_TR_FUNCTIONS(workbench::MqttLink)
};

} // namespace

MqttLink::MqttLink(const BrokerSettings& settings)
    : m_shared(std::make_shared<Shared>(settings)) {
    static const int initialized = ::mosquitto_lib_init(); // never undone: threads may be left
    static_cast<void>(initialized);
    m_shared->setWord(OutletWord::State::Waiting, LinkTexts::tr("connecting"));
    m_thread = std::thread([shared = m_shared] {
        blockSignalsOfThread();
        std::chrono::milliseconds pause = firstPause;
        for (;;) {
            const unsigned sessions = shared->sessions; // written by this thread alone
            const Connection::Ending ending = Connection(*shared).run();
            if (ending == Connection::Ending::Orderly) {
                break;
            }
            if (sessions != shared->sessions) {
                pause = firstPause;
            }
            if (!shared->waitFor(ending == Connection::Ending::Refused ? refusedPause : pause)) {
                break;
            }
            pause = std::min(2 * pause, longestPause);
        }
        const std::lock_guard<std::mutex> lock(shared->mutex);
        shared->isOver = true;
        shared->wake.notify_all();
    });
}

MqttLink::~MqttLink() {
    bool isOver = false;
    {
        std::unique_lock<std::mutex> lock(m_shared->mutex);
        m_shared->isEnding = true;
        m_shared->wake.notify_all();
        isOver = m_shared->wake.wait_for(lock, longestEnd, [this] { return m_shared->isOver; });
    }
    if (isOver) {
        m_thread.join();
    } else {
        m_thread.detach();
    }
}

OutletWord MqttLink::word() const {
    const std::lock_guard<std::mutex> lock(m_shared->mutex);
    return m_shared->word;
}

unsigned MqttLink::session() const {
    const std::lock_guard<std::mutex> lock(m_shared->mutex);
    return m_shared->isConnected ? m_shared->sessions : 0;
}

bool MqttLink::sendPoses(std::string text) {
    const std::lock_guard<std::mutex> lock(m_shared->mutex);
    if (!m_shared->isConnected) {
        return false;
    }
    const bool isFirst = !m_shared->poses;
    m_shared->poses = std::move(text);
    return isFirst;
}

bool MqttLink::sendResult(unsigned session, std::uint64_t number, std::string text) {
    const std::lock_guard<std::mutex> lock(m_shared->mutex);
    if (!m_shared->isConnected || session != m_shared->sessions ||
        m_shared->unconfirmed >= window) {
        return false;
    }
    m_shared->results.push_back({number, std::move(text)});
    ++m_shared->unconfirmed;
    return true;
}

std::vector<MqttLink::Confirmed> MqttLink::takeConfirmed(unsigned session) {
    const std::lock_guard<std::mutex> lock(m_shared->mutex);
    if (session != m_shared->sessions) {
        return {};
    }
    return std::exchange(m_shared->confirmed, {});
}

} // namespace workbench
