#include "workbench/controller/simulator/replaycontrol.h"

#include "workbench/controller/controllersession.h"
#include "workbench/controller/data/datareceiver.h"
#include "workbench/controller/datawatch.h"
#include "workbench/controller/measurementmonitor.h"

#include <QDateTime>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <utility>

namespace workbench {

namespace {

constexpr int valueWords = 5;
constexpr double sameTime = 2e-6; // seconds: as far as the figures tell

QString number(double value) {
    return QString::number(value, 'g', 6);
}

QString seconds(double value) {
    return QString::number(value, 'f', 1);
}

std::optional<double> amount(const QString& word) {
    bool isNumber = false;
    const double value = word.toDouble(&isNumber);
    return isNumber && std::isfinite(value) && value >= 0.0 ? std::optional(value) : std::nullopt;
}

// "none" has no date, like all else that is no time.
QString timeText(const QString& word) {
    const QDateTime time = QDateTime::fromString(word, Qt::ISODateWithMs);
    return time.isValid() ? time.toUTC().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")) +
                                QLatin1String(" UTC")
                          : QString();
}

std::optional<ReplayControl::State> stateNamed(const QString& word) {
    if (word == QLatin1String("playing")) {
        return ReplayControl::State::Playing;
    }
    if (word == QLatin1String("paused")) {
        return ReplayControl::State::Paused;
    }
    if (word == QLatin1String("ended")) {
        return ReplayControl::State::Ended;
    }
    return std::nullopt;
}

} // namespace

ReplayControl::ReplayControl(ControllerSession& session, DataReceiver& receiver, DataWatch& watch,
                             const MeasurementMonitor& monitor, QObject* parent)
    : QObject(parent)
    , m_session(session)
    , m_receiver(receiver)
    , m_watch(watch)
    , m_monitor(monitor) {
    m_timer.setInterval(pollIntervalMs);
    connect(&m_timer, &QTimer::timeout, this, &ReplayControl::poll);
    connect(&m_session, &ControllerSession::ready, this, &ReplayControl::poll);
    connect(&m_session, &ControllerSession::stateChanged, this, &ReplayControl::tell);
    connect(&m_monitor, &MeasurementMonitor::changed, this, &ReplayControl::tell);
}

void ReplayControl::begin(const QString& name) {
    end();
    m_active = true;
    m_name = name;
    m_timer.start();
    tell();
}

void ReplayControl::end() {
    if (!m_active) {
        return;
    }
    ++m_number;
    m_timer.stop();
    m_active = false;
    m_polling = false;
    m_seeking = false;
    m_jumped = false;
    m_wanted.reset();
    m_told = Told();
    m_watch.setPaused(false);
    m_watch.setSpeed(1.0);
    tell();
}

ReplayControl::State ReplayControl::state() const {
    if (!m_active) {
        return State::None;
    }
    const bool isStopped = !m_monitor.isMeasuring() || !m_session.isReady();
    return m_told.state != State::Opening && isStopped ? State::Stopped : m_told.state;
}

QString ReplayControl::text() const {
    if (state() != State::Playing) {
        return shortText();
    }
    const QString speed = number(m_told.speed);
    return speed == QLatin1String("1") ? tr("REPLAY %1, playing").arg(m_name)
                                       : tr("REPLAY %1, playing at speed %2").arg(m_name, speed);
}

QString ReplayControl::shortText() const {
    switch (state()) {
    case State::None:
        return {};
    case State::Opening:
        return tr("REPLAY %1, being opened").arg(m_name);
    case State::Stopped:
        return m_session.isReady() ? tr("REPLAY %1, measurement stopped").arg(m_name)
                                   : tr("REPLAY %1, which does not answer").arg(m_name);
    case State::Paused:
        return tr("REPLAY %1, paused at %2 s").arg(m_name, seconds(m_told.position));
    case State::Ended:
        if (m_told.isCutShort) {
            return tr("REPLAY %1, cut short at %2 of %3 s")
                .arg(m_name, seconds(m_told.position), seconds(m_told.duration));
        }
        return m_told.duration > 0.0 || m_receiver.statistics().snapshot().frames > 0
                   ? tr("REPLAY %1, at its end (%2 s)").arg(m_name, seconds(m_told.position))
                   : tr("REPLAY %1, which has no frames").arg(m_name);
    case State::Playing:
        break;
    }
    return tr("REPLAY %1").arg(m_name);
}

void ReplayControl::tell() {
    const bool isNew = text() != m_lastText || state() != m_lastState;
    m_lastText = text();
    m_lastState = state();
    if (isNew) {
        Q_EMIT changed();
    }
    Q_EMIT moved();
}

void ReplayControl::poll() {
    if (!m_active || m_polling || !m_session.isReady()) {
        return;
    }
    m_polling = true;
    m_session.channel().askLater("kestrel2 get sim replay",
                                 [this, asked = m_number](const CommandChannel::Answer& answer) {
                                     if (asked != m_number) {
                                         return;
                                     }
                                     m_polling = false;
                                     if (answer.result == Success) {
                                         take(answer.reply.value);
                                     }
                                 });
}

void ReplayControl::take(const std::string& value) {
    const QStringList words = QString::fromStdString(value).split(QLatin1Char(' '));
    const std::optional<State> state = stateNamed(words.value(0));
    const std::optional<double> position = amount(words.value(1));
    const std::optional<double> duration = amount(words.value(2));
    const std::optional<double> speed = amount(words.value(3));
    if (words.size() != valueWords || !state || !position || !duration || !speed) {
        return;
    }
    if (std::exchange(m_jumped, false)) { // the frames from before it have all come by now
        m_receiver.statistics().beginNewSequence();
    }
    const bool expectsFrames = state == State::Playing;
    if (m_told.state == State::Opening || expectsFrames != (m_told.state == State::Playing)) {
        m_watch.setPaused(!expectsFrames);
    }
    if (*speed != m_told.speed && *speed > 0.0) {
        m_watch.setSpeed(*speed);
    }
    const double sought = m_told.position;
    m_told = {*state,
              m_seeking || m_wanted ? sought : *position,
              *duration,
              *speed,
              timeText(words.value(4)),
              state == State::Ended && *position + sameTime < *duration};
    tell();
}

// What is refused is in the log by then.
void ReplayControl::command(const std::string& words) {
    if (m_active && m_session.isReady()) {
        m_session.channel().askLater("kestrel2 sim replay " + words,
                                     [this](const CommandChannel::Answer&) { poll(); });
    }
}

void ReplayControl::play() {
    m_jumped = m_jumped || state() == State::Ended;
    command("play");
}

void ReplayControl::pause() {
    command("pause");
}

void ReplayControl::step() {
    command("step");
}

void ReplayControl::setSpeed(double speed) {
    command("speed " + number(std::clamp(speed, minSpeed, maxSpeed)).toStdString());
}

void ReplayControl::seek(double position) {
    if (!m_active || !m_session.isReady()) {
        return;
    }
    m_told.position = std::clamp(position, 0.0, m_told.duration);
    m_wanted = m_told.position;
    tell();
    if (!m_seeking) {
        sendSeek();
    }
}

void ReplayControl::sendSeek() {
    const QString position = QString::number(*std::exchange(m_wanted, std::nullopt), 'f', 6);
    m_seeking = true;
    m_session.channel().askLater("kestrel2 sim replay seek " + position.toStdString(),
                                 [this, asked = m_number](const CommandChannel::Answer&) {
                                     if (asked != m_number) {
                                         return;
                                     }
                                     m_seeking = false;
                                     m_jumped = true;
                                     m_receiver.statistics().beginNewSequence();
                                     if (m_wanted && m_session.isReady()) {
                                         sendSeek();
                                     } else {
                                         m_wanted.reset();
                                         poll();
                                     }
                                 });
}

} // namespace workbench
