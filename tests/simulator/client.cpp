#include "tests/simulator/client.h"

#include <QHostAddress>
#include <QtTest>

Client::Client(quint16 port) {
    m_commands.connectToHost(QHostAddress(QHostAddress::LocalHost), port);
    if (!QTest::qWaitFor([&] { return isConnected(); }, timeoutMs)) {
        qWarning("no connection to port %d", static_cast<int>(port));
    }
}

QByteArray Client::ask(const QByteArray& text, int withinMs) {
    sendRaw("kestrel2 " + text + "\n");
    return readLine(withinMs);
}

QByteArray Client::readLine(int withinMs) {
    if (!QTest::qWaitFor([&] { return m_commands.canReadLine(); }, withinMs)) {
        return {};
    }
    QByteArray line = m_commands.readLine();
    line.chop(1);
    return line;
}

bool Client::waitForDisconnect(int withinMs) {
    return QTest::qWaitFor([&] { return m_commands.state() == QAbstractSocket::UnconnectedState; },
                           withinMs);
}

bool Client::openData() {
    return m_data.bind(QHostAddress(QHostAddress::LocalHost), 0) &&
           ask("set data_port " + QByteArray::number(dataPort())) == "kestrel2 ok";
}

bool Client::startData(const QList<QByteArray>& channels) {
    bool ok = openData();
    for (const QByteArray& channel : channels) {
        ok = ok && ask("set output active chmon " + channel + " yes") == "kestrel2 ok";
    }
    return ok && ask("tracking start") == "kestrel2 ok";
}

QByteArray Client::readFrame(int withinMs) {
    if (!QTest::qWaitFor([&] { return m_data.hasPendingDatagrams(); }, withinMs)) {
        return {};
    }
    QByteArray frame(static_cast<int>(m_data.pendingDatagramSize()), '\0');
    m_data.readDatagram(frame.data(), frame.size());
    return frame;
}

void Client::dropFrames() {
    while (m_data.hasPendingDatagrams()) {
        m_data.readDatagram(nullptr, 0);
    }
}
