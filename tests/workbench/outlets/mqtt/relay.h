#pragma once

#include <QHostAddress>
#include <QList>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>

/// A network between us and a broker that can be cut. It works while the test's event loop runs.
class Relay {
public:
    explicit Relay(quint16 target)
        : m_target(target) {
        if (!m_server.listen(QHostAddress::LocalHost)) {
            qFatal("no free port");
        }
        QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] { take(); });
    }

    quint16 port() const { return m_server.serverPort(); }
    int connections() const { return m_connections; } ///< that there have been

    /// New connections wait meanwhile.
    void close() { m_server.pauseAccepting(); }
    void open() { m_server.resumeAccepting(); }

    /// What comes from either side is lost, and neither hears of it: a cable that was pulled.
    void stall() { m_isStalled = true; }
    void flow() { m_isStalled = false; } ///< for the connections that come then

    /// All connections end at once, without a word to either side's programs.
    void cut() {
        for (const QPointer<QTcpSocket>& socket : qAsConst(m_sockets)) {
            if (socket) {
                socket->abort();
            }
        }
        m_sockets.clear();
    }

private:
    void take() {
        while (QTcpSocket* const near = m_server.nextPendingConnection()) {
            ++m_connections;
            auto* const far = new QTcpSocket(near);
            far->connectToHost(QHostAddress::LocalHost, m_target);
            pass(*near, *far);
            pass(*far, *near);
            m_sockets << near << far;
        }
    }

    void pass(QTcpSocket& from, QTcpSocket& to) {
        QObject::connect(&from, &QTcpSocket::readyRead, &to, [&from, &to, this] {
            const QByteArray bytes = from.readAll();
            if (!m_isStalled) {
                to.write(bytes);
            }
        });
        QObject::connect(&from, &QTcpSocket::disconnected, &to, [&to, this] {
            if (!m_isStalled) {
                to.disconnectFromHost();
            }
        });
    }

    const quint16 m_target;
    int m_connections = 0;
    bool m_isStalled = false;
    QList<QPointer<QTcpSocket>> m_sockets;
    QTcpServer m_server; // goes first, with the connections
};
