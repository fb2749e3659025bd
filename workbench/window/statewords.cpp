#include "workbench/window/statewords.h"

#include "ui_mainwindow.h"
#include "workbench/modules/backend.h"
#include "workbench/modules/modulehost.h"
#include "workbench/text/elidedlabel.h"
#include "workbench/text/versiontext.h"
#include "workbench/window/look/symbols.h"
#include "workbench/window/recording/recordingcontrol.h"

#include <QFileInfo>
#include <QStatusBar>

namespace workbench {

namespace {

constexpr int numbersIntervalMs = 500;
constexpr int statusMargin = 8;

// What a front end hands on at once; a module's display need not take more.
constexpr std::size_t longestDisplayedLine = 10239;

Symbol symbolOf(ControllerSession::State state) {
    switch (state) {
    case ControllerSession::State::Ready:
        return Symbol::Yes;
    case ControllerSession::State::Lost:
    case ControllerSession::State::Failed:
        return Symbol::Attention;
    case ControllerSession::State::Disconnected:
    case ControllerSession::State::Connecting:
    case ControllerSession::State::Reading:
        break;
    }
    return Symbol::No;
}

Symbol symbolOf(ReplayControl::State state) {
    return state == ReplayControl::State::Playing ? Symbol::Play : Symbol::Pause;
}

} // namespace

StateWords::StateWords(const Sources& sources, const Ui::MainWindow& ui, QMainWindow* window)
    : QObject(window)
    , m_sources(sources)
    , m_ui(ui)
    , m_window(window)
    , m_connection(add(new ElidedLabel(window), "Connection", tr("Connection"), 1))
    , m_measurement(add(new ElidedLabel(window), "Measurement", tr("Measurement"), 0))
    , m_recording(add(new ElidedLabel(window), "Recording", tr("Recording"), 0))
    , m_inShort(add(new ElidedLabel(window), "InShort", tr("Lost frames and free space"), 0)) {
    setVisible(m_inShort, false);
    m_connection.word->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_connection.word->setMinimumWidth(m_connection.word->minimumSizeHint().width());
    // Words are cut where the window is narrow; none of them widens it.
    window->statusBar()->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    connect(&m_numbersTimer, &QTimer::timeout, this, &StateWords::showNumbers);
    connect(&m_numbersTimer, &QTimer::timeout, this, &StateWords::tellOfLongLines);
    m_numbersTimer.start(numbersIntervalMs);
}

StateWords::Place StateWords::add(QLabel* word, const char* name, const QString& accessibleName,
                                  int stretch) {
    auto* const symbol = new SymbolLabel(m_window);
    symbol->setObjectName(QLatin1String("symbol") + QLatin1String(name));
    word->setObjectName(QLatin1String("status") + QLatin1String(name));
    word->setAccessibleName(accessibleName);
    word->setTextFormat(Qt::PlainText);
    word->setContentsMargins(0, 0, statusMargin, 0);
    m_window->statusBar()->addPermanentWidget(symbol);
    m_window->statusBar()->addPermanentWidget(word, stretch);
    return {symbol, word};
}

void StateWords::show(const Place& place, Symbol symbol, const QString& word) {
    place.symbol->setSymbol(symbol);
    place.word->setText(word);
    place.word->setAccessibleDescription(word);
}

void StateWords::setVisible(const Place& place, bool isVisible) {
    place.symbol->setVisible(isVisible);
    place.word->setVisible(isVisible);
}

void StateWords::setPanelShown(bool isShown) {
    if (m_isPanelShown != isShown) {
        m_isPanelShown = isShown;
        showInShort();
        setVisible(m_inShort, !isShown);
    }
}

void StateWords::showState() {
    showConnection();
    showMeasurement();
    const BackendVersions& versions = *m_sources.backend.session.versions();
    const bool known = versions.protocol() != VersionInfo();
    m_ui.label_model->setText(known ? versions.hubModel() : tr("unknown"));
    m_ui.label_versions->setText(known ? tr("protocol %1, system %2 / %3")
                                             .arg(versionText(versions.protocol()),
                                                  versionText(versions.systemPt()),
                                                  versionText(versions.systemCt()))
                                       : tr("unknown"));
}

void StateWords::showConnection() {
    const ControllerSession& session = m_sources.backend.session;
    const ReplayControl& replay = m_sources.backend.replay;
    if (session.isReady() && replay.isActive()) {
        show(m_connection, symbolOf(replay.state()), replay.text());
    } else {
        show(m_connection, symbolOf(session.state()), session.stateText());
    }
}

void StateWords::showMeasurement() {
    const ReplayControl& replay = m_sources.backend.replay;
    if (!m_sources.backend.session.isReady()) {
        show(m_measurement, Symbol::No, tr("measurement unknown"));
    } else if (!m_sources.backend.monitor.isMeasuring()) {
        show(m_measurement, Symbol::Stop, tr("not measuring"));
    } else if (replay.isActive()) {
        show(m_measurement, symbolOf(replay.state()), tr("replay"));
    } else {
        show(m_measurement, Symbol::Play, tr("measuring"));
    }
}

void StateWords::showNumbers() {
    Backend& backend = m_sources.backend;
    const FrameStatistics::Snapshot counts = backend.receiver.statistics().snapshot();
    QString text = tr("no frames");
    if (counts.lastFrameAge >= 0.0) {
        const QString age = QString::number(counts.lastFrameAge, 'f', 1);
        const QString lost = QString::number(counts.lostFrames);
        text = counts.lossIsEstimated
                   ? tr("last frame %1 s ago, about %2 lost").arg(age, lost)
                   : tr("%1 frames/s, last %2 s ago, %3 lost")
                         .arg(QString::number(counts.framesPerSecond, 'f', 1), age, lost);
    }
    if (counts.rejectedLines > 0) {
        text += tr(", %1 lines unreadable").arg(counts.rejectedLines);
    }
    if (counts.unreadable > 0) {
        text += tr(", %1 frames garbled").arg(counts.unreadable);
    }
    if (counts.foreign > 0) {
        text += tr(", %1 datagrams from elsewhere refused").arg(counts.foreign);
    }
    if (counts.longestRejected > longestDisplayedLine) {
        text += tr(", lines too long for the display");
    }
    m_ui.label_data->setText(text);
    const quint16 port = backend.session.boundDataPort();
    m_ui.label_dataPort->setText(port == 0 ? tr("none", "data port") : QString::number(port));

    const Recorder::Status status = backend.recorder.status();
    show(m_recording,
         !status.running  ? Symbol::No
         : status.stalled ? Symbol::Attention
                          : Symbol::Record,
         m_sources.recording.stateText());
    m_ui.label_recording->setText(m_sources.recording.numbersText());
    showInShort();
}

// What somebody has to see who measures or records. Nothing of it stands in two places.
void StateWords::showInShort() {
    if (m_isPanelShown) {
        return;
    }
    const FrameStatistics::Snapshot counts = m_sources.backend.receiver.statistics().snapshot();
    const QString lost = QString::number(counts.lostFrames);
    QString text = counts.lastFrameAge < 0.0 ? tr("no frames")
                   : counts.lossIsEstimated  ? tr("about %1 lost").arg(lost)
                                             : tr("%1 lost").arg(lost);
    const QString disk = m_sources.recording.diskText();
    if (!disk.isEmpty()) {
        text += QStringLiteral(", ") + disk;
    }
    show(m_inShort,
         counts.lastFrameAge < 0.0 ? Symbol::No
         : counts.lostFrames > 0   ? Symbol::Attention
                                   : Symbol::Yes,
         text);
}

// A display that stays empty while lines arrive: why, in words, once for each measurement.
void StateWords::tellOfLongLines() {
    Backend& backend = m_sources.backend;
    const std::size_t length = backend.receiver.statistics().snapshot().longestRejected;
    const bool tooLong = length > longestDisplayedLine;
    if (tooLong && !m_longLinesTold) {
        backend.log.problem(tr("Data lines of %1 characters arrive, and the display takes at most "
                               "%2: it stays empty. The controller has more tools (some 50) than "
                               "fit into a line.")
                                .arg(length)
                                .arg(longestDisplayedLine));
    }
    m_longLinesTold = tooLong;
}

void StateWords::showModules() {
    QStringList texts;
    const QVector<ModuleInfo> infos = m_sources.modules.modules();
    for (const ModuleInfo& info : infos) {
        texts += info.isLoaded() ? info.name + QLatin1Char(' ') + info.version
                                 : tr("%1 not loaded").arg(QFileInfo(info.file).fileName());
    }
    m_ui.label_modules->setText(texts.isEmpty() ? tr("none") : texts.join(QStringLiteral(", ")));
}

} // namespace workbench
