#include "simulator/simulator.h"
#include "tests/simulator/client.h"

#include <QElapsedTimer>
#include <QtTest>

#include <memory>

using namespace kestrel_simulator;

/// Commands and data over real sockets, simulator and clients in one thread.
class TestSimulator : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();

    void listensOnTheLoopbackAddressOnly();
    void answersInOrderHoweverTheBytesArrive();
    void ignoresCarriageReturns();
    void sendsOneDatagramPerFrame();
    void keepsItsRate_data();
    void keepsItsRate();
    void sendsNoDataToAClientWithoutDataPort();
    void sendsDataToEveryClientThatNamedAPort();
    void stopsDataWithTheConnection();
    void sendsLateRepliesInOrder();
    void cutsRepliesWithoutALineEnd();
    void dropsTheConnectionAndTakesANewOne();
    void sendsDuplicatedStatusTwice();
    void sendsLongLines();
    void reportsAPortInUse();
    void reportsABadRecording();

private:
    std::unique_ptr<Simulator> startSimulator();

    SimulatorOptions m_options;
};

void TestSimulator::init() {
    m_options = SimulatorOptions();
    m_options.port = 0;
}

std::unique_ptr<Simulator> TestSimulator::startSimulator() {
    auto simulator = std::make_unique<Simulator>(m_options);
    QString error;
    return simulator->start(error) == ExitOk ? std::move(simulator) : nullptr;
}

void TestSimulator::listensOnTheLoopbackAddressOnly() {
    const auto simulator = startSimulator();
    QVERIFY(simulator);
    QCOMPARE(simulator->address(), QHostAddress(QHostAddress::LocalHost));
    QVERIFY(simulator->port() != 0);
}

void TestSimulator::answersInOrderHoweverTheBytesArrive() {
    const auto simulator = startSimulator();
    Client client(simulator->port());
    client.sendRaw("kestrel2 get version model\nkestrel2 get status act");
    QCOMPARE(client.readLine(), QByteArray("kestrel2 set version model SIMULATOR"));
    client.sendRaw("ive\nnonsense\n");
    QCOMPARE(client.readLine(), QByteArray("kestrel2 set status active none"));
    QCOMPARE(client.readLine(), QByteArray("kestrel2 err 1 \"a command begins with kestrel2\""));
}

void TestSimulator::ignoresCarriageReturns() {
    const auto simulator = startSimulator();
    Client client(simulator->port());
    client.sendRaw("kestrel2 get status active\r\n");
    QCOMPARE(client.readLine(), QByteArray("kestrel2 set status active none"));
}

void TestSimulator::sendsOneDatagramPerFrame() {
    const auto simulator = startSimulator();
    Client client(simulator->port());
    QVERIFY(client.startData({"6dmt2", "6dmtr"}));
    const QByteArray frame = client.readFrame();
    const QList<QByteArray> lines = frame.split('\n');
    QCOMPARE(lines.size(), 5);
    const QList<QByteArray> starts = {"fr ", "ts ", "6dcal ", "6dmt2 ", "6dmtr "};
    for (int i = 0; i < lines.size(); ++i) {
        QVERIFY2(lines[i].startsWith(starts[i]), lines[i].constData());
        QCOMPARE(lines[i].endsWith('\r'), i + 1 < lines.size());
    }
}

void TestSimulator::keepsItsRate_data() {
    QTest::addColumn<double>("rate");
    QTest::newRow("10 Hz") << 10.0;
    QTest::newRow("60 Hz") << 60.0;
    QTest::newRow("300 Hz") << 300.0;
}

void TestSimulator::keepsItsRate() {
    QFETCH(double, rate);
    m_options.controller.rate = rate;
    const auto simulator = startSimulator();
    Client client(simulator->port());
    QVERIFY(client.startData({"6dmt2"}));
    const auto counterOf = [](const QByteArray& frame) {
        return frame.mid(3, frame.indexOf('\r') - 3).toInt();
    };
    const int first = counterOf(client.readFrame());
    QElapsedTimer clock;
    clock.start();
    int last = first;
    while (clock.elapsed() < 1000) {
        last = counterOf(client.readFrame());
    }
    const double measured = (last - first) * 1000.0 / static_cast<double>(clock.elapsed());
    QVERIFY2(qAbs(measured - rate) < 0.15 * rate + 1.0, qPrintable(QString::number(measured)));
}

void TestSimulator::sendsNoDataToAClientWithoutDataPort() {
    const auto simulator = startSimulator();
    Client client(simulator->port());
    QVERIFY(client.startData({}));
    QVERIFY(!client.readFrame().isEmpty());
    QCOMPARE(client.ask("set data_port 0"), QByteArray("kestrel2 ok"));
    client.dropFrames();
    QVERIFY(client.readFrame(200).isEmpty());
}

