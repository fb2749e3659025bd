#pragma once

#include "workbench/options.h"

#include <QObject>
#include <QTimer>

namespace workbench {

class MainWindow;

/// Carries out what the command line asks of a window: modules, connection, measurement, recording,
/// picture, rows, end.
class CommandLineRun : public QObject {
    Q_OBJECT

public:
    /// Whether somebody sees the window and can be asked.
    enum class Audience { Somebody, Nobody };

    CommandLineRun(MainWindow& window, const Options& options, Audience audience = usualAudience());
    ~CommandLineRun() override;

    /// To be called once, with the event loop about to run.
    void start();

    /// Closes the window when the process is asked to end (SIGINT, SIGTERM).
    void watchSignals();

    /// The exit code of a program whose event loop ended with `code`: another one, with a line on
    /// stderr, when the picture or the recording asked for was not made until then.
    int finish(int code) const;

    /// Nobody without a display.
    static Audience usualAudience();

private:
    void loadModules();
    void addOutlets();
    bool wouldReplaceRecording() const;
    void refuseRecording();
    void askWhetherToReplace();
    void goOn();
    void onModulesBuilt();
    void onRecordingChanged(bool running, const QString& error);
    void printRows();
    void takePicture();
    void quit();
    void giveUp(ExitCode code, const QString& reason);

    MainWindow& m_window;
    const Options m_options;
    const Audience m_audience;
    bool m_mayOverwrite; // what --record names
    QTimer m_rowTimer;
    bool m_first = true;
    bool m_pictureTried = false;
    bool m_recordingMade = false;
    bool m_recordingOver = false;     // that of --record
    bool m_recordingFailed = false;   // when it had begun
    bool m_recordingDeclined = false; // by the user
    bool m_simulatorEnded = false;
};

} // namespace workbench
