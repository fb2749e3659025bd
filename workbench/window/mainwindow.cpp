#include "workbench/window/mainwindow.h"

#include "ui_mainwindow.h"
#include "workbench/text/elidedlabel.h"
#include "workbench/text/rowprinter.h"
#include "workbench/window/dialogs/guidedialog.h"
#include "workbench/window/dialogs/modulelistdialog.h"
#include "workbench/window/log/commanddock.h"
#include "workbench/window/log/logdock.h"
#include "workbench/window/screenpixels.h"
#include "workbench/window/state/banner.h"
#include "workbench/window/state/livestate.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QStyle>

#include <algorithm>
#include <utility>

namespace workbench {

namespace {

constexpr int numbersIntervalMs = 500;
constexpr int statusMargin = 8;
constexpr int moduleDockHeight = 330; // at 96 dpi

} // namespace

MainWindow::MainWindow(const Setup& setup, QWidget* parent)
    : QMainWindow(parent)
    , m_ui(std::make_unique<Ui::MainWindow>())
    , m_setup(setup)
    , m_settings(setup.settingsFile)
    , m_simulator(setup.simulatorProgram)
    , m_recording(m_backend.session, m_backend.recorder, m_backend.log)
    , m_modules({&m_backend.io, this, m_backend.session.versions(), setup.observerMode},
                m_backend.log) {
    m_ui->setupUi(this);
    m_menus = new MenuArranger(m_ui->menubar);
    m_banner = new Banner(this);
    m_liveState = new LiveState(m_backend.watch, m_backend.session, m_backend.log, *m_banner, this);
    m_logDock = new LogDock(m_backend.log, this);
    m_commandDock = new CommandDock(m_backend.session, this);
    m_commandDock->history().setCommands(m_settings.commandHistory());
    setDockNestingEnabled(true);
    addDockWidget(Qt::BottomDockWidgetArea, m_logDock);
    addDockWidget(Qt::BottomDockWidgetArea, m_commandDock);
    tabifyDockWidget(m_logDock, m_commandDock);
    m_logDock->raise();
    setUpActions();
    setUpStatusBar();
    setUpStartPage();
    setUpSimulator();
    m_settings.restore(*this);
    m_banner->placeIn(*this);
    connect(&m_backend.session, &ControllerSession::stateChanged, this, &MainWindow::showState);
    connect(&m_backend.session, &ControllerSession::ready, this, &MainWindow::onReady);
    connect(&m_backend.monitor, &MeasurementMonitor::changed, this, &MainWindow::onMeasuring);
    connect(qApp, &QCoreApplication::aboutToQuit, this, &MainWindow::onAboutToQuit);
    connect(&m_numbersTimer, &QTimer::timeout, this, &MainWindow::showNumbers);
    connect(&m_numbersTimer, &QTimer::timeout, this, &MainWindow::tellOfLongLines);
    m_numbersTimer.start(numbersIntervalMs);
    static_cast<void>(m_settings.address()); // a damaged one is part of the notice
    const QString notice = m_settings.takeNotice();
    if (!notice.isEmpty()) {
        m_backend.log.problem(notice);
    }
    showState();
    showNumbers();
    showModules();
}

MainWindow::~MainWindow() {
    tearDownModules();
}

void MainWindow::setUpActions() {
    const Ui::MainWindow& ui = *m_ui;
    m_logDock->toggleViewAction()->setText(tr("&Log"));
    m_commandDock->toggleViewAction()->setText(tr("&Command line"));
    ui.toolBar->toggleViewAction()->setText(tr("&Toolbar"));
    ui.actionConnect->setIcon(style()->standardIcon(QStyle::SP_DriveNetIcon));
    ui.actionStart->setIcon(style()->standardIcon(QStyle::SP_MediaPlay));
    ui.actionStop->setIcon(style()->standardIcon(QStyle::SP_MediaStop));
    ui.actionRecord->setIcon(style()->standardIcon(QStyle::SP_DialogSaveButton));
    ui.actionStopRecording->setIcon(style()->standardIcon(QStyle::SP_DialogCloseButton));
    const MenuEntry entries[] = {
        {tr("&File"), 100, 10, ui.actionRecord},
        {tr("&File"), 100, 20, ui.actionStopRecording},
        {tr("&File"), 100, 900, ui.actionQuit},
        {tr("&Connection"), 200, 10, ui.actionConnect},
        {tr("&Connection"), 200, 20, ui.actionDisconnect},
        {tr("&Connection"), 200, 110, ui.actionSimulate},
        {tr("&Measurement"), 250, 10, ui.actionStart},
        {tr("&Measurement"), 250, 20, ui.actionStop},
        {tr("&View"), 400, 10, m_logDock->toggleViewAction()},
        {tr("&View"), 400, 20, m_commandDock->toggleViewAction()},
        {tr("&View"), 400, 30, ui.toolBar->toggleViewAction()},
        {tr("&Help"), 900, 10, ui.actionGuide},
        {tr("&Help"), 900, 20, ui.actionModules},
        {tr("&Help"), 900, 30, ui.actionAbout},
    };
    for (const MenuEntry& entry : entries) {
        m_menus->add(entry);
    }
    setUpRecording();
    m_menus->arrange();
    connect(ui.actionConnect, &QAction::triggered, this, &MainWindow::askForAddress);
    connect(ui.actionDisconnect, &QAction::triggered, this, &MainWindow::disconnectByHand);
    connect(ui.actionSimulate, &QAction::triggered, this, &MainWindow::trySimulator);
    connect(ui.actionStart, &QAction::triggered, this, &MainWindow::startMeasurement);
    connect(ui.actionStop, &QAction::triggered, this, &MainWindow::stopMeasurement);
    connect(ui.actionRecord, &QAction::triggered, this, &MainWindow::askForRecording);
    connect(ui.actionStopRecording, &QAction::triggered, this, &MainWindow::stopRecording);
    connect(ui.actionQuit, &QAction::triggered, this, &QWidget::close);
    connect(ui.actionGuide, &QAction::triggered, this, &MainWindow::showGuide);
    connect(ui.actionModules, &QAction::triggered, this,
            [this] { ModuleListDialog(m_modules.modules(), this).exec(); });
    connect(ui.actionAbout, &QAction::triggered, this, &MainWindow::showAbout);
}

void MainWindow::setUpStatusBar() {
    const auto add = [this](QLabel* label, const char* objectName, const QString& name,
                            int stretch) {
        label->setObjectName(QLatin1String(objectName));
        label->setAccessibleName(name);
        label->setTextFormat(Qt::PlainText);
        label->setContentsMargins(statusMargin, 0, statusMargin, 0);
        statusBar()->addPermanentWidget(label, stretch);
        return label;
    };
    m_connectionLabel = add(new ElidedLabel(this), "statusConnection", tr("Connection"), 1);
    m_connectionLabel->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_measurementLabel = add(new QLabel(this), "statusMeasurement", tr("Measurement"), 0);
    m_dataLabel = add(new QLabel(this), "statusData", tr("Data lines"), 0);
    m_recordingLabel = add(new QLabel(this), "statusRecording", tr("Recording"), 0);
}

void MainWindow::onReady(bool first) {
    m_backend.receiver.statistics().reset();
    if (first) {
        buildModules();
        Q_EMIT modulesBuilt();
    }
    if (std::exchange(m_measureAtOnce, false)) {
        startMeasurement();
    }
}

void MainWindow::buildModules() {
    const QList<_GuiElement*> elements = m_modules.build();
    for (const _GuiElement* element : elements) {
        m_menus->add({element->menu_name, element->menu_order_number,
                      element->menu_entry_order_number, element->menu_entry,
                      element->action_active_during_measurement != 0, true});
        if (auto* const dock = qobject_cast<QDockWidget*>(element->content)) {
            addDock(dock);
        }
    }
    m_menus->arrange();
}

void MainWindow::addDock(QDockWidget* dock) {
    if (dock->objectName().isEmpty()) {
        dock->setObjectName(QStringLiteral("moduleDock_") + dock->windowTitle());
    }
    m_moduleDocks += dock;
    m_liveState->addDock(dock);
    if (!restoreDockWidget(dock)) {
        addDockWidget(Qt::TopDockWidgetArea, dock);
        dock->show();
        resizeDocks({dock}, {screenPixels(moduleDockHeight, *this)}, Qt::Vertical);
    }
    if (m_setup.openDocks) {
        dock->show();
    }
}

void MainWindow::tearDownModules() {
    if (!m_modules.isBuilt()) {
        return;
    }
    // The places of docks that are deleted stay in the saved state, and wait there for their
    // successors.
    const QByteArray docks = saveState();
    m_menus->removeModuleEntries();
    m_menus->arrange();
    m_modules.tearDown();
    m_moduleDocks.clear();
    restoreState(docks);
}

void MainWindow::startMeasurement() {
    m_backend.session.channel().askLater("kestrel2 tracking start");
}

void MainWindow::stopMeasurement() {
    m_backend.session.channel().askLater("kestrel2 tracking stop");
}

void MainWindow::onMeasuring(bool measuring) {
    if (measuring) {
        m_backend.receiver.statistics().reset();
    }
    m_menus->setMeasuring(measuring);
    // What a controller does that nobody reaches is not known.
    if (measuring || m_backend.session.state() != ControllerSession::State::Lost) {
        m_backend.log.info(measuring ? tr("Measurement started") : tr("Measurement stopped"));
    }
    showState();
}

QStringList MainWindow::moduleRows() const {
    QStringList rows;
    for (const QPointer<QDockWidget>& dock : m_moduleDocks) {
        if (dock && dock->isVisible()) {
            rows += visibleRows(*dock);
        }
    }
    return rows;
}

void MainWindow::showGuide() {
    const QString file = GuideDialog::usualFile();
    if (file.isEmpty()) {
        m_backend.log.problem(tr("The user guide is not installed"));
        return;
    }
    if (m_guide == nullptr) {
        m_guide = new GuideDialog(file, this);
        m_guide->setAttribute(Qt::WA_DeleteOnClose);
    }
    m_guide->show();
    m_guide->raise();
    m_guide->activateWindow();
}

void MainWindow::showAbout() {
    QMessageBox box(
        QMessageBox::NoIcon, tr("About"),
        tr("Kestrel Workbench %1\n\nA stand-alone front end for tracking controllers: it "
           "connects over the network, loads modules and shows what they offer.")
            .arg(QCoreApplication::applicationVersion()),
        QMessageBox::Close, this);
    box.setObjectName(QStringLiteral("messageBox_about"));
    box.setTextFormat(Qt::PlainText);
    box.button(QMessageBox::Close)->setText(tr("Close"));
    box.exec();
}

// Nobody has closed the window, and no loop runs any more in which dialogs could be ended in turn.
void MainWindow::onAboutToQuit() {
    m_openDialogs.rejectNow();
    if (isVisible()) {
        close();
    }
}

void MainWindow::closeEvent(QCloseEvent* event) {
    if (m_openDialogs.any()) {
        event->ignore();
        m_openDialogs.rejectAll([this] { close(); });
        return;
    }
    m_settings.setCommandHistory(m_commandDock->history().commands());
    m_settings.save(*this);
    m_recording.finish();
    tearDownModules();
    m_backend.session.disconnectFromController();
    m_simulator.stop();
    event->accept();
}

} // namespace workbench
