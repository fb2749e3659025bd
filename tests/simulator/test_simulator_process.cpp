#include "libs/kestrel_wire/recording.h"
#include "tests/simulator/client.h"

#include <QProcess>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>

namespace {
constexpr int timeoutMs = 10000;
}

/// The program as a process: options, first line, exit codes, signals.
class TestSimulatorProcess : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_process = std::make_unique<QProcess>(); }
    void cleanup();

    void printsWhereItListens();
    void stopsOnSignals_data();
    void stopsOnSignals();
    void refusesBadOptions_data();
    void refusesBadOptions();
    void showsHelpAndVersion();
    void exitsWhenThePortIsTaken();
    void exitsWhenTheRecordingIsBad();
    void takesItsOptions();
    void misbehavesFromTheStart();
    void replaysARecording();
    void tellsOfACutRecording();
    void calibratesWithTheChosenMotion();
    void writesNumbersWithAPointInACommaLocale();

private:
    void start(const QStringList& arguments);
    quint16 startListening(QStringList arguments = {});
    int finish();
    QString writeFile(const QByteArray& bytes);

    std::unique_ptr<QProcess> m_process;
    QTemporaryDir m_folder;
};

void TestSimulatorProcess::cleanup() {
    if (m_process->state() != QProcess::NotRunning) {
        m_process->kill();
        m_process->waitForFinished(timeoutMs);
    }
}

void TestSimulatorProcess::start(const QStringList& arguments) {
    m_process->start(QStringLiteral(SIMULATOR_PROGRAM), arguments);
    QVERIFY2(m_process->waitForStarted(timeoutMs), qPrintable(m_process->errorString()));
}

quint16 TestSimulatorProcess::startListening(QStringList arguments) {
    start(arguments << QStringLiteral("--port") << QStringLiteral("0"));
    const bool arrived = QTest::qWaitFor([&] { return m_process->canReadLine(); }, timeoutMs);
    const QByteArray line = arrived ? m_process->readLine() : QByteArray();
    const QByteArray expected = "listening on 127.0.0.1:";
    return line.startsWith(expected) ? line.mid(expected.size()).trimmed().toUShort() : quint16(0);
}

int TestSimulatorProcess::finish() {
    if (!QTest::qWaitFor([&] { return m_process->state() == QProcess::NotRunning; }, timeoutMs)) {
        return -1;
    }
    return m_process->exitStatus() == QProcess::NormalExit ? m_process->exitCode() : -2;
}

QString TestSimulatorProcess::writeFile(const QByteArray& bytes) {
    QFile file(m_folder.filePath(QStringLiteral("recording.txt")));
    const bool written = file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    return written ? file.fileName() : QString();
}

void TestSimulatorProcess::printsWhereItListens() {
    const quint16 port = startListening();
    QVERIFY(port != 0);
    Client client(port);
    QCOMPARE(client.ask("get version model"), QByteArray("kestrel2 set version model SIMULATOR"));
}

void TestSimulatorProcess::stopsOnSignals_data() {
    QTest::addColumn<int>("number");
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGTERM") << SIGTERM;
}

void TestSimulatorProcess::stopsOnSignals() {
    QFETCH(int, number);
    const quint16 port = startListening();
    Client client(port);
    QVERIFY(client.startData({"6dmt2"}));
    QCOMPARE(::kill(static_cast<pid_t>(m_process->processId()), number), 0);
    QCOMPARE(finish(), 0);
    QVERIFY(client.waitForDisconnect());
    QCOMPARE(m_process->readAllStandardError(), QByteArray());
}

