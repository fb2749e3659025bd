#include "workbench/text/recordingreason.h"
#include "workbench/window/look/symbols.h"
#include "workbench/window/mainwindow.h"
#include "workbench/window/recording/replaybar.h"
#include "workbench/window/state/banner.h"
#include "workbench/window/state/livestate.h"

#include <QAction>
#include <QFileDialog>
#include <QFileInfo>

#include <algorithm>
#include <limits>
#include <utility>

namespace workbench {

namespace {

constexpr qint64 slowestBytesPerMs = 2000; // of a disk that a recording is read from
constexpr int longestName = 60;

// Titles take "[*]" for a place of their own.
QString forTitle(QString text) {
    return text.replace(QStringLiteral("[*]"), QStringLiteral("[*][*]"));
}

int readTimeoutMs(const QFileInfo& file) {
    const qint64 reading = std::max<qint64>(0, file.size()) / slowestBytesPerMs;
    return static_cast<int>(std::min<qint64>(SimulatorProcess::startTimeoutMs + reading,
                                             std::numeric_limits<int>::max()));
}

} // namespace

void MainWindow::setUpReplay() {
    m_ownTitle = windowTitle();
    auto* const open = new QAction(symbolIcon(Symbol::Open), tr("&Open recording…"), this);
    open->setObjectName(QStringLiteral("actionOpenRecording"));
    open->setStatusTip(tr("Play a recording as if it were measured now"));
    open->setShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_O);
    m_menus->add({tr("&File"), 100, 5, open});
    connect(open, &QAction::triggered, this, &MainWindow::askForReplay);
    m_replayBar = new ReplayBar(m_backend.replay, this);
    connect(m_replayBar, &ReplayBar::closeWanted, this, &MainWindow::disconnectByHand);
    connect(&m_backend.replay, &ReplayControl::changed, this, &MainWindow::showReplay);
}

void MainWindow::askForReplay() {
    const QString last = m_replayFile.isEmpty() ? m_recording.suggestedFile() : m_replayFile;
    const QString fileName =
        QFileDialog::getOpenFileName(this, tr("Recording to play"), QFileInfo(last).path(),
                                     tr("Recordings (*.kestrel);;All files (*)"));
    if (!fileName.isEmpty()) {
        openRecording(fileName);
    }
}

// Reading it takes the simulator some time when it is long; nobody waits for that.
void MainWindow::openRecording(const QString& fileName) {
    const QFileInfo file(fileName);
    disconnectByHand();
    m_simulatorTrouble.clear();
    m_replayFile = file.absoluteFilePath();
    m_measureAtOnce = true;
    m_backend.replay.begin(file.fileName().simplified().left(longestName));
    m_simulator.start({QStringLiteral("--replay"), m_replayFile, QStringLiteral("--replay-once")},
                      readTimeoutMs(file));
    showState();
}

void MainWindow::showReplay() {
    const QString text = m_backend.replay.text();
    const QString title = text.isEmpty() ? m_ownTitle : tr("%1 – %2").arg(text, m_ownTitle);
    setWindowTitle(forTitle(title));
    logReplay();
    m_liveState->setReplay(forTitle(m_backend.replay.shortText()));
    showState();
}

// Another one is opened only after this one's end.
void MainWindow::logReplay() {
    const ReplayControl::State state = m_backend.replay.state();
    if (state == ReplayControl::State::None && m_replayLogged) {
        m_backend.log.info(tr("Replay of %1 ended").arg(m_replayFile));
        m_replayLogged = false;
    } else if (state != ReplayControl::State::None && state != ReplayControl::State::Opening &&
               !m_replayLogged) {
        m_backend.log.info(tr("Replay of %1 begun").arg(m_replayFile));
        m_replayLogged = true;
        m_replayChangeTold = false;
    }
    if (m_backend.replay.isCutShort() && !std::exchange(m_replayChangeTold, true)) {
        const QString text =
            tr("%1 has been changed since it was opened: its replay ends early").arg(m_replayFile);
        m_backend.log.problem(text);
        m_banner->set(BannerTopic::Notice, Severity::Warning, text, Banner::Ending::ByUser);
    }
}

// The simulator names the file first.
QString MainWindow::replayTrouble(const QString& reason) const {
    if (!m_simulator.refusedRecording()) {
        return reason;
    }
    const QString file = m_replayFile + QStringLiteral(": ");
    const QString words = m_simulator.lastWords();
    const int at = words.indexOf(file);
    return tr("%1 cannot be played: %2")
        .arg(m_replayFile, recordingReason(at < 0 ? words : words.mid(at + file.size())));
}

} // namespace workbench
