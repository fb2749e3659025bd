#include "ui_mainwindow.h"
#include "workbench/text/versiontext.h"
#include "workbench/window/mainwindow.h"

#include <QFileInfo>

#include <algorithm>

namespace workbench {

namespace {

// What a front end hands on at once; a module's display need not take more.
constexpr std::size_t longestDisplayedLine = 10239;

} // namespace

void MainWindow::showState() {
    const ControllerSession& session = m_backend.session;
    const bool ready = session.isReady();
    const bool measuring = m_backend.monitor.isMeasuring();
    const bool recording = m_recording.isRunning();
    m_connectionLabel->setText(session.stateText());
    m_connectionLabel->setAccessibleDescription(session.stateText());
    m_ui->label_connection->setText(session.stateText());
    const QString measurement = !ready      ? tr("unknown")
                                : measuring ? tr("measuring")
                                            : tr("not measuring");
    m_measurementLabel->setText(measurement);
    m_ui->label_measurement->setText(measurement);
    m_ui->actionDisconnect->setEnabled(session.state() != ControllerSession::State::Disconnected);
    m_ui->actionStart->setEnabled(ready && !measuring);
    m_ui->actionStop->setEnabled(ready && measuring);
    m_ui->actionRecord->setEnabled(ready && !recording);
    m_ui->actionStopRecording->setEnabled(recording);

    const BackendVersions& versions = *m_backend.session.versions();
    const bool known = versions.protocol() != VersionInfo();
    m_ui->label_model->setText(known ? versions.hubModel() : tr("unknown"));
    m_ui->label_versions->setText(known ? tr("protocol %1, system %2 / %3")
                                              .arg(versionText(versions.protocol()),
                                                   versionText(versions.systemPt()),
                                                   versionText(versions.systemCt()))
                                        : tr("unknown"));
    showStartPage();
}

void MainWindow::showNumbers() {
    const FrameStatistics::Snapshot counts = m_backend.receiver.statistics().snapshot();
    QString text = tr("no frames");
    if (counts.lastFrameAge >= 0.0) {
        const QString age = QString::number(counts.lastFrameAge, 'f', 1);
        const QString lost = QString::number(counts.lostFrames);
        text = counts.lossIsEstimated
                   ? tr("last frame %1 s ago, about %2 lost").arg(age, lost)
                   : tr("%1 frames/s, last %2 s ago, %3 lost")
                         .arg(QString::number(counts.framesPerSecond, 'f', 1), age, lost);
    }
    m_dataLabel->setText(text);
    QString more = text;
    if (counts.rejectedLines > 0) {
        more += tr(", %1 lines unreadable").arg(counts.rejectedLines);
    }
    if (counts.unreadable > 0) {
        more += tr(", %1 frames garbled").arg(counts.unreadable);
    }
    if (counts.foreign > 0) {
        more += tr(", %1 datagrams from elsewhere refused").arg(counts.foreign);
    }
    if (counts.longestRejected > longestDisplayedLine) {
        more += tr(", lines too long for the display");
    }
    m_ui->label_data->setText(more);
    const quint16 port = m_backend.session.boundDataPort();
    m_ui->label_dataPort->setText(port == 0 ? tr("none", "data port") : QString::number(port));

    m_recordingLabel->setText(m_recording.stateText());
    m_ui->label_recording->setText(m_recording.numbersText());
}

// A display that stays empty while lines arrive: why, in words, once for each measurement.
void MainWindow::tellOfLongLines() {
    const std::size_t length = m_backend.receiver.statistics().snapshot().longestRejected;
    const bool tooLong = length > longestDisplayedLine;
    if (tooLong && !m_longLinesTold) {
        m_backend.log.problem(
            tr("Data lines of %1 characters arrive, and the display takes at most "
               "%2: it stays empty. The controller has more tools (some 50) than "
               "fit into a line.")
                .arg(length)
                .arg(longestDisplayedLine));
    }
    m_longLinesTold = tooLong;
}

void MainWindow::showModules() {
    QStringList texts;
    const QVector<ModuleInfo> infos = m_modules.modules();
    for (const ModuleInfo& info : infos) {
        texts += info.isLoaded() ? info.name + QLatin1Char(' ') + info.version
                                 : tr("%1 not loaded").arg(QFileInfo(info.file).fileName());
    }
    m_ui->label_modules->setText(texts.isEmpty() ? tr("none") : texts.join(QStringLiteral(", ")));
}

} // namespace workbench
