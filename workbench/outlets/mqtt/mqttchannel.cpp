#include "workbench/outlets/mqtt/mqttchannel.h"

#include "workbench/outlets/sending/frames/framejson.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>

#include <cerrno>
#include <cstring>
#include <thread>
#include <utility>

namespace workbench {

namespace {

constexpr std::chrono::seconds retryInterval{5};
constexpr std::chrono::milliseconds lastResultsTime{800};
constexpr std::size_t mostUnspooled = 1000;

class ChannelTexts {
    Q_DECLARE_TR_FUNCTIONS(workbench::MqttChannel)
};

// The same in each run, and of another for each broker, prefix and station.
QString keyOf(const QStringList& parts) {
    const QByteArray all = parts.join(QLatin1Char('\n')).toUtf8();
    return QString::fromLatin1(
        QCryptographicHash::hash(all, QCryptographicHash::Sha1).toHex().left(12));
}

QString asName(const QString& text) {
    QString name = text.left(40);
    for (QChar& c : name) {
        const bool isPlain = c.unicode() < 0x80 && (c.isLetterOrNumber() || c == QLatin1Char('.'));
        c = isPlain ? c : QLatin1Char('-');
    }
    return name;
}

std::string spoolName(const OutletUrl& url, const QString& station, const QString& folder) {
    const QString key = keyOf({url.host, QString::number(url.port), url.prefix, station});
    return QFile::encodeName(
               QDir(folder).filePath(
                   QStringLiteral("results/%1-%2.results").arg(asName(url.host), key)))
        .toStdString();
}

BrokerSettings settingsOf(const OutletUrl& url, const QString& station,
                          const ChannelSurroundings& surroundings) {
    const QByteArray base = QStringLiteral("%1/%2/").arg(url.prefix, station).toUtf8();
    BrokerSettings settings;
    settings.host = url.host.toUtf8();
    settings.port = url.port;
    settings.isEncrypted = url.isEncrypted;
    settings.clientId = QStringLiteral("kestrel-%1-%2%3")
                            .arg(asName(station), keyOf({url.prefix, station}),
                                 surroundings.isTrial ? QStringLiteral("-trial") : QString())
                            .toUtf8();
    settings.user = url.user.toUtf8();
    settings.passwordFile = url.passwordFile;
    settings.caFile = url.caFile;
    settings.certificateFile = url.certificateFile;
    settings.keyFile = url.keyFile;
    settings.confirmationTime = surroundings.longestSilence;
    if (!surroundings.isTrial) {
        settings.posesTopic = base + "poses";
        settings.stateTopic = base + "state";
        settings.resultsTopic = base + "results";
    }
    return settings;
}

QString stationOf(const OutletUrl& url, const ChannelSurroundings& surroundings) {
    return url.station.isEmpty() ? surroundings.computerName : url.station;
}

} // namespace

MqttChannel::MqttChannel(const OutletUrl& url, const ChannelSurroundings& surroundings)
    : m_station(stationOf(url, surroundings))
    , m_settings(settingsOf(url, m_station, surroundings))
    , m_isTrial(surroundings.isTrial)
    , m_spool(spoolName(url, m_station, surroundings.dataFolder))
    , m_unsettled(surroundings.writingTime, MqttLink::longestIgnorance) {}

MqttChannel::~MqttChannel() = default;

bool MqttChannel::openSpool() {
    const ResultSpool::Opened opened = m_spool.open();
    const int error = errno;
    if (opened == ResultSpool::Opened::Yes) {
        m_trouble.clear();
        return true;
    }
    m_trouble = opened == ResultSpool::Opened::InUse
                    ? ChannelTexts::tr("another program sends there as station %1").arg(m_station)
                    : ChannelTexts::tr("the results cannot be kept: %1")
                          .arg(QString::fromLocal8Bit(std::strerror(error)));
    return false;
}

void MqttChannel::tend() {
    if (!m_isTrial && (!m_spool.isOpen() || !m_unspooled.empty()) && Clock::now() >= m_nextTry) {
        if (openSpool()) {
            spoolUnspooled();
        }
        m_nextTry = Clock::now() + retryInterval;
    }
    if (m_link == nullptr && (m_isTrial || m_spool.isOpen())) {
        m_link = std::make_unique<MqttLink>(m_settings);
    }
    if (m_link != nullptr && m_spool.isOpen()) {
        passResults();
    }
}

void MqttChannel::passResults() {
    const unsigned session = m_link->session();
    if (session != m_session) {
        m_session = session;
        m_next.reset();
        m_unsettled.clear();
        m_spool.rewind();
    }
    if (session == 0) {
        return;
    }
    for (const MqttLink::Confirmed& confirmed : m_link->takeConfirmed(session)) {
        m_unsettled.add(confirmed.number, confirmed.time);
    }
    settle();
    for (;;) {
        if (!m_next) {
            m_next = m_spool.next();
        }
        if (!m_next || !m_link->sendResult(session, m_next->number, m_next->text)) {
            return;
        }
        m_next.reset();
    }
}

void MqttChannel::settle() {
    while (const auto number = m_unsettled.takeSettled(Clock::now())) {
        m_spool.confirm(*number);
    }
}

OutletChannel::Delivery MqttChannel::send(const TrackedFrame& frame) {
    if (m_link == nullptr || m_isTrial) {
        return Delivery::Dropped;
    }
    std::string text;
    appendFrameJson(frame, FrameTimes::TimeStampAndUtc, text);
    return m_link->sendPoses(std::move(text)) ? Delivery::Sent : Delivery::Dropped;
}

void MqttChannel::send(const ModuleResult& result) {
    m_unspooled.push_back(resultMessage(result, resultId(result, m_station), m_station));
}

void MqttChannel::keep() {
    if (m_spool.isOpen()) {
        spoolUnspooled();
    }
    while (m_unspooled.size() > mostUnspooled) {
        m_unspooled.pop_front();
        ++m_dropped;
    }
}

// Together, or as many as a disk that is nearly full takes.
void MqttChannel::spoolUnspooled() {
    if (m_unspooled.size() > 1 && m_spool.append(m_unspooled)) {
        m_unspooled.clear();
    }
    while (!m_unspooled.empty()) {
        if (!m_spool.append(m_unspooled.front())) {
            m_trouble = ChannelTexts::tr("the results cannot be kept: %1")
                            .arg(QString::fromLocal8Bit(std::strerror(errno)));
            m_nextTry = Clock::now() + retryInterval;
            return;
        }
        m_unspooled.pop_front();
    }
    m_trouble.clear();
}

OutletWord MqttChannel::word() const {
    OutletWord word;
    word.text = ChannelTexts::tr("connecting");
    if (m_link != nullptr) {
        word = m_link->word();
    }
    if (!m_trouble.isEmpty()) {
        word.state = OutletWord::State::Refused;
        word.text = m_trouble;
    }
    word.waitingResults = m_spool.waiting() - m_unsettled.size() + m_unspooled.size();
    word.droppedResults += m_dropped;
    return word;
}

// What the broker takes in a moment need not wait for the next run. What has not settled by then
// comes again with it: nobody will notice now that the broker is killed.
void MqttChannel::close() {
    const Clock::time_point deadline = Clock::now() + lastResultsTime;
    constexpr std::chrono::milliseconds look{10};
    while (m_link != nullptr && m_link->session() != 0 && m_spool.waiting() > m_unsettled.size() &&
           Clock::now() < deadline) {
        tend();
        std::this_thread::sleep_for(look);
    }
    m_link.reset();
}

} // namespace workbench
