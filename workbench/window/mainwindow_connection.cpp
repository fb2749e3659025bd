#include "ui_mainwindow.h"
#include "workbench/window/dialogs/connectdialog.h"
#include "workbench/window/mainwindow.h"
#include "workbench/window/startpage.h"

#include <QPushButton>

namespace workbench {

void MainWindow::setUpStartPage() {
    m_startPage = new StartPage(this);
    m_startPage->hide(); // until it is filled
    m_ui->verticalLayout->addWidget(m_startPage, 1);
    m_startPage->addChoice(m_ui->actionConnect, QStringLiteral("pushButton_connect"),
                           tr("Co&nnect…"), tr("To a controller in the network."));
    m_startPage->addChoice(m_ui->actionSimulate, QStringLiteral("pushButton_simulate"),
                           tr("Try the s&imulator"),
                           tr("A controller of our own on this computer: moving tools, "
                              "calibrations and faults, without any hardware."));
    m_startPage->addChoice(m_ui->actionGuide, QStringLiteral("pushButton_guide"), tr("&User guide"),
                           tr("What there is and how it is used, with pictures."));
    m_startPage->findChild<QPushButton*>(QStringLiteral("pushButton_connect"))->setFocus();
    connect(m_startPage, &StartPage::controllerWanted, this,
            [this](const ControllerAddress& address) {
                m_settings.setAddress(address);
                connectTo(address);
            });
}

// There as long as there is nobody to ask anything; then the docks get what room there is.
void MainWindow::showStartPage() {
    const ControllerSession::State state = m_backend.session.state();
    const bool wanted = state == ControllerSession::State::Disconnected ||
                        state == ControllerSession::State::Connecting ||
                        state == ControllerSession::State::Failed;
    m_startPage->setState(m_simulator.isStarting()       ? tr("Starting the simulated controller")
                          : m_simulatorTrouble.isEmpty() ? m_backend.session.stateText()
                                                         : m_simulatorTrouble);
    m_ui->actionSimulate->setEnabled(!m_simulator.isStarting());
    if (wanted && m_startPage->isHidden()) {
        m_startPage->setControllers(m_settings.recentControllers());
    }
    m_startPage->setVisible(wanted);
    const QSize least = m_ui->verticalLayout->minimumSize();
    centralWidget()->setMaximumHeight(wanted ? QWIDGETSIZE_MAX : least.height());
}

void MainWindow::setUpSimulator() {
    connect(&m_simulator, &SimulatorProcess::listening, this, &MainWindow::openConnection);
    connect(&m_simulator, &SimulatorProcess::failed, this, [this](const QString& reason) {
        m_backend.log.problem(reason);
        m_simulatorTrouble = reason;
        showState();
        Q_EMIT simulatorFailed(reason);
    });
    connect(&m_simulator, &SimulatorProcess::ended, this, [this](const QString& reason) {
        m_backend.log.problem(reason);
        m_simulatorTrouble = reason;
        stopRecording();
        m_backend.session.disconnectFromController();
        Q_EMIT simulatorEnded(reason);
    });
}

void MainWindow::askForAddress() {
    ConnectDialog dialog(m_settings.address(), m_settings.recentHosts(), this);
    if (dialog.exec() == QDialog::Accepted) {
        m_settings.setAddress(dialog.address());
        connectTo(dialog.address());
    }
}

void MainWindow::connectTo(const ControllerAddress& address) {
    m_measureAtOnce = false;
    openConnection(address);
    if (m_simulator.isStarting() || m_simulator.isListening()) {
        m_simulator.stop();
        showState();
    }
}

void MainWindow::simulate(const QStringList& options) {
    disconnectByHand();
    m_measureAtOnce = false;
    m_simulatorTrouble.clear();
    m_simulator.start(options);
    showState();
}

void MainWindow::trySimulator() {
    simulate({});
    m_measureAtOnce = true;
}

void MainWindow::openConnection(const ControllerAddress& address) {
    m_simulatorTrouble.clear();
    stopRecording();
    tearDownModules();
    m_backend.session.connectTo(address);
}

void MainWindow::disconnectByHand() {
    stopRecording();
    tearDownModules();
    m_backend.session.disconnectFromController();
    m_simulator.stop();
}

} // namespace workbench
