#include "workbench/commandlinerun.h"

#include "workbench/window/mainwindow.h"

#include <QApplication>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>
#include <QSocketNotifier>

#include <algorithm>
#include <array>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <sys/socket.h>
#include <unistd.h>

namespace workbench {

namespace {

constexpr int rowIntervalMs = 500;

int signalSocket = -1; // written by the handler, which may do little else

void onSignal(int) {
    const char byte = 1;
    static_cast<void>(::write(signalSocket, &byte, 1) + 0);
}

void complain(const QString& reason) {
    std::fprintf(stderr, "kestrel-workbench: %s\n", reason.toUtf8().constData());
}

int milliseconds(double seconds) {
    return static_cast<int>(std::lround(seconds * 1000.0));
}

} // namespace

// Who has the program end by itself does not sit before it.
CommandLineRun::CommandLineRun(MainWindow& window, const Options& options, Audience audience)
    : m_window(window)
    , m_options(options)
    , m_audience(options.quitAfter < 0.0 ? audience : Audience::Nobody)
    , m_mayOverwrite(options.overwrite) {
    connect(&m_window, &MainWindow::modulesBuilt, this, &CommandLineRun::onModulesBuilt);
    connect(&m_window, &MainWindow::recordingChanged, this, &CommandLineRun::onRecordingChanged);
    connect(&m_window, &MainWindow::simulatorFailed, this, [this](const QString& reason) {
        if (m_options.simulate) {
            giveUp(ExitNoSimulator, reason);
        }
    });
    // The window stays, for the log in it may be what its user needs now.
    connect(&m_window, &MainWindow::simulatorEnded, this, [this](const QString& reason) {
        if (m_options.simulate) {
            m_simulatorEnded = true;
            complain(reason);
        }
    });
    connect(&m_rowTimer, &QTimer::timeout, this, &CommandLineRun::printRows);
}

CommandLineRun::~CommandLineRun() = default;

CommandLineRun::Audience CommandLineRun::usualAudience() {
    const QString platform = QGuiApplication::platformName();
    return platform == QLatin1String("offscreen") || platform == QLatin1String("minimal")
               ? Audience::Nobody
               : Audience::Somebody;
}

void CommandLineRun::start() {
    loadModules();
    addOutlets();
    if (!wouldReplaceRecording()) {
        goOn();
    } else if (m_audience == Audience::Somebody) {
        askWhetherToReplace();
    } else {
        // The event loop that is to end does not run yet.
        QTimer::singleShot(0, this, &CommandLineRun::refuseRecording);
    }
    if (m_options.printRows) {
        m_rowTimer.start(rowIntervalMs);
    }
    if (!m_options.screenshotFile.isEmpty()) {
        QTimer::singleShot(milliseconds(m_options.screenshotAfter), this,
                           &CommandLineRun::takePicture);
    }
    if (m_options.quitAfter >= 0.0) {
        QTimer::singleShot(milliseconds(m_options.quitAfter), this, &CommandLineRun::quit);
    }
}

void CommandLineRun::goOn() {
    if (m_options.simulate) {
        m_window.simulate(m_options.simulatorOptions);
    } else if (m_options.connectTo) {
        m_window.connectTo(*m_options.connectTo);
    }
}

// A device or a pipe loses nothing.
bool CommandLineRun::wouldReplaceRecording() const {
    return !m_options.recordFile.isEmpty() && !m_mayOverwrite &&
           QFileInfo(m_options.recordFile).isFile();
}

void CommandLineRun::refuseRecording() {
    giveUp(ExitNoRecording, tr("cannot record to %1: the file exists already, and only with "
                               "--overwrite is it replaced")
                                .arg(m_options.recordFile));
}

// Before there is a connection: the recording begins with the first measurement.
void CommandLineRun::askWhetherToReplace() {
    auto* const box = new QMessageBox(
        QMessageBox::Warning, tr("Record to"),
        tr("%1 exists already. Do you want to replace it?").arg(m_options.recordFile),
        QMessageBox::NoButton, &m_window);
    box->setInformativeText(tr("If not, nothing is recorded for now."));
    box->setObjectName(QStringLiteral("ReplaceRecording"));
    box->setTextFormat(Qt::PlainText);
    QPushButton* const replace = box->addButton(tr("&Replace"), QMessageBox::AcceptRole);
    QPushButton* const keep = box->addButton(tr("Do &not record"), QMessageBox::RejectRole);
    replace->setObjectName(QStringLiteral("pushButton_replace"));
    keep->setObjectName(QStringLiteral("pushButton_keep"));
    box->setDefaultButton(keep);
    box->setEscapeButton(keep);
    box->setAttribute(Qt::WA_DeleteOnClose);
    connect(box, &QMessageBox::finished, this, [this, box, replace] {
        if (box->clickedButton() == nullptr) { // by the program's end
            return;
        }
        m_mayOverwrite = box->clickedButton() == replace;
        m_recordingDeclined = !m_mayOverwrite;
        if (m_recordingDeclined) {
            complain(tr("cannot record to %1: it is not to be replaced").arg(m_options.recordFile));
        }
        goOn();
    });
    box->open();
}

void CommandLineRun::loadModules() {
    for (const QString& file : m_options.modules) {
        m_window.modules().loadFile(file);
    }
    const QStringList folders =
        m_options.pluginFolder ? QStringList(*m_options.pluginFolder) : ModuleHost::usualFolders();
    for (const QString& folder : folders) {
        m_window.modules().loadFolder(folder);
    }
    m_window.modulesLoaded();
}

// What becomes of them is told where a service's log is read.
void CommandLineRun::addOutlets() {
    connect(
        &m_window.outlets(), &OutletControl::stateChanged, this,
        [this](const QString& url, OutletWord::State state, const QString& text) {
            const auto isOurs = [&url](const OutletUrl& outlet) { return outlet.text == url; };
            if (std::any_of(m_options.sendTo.begin(), m_options.sendTo.end(), isOurs)) {
                complain(
                    QStringLiteral("%1: %2: %3").arg(url, OutletControl::stateText(state), text));
            }
        });
    for (const OutletUrl& url : m_options.sendTo) {
        QString error;
        if (!m_window.outlets().has(url.text) &&
            !m_window.outlets().add(url, OutletControl::Memory::ThisRun, &error)) {
            const QString reason = tr("cannot send to %1: %2").arg(url.text, error);
            // The event loop that is to end does not run yet.
            QTimer::singleShot(0, this, [this, reason] { giveUp(ExitNoOutlet, reason); });
            return;
        }
    }
}

void CommandLineRun::onModulesBuilt() {
    if (!m_first) {
        return;
    }
    m_first = false;
    if (wouldReplaceRecording() && !m_recordingDeclined) { // it was not there at the start
        refuseRecording();
        return;
    }
    if (!m_options.recordFile.isEmpty() && !m_recordingDeclined) {
        m_window.startRecording(m_options.recordFile);
    }
    if (m_options.measure) {
        m_window.startMeasurement();
    }
}

// The window stays for who sits before it: it tells the reason, and the log in it may be needed.
void CommandLineRun::onRecordingChanged(bool running, const QString& error) {
    if (m_recordingOver || m_options.recordFile.isEmpty()) {
        return; // later ones are begun by hand
    }
    m_recordingMade = m_recordingMade || running;
    m_recordingOver = m_recordingMade && !running;
    if (error.isEmpty()) {
        return;
    }
    const QString reason = tr("cannot record to %1: %2").arg(m_options.recordFile, error);
    if (m_recordingMade && m_audience == Audience::Somebody) {
        m_recordingFailed = true;
        complain(reason);
    } else {
        giveUp(ExitNoRecording, reason);
    }
}

void CommandLineRun::printRows() {
    const QStringList rows = m_window.moduleRows();
    for (const QString& row : rows) {
        std::puts(row.toUtf8().constData());
    }
    std::fflush(stdout);
}

void CommandLineRun::takePicture() {
    if (m_pictureTried) {
        return;
    }
    m_pictureTried = true;
    if (!m_window.grab().save(m_options.screenshotFile)) {
        giveUp(ExitNoScreenshot, tr("%1 cannot be written").arg(m_options.screenshotFile));
    }
}

// A picture that is due later is taken of what there is now.
void CommandLineRun::quit() {
    if (!m_options.screenshotFile.isEmpty()) {
        takePicture();
    }
    m_window.close();
}

int CommandLineRun::finish(int code) const {
    if (code != ExitSuccess) {
        return code;
    }
    const bool isPictureMissing = !m_options.screenshotFile.isEmpty() && !m_pictureTried;
    if (isPictureMissing) {
        complain(tr("no picture: the program ended before it was due"));
    }
    if (m_recordingFailed) {
        return ExitNoRecording;
    }
    if (m_simulatorEnded) {
        return ExitNoSimulator;
    }
    if (isPictureMissing) {
        return ExitNoScreenshot;
    }
    if (m_recordingDeclined) {
        return ExitNoRecording;
    }
    if (!m_options.recordFile.isEmpty() && !m_recordingMade) {
        complain(tr("cannot record to %1: the program ended before the recording began")
                     .arg(m_options.recordFile));
        return ExitNoRecording;
    }
    return code;
}

void CommandLineRun::giveUp(ExitCode code, const QString& reason) {
    complain(reason);
    m_window.close();
    QCoreApplication::exit(code);
}

void CommandLineRun::watchSignals() {
    std::array<int, 2> sockets{};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sockets.data()) != 0) {
        return;
    }
    signalSocket = sockets[0];
    auto* const notifier = new QSocketNotifier(sockets[1], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, notifier] {
        notifier->setEnabled(false);
        m_window.close();
    });
    struct sigaction action {};
    action.sa_handler = onSignal;
    action.sa_flags = SA_RESTART;
    ::sigaction(SIGINT, &action, nullptr);
    ::sigaction(SIGTERM, &action, nullptr);
}

} // namespace workbench
