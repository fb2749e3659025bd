#include "simulator/simulator.h"
#include "tests/simulator/client.h"

#include <QElapsedTimer>
#include <QTcpSocket>
#include <QtTest>

#include <algorithm>
#include <memory>
#include <vector>

using namespace kestrel_simulator;

/// What a client may not do, and that it cannot hurt the others by trying.
class TestSimulatorLimits : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void refusesACommandWithoutAnEnd_data();
    void refusesACommandWithoutAnEnd();
    void refusesTooManyConnections();
    void refusesACrowd();
    void canEndWhileItRefuses();
    void refusesMoreCommandsThanItAnswers();
    void dropsAClientThatDoesNotReadItsReplies();
    void isNotBlockedByASlowClient();

private:
    static std::unique_ptr<Simulator> startSimulator();
};

namespace {

constexpr int crowdSize = 3 * Simulator::maxConnections - 3; // the system's queue takes them all

// All are connected before the simulator looks.
std::vector<std::unique_ptr<QTcpSocket>> makeCrowd(quint16 port) {
    std::vector<std::unique_ptr<QTcpSocket>> crowd;
    for (int i = 0; i < crowdSize; ++i) {
        crowd.push_back(std::make_unique<QTcpSocket>());
        crowd.back()->connectToHost(QHostAddress::LocalHost, port);
    }
    return crowd;
}

} // namespace

std::unique_ptr<Simulator> TestSimulatorLimits::startSimulator() {
    SimulatorOptions options;
    options.port = 0;
    auto simulator = std::make_unique<Simulator>(options);
    QString error;
    return simulator->start(error) == ExitOk ? std::move(simulator) : nullptr;
}

void TestSimulatorLimits::refusesACommandWithoutAnEnd_data() {
    QTest::addColumn<int>("size");
    QTest::newRow("one byte too much") << 64 * 1024 + 1;
    QTest::newRow("far too much") << 2 * 1024 * 1024;
}

void TestSimulatorLimits::refusesACommandWithoutAnEnd() {
    QFETCH(int, size);
    const auto simulator = startSimulator();
    Client client(simulator->port());
    client.sendRaw(QByteArray(size, 'x'));
    QCOMPARE(client.readLine(), QByteArray("kestrel2 err 2 \"the command has no end\""));
    QVERIFY(client.waitForDisconnect());
    Client next(simulator->port());
    QCOMPARE(next.ask("get status active"), QByteArray("kestrel2 set status active none"));
}

void TestSimulatorLimits::refusesTooManyConnections() {
    const auto simulator = startSimulator();
    std::vector<std::unique_ptr<Client>> clients;
    for (int i = 0; i < Simulator::maxConnections; ++i) {
        clients.push_back(std::make_unique<Client>(simulator->port()));
        QVERIFY(!clients.back()->ask("get status active").isEmpty());
    }
    Client tooMuch(simulator->port());
    QCOMPARE(tooMuch.readLine(), QByteArray("kestrel2 err 10 \"too many connections\""));
    QVERIFY(tooMuch.waitForDisconnect());
    clients.pop_back();
    QTRY_COMPARE(simulator->connectionCount(), Simulator::maxConnections - 1);
    Client next(simulator->port());
    QVERIFY(!next.ask("get status active").isEmpty());
}

// Some are told why, and nobody waits in between: to tell all would be one more way to be kept
// busy.
void TestSimulatorLimits::refusesACrowd() {
    const auto simulator = startSimulator();
    const auto crowd = makeCrowd(simulator->port());
    const auto count = [&crowd](const auto& condition) {
        return static_cast<int>(std::count_if(crowd.begin(), crowd.end(), condition));
    };
    const auto isOpen = [](const auto& socket) {
        return socket->state() == QAbstractSocket::ConnectedState;
    };
    const auto isClosed = [](const auto& socket) {
        return socket->state() == QAbstractSocket::UnconnectedState;
    };
    QTRY_COMPARE(count(isClosed), crowdSize - Simulator::maxConnections);
    QCOMPARE(count(isOpen), Simulator::maxConnections);
    QCOMPARE(simulator->connectionCount(), Simulator::maxConnections);
    for (const auto& socket : crowd) {
        const QByteArray told = socket->readAll();
        QVERIFY(told.isEmpty() ||
                (isClosed(socket) && told == "kestrel2 err 10 \"too many connections\"\n"));
        socket->abort();
    }
    QTRY_COMPARE(simulator->connectionCount(), 0);
    Client next(simulator->port());
    QVERIFY(!next.ask("get status active").isEmpty());
}

void TestSimulatorLimits::canEndWhileItRefuses() {
    auto simulator = startSimulator();
    const auto crowd = makeCrowd(simulator->port());
    QTRY_COMPARE(simulator->connectionCount(), Simulator::maxConnections);
    simulator.reset();
    for (const auto& socket : crowd) {
        QTRY_COMPARE(socket->state(), QAbstractSocket::UnconnectedState);
    }
}

void TestSimulatorLimits::refusesMoreCommandsThanItAnswers() {
    const auto simulator = startSimulator();
    Client client(simulator->port());
    QCOMPARE(client.ask("sim misbehave slow 60000"), QByteArray("kestrel2 ok"));
    for (std::size_t i = 0; i <= CommandConnection::maxQueuedReplies; ++i) {
        client.sendRaw("kestrel2 get status active\n");
    }
    QCOMPARE(client.readLine(), QByteArray("kestrel2 err 10 \"too many commands at once\""));
    QVERIFY(client.waitForDisconnect());
}

void TestSimulatorLimits::dropsAClientThatDoesNotReadItsReplies() {
    const auto simulator = startSimulator();
    Client client(simulator->port());
    client.socket().setReadBufferSize(1024);
    const QByteArray commands = QByteArray("kestrel2 get cal type_desc volume\n").repeated(1000);
    QElapsedTimer clock;
    clock.start();
    while (simulator->connectionCount() > 0 || clock.elapsed() < 100) {
        QVERIFY2(clock.elapsed() < 20000, "still connected");
        if (client.socket().bytesToWrite() < 100000) {
            client.sendRaw(commands);
        }
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
}

void TestSimulatorLimits::isNotBlockedByASlowClient() {
    const auto simulator = startSimulator();
    Client flooding(simulator->port());
    flooding.socket().setReadBufferSize(1024);
    flooding.sendRaw(QByteArray("kestrel2 get status active\n").repeated(20000));
    Client client(simulator->port());
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < 20; ++i) {
        QVERIFY(!client.ask("get status active").isEmpty());
    }
    QVERIFY2(clock.elapsed() < 10000, qPrintable(QString::number(clock.elapsed())));
}

QTEST_GUILESS_MAIN(TestSimulatorLimits)
#include "test_simulator_limits.moc"
