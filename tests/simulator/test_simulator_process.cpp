#include "libs/kestrel_wire/recording.h"
#include "tests/simulator/client.h"

#include <QDir>
#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <csignal>
#include <memory>
#include <sys/resource.h>
#include <sys/stat.h>
#include <vector>

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
    void takesTheShapeOfItsProbes();
    void acceptsAgainAfterItRanOutOfDescriptors_data();
    void acceptsAgainAfterItRanOutOfDescriptors();
    void writesNumbersWithAPointInACommaLocale();

private:
    void start(const QStringList& arguments);
    quint16 startListening(QStringList arguments = {});
    quint16 listeningPort();
    int descriptorsBelow(int limit) const;
    int processorTicks() const;
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
    return listeningPort();
}

quint16 TestSimulatorProcess::listeningPort() {
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
    QTest::addColumn<QString>("options");
    QTest::addColumn<QByteArray>("expected");
    const auto row = [](const char* options, const char* expected) {
        QTest::newRow(options) << QString::fromLatin1(options) << QByteArray(expected);
    };
    row("--nonsense", "Unknown option 'nonsense'.");
    row("--port 99999", "bad value '99999' of --port: expected a whole number from 0 to 65535");
    row("--port x", "bad value 'x' of --port: expected a whole number from 0 to 65535");
    row("--port -1", "bad value '-1' of --port: expected a whole number from 0 to 65535");
    row("--listen nowhere.example", "expected an address in numbers, such as 127.0.0.1");
    row("--tools -1", "of --tools: expected a whole number from 0 to 100");
    row("--tools 101", "of --tools: expected a whole number from 0 to 100");
    row("--references x", "of --references: expected a whole number from 0 to 100");
    row("--rate 0", "of --rate: expected a number from 0.1 to 1000");
    row("--rate 1001", "of --rate: expected a number from 0.1 to 1000");
    row("--rate 1,5", "of --rate: expected a number from 0.1 to 1000");
    row("--seed -1", "of --seed: expected a whole number from 0 to 18446744073709551615");
    row("--model \t", "of --model: expected a text without control characters");
    row("--protocol 1", "of --protocol: expected two or three numbers, as in 1.14.0");
    row("--protocol 1.x", "of --protocol: expected two or three numbers, as in 1.14.0");
    row("--protocol 1.2.3.4", "of --protocol: expected two or three numbers, as in 1.14.0");
    row("--system abc", "of --system: expected two or three numbers, as in 1.14.0");
    row("--pivot sideways", "of --pivot: expected one of cone, planar, twist, slip, still");
    row("--misbehave nonsense", "of --misbehave: expected a name from the list of misbehaviours");
    row("--misbehave slow=x", "expected slow=N with a whole number N from 0 to 3600000");
    row("--misbehave slow=-1", "expected slow=N with a whole number N from 0 to 3600000");
    row("--misbehave slow=3600001", "expected slow=N with a whole number N from 0 to 3600000");
    row("--misbehave long-data=150000000", "with a whole number N from 0 to 65000");
    row("--misbehave lost-data=101", "with a whole number N from 0 to 100");
    row("--cal-duration 0", "of --cal-duration: expected a number from 0.05 to 3600");
    row("--cal-pause x", "of --cal-pause: expected a whole number from 0 to 3600");
    row("--tools 4 --references 4 --max-bodies 7",
        "bad value '7' of --max-bodies: expected a whole number from 8 to 200");
    for (const char* tip : {"--tip 1,2", "--tip 1,2,x", "--tip 1,2,1001", "--tip b05=1,2,3",
                            "--tip b00=1,2,3", "--tip =1,2,3"}) {
        row(tip, "of --tip: expected X,Y,Z or bNN=X,Y,Z, each a number from -1000 to 1000, "
                 "NN up to 4");
    }
    row("--lever 0", "of --lever: expected MM or bNN=MM, each a number from 1 to 1000, NN up to 4");
    row("--slip 1,2", "of --slip: expected MM or bNN=MM, each a number from 0 to 100, NN up to 4");
    row("--replay-once", "--replay-once needs --replay");
    row("--port", "Missing value after '--port'.");
    row("stray", "unexpected argument 'stray'");
}

