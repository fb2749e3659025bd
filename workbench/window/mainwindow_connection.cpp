#include "libs/kestrel_wire/command.h"
#include "ui_mainwindow.h"
#include "workbench/window/dialogs/connectdialog.h"
#include "workbench/window/docks/dockarrangements.h"
#include "workbench/window/docks/dockroom.h"
#include "workbench/window/log/commanddock.h"
#include "workbench/window/log/logdock.h"
#include "workbench/window/mainwindow.h"
#include "workbench/window/simulatormenu.h"
#include "workbench/window/startpage.h"
#include "workbench/window/statewords.h"

#include <QApplication>
#include <QFileInfo>
#include <QPushButton>

#include <algorithm>

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
    m_startPage->addChoice(findChild<QAction*>(QStringLiteral("actionOpenRecording")),
                           QStringLiteral("pushButton_openRecording"), tr("&Open recording…"),
                           tr("What was measured before, played again like live data."));
    m_startPage->addChoice(m_ui->actionGuide, QStringLiteral("pushButton_guide"), tr("&User guide"),
                           tr("What there is and how it is used, with pictures."));
    m_startPage->findChild<QPushButton*>(QStringLiteral("pushButton_connect"))->setFocus();
    m_noDockHint = new QLabel(tr("No dock is open. The menu View shows them: what the modules "
                                 "display, the log and the command line."),
                              this);
    m_noDockHint->setObjectName(QStringLiteral("label_noDock"));
    m_noDockHint->setTextFormat(Qt::PlainText);
    m_noDockHint->setAlignment(Qt::AlignCenter);
    m_noDockHint->setWordWrap(true);
    m_noDockHint->hide();
    m_ui->verticalLayout->addWidget(m_noDockHint, 1);
    for (const QDockWidget* dock :
         {static_cast<QDockWidget*>(m_logDock), static_cast<QDockWidget*>(m_commandDock)}) {
        connect(dock, &QDockWidget::visibilityChanged, this, &MainWindow::showMiddle);
    }
    connect(m_startPage, &StartPage::controllerWanted, this,
            [this](const ControllerAddress& address) {
                m_settings.setAddress(address);
                connectTo(address);
            });
}

// As long as there is nobody to ask anything: what can be done. Then the docks get what room there
// is; without any of them: how to get one.
void MainWindow::showMiddle() {
    const ControllerSession::State state = m_backend.session.state();
    const bool isStart = state == ControllerSession::State::Disconnected ||
                         state == ControllerSession::State::Connecting ||
                         state == ControllerSession::State::Failed;
    m_startPage->setState(m_backend.replay.isActive()    ? m_backend.replay.text()
                          : m_simulator.isStarting()     ? tr("Starting the simulated controller")
                          : m_simulatorTrouble.isEmpty() ? m_backend.session.stateText()
                                                         : m_simulatorTrouble);
    if (isStart && m_startPage->isHidden()) {
        m_startPage->setControllers(m_settings.recentControllers());
    }
    m_arrangements->enter(isStart ? DockArrangements::Kind::Start
                                  : DockArrangements::Kind::Working);
    const auto docks = findChildren<QDockWidget*>(QString(), Qt::FindDirectChildrenOnly);
    const bool isEmpty =
        !isStart && std::all_of(docks.cbegin(), docks.cend(),
                                [](const QDockWidget* dock) { return dock->isHidden(); });
    m_startPage->setVisible(isStart);
    m_noDockHint->setVisible(isEmpty);
    const QSize least = m_ui->verticalLayout->minimumSize();
    m_dockRoom->setMiddleOptional(!isStart && !isEmpty);
    centralWidget()->setVisible(!m_dockRoom->isMiddleFolded());
    m_words->setPanelShown(!m_dockRoom->isMiddleFolded());
    centralWidget()->setMaximumHeight(isStart || isEmpty ? QWIDGETSIZE_MAX : least.height());
}

void MainWindow::setUpSimulator() {
    connect(&m_simulator, &SimulatorProcess::listening, this, &MainWindow::openConnection);
    connect(&m_simulator, &SimulatorProcess::failed, this, [this](const QString& reason) {
        m_simulatorTrouble = m_backend.replay.isActive() ? replayTrouble(reason) : reason;
        m_backend.log.problem(m_simulatorTrouble);
        m_backend.replay.end();
        showState();
        Q_EMIT simulatorFailed(m_simulatorTrouble);
    });
    connect(&m_simulator, &SimulatorProcess::ended, this, [this](const QString& reason) {
        m_backend.log.problem(reason);
        m_simulatorTrouble = reason;
        m_backend.replay.end();
        m_backend.session.disconnectFromController();       // ends a recording, with its reason
        if (QApplication::activeModalWidget() == nullptr) { // it may be a module's
            tearDownModules();
            tellSource();
            showState();
        }
        Q_EMIT simulatorEnded(reason);
    });
    m_simulatorMenu =
        new SimulatorMenu({m_backend.session, *m_commandDock, *m_menus, m_entryStates}, this);
    connect(m_menus, &MenuArranger::aboutToShow, m_simulatorMenu, &SimulatorMenu::refresh);
    connect(&m_backend.session, &ControllerSession::stateChanged, this,
            &MainWindow::followSimulator);
}

// One that is lost is the same one still.
void MainWindow::followSimulator() {
    ControllerSession& session = m_backend.session;
    const bool saysSo =
        session.versions()->hubModel() == QLatin1String(kestrel_wire::simulatorModel);
    // A replay has nothing that could be moved.
    if (session.isReady() && !m_backend.replay.isActive() &&
        (m_simulator.isListening() || saysSo)) {
        m_simulatorMenu->offer();
    } else if (session.state() != ControllerSession::State::Lost) {
        m_simulatorMenu->withdraw();
    }
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
    m_backend.replay.end();
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
    m_backend.session.disconnectFromController();
    tellSource();
    m_backend.session.connectTo(address);
}

// Between two connections only: what the last one's modules and lines still bring is of its source.
void MainWindow::tellSource() {
    const bool isReplay = m_backend.replay.isActive();
    m_outlets.setReplay(isReplay);
    // Not the name for people: of blanks alone nothing is left there.
    m_modules.setReplay(isReplay ? QFileInfo(m_replayFile).fileName() : QString());
}

void MainWindow::disconnectByHand() {
    m_backend.replay.end();
    stopRecording();
    tearDownModules();
    m_backend.session.disconnectFromController();
    tellSource();
    m_simulator.stop();
    showState();
}

} // namespace workbench
