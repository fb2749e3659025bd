#include "libs/kestrel_wire/command.h"
#include "ui_mainwindow.h"
#include "workbench/window/mainwindow.h"
#include "workbench/window/statewords.h"

#include <algorithm>

namespace workbench {

void MainWindow::setUpEntries() {
    const Ui::MainWindow& ui = *m_ui;
    m_entryStates.add(ui.actionDisconnect, Need::Choice);
    m_entryStates.add(ui.actionSimulate, Need::NoSimulatorStart);
    m_entryStates.add(ui.actionStart, Need::Connection | Need::NoMeasurement | Need::NoCalibration);
    m_entryStates.add(ui.actionStop, Need::Connection | Need::Measurement);
    m_entryStates.add(ui.actionRecord, Need::Connection | Need::NoReplay | Need::NoRecording);
    m_entryStates.add(ui.actionStopRecording, Need::Recording);
    m_moduleEntries = std::make_unique<ModuleEntries>(*m_menus, m_entryStates);
    m_moduleEntries->setKnown(m_settings.moduleEntries());
    connect(m_menus, &MenuArranger::aboutToShow, this, &MainWindow::askForLock);
    connect(&m_backend.monitor, &MeasurementMonitor::statusChanged, this, &MainWindow::showState);
}

void MainWindow::modulesLoaded() {
    m_words->showModules();
    showState();
}

Situation MainWindow::situation() const {
    const ControllerSession& session = m_backend.session;
    const QVector<ModuleInfo> modules = m_modules.modules();
    Situation now;
    now.isChosen =
        session.state() != ControllerSession::State::Disconnected || m_backend.replay.isActive();
    now.isConnected = session.isReady();
    now.isMeasuring = m_backend.monitor.isMeasuring();
    now.isCalibrating = m_backend.monitor.isCalibrating();
    now.isLocked = m_isLocked && session.isReady();
    now.isReplaying = m_backend.replay.isActive();
    now.isStartingToRecord = m_recording.isStarting();
    now.isRecording = m_recording.isRunning();
    now.isExporting = m_csvExport.isRunning();
    now.isSimulatorStarting = m_simulator.isStarting();
    now.isObserver = m_setup.observerMode;
    now.hasModules = std::any_of(modules.cbegin(), modules.cend(),
                                 [](const ModuleInfo& module) { return module.isLoaded(); });
    return now;
}

// The answer is there before anybody has read the first entry.
void MainWindow::askForLock() {
    ControllerSession& session = m_backend.session;
    // Since then a controller tells whether its configuration is locked; any patch of it does.
    const VersionInfo lockVersion(1, 9, -1);
    if (!session.isReady() || session.versions()->protocol() < lockVersion) {
        m_isLocked = false;
        return;
    }
    session.channel().askLater(
        kestrel_wire::getCommand("config is_changeable"),
        [self = QPointer<MainWindow>(this)](const CommandChannel::Answer& answer) {
            if (self) {
                self->m_isLocked = answer.result == Success && answer.reply.value == "no";
                self->showState();
            }
        });
}

} // namespace workbench