void TestSimulator::sendsDataToEveryClientThatNamedAPort() {
    const auto simulator = startSimulator();
    Client one(simulator->port());
    Client other(simulator->port());
    QVERIFY(other.openData());
    QVERIFY(one.startData({"6dmtr"}));
    QVERIFY(!one.readFrame().isEmpty());
    QVERIFY(!other.readFrame().isEmpty());
    const QByteArray port = QByteArray::number(other.dataPort());
    QCOMPARE(other.ask("get data_port"), QByteArray("kestrel2 set data_port ") + port);
    QVERIFY(one.ask("get data_port") != other.ask("get data_port"));
}

void TestSimulator::stopsDataWithTheConnection() {
    const auto simulator = startSimulator();
    Client client(simulator->port());
    QVERIFY(client.startData({}));
    QVERIFY(!client.readFrame().isEmpty());
    client.socket().disconnectFromHost();
    QTRY_COMPARE(simulator->connectionCount(), 0);
    client.dropFrames();
    QVERIFY(client.readFrame(200).isEmpty());
}

void TestSimulator::sendsLateRepliesInOrder() {
    const auto simulator = startSimulator();
    Client client(simulator->port());
    QCOMPARE(client.ask("sim misbehave slow 150"), QByteArray("kestrel2 ok"));
    QElapsedTimer clock;
    clock.start();
    client.sendRaw("kestrel2 get version model\nkestrel2 get sim noise\n");
    QCOMPARE(client.readLine(), QByteArray("kestrel2 set version model SIMULATOR"));
    QVERIFY(clock.elapsed() >= 150);
    QCOMPARE(client.readLine(), QByteArray("kestrel2 set sim noise 0.05"));
    QCOMPARE(client.ask("sim behave"), QByteArray("kestrel2 ok"));
}

void TestSimulator::cutsRepliesWithoutALineEnd() {
    const auto simulator = startSimulator();
    Client client(simulator->port());
    QCOMPARE(client.ask("sim misbehave cut-reply"), QByteArray("kestrel2 ok"));
    QVERIFY(client.ask("get version model", 200).isEmpty());
    QCOMPARE(client.socket().readAll(), QByteArray("kestrel2 set versi"));
}

void TestSimulator::dropsTheConnectionAndTakesANewOne() {
    const auto simulator = startSimulator();
    Client client(simulator->port());
    QCOMPARE(client.ask("sim misbehave drop 2"), QByteArray("kestrel2 ok"));
    QVERIFY(!client.ask("get status active").isEmpty());
    client.sendRaw("kestrel2 get status active\n");
    QVERIFY(client.waitForDisconnect());
    QCOMPARE(client.socket().bytesAvailable(), 0);
    QTRY_COMPARE(simulator->connectionCount(), 0);
    Client next(simulator->port());
    QCOMPARE(next.ask("sim behave"), QByteArray("kestrel2 ok"));
    QVERIFY(!next.ask("get status active").isEmpty());
}

void TestSimulator::sendsDuplicatedStatusTwice() {
    const auto simulator = startSimulator();
    Client client(simulator->port());
    QCOMPARE(client.ask("sim misbehave cal-duplicate-status 1"), QByteArray("kestrel2 ok"));
    QCOMPARE(client.ask("cal measurementtool start"), QByteArray("kestrel2 ok"));
    QCOMPARE(client.ask("get status active"), QByteArray("kestrel2 set status active cal"));
    QCOMPARE(client.readLine(), QByteArray("kestrel2 set status active cal"));
}

void TestSimulator::sendsLongLines() {
    m_options.misbehaviours.emplace_back(Misbehaviour::LongData, 11000);
    const auto simulator = startSimulator();
    Client client(simulator->port());
    QVERIFY(client.startData({"6dmt2", "6dmtr"}));
    const QList<QByteArray> lines = client.readFrame().split('\n');
    QCOMPARE(lines.size(), 5);
    QCOMPARE(lines[3].size(), 11001);
    QCOMPARE(lines[4].size(), 11000);
}

void TestSimulator::reportsAPortInUse() {
    const auto simulator = startSimulator();
    m_options.port = simulator->port();
    Simulator second(m_options);
    QString error;
    QCOMPARE(second.start(error), ExitCannotListen);
    QVERIFY2(error.contains(QString::number(simulator->port())), qPrintable(error));
}

void TestSimulator::reportsABadRecording() {
    m_options.replayFile = QStringLiteral("/nonexistent/recording");
    Simulator simulator(m_options);
    QString error;
    QCOMPARE(simulator.start(error), ExitBadRecording);
    QVERIFY2(error.contains(m_options.replayFile), qPrintable(error));
}

QTEST_GUILESS_MAIN(TestSimulator)
#include "test_simulator.moc"
