#include "workbench/outlets/mqtt/mqttconnection.h"

#include "workbench/outlets/mqtt/mqttwords.h"

#include <QCoreApplication>
#include <QFile>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace workbench {

namespace {

constexpr int loopMs = 20;
constexpr int loginRefused[] = {4, 5}; // bad name or password, not authorized
constexpr std::chrono::milliseconds farewellTime{800};
constexpr qint64 longestPassword = 65535;
constexpr const char* systemAuthorities = "/etc/ssl/certs";
constexpr const char* online = "online";
constexpr const char* offline = "offline";

class ConnectionTexts {
    Q_DECLARE_TR_FUNCTIONS(workbench::MqttLink)
};

// Nobody is asked for the password of a key: there may be no terminal, and nobody there.
int noPassphrase(char* /*buffer*/, int /*size*/, int /*forWriting*/, void* /*data*/) {
    return 0;
}

const char* orNull(const QByteArray& text) {
    return text.isEmpty() ? nullptr : text.constData();
}

} // namespace

MqttLink::Connection::Connection(Shared& shared)
    : m_shared(shared)
    , m_mosquitto(::mosquitto_new(shared.settings.clientId.constData(), true, this)) {}

MqttLink::Connection::~Connection() {
    ::mosquitto_destroy(m_mosquitto);
}

MqttLink::Connection::Ending MqttLink::Connection::refuse(const QString& text) {
    m_shared.setWord(OutletWord::State::Refused, text);
    return Ending::Refused;
}

MqttLink::Connection::Ending MqttLink::Connection::run() {
    if (m_mosquitto == nullptr) {
        return refuse(QString::fromLocal8Bit(std::strerror(errno)));
    }
    if (!prepare()) {
        return Ending::Refused; // the word has been said
    }
    const BrokerSettings& settings = m_shared.settings;
    const int code = ::mosquitto_connect(m_mosquitto, settings.host.constData(), settings.port,
                                         static_cast<int>(keepAlive.count()));
    return code == MOSQ_ERR_SUCCESS ? talk() : failed(code);
}

bool MqttLink::Connection::prepare() {
    const BrokerSettings& settings = m_shared.settings;
    ::mosquitto_connect_callback_set(m_mosquitto, [](mosquitto*, void* self, int code) {
        static_cast<Connection*>(self)->onConnected(code);
    });
    ::mosquitto_publish_callback_set(m_mosquitto, [](mosquitto*, void* self, int messageId) {
        static_cast<Connection*>(self)->onPublished(messageId);
    });
    ::mosquitto_log_callback_set(m_mosquitto,
                                 [](mosquitto*, void* self, int level, const char* text) {
                                     if (level == MOSQ_LOG_ERR) {
                                         static_cast<Connection*>(self)->m_lastError = text;
                                     }
                                 });
    if (!settings.stateTopic.isEmpty()) {
        ::mosquitto_will_set(m_mosquitto, settings.stateTopic.constData(),
                             static_cast<int>(std::strlen(offline)), offline, 1, true);
    }
    return setPassword() && (!settings.isEncrypted || setCertificates());
}

bool MqttLink::Connection::setPassword() {
    const BrokerSettings& settings = m_shared.settings;
    if (settings.user.isEmpty()) {
        return true;
    }
    QByteArray password;
    if (!settings.passwordFile.isEmpty()) {
        QFile file(settings.passwordFile);
        if (!file.open(QIODevice::ReadOnly)) {
            refuse(ConnectionTexts::tr("%1 cannot be read: %2")
                       .arg(settings.passwordFile, file.errorString()));
            return false;
        }
        password = file.readLine(longestPassword);
        while (password.endsWith('\n') || password.endsWith('\r')) {
            password.chop(1);
        }
    }
    ::mosquitto_username_pw_set(m_mosquitto, settings.user.constData(), orNull(password));
    return true;
}