void TestSimulatorProcess::refusesBadOptions() {
    QFETCH(QString, options);
    QFETCH(QByteArray, expected);
    start(options.split(QLatin1Char(' ')));
    QCOMPARE(finish(), 2);
    const QByteArray complaint = m_process->readAllStandardError();
    QVERIFY2(complaint.startsWith("kestrel-simulator: "), complaint.constData());
    QVERIFY2(complaint.endsWith(expected + " (see --help)\n"), complaint.constData());
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
    const QString pipe = m_folder.filePath(QStringLiteral("pipe"));
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    start({QStringLiteral("--replay"), pipe});
    QCOMPARE(finish(), 4);
    QCOMPARE(m_process->readAllStandardError(),
             QByteArray("kestrel-simulator: " + QFile::encodeName(pipe) +
                        ": only an ordinary file can be replayed, not a folder, pipe or device\n"));
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

void TestSimulatorProcess::takesTheShapeOfItsProbes() {
    const quint16 port = startListening({QStringLiteral("--tip"), QStringLiteral("b02=1,-2,90.5"),
                                         QStringLiteral("--tip"), QStringLiteral("0,30,40"),
                                         QStringLiteral("--lever"), QStringLiteral("250"),
                                         QStringLiteral("--slip"), QStringLiteral("b01=7.5")});
    Client client(port);
    QCOMPARE(client.ask("get sim tip b01"),
             QByteArray("kestrel2 set sim tip b01 0.000000 150.000000 200.000000"));
    QCOMPARE(client.ask("get sim tip b02"),
             QByteArray("kestrel2 set sim tip b02 1.000000 -2.000000 90.500000"));
    QCOMPARE(client.ask("get sim slip b01"), QByteArray("kestrel2 set sim slip b01 7.500000"));
    QCOMPARE(client.ask("get sim slip b02"), QByteArray("kestrel2 set sim slip b02 4.000000"));
}

void TestSimulatorProcess::acceptsAgainAfterItRanOutOfDescriptors_data() {
    QTest::addColumn<bool>("atOnce");
    QTest::newRow("by a crowd that came at once") << true;
    QTest::newRow("by clients that came one after the other") << false;
}

// A crowd takes all descriptors that there are; when it has gone, others are welcome.
void TestSimulatorProcess::acceptsAgainAfterItRanOutOfDescriptors() {
    QFETCH(bool, atOnce);
    constexpr int served = 6;
    constexpr int openMost = 1000000;
    const quint16 port = startListening();
    QVERIFY(port != 0);
    // One who was there before, and one who has gone. (UBSan needs descriptors when it sees a type
    // for the first time.)
    const auto id = static_cast<pid_t>(m_process->processId());
    const int alone = descriptorsBelow(openMost);
    auto passing = std::make_unique<Client>(port);
    QCOMPARE(passing->ask("get version model"), QByteArray("kestrel2 set version model SIMULATOR"));
    passing.reset();
    QTRY_COMPARE_WITH_TIMEOUT(descriptorsBelow(openMost), alone, timeoutMs);
    Client first(port);
    QCOMPARE(first.ask("sim misbehave slow 0"), QByteArray("kestrel2 ok"));
    QCOMPARE(first.ask("sim behave"), QByteArray("kestrel2 ok"));
    int limit = 0;
    while (limit - descriptorsBelow(limit) < served) {
        ++limit;
    }
    const auto allowed = static_cast<rlim_t>(limit);
    const rlimit lowered = {allowed, allowed};
    QCOMPARE(::prlimit(id, RLIMIT_NOFILE, &lowered, nullptr), 0);
    QCOMPARE(::kill(id, atOnce ? SIGSTOP : SIGCONT), 0);
    std::vector<std::unique_ptr<Client>> crowd;
    for (int i = 0; i < 3 * served; ++i) {
        crowd.push_back(std::make_unique<Client>(port));
        QVERIFY(crowd.back()->isConnected());
    }
    QCOMPARE(::kill(id, SIGCONT), 0);
    QTRY_COMPARE_WITH_TIMEOUT(descriptorsBelow(limit), limit, timeoutMs);

    QCOMPARE(crowd.front()->ask("get version model"),
             QByteArray("kestrel2 set version model SIMULATOR"));
    QCOMPARE(first.ask("sim misbehave slow 1000"), QByteArray("kestrel2 ok"));
    const int before = processorTicks();
    QCOMPARE(first.ask("get status active"), QByteArray("kestrel2 set status active none"));
    const int ticks = processorTicks() - before;
    QVERIFY2(ticks < 10, "it is busy while it waits");
    QCOMPARE(first.ask("sim behave"), QByteArray("kestrel2 ok"));

    crowd.clear();
    Client client(port);
    QCOMPARE(client.ask("get version model"), QByteArray("kestrel2 set version model SIMULATOR"));
}

// Those with greater numbers may be inherited.
int TestSimulatorProcess::descriptorsBelow(int limit) const {
    const QDir folder(QStringLiteral("/proc/%1/fd").arg(m_process->processId()));
    const QStringList numbers = folder.entryList(QDir::Files | QDir::System);
    return static_cast<int>(
        std::count_if(numbers.begin(), numbers.end(),
                      [&](const QString& number) { return number.toInt() < limit; }));
}

// What the process has used of the processor, in hundredths of a second.
int TestSimulatorProcess::processorTicks() const {
    QFile file(QStringLiteral("/proc/%1/stat").arg(m_process->processId()));
    if (!file.open(QIODevice::ReadOnly)) {
        return 0;
    }
    const QByteArray text = file.readAll();
    const QList<QByteArray> fields = text.mid(text.lastIndexOf(')') + 2).split(' ');
    return fields.value(11).toInt() + fields.value(12).toInt();
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
