#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QTcpSocket>
#include <QUdpSocket>

/// A client of a simulator that lives in this thread: waits in the event loop, never blocks it.
class Client {
public:
    static constexpr int timeoutMs = 5000;

    explicit Client(quint16 port);

    bool isConnected() const { return m_commands.state() == QAbstractSocket::ConnectedState; }
    QTcpSocket& socket() { return m_commands; }

    /// Sends "kestrel2 <text>" and returns the reply line; empty when none came within the time.
    QByteArray ask(const QByteArray& text, int withinMs = timeoutMs);

    void sendRaw(const QByteArray& bytes) { m_commands.write(bytes); }

    /// The next line that arrives, without its end.
    QByteArray readLine(int withinMs = timeoutMs);

    bool waitForDisconnect(int withinMs = timeoutMs);

    /// Opens a data port, names it to the simulator, activates the channels and starts tracking.
    bool startData(const QList<QByteArray>& channels);

    /// Names a data port only.
    bool openData();
    quint16 dataPort() const { return m_data.localPort(); }

    /// The next datagram; empty when none came within the time.
    QByteArray readFrame(int withinMs = timeoutMs);

    /// Forgets what has arrived so far.
    void dropFrames();

private:
    QTcpSocket m_commands;
    QUdpSocket m_data;
};
