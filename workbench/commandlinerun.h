#pragma once

#include "workbench/options.h"
#include "workbench/simulatorprocess.h"

#include <QObject>
#include <QTimer>

#include <memory>

namespace workbench {

class MainWindow;

/// Carries out what the command line asks of a window: modules, connection, measurement, recording,
/// picture, rows, end.
class CommandLineRun : public QObject {
    Q_OBJECT

public:
    CommandLineRun(MainWindow& window, const Options& options);
    ~CommandLineRun() override;

    /// To be called once, with the event loop about to run.
    void start();

    /// Closes the window when the process is asked to end (SIGINT, SIGTERM).
    void watchSignals();

private:
    void loadModules();
    void startSimulator();
    void onModulesBuilt();
    void printRows();
    void takePicture();
    void giveUp(ExitCode code, const QString& reason);

    MainWindow& m_window;
    const Options m_options;
    std::unique_ptr<SimulatorProcess> m_simulator;
    QTimer m_rowTimer;
    bool m_first = true;
};

} // namespace workbench