bool MqttLink::Connection::setCertificates() {
    const BrokerSettings& settings = m_shared.settings;
    for (const QString& name : {settings.caFile, settings.certificateFile, settings.keyFile}) {
        QFile file(name);
        if (!name.isEmpty() && !file.open(QIODevice::ReadOnly)) {
            refuse(ConnectionTexts::tr("%1 cannot be read: %2").arg(name, file.errorString()));
            return false;
        }
    }
    const QByteArray authorities = QFile::encodeName(settings.caFile);
    const QByteArray certificate = QFile::encodeName(settings.certificateFile);
    const QByteArray key = QFile::encodeName(settings.keyFile);
    const int code = ::mosquitto_tls_set(m_mosquitto, orNull(authorities),
                                         authorities.isEmpty() ? systemAuthorities : nullptr,
                                         orNull(certificate), orNull(key), &noPassphrase);
    if (code != MOSQ_ERR_SUCCESS) {
        refuse(ConnectionTexts::tr("the certificates cannot be used: %1").arg(wordOfCode(code)));
        return false;
    }
    return true;
}

MqttLink::Connection::Ending MqttLink::Connection::failed(int code) {
    // In the middle of a handshake, too: it may just be restarting.
    const bool isEnded = m_lastError.find("unexpected eof") != std::string::npos;
    const QString reason = wordOfCode(isEnded ? MOSQ_ERR_CONN_LOST : code);
    const QString host = QString::fromUtf8(m_shared.settings.host);
    if (m_answer > 0) { // the broker's own word
        return std::find(std::begin(loginRefused), std::end(loginRefused), m_answer) !=
                       std::end(loginRefused)
                   ? refuse(ConnectionTexts::tr("the broker refuses the login"))
                   : refuse(ConnectionTexts::tr("the broker refuses us: %1")
                                .arg(wordOfAnswer(m_answer)));
    }
    if (m_answer < 0 && m_shared.settings.isEncrypted && !isEnded &&
        (code == MOSQ_ERR_TLS || !m_lastError.empty())) {
        return refuse(ConnectionTexts::tr("no agreement with the broker on certificates: %1")
                          .arg(wordOfCertificates(m_lastError, code)));
    }
    m_shared.setWord(
        OutletWord::State::Waiting,
        m_answer == 0 ? ConnectionTexts::tr("the connection to the broker was lost: %1").arg(reason)
                      : ConnectionTexts::tr("%1 cannot be reached: %2").arg(host, reason));
    return Ending::Lost;
}

bool MqttLink::Connection::loop(int* code) {
    *code = ::mosquitto_loop(m_mosquitto, loopMs, 1);
    return *code == MOSQ_ERR_SUCCESS && m_answer <= 0;
}

MqttLink::Connection::Ending MqttLink::Connection::talk() {
    const Clock::time_point begin = Clock::now();
    int code = MOSQ_ERR_SUCCESS;
    while (loop(&code)) {
        if (m_answer == 0) {
            publishWaiting();
            noticeStall();
        } else if (Clock::now() - begin > m_shared.settings.answerTime) {
            m_shared.setWord(OutletWord::State::Waiting,
                             ConnectionTexts::tr("the broker does not answer"));
            return Ending::Lost;
        }
        if (m_shared.ends()) {
            takeLeave();
            return Ending::Orderly;
        }
    }
    const int error = errno;
    {
        const std::lock_guard<std::mutex> lock(m_shared.mutex);
        m_shared.isConnected = false;
        m_shared.poses.reset();
        m_shared.results.clear();
        m_shared.unconfirmed = 0;
    }
    errno = error;
    return failed(code);
}

