#include "workbench/controller/data/datareceiver.h"
#include "workbench/controller/data/requesterregistry.h"
#include "workbench/outlets/recorder.h"

#include <QUdpSocket>
#include <QtTest>

#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr int patience = 5000;

class Collector final : public Requester {
public:
    int set_ascii_data(const char* type, const char* data) override {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_lines.push_back(std::string(type) + '|' + data);
        m_thread = std::this_thread::get_id();
        return 0;
    }
    void set_mea_started() override {}
    void set_mea_stopped() override {}

    std::vector<std::string> lines() const {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_lines;
    }
    std::thread::id thread() const {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_thread;
    }

private:
    mutable std::mutex m_mutex;
    std::vector<std::string> m_lines;
    std::thread::id m_thread;
};

// Cannot read any line.
class Refuser : public Requester {
public:
    int set_ascii_data(const char*, const char*) override { return -1; }
    void set_mea_started() override {}
    void set_mea_stopped() override {}
};

} // namespace

class TestDataReceiver : public QObject {
    Q_OBJECT

    workbench::RequesterRegistry m_registry;
    workbench::Recorder m_recorder;
    std::unique_ptr<workbench::DataReceiver> m_receiver;
    quint16 m_port = 0;

    std::unique_ptr<QUdpSocket> m_controller;

    void send(const QByteArray& frame) {
        QCOMPARE(m_controller->writeDatagram(frame, QHostAddress::LocalHost, m_port),
                 qint64(frame.size()));
    }
    void sendFromElsewhere(const QByteArray& frame, const QHostAddress& address) const {
        QUdpSocket socket;
        QVERIFY(socket.bind(address));
        QCOMPARE(socket.writeDatagram(frame, QHostAddress::LocalHost, m_port),
                 qint64(frame.size()));
    }
    quint64 foreign() const { return m_receiver->statistics().snapshot().foreign; }

private Q_SLOTS:
    void init() {
        m_receiver = std::make_unique<workbench::DataReceiver>(m_registry, m_recorder);
        QString error;
        m_port = m_receiver->start(QHostAddress::LocalHost, 0, QHostAddress::LocalHost, &error);
        QVERIFY2(m_port != 0, qPrintable(error));
        m_controller = std::make_unique<QUdpSocket>();
        QVERIFY(m_controller->bind(QHostAddress(QHostAddress::LocalHost)));
    }
    void cleanup() { m_receiver.reset(); }

    void aFrameIsHandedOutLineByLineByFirstWord() {
        Collector tools;
        Collector frames;
        m_registry.add("6dmt", &tools);
        m_registry.add("fr", &frames);
        send("fr 7\r\nts 1.5\r\n6dmt 1 [0 1][1 2 3]\r\n6dmt2 0");
        QTRY_COMPARE_WITH_TIMEOUT(tools.lines().size(), std::size_t(1), patience);
        QCOMPARE(tools.lines().front(), std::string("6dmt|6dmt 1 [0 1][1 2 3]"));
        QCOMPARE(frames.lines().front(), std::string("fr|fr 7"));
        QVERIFY(tools.thread() != std::this_thread::get_id());
        m_registry.remove("6dmt", &tools);
        m_registry.remove("fr", &frames);
    }

    void datagramsFromElsewhereAreCountedAndDropped() {
        Collector tools;
        m_registry.add("6dmt", &tools);
        sendFromElsewhere("6dmt 0", QHostAddress(QStringLiteral("127.0.0.2")));
        QTRY_COMPARE_WITH_TIMEOUT(foreign(), quint64(1), patience);
        send("6dmt 1");
        QTRY_COMPARE_WITH_TIMEOUT(tools.lines().size(), std::size_t(1), patience);
        QCOMPARE(tools.lines().front(), std::string("6dmt|6dmt 1"));
        m_registry.remove("6dmt", &tools);
    }

    void anotherProgramOnTheControllersMachineIsCountedAndDropped() {
        Collector tools;
        m_registry.add("6dmt", &tools);
        send("6dmt 1");
        QTRY_COMPARE_WITH_TIMEOUT(tools.lines().size(), std::size_t(1), patience);
        sendFromElsewhere("6dmt 0", QHostAddress::LocalHost);
        QTRY_COMPARE_WITH_TIMEOUT(foreign(), quint64(1), patience);
        send("6dmt 2");
        QTRY_COMPARE_WITH_TIMEOUT(
            tools.lines(), (std::vector<std::string>{"6dmt|6dmt 1", "6dmt|6dmt 2"}), patience);
        QCOMPARE(m_receiver->statistics().snapshot().frames, quint64(2));
        m_registry.remove("6dmt", &tools);
    }

