#include "tests/support/childprocesses.h"
#include "tests/support/datarows.h"
#include "tests/workbench/scriptedcontroller.h"
#include "workbench/options.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <memory>
#include <sys/types.h>

namespace {
constexpr int patience = 20000;
}

/// The program as a process of its own.
class TestProgram : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;

    QStringList with(const QStringList& options) const {
        return QStringList{QStringLiteral("--settings"), m_folder.filePath(QStringLiteral("s.ini")),
                           QStringLiteral("--language"), QStringLiteral("en")} +
               options;
    }

    struct Ended {
        int exitCode = -1;
        QString output;
        QString errors;
    };
    Ended run(const QStringList& options) const {
        QProcess process;
        process.start(QStringLiteral(WORKBENCH), with(options));
        Ended ended;
        if (process.waitForFinished(patience) && process.exitStatus() == QProcess::NormalExit) {
            ended.exitCode = process.exitCode();
        }
        ended.output = QString::fromUtf8(process.readAllStandardOutput());
        ended.errors = QString::fromUtf8(process.readAllStandardError());
        return ended;
    }

    // The simulator sends data to nobody who has not connected, and has a socket for each who has.
    static bool isConnectedTo(qint64 simulator) {
        int sockets = 0;
        const QFileInfoList files =
            QDir(QStringLiteral("/proc/%1/fd").arg(simulator))
                .entryInfoList(QDir::Files | QDir::System | QDir::NoDotAndDotDot);
        for (const QFileInfo& file : files) {
            sockets += file.symLinkTarget().contains(QStringLiteral("socket:")) ? 1 : 0;
        }
        return sockets >= 3; // commands, data, the client
    }

