#pragma once

#include "workbench/controller/controlleraddress.h"

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

    /// listening() or failed() follows.
    void start(const QStringList& options);
    void stop();

Q_SIGNALS:
    void listening(const workbench::ControllerAddress& address);
    void failed(const QString& reason); ///< could not be started, or has ended by itself

private:
    class Process;

    void readFirstLine();
    void onFinished();
    void fail(const QString& reason);

    QString m_program;
    std::unique_ptr<Process> m_process;
    QTimer m_startTimer;
    bool m_isListening = false;
    bool m_isStopping = false;
};

} // namespace workbench
