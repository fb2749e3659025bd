#include "tests/workbench/backendfixture.h"
#include "tests/workbench/scriptedcontroller.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QUdpSocket>
#include <QtTest>

using workbench::ControllerSession;

namespace {
constexpr int patience = 8000;

class Witness final : public Requester {
public:
    int set_ascii_data(const char*, const char*) override { return 0; }
    void set_mea_started() override { events += QStringLiteral("started"); }
    void set_mea_stopped() override { events += QStringLiteral("stopped"); }
    QStringList events;
};

} // namespace

class TestControllerSession : public QObject {
    Q_OBJECT

    std::unique_ptr<ScriptedController> m_controller;
    std::unique_ptr<BackendFixture> m_parts;

    void becomeReady() {
        m_parts->connectTo(m_controller->port());
        QTRY_VERIFY_WITH_TIMEOUT(m_parts->session.isReady(), patience);
        QTRY_VERIFY_WITH_TIMEOUT(m_controller->count("kestrel2 get status active") > 0, patience);
    }

private Q_SLOTS:
    void init() {
        m_controller = std::make_unique<ScriptedController>();
        m_parts = std::make_unique<BackendFixture>();
    }
    void cleanup() {
        m_parts.reset();
        m_controller.reset();
    }

    void connectingReadsTheVersionsAndNamesTheDataPort() {
        const BackendVersions* versions = m_parts->session.versions();
        becomeReady();
        QVERIFY(versions->systemPt() == VersionInfo(2, 10, 1));
        QVERIFY(versions->protocol() == VersionInfo(1, 14, 0));
        QVERIFY(versions->systemCt() == VersionInfo(1, 2, 3));
        QCOMPARE(versions->hubModel(), QStringLiteral("SCRIPTED"));
        QVERIFY(m_controller->dataPort() != 0);
        QCOMPARE(m_controller->dataPort(), m_parts->session.boundDataPort());
        QCOMPARE(m_parts->session.stateText(),
                 QStringLiteral("Connected to 127.0.0.1:%1").arg(m_controller->port()));
    }

    void theStateIsSaidInWords() {
        QCOMPARE(m_parts->session.stateText(), QStringLiteral("Not connected"));
        const quint16 port = m_controller->port();
        m_controller->stopListening();
        m_parts->connectTo(port);
        QVERIFY(m_parts->session.stateText().startsWith(QStringLiteral("Connecting to ")));
        QTRY_VERIFY_WITH_TIMEOUT(
            m_parts->session.stateText().startsWith(QStringLiteral("No connection to ")), patience);
        QVERIFY(m_controller->listenAgain());
        QTRY_VERIFY_WITH_TIMEOUT(m_parts->session.isReady(), patience);
        m_controller->stopListening();
        QTRY_VERIFY_WITH_TIMEOUT(m_parts->session.stateText().contains(QStringLiteral(" lost (")),
                                 patience);
        m_parts->session.disconnectFromController();
        QCOMPARE(m_parts->session.stateText(), QStringLiteral("Not connected"));
    }

    void afterALossItComesBackWithFreshVersionsIntoTheSameRecord() {
        becomeReady();
        const BackendVersions* versions = m_parts->session.versions();
        QSignalSpy ready(&m_parts->session, &ControllerSession::ready);
        QCOMPARE(m_parts->host().set_parameter("output active chmon 6dmt2 yes"), 0);
        m_controller->answer("version system", "2.11.0");
        m_controller->clearCommands();
        m_controller->dropConnections();
        QVERIFY(ready.wait(patience));
        QCOMPARE(ready.first().first().toBool(), false);
        QCOMPARE(m_parts->session.versions(), versions);
        QVERIFY(versions->systemPt() == VersionInfo(2, 11, 0));
        QCOMPARE(m_controller->dataPort(), m_parts->session.boundDataPort());
        QCOMPARE(m_controller->count("kestrel2 set output active chmon 6dmt2 yes"), 1);
        QTRY_COMPARE_WITH_TIMEOUT(m_controller->count("kestrel2 get status active"), 1, patience);
    }