void MqttLink::Connection::onConnected(int code) {
    m_answer = code;
    if (code != 0) {
        return;
    }
    if (!m_shared.settings.stateTopic.isEmpty()) {
        ::mosquitto_publish(m_mosquitto, nullptr, m_shared.settings.stateTopic.constData(),
                            static_cast<int>(std::strlen(online)), online, 1, true);
    }
    const std::lock_guard<std::mutex> lock(m_shared.mutex);
    m_shared.isConnected = true;
    ++m_shared.sessions;
    m_shared.results.clear();
    m_shared.confirmed.clear();
    m_shared.unconfirmed = 0;
    m_shared.word.state = OutletWord::State::Connected;
    m_shared.word.text = ConnectionTexts::tr("connected");
}

void MqttLink::Connection::publishWaiting() {
    if (::mosquitto_want_write(m_mosquitto)) {
        return; // what the network has not yet taken would only grow
    }
    std::optional<std::string> poses;
    {
        const std::lock_guard<std::mutex> lock(m_shared.mutex);
        poses.swap(m_shared.poses);
    }
    if (poses) {
        ::mosquitto_publish(m_mosquitto, nullptr, m_shared.settings.posesTopic.constData(),
                            static_cast<int>(poses->size()), poses->data(), 0, false);
    }
    publishResults();
}

void MqttLink::Connection::publishResults() {
    std::deque<Shared::Result> results;
    {
        const std::lock_guard<std::mutex> lock(m_shared.mutex);
        results.swap(m_shared.results);
    }
    for (const Shared::Result& result : results) {
        int messageId = 0;
        const int code =
            ::mosquitto_publish(m_mosquitto, &messageId, m_shared.settings.resultsTopic.constData(),
                                static_cast<int>(result.text.size()), result.text.data(), 1, false);
        if (code == MOSQ_ERR_SUCCESS || code == MOSQ_ERR_NO_CONN) {
            // What a lost connection has not taken comes again with the next one.
            m_flights[messageId] = {result.number, Clock::now()};
        } else {
            // No broker would ever take it; it must not hold the others up.
            const std::lock_guard<std::mutex> lock(m_shared.mutex);
            ++m_shared.word.droppedResults;
            --m_shared.unconfirmed;
            m_shared.confirmed.push_back({result.number, Clock::now()});
        }
    }
}

void MqttLink::Connection::onPublished(int messageId) {
    m_isFarewellTaken = m_isFarewellTaken || (m_farewell != 0 && messageId == m_farewell);
    const auto flight = m_flights.find(messageId);
    if (flight == m_flights.end()) {
        return;
    }
    const std::lock_guard<std::mutex> lock(m_shared.mutex);
    m_shared.confirmed.push_back({flight->second.number, Clock::now()});
    --m_shared.unconfirmed;
    ++m_shared.word.sentResults;
    m_flights.erase(flight);
}

void MqttLink::Connection::noticeStall() {
    const Clock::time_point latest = Clock::now() - m_shared.settings.confirmationTime;
    const bool isLate =
        std::any_of(m_flights.begin(), m_flights.end(),
                    [latest](const auto& flight) { return flight.second.since < latest; });
    const std::lock_guard<std::mutex> lock(m_shared.mutex);
    m_shared.word.state = isLate ? OutletWord::State::Waiting : OutletWord::State::Connected;
    m_shared.word.text = isLate ? ConnectionTexts::tr("the broker does not answer")
                                : ConnectionTexts::tr("connected");
}

void MqttLink::Connection::takeLeave() {
    const QByteArray& topic = m_shared.settings.stateTopic;
    if (m_answer == 0 && !topic.isEmpty()) {
        ::mosquitto_publish(m_mosquitto, &m_farewell, topic.constData(),
                            static_cast<int>(std::strlen(offline)), offline, 1, true);
        const Clock::time_point deadline = Clock::now() + farewellTime;
        int code = MOSQ_ERR_SUCCESS;
        while (!m_isFarewellTaken && Clock::now() < deadline && loop(&code)) {
        }
    }
    ::mosquitto_disconnect(m_mosquitto);
}

} // namespace workbench