void TestSimulatorProcess::refusesBadOptions_data() {
    QTest::addColumn<QStringList>("options");
    for (const char* options : {"--nonsense",
                                "--port 65536",
                                "--port x",
                                "--port -1",
                                "--listen nowhere.example",
                                "--tools -1",
                                "--tools 101",
                                "--references x",
                                "--rate 0",
                                "--rate 1001",
                                "--rate 1,5",
                                "--seed -1",
                                "--protocol 1",
                                "--protocol 1.x",
                                "--protocol 1.2.3.4",
                                "--system abc",
                                "--pivot sideways",
                                "--misbehave nonsense",
                                "--misbehave slow=x",
                                "--misbehave slow=-1",
                                "--misbehave slow=3600001",
                                "--misbehave long-data=150000000",
                                "--misbehave lost-data=101",
                                "--cal-duration 0",
                                "--cal-pause x",
                                "--tools 4 --references 4 --max-bodies 7",
                                "--port",
                                "stray"}) {
        QTest::newRow(options) << QString::fromLatin1(options).split(QLatin1Char(' '));
    }
}

void TestSimulatorProcess::refusesBadOptions() {
    QFETCH(QStringList, options);
    start(options);
    QCOMPARE(finish(), 2);
    const QByteArray complaint = m_process->readAllStandardError();
    QVERIFY2(complaint.startsWith("kestrel-simulator: "), complaint.constData());
    QCOMPARE(complaint.count('\n'), 1);
    QCOMPARE(m_process->readAllStandardOutput(), QByteArray());
}

void TestSimulatorProcess::showsHelpAndVersion() {
    start({QStringLiteral("--help")});
    QCOMPARE(finish(), 0);
    const QByteArray help = m_process->readAllStandardOutput();
    for (const char* part : {"--listen", "--replay", "--pivot", "cal-stale-status", "Exit codes"}) {
        QVERIFY2(help.contains(part), part);
    }
    start({QStringLiteral("--version")});
    QCOMPARE(finish(), 0);
    QVERIFY(m_process->readAllStandardOutput().startsWith("kestrel-simulator "));
}

void TestSimulatorProcess::exitsWhenThePortIsTaken() {
    QTcpServer taken;
    QVERIFY(taken.listen(QHostAddress(QHostAddress::LocalHost)));
    start({QStringLiteral("--port"), QString::number(taken.serverPort())});
    QCOMPARE(finish(), 3);
    QVERIFY(m_process->readAllStandardError().contains("cannot listen"));
}

void TestSimulatorProcess::exitsWhenTheRecordingIsBad() {
    start({QStringLiteral("--replay"), QStringLiteral("/nonexistent/recording")});
    QCOMPARE(finish(), 4);
    start({QStringLiteral("--replay"), writeFile("kestrel-recording 1\nhello\n")});
    QCOMPARE(finish(), 4);
    QVERIFY(m_process->readAllStandardError().contains("line 2: "));
    start({QStringLiteral("--replay"),
           writeFile("kestrel-recording 1\nversion protocol new\nrecords\n")});
    QCOMPARE(finish(), 4);
    QVERIFY(m_process->readAllStandardError().contains("protocol version cannot be read"));
}

void TestSimulatorProcess::takesItsOptions() {
    const quint16 port = startListening(
        {QStringLiteral("--tools"), QStringLiteral("20"), QStringLiteral("--references"),
         QStringLiteral("3"), QStringLiteral("--model"), QStringLiteral("MINIRIG X"),
         QStringLiteral("--protocol"), QStringLiteral("1.13"), QStringLiteral("--system"),
         QStringLiteral("2.9.3"), QStringLiteral("--cal-duration"), QStringLiteral("0.25"),
         QStringLiteral("--cal-pause"), QStringLiteral("0"), QStringLiteral("--noise"),
         QStringLiteral("0.2"), QStringLiteral("--rate"), QStringLiteral("123.5")});
    Client client(port);
    const auto value = [&](const QByteArray& parameter) {
        return client.ask("get " + parameter)
            .mid(QByteArray("kestrel2 set ").size() + parameter.size() + 1);
    };
    QCOMPARE(value("measurementtool number_of_tools"), QByteArray("20"));
    QCOMPARE(value("measurementtool max_number_of_references"), QByteArray("3"));
    QCOMPARE(value("version model"), QByteArray("MINIRIG X"));
    QCOMPARE(value("version protocol"), QByteArray("1.13"));
    QCOMPARE(value("version system"), QByteArray("2.9.3"));
    QCOMPARE(value("cal step_duration measurementtool s01"), QByteArray("0.25"));
    QCOMPARE(value("cal step_pause measurementtool s01"), QByteArray("no"));
    QCOMPARE(value("sim noise"), QByteArray("0.2"));
    QCOMPARE(value("sim rate"), QByteArray("123.5"));
}