    void thePortOfTheControllerIsLearntAnewWithEachStart() {
        send("fr 1");
        QTRY_COMPARE_WITH_TIMEOUT(m_receiver->statistics().snapshot().frames, quint64(1), patience);
        QString error;
        QCOMPARE(
            m_receiver->start(QHostAddress::LocalHost, m_port, QHostAddress::LocalHost, &error),
            m_port);
        m_controller = std::make_unique<QUdpSocket>();
        QVERIFY(m_controller->bind(QHostAddress(QHostAddress::LocalHost)));
        send("fr 2");
        QTRY_COMPARE_WITH_TIMEOUT(m_receiver->statistics().snapshot().frames, quint64(1), patience);
        QCOMPARE(foreign(), quint64(0));
    }

    void theLongestLineThatNobodyTookIsRemembered() {
        Refuser refuser;
        m_registry.add("6dmt2", &refuser);
        const QByteArray line = "6dmt2 " + QByteArray(11000, 'x');
        send(line + "\r\n6dmt2 0\r\n6dmt " + QByteArray(20000, 'x'));
        QTRY_COMPARE_WITH_TIMEOUT(m_receiver->statistics().snapshot().rejectedLines, quint64(2),
                                  patience);
        QCOMPARE(m_receiver->statistics().snapshot().longestRejected, std::size_t(line.size()));
        m_registry.remove("6dmt2", &refuser);
    }

    void theLargestDatagramIsTakenWhole() {
        Collector tools;
        m_registry.add("6dmt", &tools);
        const QByteArray line = "6dmt " + QByteArray(65000, 'x');
        send(line);
        QTRY_COMPARE_WITH_TIMEOUT(tools.lines().size(), std::size_t(1), patience);
        QCOMPARE(tools.lines().front().size(), std::size_t(line.size() + 5));
        m_registry.remove("6dmt", &tools);
    }

    void oddFramesDoNoHarm() {
        Collector tools;
        m_registry.add("6dmt", &tools);
        send(QByteArray());
        send("\r\n\r\n\r\n");
        send(QByteArray("\0\0\0", 3));
        send(" leading blank\r\n");
        send("fr\r\nfr x\r\nfr 99999999999999999999999");
        send("6dmt 5\n6dmt 6\r\n");
        QTRY_COMPARE_WITH_TIMEOUT(
            tools.lines(), (std::vector<std::string>{"6dmt|6dmt 5", "6dmt|6dmt 6"}), patience);
        m_registry.remove("6dmt", &tools);
    }

    void framesAndGapsAreCounted() {
        for (const int counter : {10, 11, 14, 15}) {
            send("fr " + QByteArray::number(counter) + "\r\n6d 0");
        }
        QTRY_COMPARE_WITH_TIMEOUT(m_receiver->statistics().snapshot().frames, quint64(4), patience);
        QCOMPARE(m_receiver->statistics().snapshot().lostFrames, quint64(2));
        QVERIFY(m_receiver->statistics().snapshot().lastFrameAge >= 0.0);
    }

    void aPortInUseIsRefusedWithAReason() {
        workbench::DataReceiver second(m_registry, m_recorder);
        QString error;
        QCOMPARE(second.start(QHostAddress::LocalHost, m_port, QHostAddress::LocalHost, &error),
                 quint16(0));
        QVERIFY(!error.isEmpty());
    }

    void startingAgainAndStoppingAtOnceWork() {
        QString error;
        for (int i = 0; i < 20; ++i) {
            QVERIFY(m_receiver->start(QHostAddress::LocalHost, 0, QHostAddress::LocalHost,
                                      &error) != 0);
        }
        m_receiver->stop();
        m_receiver->stop();
    }

    void aRequesterMayLeaveWhileLinesCome() {
        for (int i = 0; i < 50; ++i) {
            auto tools = std::make_unique<Collector>();
            m_registry.add("6dmt", tools.get());
            send("6dmt 1");
            m_registry.remove("6dmt", tools.get());
            tools.reset();
        }
        QTRY_COMPARE_WITH_TIMEOUT(m_receiver->statistics().snapshot().frames, quint64(50),
                                  patience);
    }
};

QTEST_GUILESS_MAIN(TestDataReceiver)
#include "test_datareceiver.moc"
