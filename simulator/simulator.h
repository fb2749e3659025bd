#pragma once

#include "simulator/commandconnection.h"
#include "simulator/options.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTcpServer>
#include <QTimer>
#include <QUdpSocket>

#include <vector>

namespace kestrel_simulator {

/// A controller on the network: commands over TCP, one UDP datagram per frame to every client that
/// named a data port. Lives in the thread that made it, which needs an event loop.
class Simulator : public QObject {
    Q_OBJECT

public:
    static constexpr int maxConnections = 16;

    explicit Simulator(const SimulatorOptions& options, QObject* parent = nullptr);
    ~Simulator() override;

    /// Opens recording and sockets. On failure returns the exit code and says why in `error`.
    ExitCode start(QString& error);

    /// What a user should know after a start that succeeded; mostly empty.
    const QString& notice() const { return m_notice; }

    /// Where it listens; the port that was really taken.
    QHostAddress address() const { return m_server.serverAddress(); }
    quint16 port() const { return m_server.serverPort(); }

    Controller& controller() { return m_controller; }
    int connectionCount() const { return static_cast<int>(m_connections.size()); }

    /// Seconds since its making.
    double now() const { return static_cast<double>(m_clock.nsecsElapsed()) * 1e-9; }

Q_SIGNALS:
    void noticed(const QString& text); ///< what a user should know, while it runs

private:
    ExitCode openReplay(QString& error);
    void acceptConnections();
    void pauseAccepting();
    void acceptAgain();
    void refuseConnection(QTcpSocket* socket);
    void forget(CommandConnection* connection);
    void scheduleFrames();
    void watchReplay();
    void sendDueFrames();
    void send(const std::vector<std::string>& lines);

    SimulatorOptions m_options;
    Controller m_controller;
    QElapsedTimer m_clock;
    QTcpServer m_server;
    QUdpSocket m_dataSocket;
    QTimer m_frameTimer;
    QTimer m_acceptTimer;
    std::vector<CommandConnection*> m_connections;
    QString m_notice;
    bool m_isChangeTold = false;  // of the recording
    int m_refusedConnections = 0; // that are not closed yet
};

} // namespace kestrel_simulator
