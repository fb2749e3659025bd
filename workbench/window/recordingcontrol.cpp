#include "workbench/window/recordingcontrol.h"

#include "workbench/outlets/recorder.h"
#include "workbench/text/logmodel.h"

namespace workbench {

namespace {

constexpr int followIntervalMs = 50;

}

RecordingControl::RecordingControl(ControllerSession& session, Recorder& recorder, LogModel& log,
                                   QObject* parent)
    : QObject(parent)
    , m_recorder(recorder)
    , m_log(log)
    , m_headerQuery(session) {
    m_followTimer.setInterval(followIntervalMs);
    connect(&m_followTimer, &QTimer::timeout, this, &RecordingControl::follow);
}

bool RecordingControl::isRunning() const {
    return m_followTimer.isActive();
}

void RecordingControl::start(const QString& fileName) {
    if (m_headerQuery.isAsking()) {
        return;
    }
    m_headerQuery.ask([this, fileName](bool good, const kestrel_wire::RecordingHeader& header) {
        if (!good) {
            refuse(fileName, tr("the connection was lost"));
        } else if (!m_recorder.start(fileName, header)) {
            refuse(fileName, tr("another recording is still being written"));
        } else {
            m_begun = false;
            m_stalled = false;
            m_incomplete = false;
            m_followTimer.start();
        }
    });
}

void RecordingControl::refuse(const QString& fileName, const QString& error) {
    m_log.problem(tr("%1 cannot be written: %2").arg(fileName, error));
    Q_EMIT changed(false, error);
}

void RecordingControl::stop() {
    m_recorder.stop();
    follow();
}

void RecordingControl::finish() {
    m_recorder.stop();
    m_recorder.waitForEnd();
    follow();
}

void RecordingControl::follow() {
    if (!isRunning()) {
        return;
    }
    tellProgress();
    if (!m_recorder.status().running) {
        m_followTimer.stop();
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
        refuse(status.fileName, status.error);
        return;
    }
    m_log.info(tr("Recorded %1 frames to %2").arg(QString::number(status.frames), status.fileName));
    QString error = status.error;
    if (!error.isEmpty()) {
        m_log.problem(tr("The recording to %1 ended: %2").arg(status.fileName, error));
    }
    if (status.unwritten > 0) {
        const QString missing = tr("%1 frames could not be written to %2")
                                    .arg(QString::number(status.unwritten), status.fileName);
        m_log.problem(missing);
        error = error.isEmpty() ? missing : error;
    }
    Q_EMIT changed(false, error);
}

QString RecordingControl::stateText() const {
    const Recorder::Status status = m_recorder.status();
    if (!status.running) {
        return tr("not recording");
    }
    return status.stalled ? tr("the disk does not answer") : tr("recording");
}

QString RecordingControl::numbersText() const {
    const Recorder::Status status = m_recorder.status();
    if (!status.running) {
        return tr("none");
    }
    const QString text = tr("%1 frames to %2").arg(QString::number(status.frames), status.fileName);
    return status.unwritten == 0 ? text : text + tr(", %1 not written").arg(status.unwritten);
}

} // namespace workbench