    void aControllerThatForgotItsOutputsWasStartedAnew_data() {
        QTest::addColumn<QString>("output");
        QTest::addColumn<int>("startedAnew"); // below 0: nobody can tell
        QTest::newRow("still on") << "yes" << 0;
        QTest::newRow("forgotten") << "no" << 1;
        QTest::newRow("not told") << "" << -1;
    }
    void aControllerThatForgotItsOutputsWasStartedAnew() {
        QFETCH(QString, output);
        QFETCH(int, startedAnew);
        becomeReady();
        QSignalSpy ready(&m_parts->session, &ControllerSession::ready);
        QCOMPARE(m_parts->host().set_parameter("output active chmon 6dmt2 yes"), 0);
        QCOMPARE(m_parts->host().set_parameter("output active chmon 6dmt no"), 0);
        if (!output.isEmpty()) {
            m_controller->answer("output active chmon 6dmt2", output.toStdString());
        }
        m_controller->answer("output active chmon 6dmt", "no"); // says nothing
        m_controller->dropConnections();
        QVERIFY(ready.wait(patience));
        const auto told = m_parts->session.wasStartedAnew();
        QCOMPARE(told.has_value() ? int(*told) : -1, startedAnew);
        QCOMPARE(m_controller->count("kestrel2 set output active chmon 6dmt2 yes"), 2);
        QVERIFY(!m_parts->log.toText().contains("get output active"));
    }

    void aFrozenControllerDoesNotFreezeTheCallerAgainWhileItIsTried() {
        becomeReady();
        char reply[200];
        m_controller->setSilent(true);
        QCOMPARE(m_parts->host().get_parameter_string(reply, "a"), int(workbench::TimedOut));
        const int before = m_controller->connections();
        // It still accepts connections: being connected alone must not let commands through.
        qint64 longest = 0;
        QElapsedTimer total;
        total.start();
        while (m_controller->connections() < before + 1 && total.elapsed() < patience) {
            QTest::qWait(20);
        }
        QVERIFY(m_controller->connections() > before);
        for (int i = 0; i < 50; ++i) {
            QElapsedTimer one;
            one.start();
            QVERIFY(m_parts->host().get_parameter_string(reply, "a") < 0);
            longest = std::max(longest, one.elapsed());
            QCoreApplication::processEvents();
        }
        QVERIFY2(longest < 1000, qPrintable(QString::number(longest)));
        m_controller->setSilent(false);
        QTRY_VERIFY_WITH_TIMEOUT(m_parts->session.isReady(), patience);
    }

    void startAndStopAreLearntFromAcknowledgedCommands() {
        becomeReady();
        Witness witness;
        m_parts->host().register_measurement_requester(&witness);
        char reply[200];
        QCOMPARE(m_parts->host().send_command(reply, "kestrel2 tracking start"), 0);
        m_controller->answer("status active", "6d");
        QVERIFY(witness.events.isEmpty()); // never from inside the command
        QTRY_COMPARE_WITH_TIMEOUT(witness.events, QStringList("started"), patience);
        QCOMPARE(m_parts->host().send_command(reply, "kestrel2 tracking start"), 0);
        QCOMPARE(m_parts->host().send_command(reply, "kestrel2 tracking stop"), 0);
        m_controller->answer("status active", "none");
        QTRY_COMPARE_WITH_TIMEOUT(witness.events, QStringList({"started", "stopped"}), patience);
        QVERIFY(!m_parts->monitor.isMeasuring());
        m_parts->host().unregister_measurement_requester(&witness);
    }

    void aRefusedStartStartsNothing() {
        becomeReady();
        m_controller->answerRaw("kestrel2 tracking start", "kestrel2 err 8 \"no\"\n");
        char reply[200];
        QCOMPARE(m_parts->host().send_command(reply, "kestrel2 tracking start"), 8);
        QVERIFY(!m_parts->monitor.isMeasuring());
    }

    void whatOthersStartAndStopIsLearntByAsking() {
        becomeReady();
        Witness witness;
        m_parts->host().register_measurement_requester(&witness);
        const QStringList started("started");
        const QStringList both({"started", "stopped"});
        m_controller->answer("status active", "wait");
        QTRY_COMPARE_WITH_TIMEOUT(witness.events, started, patience);
        m_controller->answer("status active", "cal");
        QTRY_COMPARE_WITH_TIMEOUT(witness.events, both, patience);
        m_controller->answer("status active", "tracking");
        QTRY_COMPARE_WITH_TIMEOUT(witness.events, both + started, patience);
        m_controller->answer("status active", "err");
        QTRY_COMPARE_WITH_TIMEOUT(witness.events, both + both, patience);
        m_parts->host().unregister_measurement_requester(&witness);
    }