void TestSimulatorProcess::misbehavesFromTheStart() {
    const quint16 port =
        startListening({QStringLiteral("--misbehave"), QStringLiteral("slow=20"),
                        QStringLiteral("--misbehave"), QStringLiteral("lost-data")});
    Client client(port);
    QCOMPARE(client.ask("get sim misbehaviour"),
             QByteArray("kestrel2 set sim misbehaviour slow 20, lost-data 50"));
}

void TestSimulatorProcess::replaysARecording() {
    kestrel_wire::RecordingHeader header = {"1.0.0", "1.14.0", "1.0.0", "OLD", {}};
    header.parameters.emplace_back("measurementtool output_6dmt", "yes");
    std::string text = kestrel_wire::formatRecordingHeader(header);
    for (unsigned i = 0; i < 5; ++i) {
        text += kestrel_wire::formatRecord(i * 20000U, "fr " + std::to_string(i + 7));
        text += kestrel_wire::formatRecord(i * 20000U, "6dmt 0");
    }
    const quint16 port =
        startListening({QStringLiteral("--replay"), writeFile(QByteArray::fromStdString(text))});
    Client client(port);
    QCOMPARE(client.ask("get version model"), QByteArray("kestrel2 set version model OLD"));
    QCOMPARE(client.ask("get measurementtool output_6dmt"),
             QByteArray("kestrel2 set measurementtool output_6dmt yes"));
    QVERIFY(client.startData({"6dmt"}));
    for (const char* frame : {"fr 7\r\n6dmt 0", "fr 8\r\n6dmt 0", "fr 9\r\n6dmt 0",
                              "fr 10\r\n6dmt 0", "fr 11\r\n6dmt 0", "fr 7\r\n6dmt 0"}) {
        QCOMPARE(client.readFrame(), QByteArray(frame));
    }
}

void TestSimulatorProcess::tellsOfACutRecording() {
    const std::string text =
        kestrel_wire::formatRecordingHeader({"1", "2.0", "3", "m", {}}) + "5 fr";
    const quint16 port =
        startListening({QStringLiteral("--replay"), writeFile(QByteArray::fromStdString(text))});
    QVERIFY(port != 0);
    QVERIFY(m_process->readAllStandardError().contains("the last line is cut"));
}

void TestSimulatorProcess::calibratesWithTheChosenMotion() {
    const quint16 port = startListening({QStringLiteral("--pivot"), QStringLiteral("planar"),
                                         QStringLiteral("--cal-duration"), QStringLiteral("0.5")});
    Client client(port);
    QCOMPARE(client.ask("cal measurementtool start"), QByteArray("kestrel2 ok"));
    QTRY_COMPARE(client.ask("get status active"), QByteArray("kestrel2 set status active err"));
    QVERIFY(client.ask("get status err").contains("\"The Measurement Tool was only swung"));
}

void TestSimulatorProcess::writesNumbersWithAPointInACommaLocale() {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("de_DE.UTF-8"));
    m_process->setProcessEnvironment(environment);
    const quint16 port = startListening({QStringLiteral("--noise"), QStringLiteral("0.5")});
    Client client(port);
    QCOMPARE(client.ask("get sim noise"), QByteArray("kestrel2 set sim noise 0.5"));
    QCOMPARE(client.ask("set measurementtool tip_radius b01 1.250"), QByteArray("kestrel2 ok"));
    QCOMPARE(client.ask("get measurementtool tip_radius b01"),
             QByteArray("kestrel2 set measurementtool tip_radius b01 1.25"));
    QVERIFY(client.startData({"6dmt2"}));
    QVERIFY(!client.readFrame().contains(','));
}

QTEST_GUILESS_MAIN(TestSimulatorProcess)
#include "test_simulator_process.moc"
