#pragma once

#include "workbench/controller/simulator/simulatorprocess.h"
#include "workbench/modules/backend.h"
#include "workbench/modules/menuarranger.h"
#include "workbench/modules/modulehost.h"
#include "workbench/window/opendialogs.h"
#include "workbench/window/recording/csvexport.h"
#include "workbench/window/recording/recordingcontrol.h"
#include "workbench/window/windowsettings.h"

#include <QDockWidget>
#include <QLabel>
#include <QList>
#include <QMainWindow>
#include <QPointer>
#include <QTimer>

#include <memory>

namespace Ui {
class MainWindow;
}

namespace workbench {

class Banner;
class CommandDock;
class LiveState;
class LogDock;
class StartPage;

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
    };

    explicit MainWindow(const Setup& setup, QWidget* parent = nullptr);
    ~MainWindow() override;

    Backend& backend() { return m_backend; }
    ModuleHost& modules() { return m_modules; }
    Banner& banner() { return *m_banner; } ///< for what is to be said over the docks

    /// To be called after modules were loaded.
    void modulesLoaded() { showModules(); }

    /// Gives the present controller up and connects to this one; the modules' entries are built
    /// anew when the connection is there.
    void connectTo(const ControllerAddress& address);

    /// The same with a simulated controller of our own, started with these options; it ends with
    /// the connection. simulatorFailed() or modulesBuilt() follows.
    void simulate(const QStringList& options);

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
    void setUpStatusBar();
    void setUpStartPage();
    void setUpSimulator();
    void askForAddress();
    void setUpRecording();
    void askForRecording();
    void showGuide();
    void showAbout();
    void onAboutToQuit();
    void onReady(bool first);
    void onMeasuring(bool measuring);
    void buildModules();
    void addDock(QDockWidget* dock);
    void tearDownModules();
    void showState();
    void showStartPage();
    void openConnection(const ControllerAddress& address);
    void disconnectByHand();
    void trySimulator();
    void showNumbers();
    void tellOfLongLines();
    void showModules();

    std::unique_ptr<Ui::MainWindow> m_ui;
    Setup m_setup;
    Backend m_backend;
    WindowSettings m_settings;
    SimulatorProcess m_simulator;
    RecordingControl m_recording;
    CsvExport m_csvExport{m_backend.log, this};
    ModuleHost m_modules;
    MenuArranger* m_menus = nullptr;
    Banner* m_banner = nullptr;
    LiveState* m_liveState = nullptr;
    StartPage* m_startPage = nullptr;
    LogDock* m_logDock = nullptr;
    CommandDock* m_commandDock = nullptr;
    QLabel* m_connectionLabel = nullptr;
    QLabel* m_measurementLabel = nullptr;
    QLabel* m_dataLabel = nullptr;
    QLabel* m_recordingLabel = nullptr;
    QList<QPointer<QDockWidget>> m_moduleDocks;
    QPointer<QDialog> m_guide;
    OpenDialogs m_openDialogs;
    bool m_longLinesTold = false;
    bool m_measureAtOnce = false; // as soon as the simulator is there
    QString m_simulatorTrouble;   // why the last one is not there, until the next try
    QTimer m_numbersTimer;
};

} // namespace workbench