    void givingAControllerUpEndsTheMeasurement() {
        m_controller->answer("status active", "tracking");
        // Who comes when it is known already, but not told yet, is told as well.
        QSignalSpy told(&m_parts->monitor, &workbench::MeasurementMonitor::changed);
        becomeReady();
        QTRY_COMPARE_WITH_TIMEOUT(told.size(), 1, patience);
        QVERIFY(m_parts->monitor.isMeasuring());
        Witness witness;
        m_parts->host().register_measurement_requester(&witness);
        m_parts->session.disconnectFromController();
        QTRY_COMPARE_WITH_TIMEOUT(witness.events, QStringList("stopped"), patience);
        m_parts->host().unregister_measurement_requester(&witness);
    }

    void aVersionThatCannotBeReadIsUnknownAndTheRestGoesOn() {
        m_controller->answerRaw("kestrel2 get version system_ct", "kestrel2 err 3 \"no\"\n");
        m_controller->answer("version system", "rubbish");
        becomeReady();
        QVERIFY(m_parts->session.versions()->systemCt() == VersionInfo());
        QVERIFY(m_parts->session.versions()->systemPt() == VersionInfo());
        QVERIFY(m_parts->session.versions()->protocol() == VersionInfo(1, 14, 0));
    }

    void aRepeatedRefusalIsLoggedOnce() {
        becomeReady();
        char reply[200];
        for (int i = 0; i < 20; ++i) {
            QCOMPARE(m_parts->host().get_parameter_string(reply, "unknown"), 3);
        }
        QCoreApplication::processEvents();
        QCOMPARE(m_parts->log.toText().count(QStringLiteral("kestrel2 get unknown")), 1);
    }

    void theDataPortStaysTheSameAfterEachLoss() {
        QSignalSpy ready(&m_parts->session, &ControllerSession::ready);
        becomeReady();
        const quint16 port = m_controller->dataPort();
        QVERIFY(port != 0);
        m_controller->clearCommands();
        ready.clear();
        m_controller->dropConnections();
        QVERIFY(ready.wait(patience));
        QCOMPARE(m_controller->count("kestrel2 set data_port " + std::to_string(port)), 1);
        QCOMPARE(m_parts->session.boundDataPort(), port);
    }

    void anotherPortIsTakenWhenTheLastOneIsInUseMeanwhile() {
        QSignalSpy ready(&m_parts->session, &ControllerSession::ready);
        becomeReady();
        ready.clear();
        m_parts->receiver.stop();
        QUdpSocket other;
        QVERIFY(other.bind(QHostAddress::LocalHost, m_parts->session.boundDataPort(),
                           QAbstractSocket::DontShareAddress));
        m_controller->dropConnections();
        QVERIFY(ready.wait(patience));
        QVERIFY(m_parts->session.boundDataPort() != 0);
        QVERIFY(m_parts->session.boundDataPort() != other.localPort());
        QCOMPARE(m_controller->dataPort(), m_parts->session.boundDataPort());
    }

    void anOpeningThatFailsAgainAndAgainIsLoggedOnce() {
        m_controller->answerRaw("kestrel2 get version system", "kestrel2 err 3 \"no\"\n");
        m_controller->answerRaw("kestrel2 get version model", "kestrel2 o"); // never ends
        m_parts->connectTo(m_controller->port());
        QTRY_COMPARE_WITH_TIMEOUT(m_controller->count("kestrel2 get version model"), 3,
                                  2 * patience);
        QCoreApplication::processEvents();
        const QString log = m_parts->log.toText();
        QCOMPARE(log.count(QStringLiteral("refused \"kestrel2 get version system\"")), 1);
        QCOMPARE(log.count(QStringLiteral("No connection to ")), 1);
    }

    void versionsWithoutAPatchAreLoggedAsTheyCame() {
        m_controller->answer("version system", "2.10");
        becomeReady();
        QCoreApplication::processEvents();
        QVERIFY(m_parts->log.toText().contains(QStringLiteral("system 2.10, protocol 1.14.0")));
    }

    void aDataPortInUseIsToldAndTheCommandsStillWork() {
        QUdpSocket other;
        QVERIFY2(other.bind(QHostAddress(QHostAddress::LocalHost)),
                 qPrintable(other.errorString()));
        workbench::ControllerAddress address;
        address.port = m_controller->port();
        address.dataPort = other.localPort();
        m_parts->session.connectTo(address);
        QTRY_VERIFY_WITH_TIMEOUT(m_parts->session.isReady(), patience);
        QCOMPARE(m_parts->session.boundDataPort(), quint16(0));
        QCoreApplication::processEvents();
        QVERIFY(m_parts->log.toText().contains(QStringLiteral("No data can be received on port")));
    }
};

QTEST_GUILESS_MAIN(TestControllerSession)
#include "test_controllersession.moc"