private Q_SLOTS:
    void helpNeedsNoDisplay() {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
        environment.remove(QStringLiteral("DISPLAY"));
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(WORKBENCH), {QStringLiteral("--help")});
        QVERIFY(process.waitForFinished(patience));
        QCOMPARE(process.exitCode(), 0);
        QVERIFY(process.readAllStandardOutput().contains("--quit-after"));
    }

    void badOptionsEndWith2AndAReason() {
        const Ended ended = run({QStringLiteral("--bogus")});
        QCOMPARE(ended.exitCode, int(workbench::ExitBadOptions));
        QVERIFY2(ended.errors.contains(QStringLiteral("bogus")), qPrintable(ended.errors));
    }

    void aSimulatorThatDoesNotStartEndsWith3() {
        const Ended ended =
            run({QStringLiteral("--simulate"), QStringLiteral("--simulator-options"),
                 QStringLiteral("--no-such-option")});
        QCOMPARE(ended.exitCode, int(workbench::ExitNoSimulator));
        QVERIFY2(ended.errors.contains(QStringLiteral("kestrel-simulator")),
                 qPrintable(ended.errors));
    }

    void aPictureThatCannotBeWrittenEndsWith4() {
        const Ended ended =
            run({QStringLiteral("--screenshot"), QStringLiteral("/no/such/folder/p.png"),
                 QStringLiteral("--after"), QStringLiteral("0.1")});
        QCOMPARE(ended.exitCode, int(workbench::ExitNoScreenshot));
    }

    void aRecordingThatCannotBeWrittenEndsWith5() {
        const ScriptedController controller;
        const Ended ended =
            run({QStringLiteral("--connect"), QStringLiteral("127.0.0.1:%1").arg(controller.port()),
                 QStringLiteral("--record"), QStringLiteral("/no/such/folder/r")});
        QCOMPARE(ended.exitCode, int(workbench::ExitNoRecording));
    }

    void aPictureDueAfterTheEndIsTakenAtTheEnd() {
        const QString picture = m_folder.filePath(QStringLiteral("early.png"));
        const Ended ended = run({QStringLiteral("--screenshot"), picture,
                                 QStringLiteral("--quit-after"), QStringLiteral("0.2")});
        QCOMPARE(ended.exitCode, 0);
        QVERIFY(QImage(picture).width() > 500);
    }

    void anEndBeforeThePictureEndsWith4() {
        QProcess process;
        process.start(
            QStringLiteral(WORKBENCH),
            with({QStringLiteral("--screenshot"), m_folder.filePath(QStringLiteral("never.png")),
                  QStringLiteral("--after"), QStringLiteral("1000"),
                  QStringLiteral("--simulate")}));
        QVERIFY(process.waitForStarted(patience));
        // With a child of its own it is past its start.
        QTRY_COMPARE_WITH_TIMEOUT(childProcesses(process.processId()).size(), 1, patience);
        QCOMPARE(::kill(static_cast<pid_t>(process.processId()), SIGTERM), 0);
        QVERIFY(process.waitForFinished(patience));
        QCOMPARE(process.exitCode(), int(workbench::ExitNoScreenshot));
        QVERIFY(process.readAllStandardError().contains("no picture"));
    }

    void aRecordingThatNeverBeganEndsWith5() {
        const QString path = m_folder.filePath(QStringLiteral("never.kestrel"));
        const Ended ended = run({QStringLiteral("--connect"), QStringLiteral("127.0.0.1:1"),
                                 QStringLiteral("--record"), path, QStringLiteral("--quit-after"),
                                 QStringLiteral("0.2")});
        QCOMPARE(ended.exitCode, int(workbench::ExitNoRecording));
        QVERIFY2(ended.errors.contains(QStringLiteral("cannot record")), qPrintable(ended.errors));
        QVERIFY(!QFile::exists(path));
    }

    void aRecordingReplacesAFileOnlyWhenItIsTold() {
        const ScriptedController controller;
        const QString path = m_folder.filePath(QStringLiteral("there.kestrel"));
        const QByteArray before("mine");
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(before), qint64(before.size()));
        file.close();
        const QStringList options{QStringLiteral("--connect"),
                                  QStringLiteral("127.0.0.1:%1").arg(controller.port()),
                                  QStringLiteral("--record"), path};
        Ended ended = run(options);
        QCOMPARE(ended.exitCode, int(workbench::ExitNoRecording));
        QVERIFY2(ended.errors.contains(
                     QStringLiteral("cannot record to %1: the file exists already, and only with "
                                    "--overwrite is it replaced")
                         .arg(path)),
                 qPrintable(ended.errors));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), before);
        file.close();
        QCOMPARE(controller.connections(), 0);

        ended = run(options + QStringList{QStringLiteral("--overwrite"),
                                          QStringLiteral("--quit-after"), QStringLiteral("3")});
        QVERIFY2(ended.exitCode == 0, qPrintable(ended.errors));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(file.readAll().startsWith("kestrel-recording 2\n"));
    }

    void rowsPictureAndRecordingOfASimulatedSession() {
        const QString picture = m_folder.filePath(QStringLiteral("p.png"));
        const QString recording = m_folder.filePath(QStringLiteral("r.kestrel"));
        const Ended ended =
            run({QStringLiteral("--simulate"), QStringLiteral("--measure"),
                 QStringLiteral("--print-rows"), QStringLiteral("--screenshot"), picture,
                 QStringLiteral("--after"), QStringLiteral("5"), QStringLiteral("--record"),
                 recording, QStringLiteral("--quit-after"), QStringLiteral("6")});
        QCOMPARE(ended.exitCode, 0);
        QVERIFY2(!ended.errors.contains(QStringLiteral("propagateSizeHints")),
                 qPrintable(ended.errors));
        QVERIFY(QRegularExpression(
                    QStringLiteral(R"(^tableWidget6dmt\t0\tM1\{#00ff00\}\t.*\t-?\d+\.\d\d\t)"),
                    QRegularExpression::MultilineOption)
                    .match(ended.output)
                    .hasMatch());
        QVERIFY(QImage(picture).width() > 500);
        QFile file(recording);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray text = file.readAll();
        QVERIFY(text.startsWith("kestrel-recording 2\nstart 20"));
        QVERIFY(text.contains(" 6dmt2 6dmt2 4 ") || text.contains(" 6dmt 6dmt 4 "));
        QVERIFY(text.endsWith('\n'));
    }

    void theSimulatorEndsWithTheProgram_data() {
        QTest::addColumn<int>("signal");
        row("asked to end", int(SIGTERM));
        row("interrupted", int(SIGINT));
        row("killed", int(SIGKILL));
    }
    void theSimulatorEndsWithTheProgram() {
        QFETCH(int, signal);
        QProcess process;
        process.start(QStringLiteral(WORKBENCH), with({QStringLiteral("--simulate")}));
        QVERIFY(process.waitForStarted(patience));
        QTRY_COMPARE_WITH_TIMEOUT(childProcesses(process.processId()).size(), 1, patience);
        const qint64 simulator = childProcesses(process.processId()).constFirst();
        QTRY_VERIFY_WITH_TIMEOUT(QFile::symLinkTarget(QStringLiteral("/proc/%1/exe").arg(simulator))
                                     .endsWith(QStringLiteral("kestrel-simulator")),
                                 patience);
        QCOMPARE(::kill(static_cast<pid_t>(process.processId()), signal), 0);
        QVERIFY(process.waitForFinished(patience));
        QCOMPARE(process.exitStatus() == QProcess::NormalExit, signal != SIGKILL);
        QTRY_VERIFY_WITH_TIMEOUT(
            !QFile::exists(QStringLiteral("/proc/%1/exe").arg(simulator)) ||
                QFile::symLinkTarget(QStringLiteral("/proc/%1/exe").arg(simulator)).isEmpty(),
            patience);
    }

    void theWindowOutlivesItsSimulator() {
        QProcess process;
        process.start(QStringLiteral(WORKBENCH), with({QStringLiteral("--simulate")}));
        QVERIFY(process.waitForStarted(patience));
        QTRY_COMPARE_WITH_TIMEOUT(childProcesses(process.processId()).size(), 1, patience);
        const qint64 simulator = childProcesses(process.processId()).constFirst();
        // Once it listens: before, its end is a start that failed.
        QTRY_VERIFY_WITH_TIMEOUT(isConnectedTo(simulator), patience);
        QCOMPARE(::kill(static_cast<pid_t>(simulator), SIGKILL), 0);
        QByteArray errors;
        QTRY_VERIFY_WITH_TIMEOUT(
            (errors += process.readAllStandardError()).contains("was ended by signal 9"), patience);
        QCOMPARE(process.state(), QProcess::Running);
        QCOMPARE(::kill(static_cast<pid_t>(process.processId()), SIGTERM), 0);
        QVERIFY(process.waitForFinished(patience));
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), int(workbench::ExitNoSimulator));
    }
};

int main(int argc, char* argv[]) {
    const QCoreApplication application(argc, argv);
    TestProgram test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_program.moc"
