#pragma once

#include "workbench/controller/simulator/simulatorprocess.h"
#include "workbench/modules/backend.h"
#include "workbench/modules/entrystates.h"
#include "workbench/modules/menuarranger.h"
#include "workbench/modules/moduleentries.h"
#include "workbench/modules/modulehost.h"
#include "workbench/window/dialogs/opendialogs.h"
#include "workbench/window/recording/csvexport.h"
#include "workbench/window/recording/recordingcontrol.h"
#include "workbench/window/sending/outletcontrol.h"
#include "workbench/window/settings/windowsettings.h"

#include <QDockWidget>
#include <QLabel>
#include <QList>
#include <QMainWindow>
#include <QPointer>

#include <memory>

namespace Ui {
class MainWindow;
}

namespace workbench {

class Banner;
class CommandDock;
class DockArrangements;
class DockRoom;
class DockSizes;
class LiveState;
class LogDock;
class ReplayBar;
class SimulatorMenu;
class StartPage;
class StateWords;

/// The workbench's window: connection, measurement and recording by hand, the state in words, the
/// modules' menus and docks.
///
/// Closing it, like the end of the application, first rejects every dialog that is open; the window
/// then closes from the event loop.
class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    struct Setup {
        QString settingsFile;
        bool observerMode = false;
        bool openDocks = false;        ///< open all docks of modules, whatever was remembered
        QString simulatorProgram = {}; ///< empty for the one beside ours
        int recordingGoneMs = RecordingControl::usualGoneMs; ///< see there
    };

    explicit MainWindow(const Setup& setup, QWidget* parent = nullptr);
    ~MainWindow() override;

    Backend& backend() { return m_backend; }
    ModuleHost& modules() { return m_modules; }
    OutletControl& outlets() { return m_outlets; }
    Banner& banner() { return *m_banner; } ///< for what is to be said over the docks

    /// To be called after modules were loaded.
    void modulesLoaded();

    /// Gives the present controller up and connects to this one; the modules' entries are built
    /// anew when the connection is there.
    void connectTo(const ControllerAddress& address);

    /// The same with a simulated controller of our own, started with these options; it ends with
    /// the connection. simulatorFailed() or modulesBuilt() follows.
    void simulate(const QStringList& options);

    /// The same with one that replays this recording, from its beginning; see backend().replay.
    void openRecording(const QString& fileName);

    void startMeasurement();
    void stopMeasurement();

    /// The file is written once the controller has been asked for the header; recordingChanged()
    /// follows in any case.
    void startRecording(const QString& fileName);
    void stopRecording() { m_recording.stop(); }

    /// The rows of all tables in the modules' visible docks; see rowprinter.h.
    QStringList moduleRows() const;

Q_SIGNALS:
    /// The modules' entries have been built for the controller just connected.
    void modulesBuilt();
    /// See RecordingControl::changed().
    void recordingChanged(bool running, const QString& error);
    void simulatorFailed(const QString& reason); ///< could not be started
    void simulatorEnded(const QString& reason);  ///< while we were connected to it

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void setUpActions();
    void setUpEntries();
    Situation situation() const;
    void askForLock();
    void setUpStartPage();
    void setUpSimulator();
    void setUpFigures();
    void followSimulator();
    void askForAddress();
    void setUpRecording();
    void askForRecording();
    void setUpReplay();
    void askForReplay();
    void showReplay();
    void logReplay();
    QString replayTrouble(const QString& reason) const;
    void showGuide();
    void showAbout();
    void onAboutToQuit();
    void onReady(bool first);
    void onMeasuring(bool measuring);
    void buildModules();
    void watchDock(QDockWidget* dock);
    void addDock(QDockWidget* dock);
    void tearDownModules();
    void showState();
    void showMiddle();
    void openConnection(const ControllerAddress& address);
    void tellSource();
    void disconnectByHand();
    void trySimulator();

    std::unique_ptr<Ui::MainWindow> m_ui;
    Setup m_setup;
    Backend m_backend;
    WindowSettings m_settings;
    SimulatorProcess m_simulator;
    RecordingControl m_recording;
    OutletControl m_outlets{m_backend.outlets, m_backend.feed, m_backend.log, m_settings};
    CsvExport m_csvExport{m_backend.log, this};
    ModuleHost m_modules;
    EntryStates m_entryStates;
    MenuArranger* m_menus = nullptr;
    std::unique_ptr<ModuleEntries> m_moduleEntries;
    Banner* m_banner = nullptr;
    LiveState* m_liveState = nullptr;
    StartPage* m_startPage = nullptr;
    QLabel* m_noDockHint = nullptr;
    ReplayBar* m_replayBar = nullptr;
    LogDock* m_logDock = nullptr;
    CommandDock* m_commandDock = nullptr;
    QList<QDockWidget*> m_figureDocks; // what is measured, as the workbench itself shows it
    SimulatorMenu* m_simulatorMenu = nullptr;
    StateWords* m_words = nullptr;
    DockSizes* m_dockSizes = nullptr;
    DockArrangements* m_arrangements = nullptr;
    DockRoom* m_dockRoom = nullptr;
    QList<QPointer<QDockWidget>> m_moduleDocks;
    QPointer<QDialog> m_guide;
    OpenDialogs m_openDialogs;
    bool m_isLocked = false;      // as of the last time that a menu was opened
    bool m_measureAtOnce = false; // as soon as the simulator is there
    QString m_ownTitle;           // of the window without a replay
    QString m_replayFile;
    bool m_replayLogged = false; // its begin, in the log
    bool m_replayChangeTold = false;
    QString m_simulatorTrouble; // why the last one is not there, until the next try
};

} // namespace workbench
