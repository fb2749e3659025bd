#include "tests/support/datarows.h"
#include "workbench/controller/simulator/simulatorprocess.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

using workbench::SimulatorProcess;

namespace {
constexpr int patience = 20000;
}

/// A script stands for the simulator's program.
class TestSimulatorProcess : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;

    QString script(const QByteArray& content) const {
        const QString path = m_folder.filePath(QStringLiteral("script.sh"));
        QFile file(path);
        if (file.open(QIODevice::WriteOnly)) {
            file.write("#!/bin/sh\n" + content);
            file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        }
        return path;
    }

private Q_SLOTS:
    void initTestCase() { qRegisterMetaType<workbench::ControllerAddress>(); }

    void aSimulatorTellsWhereItListens() {
        SimulatorProcess simulator(script("echo \"listening on 127.0.0.1:4711\"\nexec sleep 60\n"));
        QSignalSpy listening(&simulator, &SimulatorProcess::listening);
        simulator.start({});
        QVERIFY(listening.wait(patience));
        const auto address = listening.first().first().value<workbench::ControllerAddress>();
        QCOMPARE(address.toString(), QStringLiteral("127.0.0.1:4711"));
    }

    void aSimulatorThatMisbehavesIsTold_data() {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("part");
        row("ends", QByteArray("echo too bad >&2\nexit 7\n"),
            "script.sh has ended (exit code 7): too bad");
        row("names itself",
            QByteArray("echo 'kestrel-simulator: bad' >&2\necho 'kestrel-simulator: worse' >&2\n"
                       "exit 2\n"),
            "script.sh has ended (exit code 2): bad\nworse");
        row("speaks of itself", QByteArray("echo 'no kestrel-simulator: gone' >&2\nexit 2\n"),
            "(exit code 2): no kestrel-simulator: gone");
        row("says something else", QByteArray("echo hello\nexec sleep 60\n"), "says \"hello\"");
        row("bad address", QByteArray("echo listening on nowhere:x\nexec sleep 60\n"), "says");
    }
    void aSimulatorThatMisbehavesIsTold() {
        QFETCH(QByteArray, content);
        QFETCH(QString, part);
        SimulatorProcess simulator(script(content));
        QSignalSpy failed(&simulator, &SimulatorProcess::failed);
        simulator.start({});
        QVERIFY(failed.wait(patience));
        QCOMPARE(failed.count(), 1);
        const QString reason = failed.first().first().toString();
        QVERIFY2(reason.contains(part), qPrintable(reason));
    }

    void theRealOneIsNamedOnce() {
        SimulatorProcess simulator(QStringLiteral(SIMULATOR_PROGRAM));
        QSignalSpy failed(&simulator, &SimulatorProcess::failed);
        simulator.start({QStringLiteral("--tools"), QStringLiteral("x")});
        QVERIFY(failed.wait(patience));
        QCOMPARE(failed.first().first().toString(),
                 QStringLiteral(SIMULATOR_PROGRAM) +
                     QStringLiteral(" has ended (exit code 2): bad value 'x' of --tools: expected "
                                    "a whole number from 0 to 100 (see --help)"));
    }

    void aSimulatorThatEndsLaterIsToldAsThat_data() {
        QTest::addColumn<QByteArray>("end");
        QTest::addColumn<QString>("part");
        row("by itself", QByteArray("exit 0\n"), "script.sh has ended (exit code 0)");
        row("by a signal", QByteArray("kill -KILL $$\n"), "script.sh was ended by signal 9");
        row("by a signal, with a word", QByteArray("echo help >&2\nkill -KILL $$\n"),
            "script.sh was ended by signal 9: help");
    }
    void aSimulatorThatEndsLaterIsToldAsThat() {
        QFETCH(QByteArray, end);
        QFETCH(QString, part);
        SimulatorProcess simulator(script("echo listening on 127.0.0.1:1\nsleep 0.1\n" + end));
        QSignalSpy failed(&simulator, &SimulatorProcess::failed);
        QSignalSpy ended(&simulator, &SimulatorProcess::ended);
        simulator.start({});
        QVERIFY(simulator.isStarting());
        QTRY_COMPARE_WITH_TIMEOUT(ended.count(), 1, patience);
        const QString reason = ended.first().first().toString();
        QVERIFY2(reason.endsWith(part), qPrintable(reason));
        QVERIFY(!simulator.isListening());
        QCOMPARE(failed.count(), 0);
    }

    void aSimulatorThatIsNotThereIsTold() {
        SimulatorProcess simulator(QStringLiteral("/no/such/program"));
        QSignalSpy failed(&simulator, &SimulatorProcess::failed);
        simulator.start({});
        QTRY_COMPARE_WITH_TIMEOUT(failed.count(), 1, patience);
    }
};

QTEST_MAIN(TestSimulatorProcess)
#include "test_simulatorprocess.moc"
