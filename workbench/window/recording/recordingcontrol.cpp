#include "workbench/window/recording/recordingcontrol.h"

#include "workbench/controller/controllersession.h"
#include "workbench/outlets/recorder.h"
#include "workbench/text/logmodel.h"
#include "workbench/window/look/savefile.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLocale>

#include <algorithm>

namespace workbench {

namespace {

constexpr int followIntervalMs = 50;

class Texts {
    Q_DECLARE_TR_FUNCTIONS(workbench::RecordingControl)
};

QString contentText(quint64 frames) {
    return frames > 0 ? Texts::tr("It is whole until then: %1 frames.").arg(frames)
                      : Texts::tr("There are no frames in it.");
}

// Empty when nobody knows.
QString freeText(const Recorder::Status& status) {
    return status.freeBytes < 0 ? QString()
                                : Texts::tr("%1 free").arg(QLocale().formattedDataSize(
                                      status.freeBytes, 1, QLocale::DataSizeSIFormat));
}

// Empty when all is.
QString unwrittenText(const Recorder::Status& status) {
    return status.unwritten == 0 ? QString() : Texts::tr("%1 not written").arg(status.unwritten);
}

// Those that are not empty.
QString listed(QStringList parts) {
    parts.removeAll(QString());
    return parts.join(QStringLiteral(", "));
}

} // namespace

qint64 secondsLeft(qint64 freeBytes, double bytesPerSecond) {
    constexpr double longest = 1e9; // more than anybody waits for
    if (freeBytes < 0 || !(bytesPerSecond > 0.0)) {
        return -1;
    }
    return static_cast<qint64>(std::min(longest, static_cast<double>(freeBytes) / bytesPerSecond));
}

QString timeText(qint64 seconds) {
    constexpr qint64 minute = 60;
    constexpr qint64 hour = 60 * minute;
    constexpr qint64 day = 24 * hour;
    if (seconds < minute) {
        return Texts::tr("less than a minute");
    }
    if (seconds < 2 * hour) {
        return Texts::tr("%1 min").arg(seconds / minute);
    }
    if (seconds < 2 * day) {
        return Texts::tr("%1 h").arg(seconds / hour);
    }
    return Texts::tr("%1 days").arg(std::min<qint64>(seconds / day, 999));
}

namespace {

// For how long the free space lasts; empty when nobody knows yet.
QString roomText(const Recorder::Status& status) {
    const qint64 seconds = secondsLeft(status.freeBytes, status.bytesPerSecond);
    return seconds < 0 ? QString() : Texts::tr("room for %1").arg(timeText(seconds));
}

} // namespace

RecordingControl::RecordingControl(ControllerSession& session, Recorder& recorder, LogModel& log,
                                   QObject* parent, int goneMs)
    : QObject(parent)
    , m_session(session)
    , m_recorder(recorder)
    , m_log(log)
    , m_headerQuery(session) {
    m_followTimer.setInterval(followIntervalMs);
    connect(&m_followTimer, &QTimer::timeout, this, &RecordingControl::follow);
    m_goneTimer.setSingleShot(true);
    m_goneTimer.setInterval(goneMs);
    connect(&m_goneTimer, &QTimer::timeout, this, [this] { endFor(tr("the controller is gone")); });
    connect(&session, &ControllerSession::stateChanged, this, &RecordingControl::watchConnection);
}

bool RecordingControl::isRunning() const {
    return m_followTimer.isActive();
}

void RecordingControl::start(const QString& fileName) {
    if (isStarting()) {
        return;
    }
    m_startFile = fileName;
    m_headerQuery.ask([this, fileName](bool good, const kestrel_wire::RecordingHeader& header) {
        if (!good) {
            const QString error = tr("the connection was lost");
            tellNotBegun(tr("The recording to %1 has not begun: %2").arg(fileName, error), error);
        } else if (!m_recorder.start(fileName, header)) {
            const QString error = tr("another recording is still being written");
            tellNotBegun(tr("%1 cannot be written: %2").arg(fileName, error), error);
        } else {
            m_begun = false;
            m_stalled = false;
            m_incomplete = false;
            m_folder = QFileInfo(fileName).absolutePath();
            m_stopping = false;
            m_endReason.clear();
            m_followTimer.start();
            watchConnection();
        }
    });
    if (isStarting()) {
        Q_EMIT starting();
    }
}

// By somebody who wants no recording any more.
void RecordingControl::cancelStart() {
    if (isStarting()) {
        m_headerQuery.cancel();
        m_log.info(tr("The recording to %1 was stopped before it began").arg(m_startFile));
        Q_EMIT changed(false, QString());
    }
}

QString RecordingControl::suggestedFile() const {
    return workbench::suggestedFile(QStringLiteral("recording"), QStringLiteral("kestrel"),
                                    m_folder);
}

void RecordingControl::tellNotBegun(const QString& sentence, const QString& error) {
    m_log.problem(sentence);
    Q_EMIT changed(false, error);
    Q_EMIT failed(sentence);
}

void RecordingControl::watchConnection() {
    if (!isRunning() || m_session.isReady()) {
        m_goneTimer.stop();
    } else if (m_session.state() == ControllerSession::State::Disconnected) {
        endFor(tr("the connection was closed"));
    } else if (!m_goneTimer.isActive()) {
        m_goneTimer.start();
    }
}

void RecordingControl::endFor(const QString& reason) {
    if (isRunning() && !m_stopping) {
        m_stopping = true;
        m_endReason = reason;
        m_recorder.stop();
        follow();
    }
}

void RecordingControl::stop() {
    cancelStart();
    m_stopping = true;
    m_recorder.stop();
    follow();
}

void RecordingControl::finish() {
    cancelStart();
    m_stopping = true;
    m_recorder.stop();
    m_recorder.waitForEnd();
    follow();
}

void RecordingControl::follow() {
    if (!isRunning()) {
        return;
    }
    tellProgress();
    tellRoom();
    if (!m_recorder.status().running) {
        m_followTimer.stop();
        m_goneTimer.stop();
        tellEnd();
    }
}

void RecordingControl::tellProgress() {
    const Recorder::Status status = m_recorder.status();
    if (status.stalled != m_stalled) {
        m_stalled = status.stalled;
        if (m_stalled) {
            m_log.problem(
                tr("The disk does not answer; %1 is not being written").arg(status.fileName));
        } else {
            m_log.info(tr("The disk answers again; %1 is being written").arg(status.fileName));
        }
    }
    if (status.unwritten > 0 && status.running && !m_incomplete) {
        m_incomplete = true;
        m_log.problem(tr("The disk is too slow; frames are missing in %1").arg(status.fileName));
    }
    if (status.begun && !m_begun) {
        m_begun = true;
        m_log.info(tr("Recording to %1").arg(status.fileName));
        Q_EMIT changed(true, QString());
    }
}

void RecordingControl::tellEnd() {
    const Recorder::Status status = m_recorder.status();
    if (!status.begun) {
        tellNotBegun(tr("%1 cannot be written: %2").arg(status.fileName, status.error),
                     status.error);
        return;
    }
    m_log.info(tr("Recorded %1 frames to %2").arg(QString::number(status.frames), status.fileName));
    QString error = status.error.isEmpty() ? m_endReason : status.error;
    QString sentence;
    if (!error.isEmpty()) {
        sentence = tr("The recording to %1 ended: %2").arg(status.fileName, error);
        m_log.problem(sentence);
        sentence += QStringLiteral(". ") + contentText(status.frames);
    }
    if (status.unwritten > 0) {
        const QString missing = tr("%1 frames could not be written to %2")
                                    .arg(QString::number(status.unwritten), status.fileName);
        m_log.problem(missing);
        sentence = sentence.isEmpty() ? missing : sentence;
        error = error.isEmpty() ? missing : error;
    }
    Q_EMIT changed(false, error);
    if (!sentence.isEmpty()) {
        Q_EMIT failed(sentence);
    }
}

void RecordingControl::tellRoom() {
    const Recorder::Status status = m_recorder.status();
    const qint64 seconds = secondsLeft(status.freeBytes, status.bytesPerSecond);
    const bool isShort = status.running && seconds >= 0 && seconds < shortRoomSeconds;
    const QString room = isShort ? timeText(seconds) : QString();
    if (room != m_room) {
        m_room = room;
        Q_EMIT roomIsShort(room);
    }
}

QString RecordingControl::stateText() const {
    if (isStarting()) {
        return tr("starting to record");
    }
    const Recorder::Status status = m_recorder.status();
    if (!status.running) {
        return tr("not recording");
    }
    return status.stalled ? tr("the disk does not answer") : tr("recording");
}

QString RecordingControl::diskText() const {
    const Recorder::Status status = m_recorder.status();
    return status.running ? listed({freeText(status), roomText(status), unwrittenText(status)})
                          : QString();
}

QString RecordingControl::numbersText() const {
    if (isStarting()) {
        return tr("to %1").arg(m_startFile);
    }
    const Recorder::Status status = m_recorder.status();
    if (!status.running) {
        return QStringLiteral("–"); // the state is told elsewhere
    }
    // The path, which may be long, comes last: the end is what a narrow window leaves out.
    return listed({tr("%1 frames").arg(status.frames), freeText(status), roomText(status),
                   unwrittenText(status), tr("to %1").arg(status.fileName)});
}

} // namespace workbench
