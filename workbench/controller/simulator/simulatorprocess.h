#pragma once

#include "workbench/controller/command/controlleraddress.h"

#include <QObject>
#include <QProcess>
#include <QTimer>

#include <memory>

namespace workbench {

/// A simulated controller of our own: the program beside ours, on a free port of this machine. It
/// ends with this object, and with our program however that ends.
class SimulatorProcess : public QObject {
    Q_OBJECT

public:
    static constexpr int startTimeoutMs = 10000;

    /// `program`: empty for the one beside ours.
    explicit SimulatorProcess(const QString& program = {}, QObject* parent = nullptr);
    ~SimulatorProcess() override;

    /// listening() or failed() follows, the latter at the latest when the time is over.
    void start(const QStringList& options, int timeoutMs = startTimeoutMs);
    void stop();

    /// In failed(): it has ended because its recording is none, or damaged; what it said,
    /// without its name.
    bool refusedRecording() const { return m_refusedRecording; }
    const QString& lastWords() const { return m_lastWords; }

    /// Between start() and listening() or failed().
    bool isStarting() const { return m_startTimer.isActive(); }

    /// Since listening(), until it ends or is stopped.
    bool isListening() const { return m_isListening && !m_isStopping; }

Q_SIGNALS:
    void listening(const workbench::ControllerAddress& address);
    void failed(const QString& reason); ///< could not be started
    void ended(const QString& reason);  ///< has listened, and ended by itself

private:
    class Process;

    void readFirstLine();
    void onFinished();
    void fail(const QString& reason);

    QString m_program;
    std::unique_ptr<Process> m_process;
    QTimer m_startTimer;
    QString m_lastWords;
    bool m_refusedRecording = false;
    bool m_isListening = false;
    bool m_isStopping = false;
};

} // namespace workbench
