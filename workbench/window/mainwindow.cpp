#include "workbench/window/mainwindow.h"

#include "ui_mainwindow.h"
#include "workbench/text/rowprinter.h"
#include "workbench/window/dialogs/guidedialog.h"
#include "workbench/window/dialogs/modulelistdialog.h"
#include "workbench/window/docks/dockarrangements.h"
#include "workbench/window/docks/dockroom.h"
#include "workbench/window/docks/docksizes.h"
#include "workbench/window/log/commanddock.h"
#include "workbench/window/log/logdock.h"
#include "workbench/window/look/screenpixels.h"
#include "workbench/window/look/symbols.h"
#include "workbench/window/look/toolbarroom.h"
#include "workbench/window/recording/replaybar.h"
#include "workbench/window/sending/senddialog.h"
#include "workbench/window/state/banner.h"
#include "workbench/window/state/livestate.h"
#include "workbench/window/statewords.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QMessageBox>
#include <QPixmapCache>
#include <QPushButton>

#include <algorithm>
#include <malloc.h>
#include <utility>

namespace workbench {

namespace {

constexpr int moduleDockHeight = 330; // at 96 dpi
constexpr int leastModuleDockWidth = 240;
constexpr int pictureCacheKb = 2048;

// In the settings.
constexpr std::pair<DockArrangements::Kind, const char*> arrangementNames[] = {
    {DockArrangements::Kind::Start, "start"},
    {DockArrangements::Kind::Working, "working"},
};

// Not by clear(): that forgets the numbers of its pictures but not their names, each of which then
// stays for as long as another picture has its number.
void emptyPictureCache() {
    QPixmapCache::setCacheLimit(0);
    QPixmapCache::setCacheLimit(pictureCacheKb);
}

} // namespace

MainWindow::MainWindow(const Setup& setup, QWidget* parent)
    : QMainWindow(parent)
    , m_ui(std::make_unique<Ui::MainWindow>())
    , m_setup(setup)
    , m_settings(setup.settingsFile)
    , m_simulator(setup.simulatorProgram)
    , m_recording(m_backend.session, m_backend.recorder, m_backend.log, nullptr,
                  setup.recordingGoneMs)
    , m_modules({&m_backend.io, this, m_backend.session.versions(), setup.observerMode},
                m_backend.log) {
    QPixmapCache::setCacheLimit(pictureCacheKb);
    m_ui->setupUi(this);
    m_menus = new MenuArranger(m_ui->menubar);
    m_backend.news.setDialogQuestion([] { return QApplication::activeModalWidget() != nullptr; });
    m_banner = new Banner(this);
    m_liveState = new LiveState(m_backend.watch, m_backend.session, m_backend.log, *m_banner, this);
    m_logDock = new LogDock(m_backend.log, this);
    connect(m_logDock, &LogDock::trafficWanted, &m_backend.news, &CommandNews::setTrafficWanted);
    m_commandDock = new CommandDock(m_backend.session, this);
    m_commandDock->history().setCommands(m_settings.commandHistory());
    setDockNestingEnabled(true);
    addDockWidget(Qt::BottomDockWidgetArea, m_logDock);
    addDockWidget(Qt::BottomDockWidgetArea, m_commandDock);
    tabifyDockWidget(m_logDock, m_commandDock);
    m_logDock->raise();
    m_dockSizes = new DockSizes(*this);
    m_arrangements = new DockArrangements(*this, *m_dockSizes);
    connect(m_banner, &Banner::appears, m_arrangements, &DockArrangements::onStripAppears);
    connect(m_banner, &Banner::gone, m_arrangements, &DockArrangements::onStripGone);
    m_dockRoom = new DockRoom(*this);
    connect(m_dockRoom, &DockRoom::middleMoved, this, &MainWindow::showMiddle);
    watchDock(m_logDock);
    watchDock(m_commandDock);
    setUpActions();
    m_words = new StateWords({m_backend, m_recording, m_modules}, *m_ui, this);
    setUpStartPage();
    setUpSimulator();
    setUpFigures();
    m_settings.restore(*this);
    for (const auto& [kind, name] : arrangementNames) {
        m_arrangements->setSizes(kind, m_settings.dockSizes(name));
    }
    m_replayBar->placeIn(*this);
    m_banner->placeIn(*this);
    connect(&m_backend.session, &ControllerSession::stateChanged, this, &MainWindow::showState);
    connect(&m_backend.session, &ControllerSession::ready, this, &MainWindow::onReady);
    connect(&m_backend.monitor, &MeasurementMonitor::changed, this, &MainWindow::onMeasuring);
    connect(qApp, &QCoreApplication::aboutToQuit, this, &MainWindow::onAboutToQuit);
    static_cast<void>(m_settings.address()); // a damaged one is part of the notice
    const QString notice = m_settings.takeNotice();
    if (!notice.isEmpty()) {
        m_backend.log.problem(notice);
    }
    m_outlets.restore();
    showState();
    m_words->showNumbers();
    m_words->showModules();
}

MainWindow::~MainWindow() {
    tearDownModules();
    qDeleteAll(m_figureDocks); // before the data that they follow
    // A window that is still visible is hidden when there is nothing left here to show anything.
    const auto docks = findChildren<QDockWidget*>(QString(), Qt::FindDirectChildrenOnly);
    for (const QDockWidget* dock : docks) {
        dock->disconnect(this);
    }
}

void MainWindow::setUpActions() {
    const Ui::MainWindow& ui = *m_ui;
    m_logDock->toggleViewAction()->setText(tr("&Log"));
    m_commandDock->toggleViewAction()->setText(tr("&Command line"));
    ui.toolBar->toggleViewAction()->setText(tr("&Toolbar"));
    ui.actionConnect->setIcon(symbolIcon(Symbol::Connect));
    ui.actionStart->setIcon(symbolIcon(Symbol::Play));
    ui.actionStop->setIcon(symbolIcon(Symbol::Stop));
    ui.actionRecord->setIcon(symbolIcon(Symbol::Record));
    ui.actionStopRecording->setIcon(symbolIcon(Symbol::Close));
    new ToolBarRoom(*ui.toolBar);
    const MenuEntry entries[] = {
        {tr("&File"), 100, 10, ui.actionRecord},
        {tr("&File"), 100, 20, ui.actionStopRecording},
        {tr("&File"), 100, 900, ui.actionQuit},
        {tr("&Connection"), 200, 10, ui.actionConnect},
        {tr("&Connection"), 200, 20, ui.actionDisconnect},
        {tr("&Connection"), 200, 110, ui.actionSimulate},
        {tr("&Measurement"), 250, 10, ui.actionStart},
        {tr("&Measurement"), 250, 20, ui.actionStop},
        {tr("Data"), 350, 10, ui.actionSendTo},
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
    setUpReplay();
    setUpEntries();
    connect(ui.actionConnect, &QAction::triggered, this, &MainWindow::askForAddress);
    connect(ui.actionDisconnect, &QAction::triggered, this, &MainWindow::disconnectByHand);
    connect(ui.actionSimulate, &QAction::triggered, this, &MainWindow::trySimulator);
    connect(ui.actionStart, &QAction::triggered, this, &MainWindow::startMeasurement);
    connect(ui.actionStop, &QAction::triggered, this, &MainWindow::stopMeasurement);
    connect(ui.actionRecord, &QAction::triggered, this, &MainWindow::askForRecording);
    connect(ui.actionStopRecording, &QAction::triggered, this, &MainWindow::stopRecording);
    connect(ui.actionSendTo, &QAction::triggered, this,
            [this] { SendDialog(m_outlets, makeTrialChannel, this).exec(); });
    connect(ui.actionQuit, &QAction::triggered, this, &QWidget::close);
    connect(ui.actionGuide, &QAction::triggered, this, &MainWindow::showGuide);
    connect(ui.actionModules, &QAction::triggered, this, [this] {
        const ChannelMaker maker(ChannelMaker::usualFolders(), ChannelMaker::usualSurroundings());
        ModuleListDialog(m_modules.modules(), maker.ways(), this).exec();
    });
    connect(ui.actionAbout, &QAction::triggered, this, &MainWindow::showAbout);
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
        if (auto* const dock = qobject_cast<QDockWidget*>(element->content)) {
            addDock(dock);
        }
    }
    m_moduleEntries->offer(elements, m_setup.observerMode);
    m_arrangements->arrange();
}

void MainWindow::watchDock(QDockWidget* dock) {
    m_dockSizes->watch(dock);
    m_dockRoom->watch(dock);
}

void MainWindow::addDock(QDockWidget* dock) {
    if (dock->objectName().isEmpty()) {
        dock->setObjectName(QStringLiteral("moduleDock_") + dock->windowTitle());
    }
    m_moduleDocks += dock;
    connect(dock, &QDockWidget::visibilityChanged, this, &MainWindow::showMiddle);
    m_liveState->addDock(dock);
    // One that its module has hidden waits for its menu entry; only one that nobody has asked to
    // show or hide yet is open from the start.
    const bool opensAtOnce = !dock->testAttribute(Qt::WA_WState_ExplicitShowHide);
    watchDock(dock);
    // One that can do with next to nothing would get that between others.
    const int least = screenPixels(leastModuleDockWidth, *this);
    if (dock->minimumSizeHint().width() < least) {
        dock->setMinimumWidth(least);
    }
    if (!restoreDockWidget(dock)) {
        addDockWidget(Qt::TopDockWidgetArea, dock);
        dock->setVisible(opensAtOnce);
        const int usual = screenPixels(moduleDockHeight, *this);
        if (opensAtOnce) {
            resizeDocks({dock}, {usual}, Qt::Vertical);
        } else {
            m_dockSizes->wish(dock, std::max(usual, dock->sizeHint().height()));
        }
    }
    if (m_setup.openDocks) {
        dock->show();
    }
}

void MainWindow::tearDownModules() {
    if (!m_modules.isBuilt()) {
        return;
    }
    m_arrangements->enter(DockArrangements::Kind::Start); // their docks are still there
    // The places of docks that are deleted stay in the saved state, and wait there for their
    // successors.
    const QByteArray docks = saveState();
    m_moduleEntries->withdraw();
    m_modules.tearDown();
    m_moduleDocks.clear();
    restoreState(docks);
    emptyPictureCache(); // what was painted of docks that are gone is never asked for again
    ::malloc_trim(0);    // what they had lies between what stays, and goes back only when asked for
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
    m_settings.setModuleEntries(m_moduleEntries->known());
    for (const auto& [kind, name] : arrangementNames) {
        m_settings.setDockSizes(name, m_arrangements->sizes(kind));
    }
    m_settings.save(*this);
    m_backend.replay.end();
    m_recording.finish();
    tearDownModules();
    m_backend.session.disconnectFromController();
    m_simulator.stop();
    event->accept();
}

} // namespace workbench
